#!/usr/bin/env bash
# Prints the address of the firmware server that programs are built with: the default, or the one of a
# build folder. Usage: scripts/firmware-server.sh [BUILD_FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."
if [ -n "${1-}" ]; then
    sed -n 's/^QUILLMARSH_FIRMWARE_SERVER:STRING=//p' "$1/CMakeCache.txt"
else
    sed -nE 's/^set\(QUILLMARSH_FIRMWARE_SERVER "([^"]+)".*/\1/p' CMakeLists.txt
fi | grep . || { echo 'There is no address of a firmware server.' >&2; exit 1; }
