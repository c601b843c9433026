#!/usr/bin/env bash
# CliDemoTest.sh BUILD_FOLDER CASE: runs one test of the demo of quillmarsh-cli.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
build=$1
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT

fail() {
    echo "$*" >&2
    tail -n 60 "$stage/output" "$stage/errors" >&2 || true
    exit 1
}
# Runs the demo and expects this exit code.
demo() { # CODE [OPTION...]
    local wanted=$1 code=0
    shift
    TMPDIR=$stage "$project/demo/start.sh" "$build" "$@" >"$stage/output" 2>"$stage/errors" </dev/null || code=$?
    [ "$code" -eq "$wanted" ] || fail "the demo ended with $code, not $wanted"
}
# Expects that every line of the output is an event and that the last one reports the update of MODEL.
expect_events() { # MODEL
    python3 - "$1" "$stage/output" <<'PYTHON' || fail 'the events are not as expected'
import json, sys
events = [json.loads(line) for line in open(sys.argv[2], encoding="utf-8")]
kinds = [event["event"] for event in events]
assert kinds[0] == "hello" and kinds[-1] == "result", kinds
assert "stage" in kinds and "progress" in kinds, kinds
last = events[-1]
assert (last["outcome"], last["exitCode"], last["model"]) == ("succeeded", 0, sys.argv[1]), last
PYTHON
}
expect_same_bytes() { grep -q 'the same as' "$1" || fail 'the device did not receive the image'; }

WithoutATerminalPlainLinesShowAWholeUpdate() {
    demo 0 --cli
    expect_same_bytes "$stage/output"
    ! grep -q '^{' "$stage/output" || fail 'there are events for a program'
    ! grep -q $'\r' "$stage/output" || fail 'a line is rewritten although there is no terminal'
    grep -q '100 %' "$stage/output" || fail 'there is no progress'
}
ATerminalShowsOneRewrittenLine() {
    local code=0
    # Not with script(1), which stays stopped when it and the program are stopped and continued.
    TMPDIR=$stage TERM=xterm python3 -c '
import os, pty, sys
sys.exit(os.waitstatus_to_exitcode(pty.spawn(sys.argv[1:])))' \
        "$project/demo/start.sh" "$build" --cli >"$stage/output" 2>"$stage/errors" </dev/null || code=$?
    [ "$code" -eq 0 ] || fail "the demo ended with $code"
    grep -q '%' "$stage/output" || fail 'there is no progress'
    # Only the rewritten line returns to its beginning without a new line.
    [ "$(tr -cd '\r' <"$stage/output" | wc -c)" -gt "$(wc -l <"$stage/output")" ] || fail 'no line is rewritten'
    expect_same_bytes "$stage/output"
}
WithJsonOnlyEventsArePrinted() {
    demo 0 --cli --json
    expect_events DevMaa
    expect_same_bytes "$stage/errors"
}
AMicrocontrollerIsProgrammed() {
    demo 0 --cli --json --iap DevMdq
    expect_events DevMdq
    expect_same_bytes "$stage/errors"
}
ADeviceInItsBootloaderIsUpdated() {
    demo 0 --cli --json --bootloader
    expect_events DevMaa
}
AFileIsWritten() {
    head -c 50000 /dev/urandom >"$stage/mine.img"
    demo 0 --cli --local "$stage/mine.img"
    grep -q 'received 50000 bytes, the same as' "$stage/output" || fail 'the device did not receive the file'
}
OptionsThatContradictEachOtherAreRefused() {
    demo 2 --json
    demo 2 --cli --mode zn58
    demo 2 --cli --windows "$build"
}

"$2"
