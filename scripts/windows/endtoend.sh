#!/usr/bin/env bash
# Runs the end-to-end tests with the real Windows program, under Wine, on the simulated bus. The test programs
# themselves are native. Arguments are passed to ctest.
set -euo pipefail
cd "$(dirname "$0")/../.."

step() { printf '\n== %s (after %s s)\n' "$*" "$SECONDS"; }

step 'Tools'
scripts/windows/install-tools.sh
[ -e build/mingw/beside.made ] || scripts/windows/build.sh

# A separate build folder, because the tests of the other one are compared with those of the Windows build.
step 'Tests'
cmake --preset test -B build/wine -DQUILLMARSH_WINE_TESTS="$PWD/build/mingw"
cmake --build build/wine --target windows_endtoend_tests windows_cli_tests windows_library_tests quillmarsh-demo
scripts/windows/ctest-under-wine.sh build/wine --label-regex '^wine$' --parallel "$(nproc)" "$@"
step 'Done'
