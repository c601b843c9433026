#!/usr/bin/env bash
# PersonsDisplayTest.sh BUILD_FOLDER CASE [WINDOWS_BUILD_FOLDER]: one test of the demo on a display that stands for
# a person's. The window is operated from outside, as a person does it: Start is pressed, the update watched, the
# window closed.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
build=$1
options=(${3:+--windows "$3"})
stage=$(mktemp -d)
chmod 755 "$stage"
trap 'end_display; rm -rf "$stage"' EXIT
server=

fail() {
    echo "$*" >&2
    {
        echo 'Windows:'
        wmctrl -l || true
        tail -n 40 "$stage"/*.log "$stage/output" "$stage"/tmp/*/std{out,err} \
            "$stage"/tmp/*/work/UPDLog.txt || true
    } >&2 2>/dev/null
    exit 1
}
# Asks every 0.2 s. Only the asking counts, so that a pause of the machine takes nothing from the limit.
wait_until() { # WHAT COMMAND [ARGUMENT...]
    local what=$1 tries=0
    shift
    until "$@"; do
        [ $((++tries)) -lt 600 ] || fail "$what did not happen"
        kill -0 "$demo" 2>/dev/null || fail "the demo ended before $what"
        sleep 0.2
    done
}

# The same patience with the demo's end.
wait_for_end() {
    local tries=0
    while kill -0 "$demo" 2>/dev/null; do
        [ $((++tries)) -lt 600 ] || fail 'the window was closed, and the demo did not end'
        sleep 0.2
    done
}

# A display server that lets nobody in without its cookie, as on a desktop.
start_display() {
    local cookie number
    cookie=$(od -An -tx1 -N16 /dev/urandom | tr -d ' \n')
    export XAUTHORITY=$stage/authority
    xauth -q -f "$XAUTHORITY" add :0 . "$cookie" 2>/dev/null
    mkfifo "$stage/number"
    # Servers of other network namespaces may choose the same number, and compile their keyboards into the same
    # file: one of them can find it half written, and gives up.
    for _ in 1 2 3; do
        Xvfb -displayfd 7 -screen 0 1280x900x24 -dpi 96 -nolisten tcp -noreset -auth "$XAUTHORITY" \
            7>"$stage/number" >"$stage/server.log" 2>&1 &
        server=$!
        read -r -t 120 number <"$stage/number" && break
        end_display
    done
    [ -n "$number" ] || fail 'the display server does not start'
    xauth -q -f "$XAUTHORITY" add ":$number" . "$cookie"
    chmod 644 "$XAUTHORITY"
    export DISPLAY=:$number
    unset WAYLAND_DISPLAY
    # Only a window manager can ask a window to close.
    openbox --sm-disable >"$stage/manager.log" 2>&1 &
}
end_display() { [ -z "$server" ] || { kill "$server"; wait; } 2>/dev/null || true; }

window() { xdotool search --onlyvisible --name '^Quillmarsh$' 2>"$stage/xdotool.log" | head -n 1; }
has_window() { [ -n "$(window)" ]; }
log_has() { grep -qF "$1" "$stage"/tmp/*/work/UPDLog.txt 2>/dev/null; }
press_start() {
    eval "$(xdotool getwindowgeometry --shell "$(window)")"
    xdotool mousemove $((X + WIDTH * 92 / 100)) $((Y + HEIGHT * 92 / 100)) click 1
}
# The start button is pressed until the program has taken it: it does nothing before the device is detected.
has_started() { log_has "$begun" || { press_start; sleep 1; log_has "$begun"; }; }
begun='try to bootloader...'

# Runs the demo without --auto through COMMAND, and does what a person does.
update_by_hand() { # [COMMAND...]
    mkdir "$stage/tmp" "$stage/pictures"
    [ -z "$as_user" ] || chown -R "$as_user" "$stage/tmp" "$stage/pictures"
    TMPDIR=$stage/tmp "$@" "$project/demo/start.sh" "$build" --pictures "$stage/pictures" "${options[@]}" \
        >"$stage/output" 2>&1 &
    demo=$!
    local code=0
    wait_until 'the window' has_window
    wait_until 'the start' has_started
    wait_until 'the end of the update' log_has 'RunCmdReset Done.'
    wmctrl -i -c "$(window)"
    wait_for_end
    wait "$demo" || code=$?
    [ "$code" -eq 0 ] || fail "the demo ended with $code"
}
as_user=
# Somebody without rights, where this process has them.
ordinary_user() {
    [ "$(id -u)" -eq 0 ] || return 0
    as_user=65534:65534
    as_ordinary=(setpriv --reuid 65534 --regid 65534 --clear-groups env "HOME=$stage")
}
as_ordinary=(env)

StartIsPressedThereAndTheWindowClosedThere() { update_by_hand env; }
AnOrdinaryUserDoesTheSame() {
    ordinary_user
    update_by_hand "${as_ordinary[@]}"
}
AnOrdinaryUserWithoutNamespacesDoesTheSame() {
    ordinary_user
    update_by_hand "${as_ordinary[@]}" QUILLMARSH_NO_NAMESPACE=1
}
AMissingWindowsBuildIsRefused() {
    local code=0
    "$project/demo/start.sh" "$build" --windows "$stage/none" >"$stage/output" 2>&1 || code=$?
    [ "$code" -eq 2 ] || fail "the demo ended with $code"
    grep -qF "$stage/none" "$stage/output" || fail 'it did not say what is missing'
}

start_display
"$2"
