#!/usr/bin/env bash
# Installs every Debian package that building, testing and running Quorvale
# needs. Safe to run again: apt-get skips what is already there.
set -euo pipefail

packages=(
  # build
  build-essential cmake ninja-build pkg-config clang-format
  qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite libqt6sql6-odbc
  libsqlite3-dev zlib1g-dev
  # tests (QtSvg draws the icon's SVG to compare it with the drawn emblem)
  libgtest-dev libgmock-dev poppler-utils python3-openpyxl qt6-svg-dev unzip
  # the second reader of every workbook shape the tests write
  libreoffice-calc-nogui
  # the Debian package: building, checking and installing it
  dpkg-dev file lintian desktop-file-utils appstream man-db
  # SQL Server access through ODBC (FreeTDS on Linux)
  unixodbc tdsodbc
  # the snapshot's test and benchmark read a real server through a real ODBC driver;
  # the extension's test loads it into the sqlite3 shell and Debian's Python
  postgresql odbc-postgresql sqlite3 python3
  # Chinese fonts for the UI and for PDFs; Qt's own texts in Chinese
  fonts-wqy-microhei qt6-translations-l10n
  # benchmarks compare the workbook writer with libxlsxwriter; time measures peak memory
  libxlsxwriter-dev time
  # running the desktop program on a machine without a display
  xvfb xauth
)

sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "install-deps: need root or sudo" >&2; exit 1; }
  sudo_cmd=(sudo)
fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all packages present"
  exit 0
fi
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -q
"${sudo_cmd[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
