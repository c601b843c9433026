#!/usr/bin/env bash
# Runs ctest for tests under Wine. Usage: scripts/windows/ctest-under-wine.sh FOLDER [CTEST ARGUMENT...]
# About one of two thousand programs under Wine ends before it has done anything, which looks like a failure of
# whatever has started it. So if at most two tests fail, they are run once more, alone, and are named if they pass then.
# A test that fails twice has failed.
set -euo pipefail
folder=$1
shift
failed=$folder/Testing/Temporary/LastTestsFailed.log
rm -f "$failed"
status=0
ctest --test-dir "$folder" --no-tests=error --output-on-failure "$@" || status=$?
[ "$status" -ne 0 ] || exit 0
[ -s "$failed" ] && [ "$(wc -l <"$failed")" -le 2 ] || exit "$status"

again=$("$(dirname "$0")/../failed-tests.sh" "$folder")
names=$(cut -d: -f2- "$failed")
printf '\nOnce more, alone:\n'
ctest --test-dir "$folder" --tests-regex "$again" --no-tests=error --output-on-failure
printf 'Passed only when run once more: %s\n' "${names//$'\n'/, }"
