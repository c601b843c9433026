#!/usr/bin/env bash
# Downloads from a faulty server, once for each fault and place, and prints the outcome of each download and the
# number of each outcome. Fails if an outcome is wrong. Usage: scripts/fault-table.sh [BUILD_FOLDER]. The folder,
# build/test by default, must have been built: cmake --preset test && cmake --build --preset test
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/test}

output=$(mktemp)
trap 'rm -f "$output"' EXIT
status=0
ctest --test-dir "$build" --label-regex '^faults$' --no-tests=error --parallel 4 --verbose >"$output" || status=$?

rows=$(sed -nE 's/^[0-9]+: fault: //p' "$output" | sort -t '|' -k2,2 -k1,1)
awk -F ' *[|] *' '
    BEGIN { printf "%-28s %-32s %s\n", "FAULT", "PLACE", "OUTCOME" }
    { printf "%-28s %-32s %s\n", $1, $2, $3; ++count[$3]; ++all }
    END {
        print ""
        for (outcome in count)
            printf "%4d  %s\n", count[outcome], outcome | "sort -rn"
        close("sort -rn")
        printf "%4d  in total\n", all
    }' <<<"$rows"
grep -E 'tests passed|\((Failed|Timeout|SEGFAULT|Not Run)\)' "$output"
exit "$status"
