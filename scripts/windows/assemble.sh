#!/usr/bin/env bash
# Copies Windows programs and all files that they need to one folder.
# Usage: scripts/windows/assemble.sh EXECUTABLE LIBRARIES FOLDER [EXECUTABLE...]
set -euo pipefail
executable=$1 libraries=$2 folder=$3
shift 3
project=$(cd "$(dirname "$0")/../.." && pwd)
SOURCE_DATE_EPOCH=$("$project/scripts/source-date.sh")
export SOURCE_DATE_EPOCH

triplet=x86_64-w64-mingw32
sources=("$libraries/bin" "$(dirname "$($triplet-g++-posix -print-file-name=libstdc++-6.dll)")" "/usr/$triplet/lib")

[ ! -e "$folder/lib" ] || { echo "$folder was not created by this script." >&2; exit 1; }
rm -rf "$folder"
mkdir -p "$folder"/{platforms,styles,qmake}
cp "$executable" "$@" "$folder/"
# The plugins that Qt loads: the window system and the style.
cp "$libraries/plugins/platforms/qwindows.dll" "$folder/platforms/"
cp "$libraries/plugins/styles/qwindowsvistastyle.dll" "$folder/styles/"
cp "$project/packaging/ControlDevList.json" "$folder/qmake/"

# The DLLs that they need, and those that these need in turn; the others belong to Windows.
pending=("$folder"/*.exe "$folder"/*/*.dll)
while [ "${#pending[@]}" -gt 0 ]; do
    named=$($triplet-objdump -p "${pending[@]}" | sed -n 's/^\tDLL Name: //p' | sort -u)
    pending=()
    for name in $named; do
        [ -e "$folder/$name" ] && continue
        for source in "${sources[@]}"; do
            if [ -e "$source/$name" ]; then
                cp "$source/$name" "$folder/"
                pending+=("$folder/$name")
                break
            fi
        done
    done
done
$triplet-strip --strip-unneeded "$folder"/*.exe "$folder"/*.dll "$folder"/*/*.dll
du -sh "$folder"
