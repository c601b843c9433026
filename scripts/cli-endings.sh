#!/usr/bin/env bash
# Runs the tests of all ways in which quillmarsh-cli can end, and prints the exit code, the last event and the
# state of the device of each. Fails if one of them differs from the description.
# Usage: scripts/cli-endings.sh [BUILD_FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/test}

output=$(mktemp)
trap 'rm -f "$output"' EXIT
status=0
ctest --test-dir "$build" -R '^(Each/CliEndingTest|CliEndingTableTest|CliUsageTest)\.' --no-tests=error \
    --parallel 4 --verbose >"$output" || status=$?

sed -nE 's/^[0-9]+: ending: //p' "$output" | LC_ALL=C sort -t '|' -k1,1n -k2,2 -u | awk -F ' *[|] *' '
    BEGIN { printf "%4s  %-50s %-50s %s\n", "EXIT", "ENDING", "LAST EVENT", "DEVICE" }
    { printf "%4s  %-50s %-50s %s\n", $1, $2, $3, $4; ++all }
    END { printf "\n%d endings\n", all }'
grep -E 'tests passed|\((Failed|Timeout|SEGFAULT|Not Run)\)' "$output"
exit "$status"
