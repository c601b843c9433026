#!/usr/bin/env bash
# Installs and removes the Windows package in a fresh Windows of Wine's, and prints what is left in
# files and registry: nothing, or the logs and settings that were there.
# Usage: scripts/windows/check-package.sh SETUP
set -euo pipefail
cd "$(dirname "$0")/../.."
setup=$(realpath "$1")
if [ -z "${WINEPREFIX-}" ]; then
    exec scripts/windows/in-prefix.sh "$PWD/scripts/windows/check-package.sh" "$setup"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
local_data=$(wine cmd /c 'echo %LOCALAPPDATA%' | tr -d '\r')
installed=$(realpath "$(winepath -u "$local_data")")/Programs/quillmarsh
uninstall_key='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\quillmarsh'

step() { printf '\n== %s\n' "$*"; }
fail() { echo "FAILED: $*" >&2; exit 1; }
# Files without the hives, the folder that Windows has for a user's programs, and the copy of itself
# that an uninstaller leaves for the next start to remove; of the registry what a setup may write to.
listing() {
    (cd "$WINEPREFIX" && find . \( -type f -o -type d -o -type l \) ! -name '*.reg' ! -name .update-timestamp \
        ! -path '*/AppData/Local/Programs' ! -path '*/Temp/~nsu*' |
        LC_ALL=C sort) >"$1.files"
    for key in 'HKCU\Software' 'HKLM\Software' 'HKLM\System\CurrentControlSet\Services'; do
        wine reg export "$key" "Z:${work//\//\\}\\export.reg" /y >/dev/null
        iconv -f UTF-16 -t UTF-8 "$work/export.reg" | tr -d '\r'
        rm "$work/export.reg"
    done | sed -nE '/^\[/{p;h;d};/./{G;s/\n/ in /;p}' |
        # Of every Windows, and of Wine's own start.
        grep -vE '\\NetworkCards\\|^\[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\]$' |
        LC_ALL=C sort >"$1.registry"
}
# Prints what changed since LISTING.
left_since() {
    listing "$work/now"
    for kind in files registry; do
        diff "$1.$kind" "$work/now.$kind" | grep '^[<>]' || true
    done
}
install() { wine "$setup" /S; }
remove() {
    wine "$installed/uninstall.exe" /S
    # It goes on as a copy of itself.
    for _ in $(seq 600); do
        wine reg query "$uninstall_key" >/dev/null 2>&1 || return 0
        sleep 0.1
    done
    fail 'the uninstaller does not end'
}

listing "$work/before"
left_since "$work/before" >"$work/left"
[ ! -s "$work/left" ] || { cat "$work/left"; fail 'the comparison finds a difference where there is none'; }

step 'Installed and removed'
install
[ -f "$installed/quillmarsh.exe" ] || fail 'the program is not there'
cmp -s "$installed/qmake/ControlDevList.json" packaging/ControlDevList.json || fail 'the control list is not the shipped one'
wine reg query "$uninstall_key" /v DisplayVersion
find "$WINEPREFIX" -name Quillmarsh.lnk -path '*Start Menu*' | grep . || fail 'there is no start-menu entry'
remove
left_since "$work/before" | tee "$work/left"
[ ! -s "$work/left" ] || fail 'something is left'
echo 'Nothing is left.'

step 'Installed, used, installed again, and removed, with the tools beside the installer'
cp "$setup" "$work/setup.exe"
setup=$work/setup.exe
mkdir "$work/amd64"
for tool in upgcmd.exe Artinchip_SoC.inf amd64/libusbK.sys; do
    echo "$tool" >"$work/$tool"
done
install
for tool in upgcmd.exe Artinchip_SoC.inf amd64/libusbK.sys; do
    cmp -s "$work/$tool" "$installed/$tool" || fail "$tool was not taken from beside the installer"
done
echo log >"$installed/UPDLog.txt"
echo log >"$installed/log.txt"
echo '{}' >"$installed/qmake/dev.jn"
echo sum >"$installed/Artinchip_SoC.cat"
echo '{ "devices": [] }' >"$installed/qmake/ControlDevList.json"
install
grep -q '"devices": \[\]' "$installed/qmake/ControlDevList.json" || fail "the user's control list was replaced"
remove
left_since "$work/before" | tee "$work/left"
folder=./${installed#"$WINEPREFIX/"}
expected="> $folder
> $folder/UPDLog.txt
> $folder/log.txt
> $folder/qmake
> $folder/qmake/ControlDevList.json"
[ "$(LC_ALL=C sort "$work/left")" = "$(LC_ALL=C sort <<<"$expected")" ] || fail 'something else is left, or less'
echo "Left are the logs and the user's own control list."

step 'Installed while the program runs'
install
# Wine has no HID devices, and so the program waits in a box that says so; it runs, which is all here.
(cd "$installed" && exec wine quillmarsh.exe ZN58UpDate) >"$work/stdout" 2>"$work/stderr" &
for _ in $(seq 100); do
    code=0
    install || code=$?
    [ "$code" -eq 0 ] || break
    sleep 0.2
done
wine taskkill /f /im quillmarsh.exe >"$work/ended" || { cat "$work/stderr"; fail 'the program does not run'; }
wait
[ "$code" -eq 2 ] || fail "the installer ended with $code"
echo 'The installer refused with 2.'
