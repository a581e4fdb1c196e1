#!/usr/bin/env bash
# Builds the Debian package quorvale_VERSION_ARCH.deb into dist/ with CPack,
# from the same build folder as scripts/test.sh (installed under /usr).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUORVALE_BUILD_DIR:-$root/build}
dist=$root/dist

bash "$root/scripts/build.sh" -DCMAKE_INSTALL_PREFIX=/usr
rm -rf "$build/package"
(cd "$build" && cpack -G DEB -B "$build/package")
mkdir -p "$dist"
rm -f "$dist"/quorvale_*.deb
cp "$build"/package/quorvale_*.deb "$dist/"
ls "$dist"/quorvale_*.deb
