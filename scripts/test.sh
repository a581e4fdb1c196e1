#!/usr/bin/env bash
# Builds everything, runs the whole test suite, then builds, installs and
# removes the Debian package (scripts/package-test.sh).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUORVALE_BUILD_DIR:-$root/build}
bash "$root/scripts/build.sh"
(cd "$build" && ctest --output-on-failure --parallel "$(nproc)") | tee "$build/ctest.log"
bash "$root/scripts/package-test.sh"
# The Windows build, when its libraries are in the cache (scripts/windows/build-libs.sh).
source "$root/scripts/windows/env.sh"
if [ -f "$win_prefix/.complete" ]; then
  bash "$root/scripts/windows/test.sh"
  bash "$root/scripts/windows/package.sh"
else
  echo "windows: skipped: no Windows libraries in $win_prefix (scripts/windows/build-libs.sh builds them)"
fi
# The suite's own summary closes the run, as CI reads it from the last lines.
echo
grep -E '^[0-9]+% tests passed' "$build/ctest.log"
