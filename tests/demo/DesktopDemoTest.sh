#!/usr/bin/env bash
# DesktopDemoTest.sh BUILD_FOLDER CASE [WINDOWS_BUILD_FOLDER]: runs one test of the demo on a display that
# plays a desktop. The window is operated from outside as a user does it: press Start, wait for the update, close the
# window.
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
# Waits until COMMAND succeeds. Counts tries instead of time, so that a pause of the machine does not break it.
wait_until() { # WHAT COMMAND [ARGUMENT...]
    local what=$1 tries=0
    shift
    until "$@"; do
        [ $((++tries)) -lt 600 ] || fail "$what did not happen"
        kill -0 "$demo" 2>/dev/null || fail "the demo ended before $what"
        sleep 0.2
    done
}

# Waits in the same way until the demo has ended.
wait_for_end() {
    local tries=0
    while kill -0 "$demo" 2>/dev/null; do
        [ $((++tries)) -lt 600 ] || fail 'the window was closed, and the demo did not end'
        sleep 0.2
    done
}

# Starts a display server that requires its cookie, as on a desktop.
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
# Presses the start button until the update begins: the button does nothing before the device is detected.
has_started() { log_has "$first_line" || { press_start; sleep 1; log_has "$first_line"; }; }
first_line='try to bootloader...'

# Runs the demo without --auto through COMMAND and does what a user does.
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
# Chooses a user without rights if this process is root.
choose_user_without_rights() {
    [ "$(id -u)" -eq 0 ] || return 0
    as_user=65534:65534
    without_rights=(setpriv --reuid 65534 --regid 65534 --clear-groups env "HOME=$stage")
}
without_rights=(env)

AUserPressesStartAndClosesTheWindow() { update_by_hand env; }
AUserWithoutRightsDoesTheSame() {
    choose_user_without_rights
    update_by_hand "${without_rights[@]}"
}
AUserWithoutRightsAndNamespacesDoesTheSame() {
    choose_user_without_rights
    update_by_hand "${without_rights[@]}" QUILLMARSH_NO_NAMESPACE=1
}
AMissingWindowsBuildIsRefused() {
    local code=0
    "$project/demo/start.sh" "$build" --windows "$stage/none" >"$stage/output" 2>&1 || code=$?
    [ "$code" -eq 2 ] || fail "the demo ended with $code"
    grep -qF "$stage/none" "$stage/output" || fail 'it did not say what is missing'
}

start_display
"$2"
