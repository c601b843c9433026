#!/usr/bin/env bash
# Prints a regular expression for the names of the tests that failed when ctest was last run in a build folder, and
# nothing if none did. (ctest --rerun-failed looks for their numbers, which change with its other arguments.)
# Usage: scripts/failed-tests.sh FOLDER
set -euo pipefail
failed=$1/Testing/Temporary/LastTestsFailed.log
[ ! -s "$failed" ] || printf '^(%s)$\n' "$(sed 's/^[0-9]*://; s/[][().*+?^$|{}\\]/\\&/g' "$failed" | paste -sd '|')"
