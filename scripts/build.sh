#!/usr/bin/env bash
# Installs what is missing, then configures and builds everything into build/.
set -euo pipefail
cd "$(dirname "$0")/.."
if [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; then
  bash scripts/install-deps.sh
fi
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSHUANGQU_SKIP="" >/dev/null
cmake --build build -j"$(nproc)"
