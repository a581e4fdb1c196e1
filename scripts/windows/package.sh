#!/usr/bin/env bash
# Builds dist/quorvale-VERSION-win64-setup.exe (NSIS) and the portable
# dist/quorvale-VERSION-win64.zip of the same files: both programs, the Qt
# DLLs and plugins they load (no more), the compiler's runtime, Qt's Chinese
# translations, MDI.BMP and schema.sql. Then installs the setup silently in
# Wine, runs the installed programs, uninstalls and checks nothing is left.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
source "$root/scripts/windows/env.sh"
build=${QUORVALE_WIN64_BUILD_DIR:-$root/build-win64}
[ -x "$build/src/quorvale.exe" ] || bash "$root/scripts/windows/build.sh" >/dev/null
use_wine_prefix
version=$(sed -nE 's/^project\(Quorvale VERSION ([0-9.]+).*/\1/p' "$root/CMakeLists.txt")
dist=$root/dist
stage=$build/stage/quorvale-$version-win64
rm -rf "$stage"
mkdir -p "$stage" "$dist"

cmake --install "$build" --prefix "$build/stage/install" >/dev/null
cp -r "$build/stage/install/bin/"* "$stage/"
# The plugins: the desktop's platform and style, the admin tool's off-screen
# platform, the two database drivers.
for plugin in platforms/qwindows platforms/qoffscreen styles/qwindowsvistastyle \
              sqldrivers/qsqlite sqldrivers/qsqlodbc; do
  mkdir -p "$stage/$(dirname "$plugin")"
  cp "$win_prefix/plugins/$plugin.dll" "$stage/$plugin.dll"
done

# Every DLL the programs and plugins import that is not the system's, found
# by reading their import tables until nothing new turns up.
candidates=("$win_prefix/bin" "${mingw_runtime_dlls[@]%/*}")
while :; do
  added=0
  while read -r dll; do
    [ -f "$stage/$dll" ] && continue
    for folder in "${candidates[@]}"; do
      if [ -f "$folder/$dll" ]; then cp "$folder/$dll" "$stage/"; added=1; break; fi
    done
  done < <(find "$stage" -name '*.exe' -o -name '*.dll' | xargs x86_64-w64-mingw32-objdump -p |
           sed -nE 's/^\s*DLL Name: (.*)$/\1/p' | sort -u)
  [ "$added" -eq 1 ] || break
done

# The uninstaller deletes exactly these.
list=$build/stage/installed-files.nsh
(cd "$stage" && find . -type f | sed 's|^\./||; s|/|\\|g' | sort |
   sed 's|^|  Delete "$INSTDIR\\|; s|$|"|'
 cd "$stage" && find . -mindepth 1 -type d | sort -r | sed 's|^\./||; s|/|\\|g' |
   sed 's|^|  RMDir "$INSTDIR\\|; s|$|"|') >"$list"

setup=$dist/quorvale-$version-win64-setup.exe
size_kb=$(du -sk "$stage" | cut -f1)
makensis -V2 -DVERSION="$version" -DSTAGE="$stage" -DSTAGE_LIST="$list" -DSIZE_KB="$size_kb" \
  -DICON="$build/src/quorvale.ico" -DOUTFILE="$setup" "$root/data/windows/installer.nsi"
zip_file=$dist/quorvale-$version-win64.zip
rm -f "$zip_file"
(cd "$(dirname "$stage")" && zip -qr -X "$zip_file" "$(basename "$stage")")
echo "windows: $(basename "$setup") $(du -h "$setup" | cut -f1), $(basename "$zip_file") $(du -h "$zip_file" | cut -f1), $(find "$stage" -type f | wc -l) files, $(du -sh "$stage" | cut -f1) installed"

bash "$root/scripts/windows/installer-test.sh" "$setup"
