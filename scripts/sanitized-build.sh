#!/usr/bin/env bash
# Configures and builds build-sanitized/ with clang 14: every target compiled with the address and
# undefined-behaviour sanitizers and libFuzzer's coverage, so that one build serves the sanitized
# test suite (scripts/sanitize.sh) and the fuzzing harnesses (scripts/fuzz.sh).
#   scripts/sanitized-build.sh [TARGET...]   (default: everything)
set -euo pipefail
cd "$(dirname "$0")/.."
if [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; then
  bash scripts/install-deps.sh >/dev/null
fi
# -O1 and line tables only: a third of the compile time of -O2 -g, and enough for the reports.
CXX=clang++-14 CC=clang-14 cmake -S . -B build-sanitized -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSHUANGQU_FUZZ=ON \
  -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -gline-tables-only -DNDEBUG" -DSHUANGQU_SKIP="" \
  -DSHUANGQU_BUILD_TESTS=ON -DSHUANGQU_BUILD_BENCHMARKS=ON >/dev/null
if [ $# -eq 0 ]; then
  cmake --build build-sanitized -j"$(nproc)"
else
  for target in "$@"; do cmake --build build-sanitized -j"$(nproc)" --target "$target"; done
fi
