#!/usr/bin/env bash
# Passes the end-to-end tests on the real Windows program, under Wine, on the simulated bus. The tests
# themselves are programs of this system. Arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/../.."

step() { printf '\n== %s (after %s s)\n' "$*" "$SECONDS"; }

step 'Tools'
scripts/install-dependencies.sh wine wine64 g++-mingw-w64-x86-64-posix
[ -e build/mingw/beside.made ] || scripts/windows/build.sh

step 'Tests'
cmake --preset test -DQUILLMARSH_WINE_TESTS="$PWD/build/mingw"
cmake --build --preset test
ctest --preset test --label-regex '^wine$' --parallel "$(nproc)" --no-tests=error "$@"
step 'Done'
