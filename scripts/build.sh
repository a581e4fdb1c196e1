#!/usr/bin/env bash
# Configures and builds Quorvale in build/ (or $QUORVALE_BUILD_DIR).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUORVALE_BUILD_DIR:-$root/build}
bash "$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
cmake --build "$build" --parallel "$(nproc)"
