#!/usr/bin/env bash
# Builds Quorvale, creates the demo database and settings inside the checkout
# (demo/, never the user's own settings) and starts the desktop program.
# Without a display it runs one export of every report instead.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${QUORVALE_BUILD_DIR:-$root/build}
demo=$root/demo

echo "Building Quorvale (the first build takes a few minutes)..."
bash "$root/scripts/build.sh" >/dev/null
admin=$build/src/quorvale-admin
mkdir -p "$demo/config"
export XDG_CONFIG_HOME=$demo/config
if [ ! -f "$demo/quorvale-demo.db" ]; then
  "$admin" create-db "$demo/quorvale-demo.db" --demo
fi
"$admin" config --server "sqlite:$demo/quorvale-demo.db" --login demo --password demo --database quorvale

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$build/src/quorvale" "$@"
fi
exec bash "$root/scripts/demo-headless.sh"
