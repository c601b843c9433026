#!/usr/bin/env bash
# Starts the demo of a build folder in a network of its own, as scripts/demo.sh does once it has built it.
# Usage: demo/start.sh BUILD_FOLDER [OPTION...]
set -euo pipefail
project=$(cd "$(dirname "$0")/.." && pwd)
build=$1
shift

# A display that is reached through the network, or that has no socket among the files, is out of reach in a
# network namespace.
display=${DISPLAY-}
display=${display#unix}
if [[ $display =~ ^:([0-9]+) ]]; then
    [ -S "/tmp/.X11-unix/X${BASH_REMATCH[1]}" ] || export QUILLMARSH_NO_NAMESPACE=1
elif [ -n "$display" ]; then
    export QUILLMARSH_NO_NAMESPACE=1
fi
exec "$project/harness/process/in-own-network.sh" "$build/bin/quillmarsh-demo" "$@"
