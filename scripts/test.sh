#!/usr/bin/env bash
# Builds everything, runs the whole test suite, then builds, installs and
# removes the Debian package (scripts/package-test.sh).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUORVALE_BUILD_DIR:-$root/build}
bash "$root/scripts/build.sh"
(cd "$build" && ctest --output-on-failure --parallel "$(nproc)") | tee "$build/ctest.log"
bash "$root/scripts/package-test.sh"
# The suite's own summary closes the run, as CI reads it from the last lines.
echo
grep -E '^[0-9]+% tests passed' "$build/ctest.log"
