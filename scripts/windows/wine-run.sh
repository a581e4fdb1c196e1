#!/bin/sh
# Runs a Windows program of the build in Wine (the build's and the tests'
# emulator). A program still running after QUORVALE_WINE_TIMEOUT seconds
# (default 240) is ended with everything in its Wine prefix: Wine's server
# would otherwise keep its output open and the test runner waiting.
timeout "${QUORVALE_WINE_TIMEOUT:-240}" /usr/lib/wine/wine64 "$@"
status=$?
if [ "$status" -eq 124 ]; then
  echo "wine-run: $1 still running after ${QUORVALE_WINE_TIMEOUT:-240} s: ended" >&2
  /usr/lib/wine/wineserver -k
fi
exit "$status"
