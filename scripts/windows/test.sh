#!/usr/bin/env bash
# Runs the tests of the Windows build under Wine. They have the same names as on Linux. Tests that cannot run
# under Wine are listed, with the reason, in tests/windows-exclusions.txt only. Arguments are passed to ctest.
set -euo pipefail
cd "$(dirname "$0")/../.."
exclusions=tests/windows-exclusions.txt

step() { printf '\n== %s (after %s s)\n' "$*" "$SECONDS"; }

step 'Tools'
scripts/windows/install-tools.sh
[ -e build/mingw/CMakeCache.txt ] || scripts/windows/build.sh
# For the names of the tests on Linux.
cmake --preset test >build/linux-names.log 2>&1 || { cat build/linux-names.log; exit 1; }
cmake --build --preset test >>build/linux-names.log 2>&1 || { cat build/linux-names.log; exit 1; }

step 'Tests under Wine'
scripts/windows/in-prefix.sh scripts/windows/run-tests.sh "$exclusions" "$@"
step 'Done'
