#!/usr/bin/env bash
# Draws the README's pictures of the month-end overview from the demo data:
# the overview sheet as LibreOffice prints it, and the overview's PDF (its
# tables, then its charts) as the program prints it.
# Usage: scripts/overview-pictures.sh [BUILD_DIR] [OUT_DIR]   (build/, docs/)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
out=${2:-$root/docs}
admin=$build/src/quorvale-admin
for tool in soffice pdftoppm; do
    command -v "$tool" > /dev/null || { echo "overview-pictures: $tool missing (scripts/install-deps.sh)" >&2; exit 1; }
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME=$work/config QT_QPA_PLATFORM=offscreen
"$admin" create-db "$work/demo.db" --demo > /dev/null
"$admin" config --server "sqlite:$work/demo.db" --login demo --password demo --database demo > /dev/null
"$admin" export --report all --office 2 --user 1002 --password 888888 --post GW05 \
    --month last --cutoff month-end --receipts month \
    --xlsx "$work/{office}.xlsx" --pdf "$work/{office}-{report}.pdf" > /dev/null
soffice -env:UserInstallation="file://$work/profile" --headless --convert-to pdf \
    --outdir "$work/lo" "$work/2.xlsx" > /dev/null 2>&1
mkdir -p "$out"
pdftoppm -r 80 -f 1 -l 1 -png -singlefile "$work/lo/2.pdf" "$out/overview-sheet"
pdftoppm -r 60 -f 1 -l 1 -png -singlefile "$work/2-月末概览.pdf" "$out/overview-pdf-tables"
pdftoppm -r 60 -f 2 -l 2 -png -singlefile "$work/2-月末概览.pdf" "$out/overview-pdf-charts"
echo "overview-pictures: $out/overview-sheet.png, overview-pdf-tables.png, overview-pdf-charts.png"
