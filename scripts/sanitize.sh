#!/usr/bin/env bash
# Builds everything with the address and undefined-behaviour sanitizers into build-asan/ and
# runs the whole test suite there. Any sanitizer report (a memory error, undefined behaviour,
# a leak) ends its test with a failure. Leaks of third-party libraries only are suppressed
# (scripts/lsan.supp).
set -euo pipefail
cd "$(dirname "$0")/.."
if [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; then
  bash scripts/install-deps.sh >/dev/null
fi
flags="-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer"
export ASAN_OPTIONS="halt_on_error=1:detect_leaks=1:abort_on_error=1:strict_string_checks=1"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp:print_suppressions=0"
export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
export LANG=C.UTF-8
# -O1 and line tables only: far less compile time than -O2 -g, and enough for the reports.
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSHUANGQU_SKIP="" -DSHUANGQU_BUILD_BENCHMARKS=OFF \
  -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1 -DNDEBUG" \
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" >/dev/null
cmake --build build-asan -j"$(nproc)"
cd build-asan
# Tests labelled heavy run benchmark-sized data, several times slower under the sanitizers.
ctest --output-on-failure -j"$(nproc)" --timeout 1800
