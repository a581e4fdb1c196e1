#!/usr/bin/env bash
# The month-end run of every demo office with the Linux build and with the
# Windows build in Wine, from the same demo database: the workbooks must be
# equal cell for cell (read by openpyxl) and the PDFs as many pages long.
# Pages whose text (pdftotext) differs are listed and counted: the glyph
# widths of Windows' font engine differ by fractions of a point, which
# shows only where a table wider than the paper is cut at the page edge.
# Usage: compare-month-end.sh LINUX_BUILD WINDOWS_BUILD
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
source "$root/scripts/windows/env.sh"
linux_build=$1
windows_build=$2
use_wine_prefix
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
started=$(date +%s)
mkdir -p "$work/linux" "$work/windows" "$work/config"
"$linux_build/src/quorvale-admin" create-db "$work/demo.db" --demo >/dev/null

run() { # LOG OUT-FOLDER ADMIN…: the month-end run as the demo does it, for a fixed month
  local log=$1 out=$2; shift 2
  local status=0
  "$@" export --report all --office all --user 1002 --password 888888 --post GW05 \
    --month 202611 --cutoff 2026-11-30 --xlsx "$out/{office}.xlsx" --pdf "$out/{office}-{report}.pdf" \
    --orientation auto >/dev/null 2>"$log" || status=$?
  # Office 3's property customer report overflows on purpose, as in the window.
  [ "$status" -eq 0 ] || [ "$status" -eq 4 ] || { cat "$log" >&2; exit 1; }
  echo "$status"
}
XDG_CONFIG_HOME=$work/config "$linux_build/src/quorvale-admin" config \
  --server "sqlite:$work/demo.db" --login demo --password demo --database quorvale
linux_status=$(XDG_CONFIG_HOME=$work/config run "$work/linux.log" "$work/linux" \
  "$linux_build/src/quorvale-admin")
win_admin=("$wine" "$windows_build/src/quorvale-admin.exe")
"${win_admin[@]}" config --server "sqlite:$(windows_path "$work/demo.db")" --login demo \
  --password demo --database quorvale
windows_status=$(run "$work/windows.log" "$(windows_path "$work/windows")" "${win_admin[@]}")
[ "$linux_status" = "$windows_status" ] ||
  { echo "month-end: exit $linux_status on Linux, $windows_status on Windows" >&2; exit 1; }

/usr/bin/python3 "$root/scripts/windows/same-workbooks.py" "$work/linux" "$work/windows"
pages=0
differing=0
for pdf in "$work/linux"/*.pdf; do
  name=$(basename "$pdf")
  [ -f "$work/windows/$name" ] || { echo "month-end: $name missing on Windows" >&2; exit 1; }
  n=$(pdfinfo "$pdf" | sed -nE 's/^Pages: +([0-9]+)/\1/p')
  [ "$n" = "$(pdfinfo "$work/windows/$name" | sed -nE 's/^Pages: +([0-9]+)/\1/p')" ] ||
    { echo "month-end: $name has a different number of pages" >&2; exit 1; }
  for ((page = 1; page <= n; page++)); do
    if ! diff <(pdftotext -f $page -l $page "$pdf" -) \
              <(pdftotext -f $page -l $page "$work/windows/$name" -) >"$work/page.diff"; then
      echo "month-end: $name page $page reads differently on Windows (< Linux, > Windows):" >&2
      head -6 "$work/page.diff" >&2
      differing=$((differing + 1))
    fi
  done
  pages=$((pages + n))
done
echo "month-end: $(ls "$work/linux"/*.xlsx | wc -l) workbooks equal cell for cell; $(ls "$work/linux"/*.pdf | wc -l) PDFs of equal length, $((pages - differing)) of $pages pages reading the same; exit $linux_status on both; $(( $(date +%s) - started )) s"
