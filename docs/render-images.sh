#!/usr/bin/env bash
# Takes the pictures in docs/images from the running program: in English, in Chinese, in a launch mode,
# with a device that already waits in its bootloader, and with one that is programmed through the panel.
set -euo pipefail
cd "$(dirname "$0")/.."
taken=$(mktemp -d)
trap 'rm -rf "$taken"' EXIT
mkdir -p docs/images

take() { # SHOW PICTURE NAME [OPTION...]: the picture of that demo becomes docs/images/NAME.png
    local show=$1 picture=$2 name=$3
    shift 3
    [ -d "$taken/$show" ] || scripts/demo.sh --auto --pictures "$taken/$show" "$@" >"$taken/$show.log" ||
        { cat "$taken/$show.log"; exit 1; }
    cp "$taken/$show/$picture.png" "docs/images/$name.png"
}

take english before before
take english during during
take english after after
take chinese after chinese --lang zh
take launch during launch-mode --mode zn58
take bootloader chooser chooser --bootloader
take iap during iap --iap DevMdq
# The program for Windows, where it has been built (scripts/windows/build.sh).
if [ -e build/mingw/beside.made ]; then
    take windows after windows-after --windows build/mingw
    take windows-chinese after windows-chinese --windows build/mingw --lang zh
fi
