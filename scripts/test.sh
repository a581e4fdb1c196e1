#!/usr/bin/env bash
# Builds everything and runs the whole test suite.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUORVALE_BUILD_DIR:-$root/build}
bash "$root/scripts/build.sh"
cd "$build"
ctest --output-on-failure --parallel "$(nproc)"
