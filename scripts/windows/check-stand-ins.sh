#!/usr/bin/env bash
# Fails if a program calls a function of libusb or hidapi that its stand-in does not export: Windows would not start
# the program on the simulated bus. Usage: check-stand-ins.sh STAND-INS PROGRAM...
set -euo pipefail
stand_ins=$1
shift
objdump=${OBJDUMP:-x86_64-w64-mingw32-objdump}

imported_from() { # LIBRARY PROGRAM
    "$objdump" -p "$2" | awk -v library="$1" '
        /DLL Name:/ { wanted = ($3 == library) }
        wanted && NF == 3 && $1 ~ /^[0-9a-f]+$/ && $2 ~ /^[0-9]+$/ { print $3 }' | sort
}

exported_by() { # LIBRARY
    "$objdump" -p "$1" | awk '
        /\[Ordinal\/Name Pointer\]/ { names = 1; next }
        !NF { names = 0 }
        names { print $NF }' | sort
}

status=0
for library in libusb-1.0.dll libhidapi.dll; do
    exported=$(exported_by "$stand_ins/$library")
    for program; do
        imported=$(imported_from "$library" "$program")
        [ -n "$imported" ] || { echo "$program calls nothing of $library." >&2; status=1; }
        for missing in $(comm -23 <(echo "$imported") <(echo "$exported")); do
            echo "The stand-in for $library does not export $missing, which $(basename "$program") calls." >&2
            status=1
        done
    done
done
exit "$status"
