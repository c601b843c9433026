#!/usr/bin/env bash
# Runs the tests in the Windows build, under Wine. They have the names that they have on Linux; what
# cannot run here is named, with its reason, in tests/windows-exclusions.txt and nowhere else.
# Arguments go to ctest.
set -euo pipefail
cd "$(dirname "$0")/../.."
exclusions=tests/windows-exclusions.txt

step() { printf '\n== %s (after %s s)\n' "$*" "$SECONDS"; }

step 'Tools'
scripts/windows/install-tools.sh
[ -e build/mingw/CMakeCache.txt ] || scripts/windows/build.sh
# For the names that the tests have there.
cmake --preset test >build/linux-names.log 2>&1 || { cat build/linux-names.log; exit 1; }
cmake --build --preset test >>build/linux-names.log 2>&1 || { cat build/linux-names.log; exit 1; }

step 'Tests under Wine'
scripts/windows/in-prefix.sh scripts/windows/run-tests.sh "$exclusions" "$@"
step 'Done'
