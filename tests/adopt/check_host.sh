#!/usr/bin/env bash
# Runs a built downstream host without LD_LIBRARY_PATH and checks the invoice PDF it printed:
# check_host.sh HOST WORKDIR VERSION [queue]
set -euo pipefail
host=$1 work=$2 version=$3 mode=${4:-}
pdf="$work/invoice.pdf"
rm -f "$pdf"
out=$(env -u LD_LIBRARY_PATH CUPS_SERVER=127.0.0.1:9 "$host" "$pdf" $mode)
echo "$out"
grep -qx "quorvel $version" <<<"$out" || { echo "FAIL: no version line 'quorvel $version'"; exit 1; }
grep -qx "wrote $pdf" <<<"$out" || { echo "FAIL: the host did not report $pdf"; exit 1; }
text=$(pdftotext -layout "$pdf" -)
for expected in INV-ADOPT-0042 "Bound ledger, A4" "55.20"; do
  grep -qF -- "$expected" <<<"$text" || { echo "FAIL: '$expected' is not in the PDF"; exit 1; }
done
[ "$(pdfinfo "$pdf" | awk '/^Pages:/ {print $2}')" = 1 ] || { echo "FAIL: not one page"; exit 1; }
if [ "$mode" = queue ]; then
  # The queue device is there when the scheduler is the one that fails, not the device lookup.
  grep -q "error 482 in PrintIt: .*print scheduler" <<<"$out" || { echo "FAIL: the print-queue device is missing"; exit 1; }
fi
echo "ok"
