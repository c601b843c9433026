#!/usr/bin/env bash
# Lets one process of the window and one of "quillmarsh-cli update --repeat" live through a service desk's
# month: 2,000 devices are plugged in, updated and unplugged, every 33rd with a fault of server, bus or flasher,
# while the programs' clock runs four times as fast. Prints their handles, threads, memory, log pane and
# temporary files, and fails when they grow or when a result is wrong. Takes about three hours.
# Usage: scripts/soak.sh [--devices NUMBER] [--lapse TIMES] [--window | --terminal]
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
mkdir -p build
cmake --preset demo >build/demo.log || { cat build/demo.log; exit 1; }
cmake --build --preset demo --target quillmarsh-soak
# A bus on a disk shows a device's USB side long before its HID side when the machine is busy.
exec harness/process/in-own-network.sh sh -c '
    if [ -n "${QUILLMARSH_OWN_MOUNTS-}" ] && mkdir -p build/soak && mount -t tmpfs tmpfs build/soak; then
        export TMPDIR=$PWD/build/soak
    fi
    exec build/demo/bin/quillmarsh-soak "$@"' soak "$@"
