#!/usr/bin/env bash
# Starts the demo of a build folder in a network of its own. scripts/demo.sh calls this after building.
# Usage: demo/start.sh BUILD_FOLDER [OPTION...]
set -euo pipefail
project=$(cd "$(dirname "$0")/.." && pwd)
build=$1
shift

# From within a network namespace, a display that is connected through the network or has no socket file cannot be
# reached.
display=${DISPLAY-}
display=${display#unix}
if [[ $display =~ ^:([0-9]+) ]]; then
    [ -S "/tmp/.X11-unix/X${BASH_REMATCH[1]}" ] || export QUILLMARSH_NO_NAMESPACE=1
elif [ -n "$display" ]; then
    export QUILLMARSH_NO_NAMESPACE=1
fi
exec "$project/harness/process/in-own-network.sh" "$build/bin/quillmarsh-demo" "$@"
