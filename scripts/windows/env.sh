# Where the Windows build keeps its libraries and finds its tools; sourced by
# the scripts beside it.
win_cache=${QUORVALE_WIN64_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quorvale/win64}
win_prefix=$win_cache/prefix
host_cmake_dir=/usr/lib/$(gcc -print-multiarch)/cmake
wine=/usr/lib/wine/wine64
# The DLLs every program built here needs from Debian's MinGW packages: the
# compiler's runtime and zlib.
mingw_runtime_dlls=(
  /usr/lib/gcc/x86_64-w64-mingw32/12-posix/libstdc++-6.dll
  /usr/lib/gcc/x86_64-w64-mingw32/12-posix/libgcc_s_seh-1.dll
  /usr/x86_64-w64-mingw32/lib/libwinpthread-1.dll
  /usr/x86_64-w64-mingw32/lib/zlib1.dll
)

# A Unix path as Wine's programs see it (drive Z: is the root folder).
windows_path() { local p=${1//\//\\}; printf 'Z:%s' "$p"; }

# Wine with a prefix of the build's own (never the user's), quiet, finding
# the Qt and MinGW DLLs without copying them beside every program.
use_wine_prefix() {
  export WINEPREFIX=${QUORVALE_WINEPREFIX:-$win_cache/wineprefix}
  export WINEDEBUG=${WINEDEBUG:--all}
  export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
  local dirs=("$win_prefix/bin" /usr/lib/gcc/x86_64-w64-mingw32/12-posix /usr/x86_64-w64-mingw32/lib)
  local IFS=';'
  export WINEPATH="$(for d in "${dirs[@]}"; do printf '%s;' "$(windows_path "$d")"; done)"
  export QT_PLUGIN_PATH="$(windows_path "$win_prefix/plugins")"
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    "$wine" wineboot --init >/dev/null 2>&1
    "$(dirname "$wine")/wineserver" -w
  fi
  # Wine has no Chinese font: the one Debian ships (the Linux build's too),
  # which the program takes where 宋体 and 微软雅黑 are missing.
  local fonts=$WINEPREFIX/drive_c/windows/Fonts
  [ -f "$fonts/wqy-microhei.ttc" ] || cp /usr/share/fonts/truetype/wqy/wqy-microhei.ttc "$fonts/"
}
