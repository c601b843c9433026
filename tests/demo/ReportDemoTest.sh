#!/usr/bin/env bash
# ReportDemoTest.sh BUILD_FOLDER CASE: runs one test of the demo on a user's report.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
build=$1
reports=$project/tests/demo/reports
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT

fail() {
    echo "$*" >&2
    tail -n 60 "$stage/output" "$stage/errors" >&2 || true
    exit 1
}
# Runs the demo without a display and expects this exit code.
demo() { # CODE [OPTION...]
    local wanted=$1 code=0
    shift
    env -u DISPLAY TMPDIR="$stage" "$project/demo/start.sh" "$build" --pictures "$stage/pictures" "$@" \
        >"$stage/output" 2>"$stage/errors" </dev/null || code=$?
    [ "$code" -eq "$wanted" ] || fail "the demo ended with $code, not $wanted"
}
expect() { grep -qF -- "$1" "$stage/${2:-output}" || fail "this text is missing: $1"; }
expect_pictures() {
    for picture in before after; do
        # The PNG signature, followed by width and height.
        [ "$(head -c 24 "$stage/pictures/$picture.png" | od -An -tx1 | tr -d ' \n')" = \
            89504e470d0a1a0a0000000d4948445200000320000002bc ] || fail "$picture.png is not a picture of 800 x 700"
    done
}

ADuoDeviceWithoutItsMarkerShowsWhyItsUpdateFails() {
    demo 0 --report "$reports/no-marker.json"
    expect 'Model: DeviceModel: DevMah'
    expect 'HID interface: a certain one is required and was not found'
    expect "write res:-1The device's HID interface is not open."
    expect 'Title: CurrentStatus: Upgrade Failed!'
    expect_pictures
}

TheSameDeviceWithItsMarkerIsUpdated() {
    demo 0 --report "$reports/marker.json"
    expect 'HID interface: the required one was found'
    expect 'Burn Image Success'
    expect 'Title: CurrentStatus: Upgrade Successful'
    expect_pictures
}

AChineseReportIsShownInChinese() {
    sed 's/"language": "en"/"language": "zh"/' "$reports/marker.json" >"$stage/report.json"
    demo 0 --report "$stage/report.json"
    expect 'Connection: 发现设备'
}

AFileThatIsNotAReportIsRefused() {
    head -c 2000 "$reports/marker.json" >"$stage/cut.json"
    demo 2 --report "$stage/cut.json"
    expect 'damaged or cut' errors
    demo 2 --report "$stage/none.json"
    expect 'there is no such file' errors
    demo 2 --report "$reports/marker.json" --cli
    expect '--report decides what is connected' errors
}

"$2"
