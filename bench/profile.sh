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
# print: the whole print to PDF; replay: its pages through the direct PDF device alone; floor:
# the same pages through cairo. print/replay is what the layout adds; floor/replay the speed-up.
printf '%-22s %14s %14s %14s %13s %13s\n' document "print instr." "replay instr." "floor instr." print/replay floor/replay
while [ $# -ge 2 ]; do
  print=$(count "$1" "$2" print)
  replay=$(count "$1" "$2" replay)
  floor=$(count "$1" "$2" floor)
  printf '%-22s %14s %14s %14s %13.3f %13.2f\n' "$1/$2" "$print" "$replay" "$floor" \
    "$(awk -v a="$print" -v b="$replay" 'BEGIN { print a / b }')" "$(awk -v a="$floor" -v b="$replay" 'BEGIN { print a / b }')"
  shift 2
done
