#!/usr/bin/env bash
# Measures the program and other programs that do the same work, and prints one table. The table is stored in
# build/bench/table.md, with all figures in raw.json beside it. Takes about ten minutes and needs an otherwise
# idle machine. Arguments select subjects (--help lists them); --rounds sets how often each is repeated.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh aria2 curl nginx-core iproute2 procps
# Peers would take it, and loopback with it.
unset http_proxy https_proxy all_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY
mkdir -p build/bench
cmake --preset bench >build/bench/build.log 2>&1 || { cat build/bench/build.log; exit 1; }
cmake --build --preset bench
exec harness/process/in-own-network.sh build/bench/bin/quillmarsh-bench --output build/bench "$@"
