#!/usr/bin/env bash
# Installs what is missing, builds, and starts the program.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
exec ./build/shuangqu "$@"
