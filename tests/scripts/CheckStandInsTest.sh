#!/usr/bin/env bash
# CheckStandInsTest.sh CASE: one test of scripts/windows/check-stand-ins.sh, with files that hold what objdump
# prints about programs and libraries.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
cd "$stage"
mkdir stand-ins
printf '#!/bin/sh\ncat "$2"\n' >objdump
chmod +x objdump

fail() {
    echo "$*" >&2
    exit 1
}
exports() { # LIBRARY FUNCTION...
    printf '[Ordinal/Name Pointer] Table\n'
    printf '\t[   0] %s\n' "${@:2}"
    printf '\nThe Function Table\n 0000000240bfe000:\t0000000240b91000 0000000240b9100c 0000000240c09000\n'
} >"stand-ins/$1"
# Appends to the program what it calls of a library.
calls() { # PROGRAM LIBRARY FUNCTION...
    printf ' 000d608c\t000d7e88 00000000 00000000 000e4c54 000d9fb0\n\n'
    printf '\tDLL Name: %s\n\tvma:  Hint/Ord Member-Name Bound-To\n' "$2"
    printf '\te3204\t   31  %s\n' "${@:3}"
    echo
} >>"$1"
check() { OBJDUMP=$stage/objdump "$project/scripts/windows/check-stand-ins.sh" stand-ins "$@" >said 2>&1; }

WhatIsExportedMayBeCalled() {
    exports libusb-1.0.dll libusb_exit libusb_init
    exports libhidapi.dll hid_open
    calls program.exe libusb-1.0.dll libusb_init
    calls program.exe libhidapi.dll hid_open
    calls program.exe KERNEL32.dll CreateFileW
    check program.exe || fail "$(cat said)"
}

AMissingFunctionIsNamedWithItsCaller() {
    exports libusb-1.0.dll libusb_init
    exports libhidapi.dll hid_open
    calls first.exe libusb-1.0.dll libusb_init
    calls first.exe libhidapi.dll hid_open
    calls second.exe libusb-1.0.dll libusb_init libusb_exit
    calls second.exe libhidapi.dll hid_open
    ! check first.exe second.exe || fail 'nobody missed libusb_exit'
    [ "$(cat said)" = 'The stand-in for libusb-1.0.dll does not export libusb_exit, which second.exe calls.' ] ||
        fail "$(cat said)"
}

AProgramThatCallsNothingOfALibraryFails() {
    exports libusb-1.0.dll libusb_init
    exports libhidapi.dll hid_open
    calls program.exe libusb-1.0.dll libusb_init
    ! check program.exe || fail 'it cannot have been read'
    grep -q 'program.exe calls nothing of libhidapi.dll' said || fail "$(cat said)"
}

"$1"
