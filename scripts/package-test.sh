#!/usr/bin/env bash
# The package as an administrator meets it: builds dist/quorvale_*.deb, checks
# it with lintian, installs it with apt-get, uses the installed programs from a
# clean home folder, purges it and checks that nothing of it is left under /usr.
# Installing needs root or sudo; without either the test is skipped.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "package-test: SKIPPED: installing the package needs root or sudo"
    exit 0
  fi
  sudo_cmd=(sudo)
fi
as_root() { "${sudo_cmd[@]}" env DEBIAN_FRONTEND=noninteractive "$@"; }
fail() { echo "package-test: FAILED: $*" >&2; exit 1; }

bash scripts/package.sh
debs=(dist/quorvale_*.deb)
[ ${#debs[@]} -eq 1 ] || fail "expected one package in dist/, found: ${debs[*]}"
deb=./${debs[0]}
version=$(dpkg-deb -f "$deb" Version)

# What the programs load at run time rather than link.
depends=$(dpkg-deb -f "$deb" Depends)
for needed in libqt6sql6-sqlite fonts-wqy-microhei qt6-translations-l10n; do
  grep -q "$needed" <<< "$depends" || fail "the package does not depend on $needed: $depends"
done

echo "package-test: lintian $deb"
lintian --fail-on error --display-info "$deb" || fail "lintian reports errors"

if dpkg-query -W -f='${Status}' quorvale 2>/dev/null | grep -q 'installed'; then
  echo "package-test: purging the quorvale package installed before this test"
  as_root apt-get purge -y -q quorvale
fi

work=$(mktemp -d)
installed=no
cleanup() {
  if [ "$installed" = yes ]; then as_root apt-get purge -y -q quorvale >/dev/null || true; fi
  rm -rf "$work"
}
trap cleanup EXIT

find /usr -xdev | sort >"$work/usr-before"
echo "package-test: apt-get install $deb"
installed=yes
as_root apt-get install -y -q "$deb"
for file in /usr/bin/quorvale /usr/bin/quorvale-admin /usr/share/quorvale/MDI.BMP \
  /usr/share/quorvale/schema.sql /usr/share/applications/quorvale.desktop \
  /usr/share/icons/hicolor/scalable/apps/quorvale.svg \
  /usr/share/icons/hicolor/48x48/apps/quorvale.png; do
  [ -f "$file" ] || fail "$file is not installed"
done

# A new user: nothing but the installed programs and a home of their own.
home=$work/home
mkdir -p "$home/.config" "$home/runtime"
chmod 700 "$home/runtime"
(
  cd "$home"
  export HOME=$home XDG_CONFIG_HOME=$home/.config XDG_RUNTIME_DIR=$home/runtime
  export PATH=/usr/bin:/bin
  unset QT_QPA_PLATFORM

  [ "$(quorvale --version)" = "quorvale $version" ] || fail "quorvale --version: $(quorvale --version)"
  [ "$(quorvale-admin --version)" = "quorvale-admin $version" ] || fail "quorvale-admin --version"
  man --warnings quorvale-admin >/dev/null || fail "man quorvale-admin"

  quorvale-admin create-db demo.db --demo
  quorvale-admin config --server "sqlite:$home/demo.db" --login demo --password demo --database quorvale
  [ -f "$XDG_CONFIG_HOME/Quorvale.ini" ] || fail "config wrote no $XDG_CONFIG_HOME/Quorvale.ini"

  reports=(房产客户 车位客户 财务数据欠收表房产 财务数据欠收表车位 财务数据预收表车位 财务数据预收表房产)
  for report in "${reports[@]}"; do
    quorvale-admin export --report "$report" --office 2 --user 1002 --password 888888 --post GW05 \
      --xlsx reports.xlsx --sheet "$report" --pdf "$report.pdf"
    [ -s "$report.pdf" ] || fail "no PDF for $report"
  done
  /usr/bin/python3 - reports.xlsx "${reports[@]}" <<'PY' || fail "the exported workbook"
import sys
import openpyxl
path, expected = sys.argv[1], sys.argv[2:]
book = openpyxl.load_workbook(path)
missing = [name for name in expected if name not in book.sheetnames]
if missing:
    sys.exit(f"{path}: no sheet {missing} (sheets: {book.sheetnames})")
for name in expected:
    sheet = book[name]
    if sheet.max_row < 2 or not sheet.cell(1, 1).value:
        sys.exit(f"{path}: sheet {name} has no heading and rows")
    print(f"package-test: sheet {name}: {sheet.max_row - 1} rows, {sheet.max_column} columns")
PY

  # The desktop program starts on the demo settings and stays at its login window.
  status=0
  QT_QPA_PLATFORM=offscreen timeout 5 quorvale >quorvale.log 2>&1 || status=$?
  [ "$status" -eq 124 ] || fail "quorvale ended with status $status at start: $(cat quorvale.log)"
)

echo "package-test: apt-get purge quorvale"
as_root apt-get purge -y -q quorvale
installed=no
if dpkg-query -W -f='${Status}' quorvale 2>/dev/null | grep -q 'installed'; then
  fail "quorvale is still installed after the purge"
fi

# Left under /usr: only files of other packages (dependencies apt-get brought
# in) and the caches Debian's triggers regenerate on purpose.
find /usr -xdev | sort >"$work/usr-after"
left=()
while IFS= read -r path; do
  case $path in
    */__pycache__ | */__pycache__/* | */icon-theme.cache | */mimeinfo.cache) continue ;;
  esac
  dpkg-query -S "$path" >/dev/null 2>&1 && continue
  left+=("$path")
done < <(comm -13 "$work/usr-before" "$work/usr-after")
[ ${#left[@]} -eq 0 ] || fail "left under /usr after the purge: ${left[*]}"
echo "package-test: $deb built, checked, installed, used and purged cleanly"
