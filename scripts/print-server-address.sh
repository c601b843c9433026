#!/usr/bin/env bash
# Prints the firmware server's address that is built into the program: the one configured in the build
# folder, or the default without one.
# Usage: scripts/print-server-address.sh [BUILD_FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."
if [ -n "${1-}" ]; then
    sed -n 's/^QUILLMARSH_FIRMWARE_SERVER:STRING=//p' "$1/CMakeCache.txt"
else
    sed -nE 's/^set\(QUILLMARSH_FIRMWARE_SERVER "([^"]+)".*/\1/p' CMakeLists.txt
fi | grep . || { echo 'No firmware server address found.' >&2; exit 1; }
