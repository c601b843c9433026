#!/usr/bin/env bash
# Creates build/packages/quillmarsh-VERSION-windows-x64.zip and -setup.exe from the folder that
# scripts/windows/build.sh creates, and -windows-x64.spdx.json, which lists what they contain. With --tools, all
# files in FOLDER (the maker's flashers, IAP programmer and driver package) are included. With --sign, our own
# programs, the installer and the uninstaller are signed (scripts/windows/sign.sh).
# Usage: scripts/windows/package.sh [--sign CERTIFICATE] [--tools FOLDER] [PROGRAM_FOLDER]
set -euo pipefail
cd "$(dirname "$0")/../.."
tools='' certificate=''
while [[ ${1-} == --* ]]; do
    case $1 in
    --tools) tools=$2 ;;
    --sign) certificate=$(realpath "$2") ;;
    *) sed -n '2,6s/^# //p' "$0" >&2; exit 2 ;;
    esac
    shift 2
done
program=${1:-build/windows/quillmarsh}
for name in quillmarsh quillmarsh-cli; do
    [ -f "$program/$name.exe" ] || { echo "There is no $program/$name.exe: run scripts/windows/build.sh." >&2; exit 1; }
done
scripts/install-dependencies.sh nsis zip g++-mingw-w64-x86-64-posix mingw-w64-common libqt5core5a \
    libusb-1.0-0 libhidapi-hidraw0 libsodium23 osslsigncode 7zip unzip jq python3
for name in quillmarsh quillmarsh-cli; do
    scripts/check-server-address.sh "$program/$name.exe"
done

version=$(sed -nE 's/^project\(.* VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
name=quillmarsh-$version-windows-x64
work=build/packages/windows
folder=$work/quillmarsh-$version
rm -rf "$work"
# Modes, times and the order of names are in the archive and the installer.
umask 022
SOURCE_DATE_EPOCH=$(scripts/source-date.sh)
export SOURCE_DATE_EPOCH TZ=UTC
mkdir -p "$folder/licences"
cp -r "$program/." "$folder/"
cp "$folder/qmake/ControlDevList.json" "$folder/qmake/ControlDevList.default.json"
[ -z "$tools" ] || cp -r "$tools/." "$folder/"

# With the line endings of Windows, for simple editors.
windows_text() { sed 's/\r*$/\r/' "$1" >"$2"; }
windows_text packaging/windows/README.txt "$folder/README.txt"
licence() { # NAME FILE
    windows_text "$2" "$folder/licences/$1.txt"
}
licence quillmarsh LICENSE
licence qt /usr/share/doc/libqt5core5a/copyright
licence libusb /usr/share/doc/libusb-1.0-0/copyright
licence hidapi /usr/share/doc/libhidapi-hidraw0/copyright
licence libsodium /usr/share/doc/libsodium23/copyright
licence gcc-runtime /usr/share/doc/gcc-mingw-w64-base/copyright
licence mingw-w64-runtime /usr/share/doc/mingw-w64-common/copyright
for text in LGPL-2.1 LGPL-3 GPL-2 GPL-3; do
    licence "$text" "/usr/share/common-licenses/$text"
done
windows_text packaging/windows/LICENCES.txt "$folder/licences/README.txt"

sign=()
if [ -n "$certificate" ]; then
    sign=("$PWD/scripts/windows/sign.sh" "$certificate") # makensis runs it in another folder
    "${sign[@]}" "$folder"/quillmarsh*.exe
fi

libraries=${QUILLMARSH_WINDOWS_ROOT:-${QUILLMARSH_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quillmarsh-windows}/current}
list=build/packages/$name.spdx.json
scripts/make-spdx.py windows "$folder" "$name" "$version" --libraries "$libraries" >"$list"

find "$folder" -type f -exec chmod 644 {} + -o -type d -exec chmod 755 {} +
find "$folder" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
rm -f "build/packages/$name.zip.new"
(cd "$work" && find "quillmarsh-$version" | LC_ALL=C sort | zip -q -9 -X -@ "../$name.zip.new")
mv "build/packages/$name.zip.new" "build/packages/$name.zip"

# The files that are installed and removed. The control list is not among them: the installer itself writes it,
# and the user may have changed it.
files=$(cd "$folder" && find . -type f ! -path ./qmake/ControlDevList.json -printf '%P\n' | LC_ALL=C sort)
folders=$(cd "$folder" && find . -mindepth 1 -type d -printf '%P\n' | LC_ALL=C sort)
windows_path() { printf '%s\n' "${1//\//\\}"; }
{
    echo "SetOutPath \$INSTDIR"
    while IFS= read -r inner; do
        echo "CreateDirectory \"\$INSTDIR\\$(windows_path "$inner")\""
    done <<<"$folders"
    while IFS= read -r file; do
        echo "File \"/oname=$(windows_path "$file")\" \"$PWD/$folder/$file\""
    done <<<"$files"
} >"$work/install.nsh"
{
    while IFS= read -r file; do
        echo "Delete \"\$INSTDIR\\$(windows_path "$file")\""
    done <<<"$files"
    while IFS= read -r inner; do
        echo "RMDir \"\$INSTDIR\\$(windows_path "$inner")\""
    done < <(LC_ALL=C sort -r <<<"$folders")
} >"$work/uninstall.nsh"
# The files that the driver step unpacks: the program that installs the driver, its libraries, and the driver
# package if it is included.
driver_files=$(cd "$folder" && {
    pending=(quillmarsh-driver.exe)
    while [ "${#pending[@]}" -gt 0 ]; do
        printf '%s\n' "${pending[@]}"
        mapfile -t named < <(x86_64-w64-mingw32-objdump -p "${pending[@]}" | sed -n 's/^\tDLL Name: //p' | sort -u)
        pending=()
        for name in "${named[@]}"; do
            [ ! -e "$name" ] || pending+=("$name")
        done
    done
    for file in dpscat.exe Artinchip_SoC.inf amd64/*; do
        [ ! -f "$file" ] || printf '%s\n' "$file"
    done
} | LC_ALL=C sort -u)
while IFS= read -r file; do
    echo "File \"/oname=\${DRIVER_FOLDER}\\$(windows_path "$file")\" \"$PWD/$folder/$file\""
done <<<"$driver_files" >"$work/driver.nsh"
# The installer stores the time of the picture.
cp packaging/windows/finish.bmp "$work/"
touch -d "@$SOURCE_DATE_EPOCH" "$work/finish.bmp"
options=()
[ ! -e "$folder/Artinchip_SoC.inf" ] || options+=(-DHAS_DRIVER)
[ "${#sign[@]}" -eq 0 ] || options+=("-DSIGN=$(printf '%q ' "${sign[@]}")")
makensis -V2 -WX "${options[@]}" "-DVERSION=$version" "-DLISTS=$PWD/$work" \
    "-DICON=$PWD/resources/images/quillmarsh.ico" "-DPICTURE=$PWD/$work/finish.bmp" \
    "-DOUTPUT=$PWD/build/packages/$name-setup.exe" \
    packaging/windows/quillmarsh.nsi
[ "${#sign[@]}" -eq 0 ] || "${sign[@]}" "build/packages/$name-setup.exe"
scripts/check-spdx.sh "$list" "build/packages/$name.zip"
scripts/check-spdx.sh "$list" "build/packages/$name-setup.exe" | tail -n 1
ls -l "build/packages/$name".* "build/packages/$name-setup.exe"
