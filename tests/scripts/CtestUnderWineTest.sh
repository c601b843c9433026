#!/usr/bin/env bash
# CtestUnderWineTest.sh CASE: one test of scripts/windows/ctest-under-wine.sh, with ctest and tests that count their
# runs.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
cd "$stage"

fail() {
    echo "$*" >&2
    cat said >&2
    exit 1
}
# Adds a test that fails in its first runs.
has() { # NAME FAILURES
    printf 'add_test(%s sh -c "echo run >>%s; [ $(wc -l <%s) -gt %s ]")\n' "$1" "$1" "$1" "$2" >>CTestTestfile.cmake
}
# shellcheck disable=SC2120 # only one case has arguments
run() { "$project/scripts/windows/ctest-under-wine.sh" "$stage" "$@" >said 2>&1; }
runs() { wc -l <"$1"; }

TestsThatPassAreRunOnce() {
    has first 0
    has second 0
    run || fail 'a test failed'
    [ "$(runs first)$(runs second)" = 11 ] || fail 'a test was repeated'
    ! grep -q 'once more' said || fail 'a test was named'
}

TwoTestsThatFailOnceAreRunOnceMoreAndNamed() {
    has first 1
    has second 0
    has third 1
    run || fail 'a test failed twice'
    [ "$(runs first)$(runs second)$(runs third)" = 212 ] || fail 'the wrong tests were repeated'
    grep -qx 'Passed only when run once more: first, third' said || fail 'they were not named'
}

AFailedTestIsFoundAgainWhateverElseIsSelected() {
    has first 1
    has second.1+2 1
    has second.1112 0
    run --exclude-regex first --tests-regex second || fail 'a test failed twice'
    [ ! -e first ] || fail 'an excluded test was run'
    [ "$(runs second.1+2)$(runs second.1112)" = 21 ] || fail 'the wrong test was repeated'
}

ATestThatFailsTwiceHasFailed() {
    has first 2
    ! run || fail 'it passed'
    [ "$(runs first)" = 2 ] || fail 'it was not run twice'
    ! grep -q 'Passed only' said || fail 'it was named as passed'
}

ThreeFailedTestsAreNotRunOnceMore() {
    has first 1
    has second 1
    has third 1
    ! run || fail 'they passed'
    [ "$(runs first)$(runs second)$(runs third)" = 111 ] || fail 'one was repeated'
}

NoTestsAreAnError() {
    : >CTestTestfile.cmake
    ! run || fail 'nothing passed'
}

"$1"
