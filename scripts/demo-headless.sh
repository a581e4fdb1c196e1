#!/usr/bin/env bash
# The demo on a machine without a display: the month-end run a scheduler
# would start, every report of every demo office into demo/out/ (one workbook
# per office, one PDF per report and office).
# Expects scripts/demo.sh to have built the program and written the settings.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUORVALE_BUILD_DIR:-$root/build}
admin=$build/src/quorvale-admin
out=$root/demo/out
export XDG_CONFIG_HOME=${XDG_CONFIG_HOME:-$root/demo/config}

echo "No display: the month-end run for every demo office, as user 1002 (post GW05)."
status=0
"$admin" export --report all --office all --user 1002 --password 888888 --post GW05 \
  --month this --cutoff today --xlsx "$out/{office}.xlsx" --pdf "$out/{office}-{report}.pdf" \
  --orientation auto || status=$?
echo
if [ "$status" -eq 4 ]; then
  echo "One export failed on purpose: office 3's room 123456 overflows the property customer"
  echo "report, as the window does; every other workbook and PDF was written."
elif [ "$status" -ne 0 ]; then
  exit "$status"
fi
echo "Workbooks (one per office, a sheet per report): $out/*.xlsx"
echo "PDF printouts:                                  $out/*.pdf"
echo "To start the desktop program, run scripts/demo.sh where there is a display,"
echo "or under a virtual one: xvfb-run -a scripts/demo.sh"
