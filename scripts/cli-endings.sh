#!/usr/bin/env bash
# Runs the tests of all ways in which quillmarsh-cli can end, also with its maker's keys built in, and prints the
# exit code, the last event and the state of the device of each. Fails if one of them differs from its row in
# tests/cli/EndingRows.cpp or tests/endtoend/signature/SignatureEndingRows.cpp.
# Usage: scripts/cli-endings.sh [BUILD_FOLDER]. The folder, build/test by default, must have been built:
#     cmake --preset test && cmake --build --preset test --target endtoend_cli_tests endtoend_signature_tests
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/test}
for program in endtoend_cli_tests endtoend_signature_tests; do
    [ -x "$build/tests/$program" ] || { echo "$build has no $program: build it first." >&2; exit 2; }
done

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
