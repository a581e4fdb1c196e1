#!/usr/bin/env bash
# The demo on a machine without a display: one export of every report for the
# demo office "2" (幸福里花园) into demo/out/, as a scheduled task would run them.
# Expects scripts/demo.sh to have built the program and written the settings.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUORVALE_BUILD_DIR:-$root/build}
admin=$build/src/quorvale-admin
out=$root/demo/out
export XDG_CONFIG_HOME=${XDG_CONFIG_HOME:-$root/demo/config}
mkdir -p "$out"

reports=(房产客户 车位客户 财务数据欠收表房产 财务数据欠收表车位 财务数据预收表车位 财务数据预收表房产)
echo "No display: exporting every report of demo office 2 as user 1002 (post GW05)."
for report in "${reports[@]}"; do
  "$admin" export --report "$report" --office 2 --user 1002 --password 888888 --post GW05 \
    --xlsx "$out/demo-reports.xlsx" --sheet "$report" --pdf "$out/$report.pdf"
done
echo
echo "Workbook (one sheet per report): $out/demo-reports.xlsx"
echo "PDF printouts:                    $out/*.pdf"
echo "To start the desktop program, run scripts/demo.sh where there is a display,"
echo "or under a virtual one: xvfb-run -a scripts/demo.sh"
