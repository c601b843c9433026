#!/usr/bin/env bash
# GroupTestsTest.sh CASE: one test of scripts/windows/group-tests.py, with ctest and a program that plays the tests.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
cd "$stage"
mkdir -p tests list
: >exclusions
cat >tests/subject_tests <<'PROGRAM'
#!/bin/sh
echo "${1#--gtest_filter=}" >>"$RECORD"
case $1 in *Skipped*) echo '[  SKIPPED ] ASuite.Skipped' ;; esac
PROGRAM
chmod +x tests/subject_tests

fail() {
    echo "$*" >&2
    exit 1
}
# Writes what ctest says about a build folder that has these tests.
list() { # FILE TEST...
    local file=$1
    shift
    for test; do
        jq -n --arg test "$test" --arg program "$stage/tests/subject_tests" --arg record "$stage/record" '{
            name: $test, command: [$program, "--gtest_filter=\($test)"],
            properties: [{name: "LABELS", value: ($ENV.LABELS // "" | split(" "))}, {name: "TIMEOUT", value: 300}, {name: "ENVIRONMENT", value: ["RECORD=\($record)", "OTHER=1"]}]}'
    done | jq -s '{tests: .}' >"$file"
}
group() { "$project/scripts/windows/group-tests.py" exclusions linux windows list >said 2>&1; }
run() { ctest --test-dir list >ran 2>&1; }

TestsOfASuiteShareAProcess() {
    list linux ASuite.One ASuite.Two BSuite.One
    cp linux windows
    group || fail "$(cat said)"
    run || fail "$(cat ran)"
    [ "$(sort record)" = $'ASuite.One:ASuite.Two\nBSuite.One' ] || fail "$(cat record)"
    grep -q '3 tests to run in 2 processes, of 3 on Linux' said || fail "$(cat said)"
}

ALongSuiteIsCut() {
    mapfile -t tests < <(printf 'ASuite.Test%d\n' {1..25})
    list linux "${tests[@]}"
    cp linux windows
    group || fail "$(cat said)"
    run || fail "$(cat ran)"
    [ "$(wc -l <record)" = 3 ] || fail "$(cat record)"
    tr : '\n' <record | sort | cmp - <(printf '%s\n' "${tests[@]}" | sort) || fail 'not each ran once'
}

TestsOfOneNameAllRun() {
    list linux ASuite.One ASuite.One
    cp linux windows
    group || fail "$(cat said)"
    run || fail "$(cat ran)"
    [ "$(cat record)" = ASuite.One:ASuite.One ] || fail "$(cat record)"
}

AProgramWithoutSuitesIsRunAsItIs() {
    list linux ASuite.One
    jq '.tests[0].name = "tries" | .tests[0].command = [.tests[0].command[0], "-runs=10"]' linux >windows
    cp windows linux
    group || fail "$(cat said)"
    run || fail "$(cat ran)"
    [ "$(cat record)" = -runs=10 ] || fail "$(cat record)"
}

ALabelGivesEachTestAProcess() {
    LABELS='other own-process' list linux ASuite.One ASuite.Two
    cp linux windows
    group || fail "$(cat said)"
    run || fail "$(cat ran)"
    [ "$(sort record)" = $'ASuite.One\nASuite.Two' ] || fail "$(cat record)"
}

AnExcludedTestIsNotRun() {
    list linux ASuite.One ASuite.Two
    cp linux windows
    echo 'subject_tests/ASuite\.T.*: a reason' >exclusions
    group || fail "$(cat said)"
    run || fail "$(cat ran)"
    [ "$(cat record)" = ASuite.One ] || fail "$(cat record)"
    grep -q '^ *1  subject_tests/ASuite.*: a reason$' said || fail "$(cat said)"
}

ATestThatIsOnLinuxAloneMustBeExcluded() {
    list linux ASuite.One ASuite.Two
    list windows ASuite.One
    ! group || fail 'nobody missed ASuite.Two'
    grep -q 'neither in the Windows build nor excluded: subject_tests/ASuite.Two' said || fail "$(cat said)"
    echo 'subject_tests/ASuite\.Two: a reason' >exclusions
    group || fail "$(cat said)"
}

AnExclusionWithoutATestFails() {
    list linux ASuite.One
    cp linux windows
    echo 'subject_tests/Gone\..*: a reason' >exclusions
    ! group || fail 'it is still believed'
    grep -q 'matches no test' said || fail "$(cat said)"
}

ATestThatWasNotBuiltFails() {
    list linux ASuite.One
    jq '.tests[0] |= del(.command)' linux >windows
    ! group || fail 'it would not have been run'
}

ASkippedTestFails() {
    list linux ASuite.One ASuite.Skipped
    cp linux windows
    group || fail "$(cat said)"
    ! run || fail "$(cat ran)"
}

NoTestsAtAllFail() {
    list linux
    cp linux windows
    ! group || fail 'it would have run nothing'
}

"$1"
