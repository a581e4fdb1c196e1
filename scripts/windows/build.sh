#!/usr/bin/env bash
# Configures and builds the Windows programs and tests in build-win64/ (or
# $QUORVALE_WIN64_BUILD_DIR) against the libraries of build-libs.sh. Steps of
# the build that run a built program (the background bitmap) run it in Wine.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
source "$root/scripts/windows/env.sh"
build=${QUORVALE_WIN64_BUILD_DIR:-$root/build-win64}
[ -f "$win_prefix/.complete" ] ||
  { echo "build-win64: no Windows libraries in $win_prefix: run scripts/windows/build-libs.sh" >&2; exit 1; }
use_wine_prefix
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" -DCMAKE_PREFIX_PATH="$win_prefix" \
  -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="$host_cmake_dir" "$@"
cmake --build "$build" --parallel "$(nproc)"
