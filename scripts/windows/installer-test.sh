#!/usr/bin/env bash
# Installs the Windows setup silently in Wine, uses the installed programs
# (the version, a demo database, one export), uninstalls and checks that
# the program folder, the Start-menu entry and the uninstall entry are gone.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
source "$root/scripts/windows/env.sh"
setup=$1
# A new Wine prefix, as a machine that never had Quorvale.
work=$(mktemp -d)
trap '"$(dirname "$wine")/wineserver" -k 2>/dev/null; rm -rf "$work"' EXIT
export QUORVALE_WINEPREFIX=$work/prefix
use_wine_prefix
# The installed programs must find everything in their own folder.
unset WINEPATH QT_PLUGIN_PATH
wineserver=$(dirname "$wine")/wineserver
drive_c=$WINEPREFIX/drive_c
folder="$drive_c/Program Files/Quorvale"
shortcut="$drive_c/ProgramData/Microsoft/Windows/Start Menu/Programs/物业报表.lnk"
key='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\Quorvale'
fail() { echo "installer-test: $*" >&2; exit 1; }
started=$(date +%s)

"$wine" "$setup" /S
"$wineserver" -w
[ -f "$folder/quorvale.exe" ] && [ -f "$folder/quorvale-admin.exe" ] || fail "programs not installed"
[ -f "$shortcut" ] || fail "no Start-menu entry 物业报表"
"$wine" reg query "$key" /v DisplayName >/dev/null 2>&1 || fail "no entry in Programs and Features"

admin=("$wine" "$folder/quorvale-admin.exe")
version=$("${admin[@]}" --version | tr -d '\r')
echo "installer-test: installed; quorvale-admin.exe --version: $version"
mkdir -p "$work/财务"
"${admin[@]}" create-db "$(windows_path "$work/demo.db")" --demo >/dev/null
"${admin[@]}" config --server "sqlite:$(windows_path "$work/demo.db")" --login demo --password demo \
  --database quorvale >/dev/null
"${admin[@]}" export --report 财务数据欠收表房产 --office 2 --user 1002 --password 888888 \
  --post GW05 --month 202611 --cutoff 2026-11-30 \
  --xlsx "$(windows_path "$work/财务/收款日报表.xlsx")" --pdf "$(windows_path "$work/财务/收款日报表.pdf")" \
  >/dev/null 2>"$work/export.log" || fail "export from the installed folder failed: $(cat "$work/export.log")"
[ -s "$work/财务/收款日报表.xlsx" ] && [ -s "$work/财务/收款日报表.pdf" ] || fail "export wrote nothing"
echo "installer-test: exported 财务/收款日报表.xlsx and .pdf from the installed folder"

"$wine" "$folder/uninstall.exe" /S
"$wineserver" -w
[ ! -e "$folder" ] || fail "left in the program folder: $(cd "$folder" && find . | head)"
[ ! -e "$shortcut" ] || fail "the Start-menu entry is left"
! "$wine" reg query "$key" >/dev/null 2>&1 || fail "the uninstall entry is left"
echo "installer-test: uninstalled, nothing left; install, use and uninstall took $(( $(date +%s) - started )) s"
