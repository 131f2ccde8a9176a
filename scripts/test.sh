#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (logic, windows, command line).
# Windows are tested headless.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
export LANG=C.UTF-8
cd build
ctest --output-on-failure -j"$(nproc)" --timeout 900
