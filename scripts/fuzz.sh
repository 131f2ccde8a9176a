#!/usr/bin/env bash
# Builds the libFuzzer harnesses (scripts/sanitized-build.sh, into build-sanitized/) and runs
# each for MINUTES minutes (default 1), starting from its seeds in fuzz/corpus/<harness>/. Fails on any crash, sanitizer report, leak or timeout; what failed is
# kept in build-sanitized/artifacts/. Prints each harness's count of executions.
#   scripts/fuzz.sh [MINUTES] [HARNESS...]
set -euo pipefail
cd "$(dirname "$0")/.."
minutes="${1:-1}"
shift || true
bash scripts/sanitized-build.sh fuzzers

harnesses=("$@")
if [ ${#harnesses[@]} -eq 0 ]; then
  for d in fuzz/corpus/*/; do harnesses+=("$(basename "$d")"); done
fi

supp="$PWD/scripts/lsan.supp"
export ASAN_OPTIONS="halt_on_error=1:detect_leaks=1:abort_on_error=1"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export LSAN_OPTIONS="suppressions=$supp:print_suppressions=0"
export LANG=C.UTF-8 QT_QPA_PLATFORM=offscreen
mkdir -p build-sanitized/artifacts build-sanitized/logs
failed=()
for h in "${harnesses[@]}"; do
  # Absolute paths: a harness may change its working folder (the command line's runs in its
  # scratch root).
  work="$PWD/build-sanitized/corpus/$h"
  mkdir -p "$work"
  log="build-sanitized/logs/$h.log"
  # New inputs go to the working corpus; the seeds in the repository stay as they are.
  if ./build-sanitized/fuzz/"$h" -max_total_time=$((minutes * 60)) -timeout=60 -rss_limit_mb=3072 \
      -close_fd_mask=3 -print_final_stats=1 -artifact_prefix="$PWD/build-sanitized/artifacts/$h-" \
      "$work" "$PWD/fuzz/corpus/$h" >"$log" 2>&1; then
    status=ok
  else
    status=FAILED
    failed+=("$h")
  fi
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  echo "fuzz $h: ${execs:-?} executions, $status"
  if [ "$status" = FAILED ]; then tail -40 "$log"; fi
done
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz: failed: ${failed[*]} (inputs in build-sanitized/artifacts/)"
  exit 1
fi
