#!/usr/bin/env bash
# Builds everything with clang 14 and the address and undefined-behaviour sanitizers
# (scripts/sanitized-build.sh, into build-sanitized/) and runs the whole test suite there. Any
# sanitizer report (a memory error, undefined behaviour, a leak) ends its test with a failure.
# Leaks of third-party libraries only are suppressed (scripts/lsan.supp).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/sanitized-build.sh
export ASAN_OPTIONS="halt_on_error=1:detect_leaks=1:abort_on_error=1:strict_string_checks=1"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp:print_suppressions=0"
export QT_QPA_PLATFORM="${QT_QPA_PLATFORM:-offscreen}"
export LANG=C.UTF-8
cd build-sanitized
# Tests labelled heavy run benchmark-sized data, several times slower under the sanitizers.
ctest --output-on-failure -j"$(nproc)" --timeout 1800
