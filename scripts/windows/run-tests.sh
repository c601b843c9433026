#!/usr/bin/env bash
# The part of test.sh that is run by in-prefix.sh. Usage: run-tests.sh EXCLUSIONS [CTEST ARGUMENT...]
set -euo pipefail
exclusions=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Prints "NUMBER PROGRAM/TEST" for each test of a preset; for scripts the program is "script".
tests_of() {
    ctest --preset "$1" --show-only --verbose | sed -nE '
        s/^[0-9]+: Test command: .*\/tests\/([A-Za-z0-9_-]+)(\.exe)?"?( .*)?$/\1/
        t hold
        s/^[0-9]+: Test command: .*/script/
        t hold
        s/^ *Test +#([0-9]+): (.*)$/\1 \2/
        T
        s/ +# GetParam.*//
        G
        s/^([0-9]+) (.*)\n(.*)$/\1 \3\/\2/p
        d
        : hold
        h'
}

tests_of test >"$work/linux.numbered"
tests_of mingw >"$work/windows.numbered"
for system in linux windows; do
    cut -d ' ' -f 2- "$work/$system.numbered" | sort >"$work/$system"
done
# Lines "PATTERN: reason"; a pattern must match the whole of PROGRAM/TEST.
grep -vE '^(#|$)' "$exclusions" >"$work/exclusions"
sed -E 's/: .*//; s/.*/^(&)$/' "$work/exclusions" >"$work/patterns"
sort -u "$work/linux" "$work/windows" | grep -Ef "$work/patterns" >"$work/excluded" || true
comm -23 "$work/windows" "$work/excluded" >"$work/run"

echo 'Not run under Wine:'
failed=0
while IFS= read -r line; do
    count=$(grep -cE "^(${line%%: *})\$" "$work/excluded") || true
    printf '%5d  %s\n' "$count" "$line"
    [ "$count" -gt 0 ] || { echo '       It matches no test.' >&2; failed=1; }
done <"$work/exclusions"
if comm -23 "$work/linux" <(sort -u "$work/run" "$work/excluded") | grep .; then
    echo 'These tests are neither in the Windows build nor excluded.' >&2
    failed=1
fi
echo "$(wc -l <"$work/run") tests to run, of $(wc -l <"$work/linux") on Linux; $(comm -13 "$work/linux" "$work/run" | wc -l) are for Windows alone."
[ "$failed" -eq 0 ] || exit 1

# Selected by number, because ctest has no other way to select so many tests.
{
    printf '0,0,0'
    awk 'NR == FNR { run[$0]; next } { number = $1; sub(/^[0-9]+ /, ""); if ($0 in run) printf ",%s", number }' \
        "$work/run" "$work/windows.numbered"
    echo
} >"$work/numbers"
# Twice as many jobs as processors, because tests mostly wait.
status=0
ctest --preset mingw --parallel "$((2 * $(nproc)))" --no-tests=error --tests-information "$work/numbers" "$@" 2>&1 |
    tee "$work/output" || status=$?
# A skipped test has not passed.
if grep -E '\*\*\*(Skipped|Not Run)' "$work/output"; then
    echo 'These tests did not run.' >&2
    exit 1
fi
exit "$status"
