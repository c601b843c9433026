#!/usr/bin/env bash
# Runs a Windows program here. Usage: scripts/windows/wine.sh LIBRARIES PROGRAM [ARGUMENT...]
# LIBRARIES is the folder of its DLLs; the compiler's own are found by themselves. Run it below
# in-prefix.sh, which gives it a Windows to run in.
set -euo pipefail
[ -n "${WINEPREFIX:-}" ] || { echo "${0##*/}: no WINEPREFIX; run this below in-prefix.sh" >&2; exit 2; }
folders=("$1" "$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")" /usr/x86_64-w64-mingw32/lib)
shift

path=''
for folder in "${folders[@]}"; do
    path+="Z:${folder//\//\\};"
done
export WINEPATH=${path%;} WINEDEBUG=${WINEDEBUG:--all}
exec wine "$@"
