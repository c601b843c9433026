#!/usr/bin/env bash
# Updates a simulated device with the real program. With a display it opens the window, and you press the start
# button; without one, or with --auto, it presses Start itself and saves pictures in build/demo. --lang zh shows
# the window in Chinese, --mode zn58 and --mode tessilonix MODEL start the update as a companion program does,
# --bootloader makes the program ask for the model, --iap MODEL programs a microcontroller with the IAP panel,
# --local FILE burns a file, --report FILE shows the devices of a user's report. --cli runs the program without a window in this terminal, --cli --json prints only
# its events to standard output; --help describes the other options.
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
