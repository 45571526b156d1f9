#!/usr/bin/env bash
# Runs every fuzz target for a bounded time: fuzz/run.sh BUILD_DIR SECONDS_PER_TARGET.
# Each starts from the corpus kept in fuzz/corpus/<target> and grows a working copy in the
# build directory; a crash, hang, leak or sanitizer report fails the run and names the input.
set -uo pipefail
build=${1:-build-fuzz}
seconds=${2:-60}
here=$(cd "$(dirname "$0")" && pwd)
export LSAN_OPTIONS="suppressions=$here/lsan.supp:print_suppressions=0"
export ASAN_OPTIONS="detect_leaks=1:abort_on_error=1"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
failed=0
for target in fuzz_document fuzz_text_fitting fuzz_dispatch; do
  work="$build/fuzz-work/$target"
  mkdir -p "$work/corpus" "$work/artifacts"
  log="$work/last-run.log"
  dict=()
  [ -f "$here/${target#fuzz_}.dict" ] && dict=(-dict="$here/${target#fuzz_}.dict")
  # Runs in its own directory: nothing a target does lands in the source tree.
  (cd "$work" && "../../fuzz/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
     -max_len=16384 -print_funcs=0 -print_final_stats=1 -artifact_prefix=artifacts/ "${dict[@]}" \
     corpus "$here/corpus/$target") >"$log" 2>&1
  status=$?
  runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$')
  cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1)
  if [ $status -eq 0 ]; then
    echo "fuzz: $target: ${runs:-?} inputs in ${seconds}s, $cov, no finding"
  else
    failed=1
    echo "fuzz: $target FAILED (exit $status); log: $log"
    grep -E 'ERROR|SUMMARY|Test unit written' "$log" | head -5
  fi
done
exit $failed
