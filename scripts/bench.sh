#!/usr/bin/env bash
# Measures the program beside what else could do the same work, and prints one table; it stays in
# build/bench/table.md, with every figure in raw.json beside it. Takes about ten minutes and a quiet
# machine. Names choose subjects (--help lists them); --rounds sets how often each is repeated.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh aria2 curl nginx-core iproute2 procps
# Peers would take it, and loopback with it.
unset http_proxy https_proxy all_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY
mkdir -p build/bench
cmake --preset bench >build/bench/build.log 2>&1 || { cat build/bench/build.log; exit 1; }
cmake --build --preset bench
exec harness/process/in-own-network.sh build/bench/bin/quillmarsh-bench --output build/bench "$@"
