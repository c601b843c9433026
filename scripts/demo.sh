#!/usr/bin/env bash
# Updates a simulated device with the real program. With a display it opens the window and leaves
# the start button to you; without one, or with --auto, it presses Start itself and saves pictures
# in build/demo. --lang zh shows the window in Chinese, --mode zn58 and --mode tessilonix MODEL start
# the update as a companion program does, --bootloader has the model asked for, --iap MODEL programs a
# microcontroller through the IAP panel, --local FILE burns that file, --report FILE shows the devices of
# a user's report. --cli shows the program without a window in this terminal, --cli --json its events alone on
# standard output; --help tells the rest.
set -euo pipefail
project=$(cd "$(dirname "$0")/.." && pwd)

(
    cd "$project"
    scripts/install-dependencies.sh
    mkdir -p build
    cmake --preset demo >build/demo-build.log 2>&1 || { cat build/demo-build.log; exit 1; }
    cmake --build --preset demo --target quillmarsh-demo
) >&2
exec "$project/demo/start.sh" "$project/build/demo" --pictures "$project/build/demo" "$@"
