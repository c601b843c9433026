#!/usr/bin/env bash
# Runs a command with a new Wine prefix (Windows 10) and a display, and removes both afterwards.
# Usage: scripts/windows/in-prefix.sh COMMAND [ARGUMENT...]
set -euo pipefail

folder=$(mktemp -d "${TMPDIR:-/tmp}/quillmarsh-windows.XXXXXX")
mkdir "$folder/prefix"
export WINEPREFIX=$folder/prefix WINEARCH=win64 WINEDEBUG=-all
# No questions, no menu entries, and no debugger for programs that crash.
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe,winedbg.exe=d'
display_server=''
end() {
    wineserver -k || true
    wineserver -w || true
    [ -z "$display_server" ] || kill "$display_server" || true
    rm -rf "$folder"
}
trap end EXIT

mkfifo "$folder/display"
Xvfb -displayfd 7 -screen 0 1600x1000x24 -nolisten tcp 7>"$folder/display" >"$folder/display.log" 2>&1 &
display_server=$!
read -r -t 30 number <"$folder/display"
export DISPLAY=:$number
unset WAYLAND_DISPLAY XDG_SESSION_TYPE

# One server for all programs, which halves the time of their start.
wineserver -p
wine wineboot --init >"$folder/start.log" 2>&1 || { cat "$folder/start.log" >&2; exit 1; }
# By default it reports Windows 7.
wine winecfg -v win10
cat >"$folder/settings.reg" <<'REG'
Windows Registry Editor Version 5.00

[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\AeDebug]
"Debugger"=""

; The fonts that every Windows has and this machine has not.
[HKEY_CURRENT_USER\Software\Wine\Fonts\Replacements]
"Tahoma"="DejaVu Sans"
"Segoe UI"="DejaVu Sans"
"MS Shell Dlg"="DejaVu Sans"
"MS Shell Dlg 2"="DejaVu Sans"
"SimSun"="Noto Sans CJK SC"
"Microsoft YaHei"="Noto Sans CJK SC"
"Microsoft YaHei UI"="Noto Sans CJK SC"
REG
wine regedit /S "$folder/settings.reg"
# A new prefix has two service managers that do not know each other's services.
wineserver -k
wineserver -w
wineserver -p

"$@"
