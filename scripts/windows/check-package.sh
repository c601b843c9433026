#!/usr/bin/env bash
# Tests the Windows packages in a new Wine prefix: unpacks the archive, runs the installer, updates a simulated
# device with each, removes them, and prints the remaining files and registry entries: only logs and settings may
# remain. Needs root, and the archive beside the installer.
# Usage: scripts/windows/check-package.sh SETUP HARNESS_BUILD WINDOWS_BUILD
# HARNESS_BUILD is a build folder with the test harness, WINDOWS_BUILD one of the preset mingw.
set -euo pipefail
cd "$(dirname "$0")/../.."
setup=$(realpath "$1") harness=$(realpath "$2") windows=$(realpath "$3")
archive=${setup%-setup.exe}.zip
model=DevMaa

# From here on there is no network except loopback, and mounts are only visible to this script.
if [ -z "${QUILLMARSH_CHECK_STAGE-}" ]; then
    stage=$(mktemp -d --tmpdir quillmarsh-windows-check.XXXXXX)
    trap 'rm -rf "$stage"' EXIT
    scripts/install-dependencies.sh unzip
    scripts/prepare-release-server.sh "$stage" "$model"
    QUILLMARSH_CHECK_STAGE=$stage unshare --mount --net --pid --fork --kill-child --mount-proc \
        scripts/windows/check-package.sh "$setup" "$harness" "$windows"
    exit
fi
stage=$QUILLMARSH_CHECK_STAGE
if [ -z "${WINEPREFIX-}" ]; then
    ip link set lo up
    { cat /etc/hosts; echo "127.0.0.1 $(cat "$stage/host")"; } >"$stage/hosts"
    mount --bind "$stage/hosts" /etc/hosts
    # Wine trusts the certificate authorities of the host system.
    cat /etc/ssl/certs/ca-certificates.crt "$stage/authority.crt" >"$stage/authorities"
    mount --bind "$stage/authorities" /etc/ssl/certs/ca-certificates.crt
    nginx -p "$stage/nginx" -c nginx.conf -e error.log
    exec scripts/windows/in-prefix.sh "$PWD/scripts/windows/check-package.sh" "$setup" "$harness" "$windows"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
folder_named() { realpath "$(winepath -u "$(wine cmd /c "echo %$1%" | tr -d '\r')")"; }
installed=$(folder_named LOCALAPPDATA)/Programs/quillmarsh
uninstall_key='HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\quillmarsh'

step() { printf '\n== %s\n' "$*"; }
fail() { echo "FAILED: $*" >&2; exit 1; }
# Lists the files, except the registry hives, the folder of the user's programs, the cache of certificates, and the
# copy of an uninstaller that the next start removes; and the parts of the registry to which a setup may write,
# without the entries of Windows and Wine.
listing() {
    (cd "$WINEPREFIX" && find . \( -type f -o -type d -o -type l \) ! -name '*.reg' ! -name .update-timestamp \
        ! -path '*/AppData/Local/Programs' ! -path '*/AppData/LocalLow/*' ! -path '*/Temp/~nsu*' |
        LC_ALL=C sort) >"$1.files"
    for key in 'HKCU\Software' 'HKLM\Software' 'HKLM\System\CurrentControlSet\Services'; do
        wine reg export "$key" "Z:${work//\//\\}\\export.reg" /y >/dev/null
        iconv -f UTF-16 -t UTF-8 "$work/export.reg" | tr -d '\r' | sed 1d
        rm "$work/export.reg"
    done | sed -nE '/^\[/{p;h;d};/./{G;s/\n/ in /;p}' |
        grep -vE '\\(NetworkCards|SystemCertificates|Software\\Wine)[]\\]' |
        grep -vxF '[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Uninstall]' |
        LC_ALL=C sort >"$1.registry"
}
# Prints the changes since LISTING.
left_since() {
    listing "$work/now"
    for kind in files registry; do
        diff "$1.$kind" "$work/now.$kind" | grep '^[<>]' || true
    done
}
# Updates a device with the programs in FOLDER, first with quillmarsh-cli, which must not leave any files.
update_with() {
    # Wine has no USB and HID buses, so replacements for libusb and hidapi are put beside the program.
    mkdir -p "$work/real" "$1/generic"
    for library in libusb-1.0.dll libhidapi.dll; do
        mv "$1/$library" "$work/real/"
        cp "$windows/beside/$library" "$1/"
    done
    cp "$windows/beside/generic/quillprobe.dll" "$1/generic/"
    cp "$windows/bin/quillmarsh-standin.exe" "$1/upgcmd.exe"
    local left=$work/left-by-cli
    listing "$left"
    run_update "$1/quillmarsh-cli.exe" --cli || { tail -n 30 "$stage/stdout" "$stage/stderr"; exit 1; }
    # The records of the stand-in tool were not written by the program.
    left_since "$left" | grep -v '/upgcmd\.exe\.' >"$work/left" || true
    [ ! -s "$work/left" ] || { cat "$work/left"; fail 'quillmarsh-cli has left something'; }
    run_update "$1/quillmarsh.exe" || { tail -n 30 "$stage/stderr" "$1/UPDLog.txt"; exit 1; }
    grep -c '^206 ' "$stage/nginx/access.log" | sed 's/$/ ranges were served over HTTPS./'
    cp "$work"/real/* "$1/"
    rm -r "$1/generic" "$1"/upgcmd.exe*
}
# EXECUTABLE [OPTION]
run_update() {
    : >"$stage/nginx/access.log"
    rm -f "$stage/probe-port" "$stage/burned.img"
    QUILLMARSH_HARNESS_BUILD=$harness "$harness/bin/quillmarsh-installed-update" "${@:2}" --model "$model" \
        --image "$stage/image" --stage "$stage" --listed-controller "$harness/bin/quillmarsh-sim-bus-listed" -- \
        wine "$1"
}
# The program has installed the driver, which belongs to the device: under Wine every user is an administrator.
without_driver() { grep -vE '[\/]libusbK(\.sys|[]])$' || true; }
install() { wine "$setup" /S "$@"; }
remove() {
    wine "$installed/uninstall.exe" /S
    # It continues as a copy of itself.
    for _ in $(seq 600); do
        wine reg query "$uninstall_key" >/dev/null 2>&1 || return 0
        sleep 0.1
    done
    fail 'the uninstaller does not end'
}

listing "$work/before"
left_since "$work/before" >"$work/left"
[ ! -s "$work/left" ] || { cat "$work/left"; fail 'the comparison reports a difference although nothing has changed'; }

step 'Installed and removed'
install
for program in quillmarsh quillmarsh-cli; do
    [ -f "$installed/$program.exe" ] || fail "$program is missing"
done
wine "$installed/quillmarsh-cli.exe" --version | grep -q '^quillmarsh-cli [0-9]' || fail 'quillmarsh-cli does not start'
ls "$installed"/libsodium-*.dll >/dev/null || fail 'the library that verifies signatures is not there'
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
    [ ! -e "$installed/$tool" ] || fail "$tool was taken from beside the installer without a word"
done
install /TOOLS
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
# The uninstaller must ignore entries in the list of copied files that an installer would not write.
victims=("$installed/../victim.txt" "$installed/own.txt" "$installed/own.exe" "$WINEPREFIX/drive_c/victim.txt")
for victim in "${victims[@]}"; do
    echo victim >"$victim"
done
printf '%s\r\n' '..\victim.txt' 'own.txt' '*.exe' 'amd64\..\own.txt' 'C:\victim.txt' >>"$installed/copied-tools.txt"
remove
for victim in "${victims[@]}"; do
    [ -e "$victim" ] || fail "the uninstaller removed $victim"
    rm "$victim"
done
left_since "$work/before" | tee "$work/left"
folder=./${installed#"$WINEPREFIX/"}
expected="> $folder
> $folder/UPDLog.txt
> $folder/log.txt
> $folder/qmake
> $folder/qmake/ControlDevList.json"
[ "$(LC_ALL=C sort "$work/left")" = "$(LC_ALL=C sort <<<"$expected")" ] || fail 'other files remain than expected'
echo "The logs and the user's own control list remain."
rm -r "$installed"

step 'Installed by hand: what lies beside the installer is shown, and used only when the user agrees'
# Wine sometimes takes a minute to start a program.
hand() {
    wine "$windows/stand-ins/quillmarsh-button-presser.exe" "$@" 180 && return
    cat "$work/by-hand"
    wine tasklist || true
    fail "the installer has no such button, or it is in another state: $*"
}
driver='Install the devices'\'' USB driver (Windows asks for an administrator)'
begin_by_hand() {
    (cd "$work" && WINEDEBUG=err+all exec wine "$setup") >"$work/by-hand" 2>&1 &
}
end_by_hand() {
    hand ticked 'Run Quillmarsh'
    hand press 'Run Quillmarsh'
    hand unticked 'Run Quillmarsh'
    hand press Finish
    wait
}
begin_by_hand
hand press 'Next >'
hand unticked 'Use these files'
hand press Install
hand absent "$driver"
end_by_hand
for tool in upgcmd.exe Artinchip_SoC.inf amd64/libusbK.sys; do
    [ ! -e "$installed/$tool" ] || fail "$tool was taken although the user did not agree"
done
remove
left_since "$work/before" | tee "$work/left"
[ ! -s "$work/left" ] || fail 'something is left'

step 'The same with agreement: the driver is offered, and not installed'
begin_by_hand
hand press 'Next >'
hand press 'Use these files'
hand press Install
hand unticked "$driver"
end_by_hand
for tool in upgcmd.exe Artinchip_SoC.inf amd64/libusbK.sys; do
    cmp -s "$work/$tool" "$installed/$tool" || fail "$tool was not taken from beside the installer"
done
remove
left_since "$work/before" | tee "$work/left"
[ ! -s "$work/left" ] || fail 'something is left'

step 'The driver step: it asks again, and installs from a folder of its own'
protected="$WINEPREFIX/drive_c/Program Files/Quillmarsh driver"
(cd "$work" && WINEDEBUG=err+all exec wine "$setup" /DRIVER) >"$work/by-hand" 2>&1 &
hand unticked 'Install the driver from these files'
hand disabled Install
cmp -s "$work/amd64/libusbK.sys" "$protected/amd64/libusbK.sys" || fail 'the driver is not in its own folder'
[ ! -e "$protected/upgcmd.exe" ] || fail 'what is no part of the driver was taken'
# From here on the files beside the installer must not matter.
echo exchanged >"$work/amd64/libusbK.sys"
hand press 'Install the driver from these files'
hand press Install
hand press 'Next >'
wait
[ "$(cat "$WINEPREFIX/drive_c/windows/system32/drivers/libusbK.sys")" = amd64/libusbK.sys ] ||
    fail 'the installed driver is not the one to which the user agreed'
left_since "$work/before" | tee "$work/left"
if without_driver <"$work/left" | grep .; then
    fail 'the lines above should not be there'
fi
echo "The driver and its service remain."
rm "$WINEPREFIX/drive_c/windows/system32/drivers/libusbK.sys"
wine reg delete 'HKLM\System\CurrentControlSet\Services\libusbK' /f
rm "$work"/upgcmd.exe "$work"/Artinchip_SoC.inf
mv "$work"/amd64/libusbK.sys "$work/"

step 'Installed by hand with nothing beside the installer: nothing is asked'
begin_by_hand
hand press Install
hand absent "$driver"
end_by_hand
remove
left_since "$work/before" | tee "$work/left"
[ ! -s "$work/left" ] || fail 'something is left'

step 'Unpacked from the archive, a device updated, and the folder removed'
# Not on the desktop, which may be a link out of the Wine prefix.
unzip -q "$archive" -d "$WINEPREFIX/drive_c"
unpacked=$(echo "$WINEPREFIX"/drive_c/quillmarsh-*)
update_with "$unpacked"
(cd "$unpacked" && ls UPDLog.txt qmake/dev.jn)
rm -r "$unpacked"
left_since "$work/before" | tee "$work/left"
if without_driver <"$work/left" | grep -vE '/Temp/QuillmarshV3TmpPath(/|$)'; then
    fail 'the lines above should not be there'
fi
echo "The temporary folder and the driver's service remain."

logs="> $folder
> $folder/UPDLog.txt
> $folder/log.txt"

step 'Installed, a device updated, and removed'
install
update_with "$installed"
remove
left_since "$work/before" | tee "$work/left"
if grep -vxF "$logs" "$work/left"; then
    fail 'the lines above should not be there'
fi
echo 'The logs remain.'
rm -r "$installed"

step 'The same with the driver beside the installer'
cp "$work/libusbK.sys" "$work/amd64/"
install /TOOLS
update_with "$installed"
remove
left_since "$work/before" | tee "$work/left"
if without_driver <"$work/left" | grep -vxF "$logs"; then
    fail 'the lines above should not be there'
fi
grep -q '/drivers/libusbK.sys$' "$work/left" || fail 'the driver was removed'
echo 'The logs and the driver remain.'

step 'Installed while the program runs'
install
# Wine has no HID devices, so the program shows a message box and waits. That it runs is sufficient here.
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
echo 'The installer refused to run, with exit code 2.'
