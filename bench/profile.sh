#!/usr/bin/env bash
# Instruction counts of printing a document against replaying its pages into cairo (callgrind):
#   bench/profile.sh [BUILD_DIR] [TYPE LINES]...   (default: invoice 500 and statement 2000)
# Counts only the measured rounds of the driver; steadier than times on a shared machine.
set -euo pipefail
build=${1:-build}
shift || true
[ $# -eq 0 ] && set -- invoice 500 statement 2000
driver="$build/bench/quorvel_bench_driver"
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
count() {  # TYPE LINES MODE -> instructions of 3 measured rounds
  valgrind --tool=callgrind --collect-atstart=no --toggle-collect='*RunMeasured*' \
    --callgrind-out-file="$out/cg.out" "$driver" "$1" "$2" "$3" "$out/doc.pdf" 3 >/dev/null 2>&1
  callgrind_annotate "$out/cg.out" 2>/dev/null | awk '/PROGRAM TOTALS/ {gsub(",", "", $1); print $1}'
}
printf '%-22s %16s %16s %8s\n' document "print instr." "floor instr." ratio
while [ $# -ge 2 ]; do
  print=$(count "$1" "$2" print)
  floor=$(count "$1" "$2" floor)
  printf '%-22s %16s %16s %8.3f\n' "$1/$2" "$print" "$floor" "$(awk -v a="$print" -v b="$floor" 'BEGIN { print a / b }')"
  shift 2
done
