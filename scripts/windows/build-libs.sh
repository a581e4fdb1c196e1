#!/usr/bin/env bash
# Builds, once, the Windows (x86_64-w64-mingw32) libraries that Quorvale and
# its tests link, from Debian's own source packages: SQLite, GoogleTest and
# Qt's base module (Core, Gui, Widgets, Sql with the SQLite and ODBC drivers,
# PrintSupport, Test; the windows and offscreen platforms), with Debian's Linux
# Qt of the same version as host tools. zlib and the compiler's runtime are
# Debian's MinGW binary packages. Everything goes into a cache outside the
# checkout ($QUORVALE_WIN64_CACHE, default ~/.cache/quorvale/win64); a filled
# cache is left as it is. About 35 minutes on two cores, mostly Qt.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
source "$root/scripts/windows/env.sh"

if [ -f "$win_prefix/.complete" ]; then
  echo "build-libs: Windows libraries already in $win_prefix ($(cat "$win_prefix/.complete"))"
  exit 0
fi
started=$(date +%s)

# --- the tools, and Debian's source packages -------------------------------
sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
src_list=/etc/apt/sources.list.d/quorvale-deb-src.sources
if ! grep -rqsE '^(Types:.*deb-src|deb-src )' /etc/apt/sources.list /etc/apt/sources.list.d/; then
  printf '%s\n' 'Types: deb-src' 'URIs: http://deb.debian.org/debian' \
    'Suites: bookworm bookworm-updates' 'Components: main' \
    'Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg' |
    "${sudo_cmd[@]}" tee "$src_list" >/dev/null
fi
"${sudo_cmd[@]}" apt-get update -q
"${sudo_cmd[@]}" apt-get install -y -q --no-install-recommends \
  mingw-w64 libz-mingw-w64-dev wine64 nsis zip dpkg-dev tcl \
  cmake ninja-build qt6-base-dev qt6-base-dev-tools

work=$win_cache/work
rm -rf "$work" "$win_prefix"
mkdir -p "$work" "$win_prefix"
cd "$work"
apt-get source -q qt6-base sqlite3 googletest >"$work/apt-source.log" 2>&1 ||
  { cat "$work/apt-source.log" >&2; exit 1; }
jobs=$(nproc)
toolchain=$root/cmake/mingw-w64.cmake

# --- SQLite: the amalgamation made on this machine, compiled for Windows ----
# The compile options of Debian's own libsqlite3.
(
  cd sqlite3-*/
  mkdir -p native && cd native
  ../configure --disable-tcl >/dev/null
  make -s sqlite3.c sqlite3.h >/dev/null
  mingw=x86_64-w64-mingw32-gcc-posix
  $mingw -O2 -shared -o libsqlite3-0.dll sqlite3.c \
    -DSQLITE_API='__declspec(dllexport)' -DSQLITE_THREADSAFE=1 \
    -DSQLITE_ENABLE_COLUMN_METADATA -DSQLITE_ENABLE_FTS3 -DSQLITE_ENABLE_FTS5 \
    -DSQLITE_ENABLE_RTREE -DSQLITE_ENABLE_DBSTAT_VTAB -DSQLITE_ENABLE_UNLOCK_NOTIFY \
    -DSQLITE_SECURE_DELETE -DSQLITE_MAX_VARIABLE_NUMBER=250000 -DSQLITE_ENABLE_MATH_FUNCTIONS \
    -Wl,--out-implib,libsqlite3.dll.a
  mkdir -p "$win_prefix/bin" "$win_prefix/lib" "$win_prefix/include"
  cp libsqlite3-0.dll "$win_prefix/bin/"
  cp libsqlite3.dll.a "$win_prefix/lib/"
  cp sqlite3.h ../src/sqlite3ext.h "$win_prefix/include/" 2>/dev/null ||
    cp sqlite3.h sqlite3ext.h "$win_prefix/include/"
)

# --- GoogleTest --------------------------------------------------------------
cmake -S googletest-*/ -B build-gtest -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_INSTALL_PREFIX="$win_prefix" \
  -DBUILD_SHARED_LIBS=OFF -Dgtest_force_shared_crt=ON >/dev/null
cmake --build build-gtest --parallel "$jobs" >/dev/null
cmake --install build-gtest >/dev/null

# --- Qt's base module --------------------------------------------------------
# No network, no D-Bus, no examples or tests. Debian's source has no bundled
# SQLite (the driver takes the one above); the tablet events need wintab.h,
# which MinGW lacks; the Windows platform does not compile without OpenGL.
cmake -S qt6-base-*/ -B build-qt -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_INSTALL_PREFIX="$win_prefix" \
  -DCMAKE_PREFIX_PATH="$win_prefix" \
  -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="$host_cmake_dir" \
  -DBUILD_SHARED_LIBS=ON -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF \
  -DQT_BUILD_BENCHMARKS=OFF -DQT_BUILD_MANUAL_TESTS=OFF \
  -DFEATURE_network=OFF -DFEATURE_dbus=OFF -DFEATURE_concurrent=OFF -DFEATURE_xml=OFF \
  -DFEATURE_opengl=ON -DFEATURE_tabletevent=OFF \
  -DFEATURE_sql=ON -DFEATURE_sql_sqlite=ON -DFEATURE_system_sqlite=ON \
  -DFEATURE_sql_odbc=ON -DFEATURE_sql_psql=OFF -DFEATURE_sql_mysql=OFF \
  -DFEATURE_sql_ibase=OFF -DFEATURE_sql_oci=OFF -DFEATURE_sql_db2=OFF \
  -DFEATURE_system_zlib=ON -DFEATURE_printsupport=ON -DFEATURE_testlib=ON \
  -DSQLite3_INCLUDE_DIR="$win_prefix/include" -DSQLite3_LIBRARY="$win_prefix/lib/libsqlite3.dll.a" \
  >"$work/qt-configure.log" 2>&1 || { tail -60 "$work/qt-configure.log" >&2; exit 1; }
cmake --build build-qt --parallel "$jobs" >"$work/qt-build.log" 2>&1 ||
  { grep -B2 -A12 -m3 'error' "$work/qt-build.log" >&2; exit 1; }
cmake --install build-qt >/dev/null

cd /
rm -rf "$work"
took=$(( $(date +%s) - started ))
size=$(du -sh "$win_prefix" | cut -f1)
echo "qtbase 6.4.2, sqlite 3.40.1, googletest 1.12.1; built in $((took / 60)) min $((took % 60)) s; $size" \
  >"$win_prefix/.complete"
echo "build-libs: done in $((took / 60)) min $((took % 60)) s, $size in $win_prefix"
