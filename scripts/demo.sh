#!/usr/bin/env bash
# Updates a simulated device with the real program. With a display it opens the window and leaves
# the start button to you; without one, or with --auto, it presses Start itself and leaves pictures
# in build/demo. --lang zh shows the window in Chinese; --help tells the rest.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
mkdir -p build
cmake --preset demo >build/demo-build.log 2>&1 || { cat build/demo-build.log; exit 1; }
cmake --build --preset demo --target quillmarsh-demo
exec simulator/bench/in-own-network.sh build/demo/bin/quillmarsh-demo --pictures build/demo "$@"
