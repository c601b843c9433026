#!/usr/bin/env bash
# Runs a Windows program under Wine. Usage: scripts/windows/wine.sh LIBRARIES PROGRAM [ARGUMENT...]
# LIBRARIES is the folder of its DLLs; those of the compiler are found automatically. Run it with in-prefix.sh,
# which provides a Wine prefix.
set -euo pipefail
[ -n "${WINEPREFIX:-}" ] || { echo "${0##*/}: no WINEPREFIX; run this with in-prefix.sh" >&2; exit 2; }
folders=("$1" "$(dirname "$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)")" /usr/x86_64-w64-mingw32/lib)
shift

path=''
for folder in "${folders[@]}"; do
    path+="Z:${folder//\//\\};"
done
export WINEPATH=${path%;} WINEDEBUG=${WINEDEBUG:--all}
exec wine "$@"
