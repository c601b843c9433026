#!/usr/bin/env bash
# Makes build/packages/quillmarsh-VERSION-windows-x64.zip and -setup.exe of the folder that
# scripts/windows/build.sh leaves. With --tools, everything in that folder (the maker's flashers, IAP
# programmer and driver package) is packed with it.
# Usage: scripts/windows/package.sh [--tools FOLDER] [PROGRAM_FOLDER]
set -euo pipefail
cd "$(dirname "$0")/../.."
tools=
if [ "${1-}" = --tools ]; then
    tools=$2
    shift 2
fi
program=${1:-build/windows/quillmarsh}
for name in quillmarsh quillmarsh-cli; do
    [ -f "$program/$name.exe" ] || { echo "There is no $program/$name.exe: run scripts/windows/build.sh." >&2; exit 1; }
done
scripts/install-dependencies.sh nsis zip g++-mingw-w64-x86-64-posix mingw-w64-common libqt5core5a \
    libusb-1.0-0 libhidapi-hidraw0 libsodium23
for name in quillmarsh quillmarsh-cli; do
    scripts/check-server-address.sh "$program/$name.exe"
done

version=$(sed -nE 's/^project\(.* VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
name=quillmarsh-$version-windows-x64
work=build/packages/windows
folder=$work/quillmarsh-$version
rm -rf "$work"
mkdir -p "$folder/licences"
cp -r "$program/." "$folder/"
cp "$folder/qmake/ControlDevList.json" "$folder/qmake/ControlDevList.default.json"
[ -z "$tools" ] || cp -r "$tools/." "$folder/"

# Windows' own line ends: a plain editor shows them.
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

(cd "$work" && zip -q -9 -X -r "../$name.zip.new" "quillmarsh-$version")
mv "build/packages/$name.zip.new" "build/packages/$name.zip"

# What is installed and removed, file by file. The list is written by the installer itself: the
# user's may be another.
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
# What the driver step unpacks: what installs the driver, the libraries that it names, and the driver package
# where that is packed.
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
has_driver=()
[ ! -e "$folder/Artinchip_SoC.inf" ] || has_driver=(-DHAS_DRIVER)
makensis -V2 -WX "${has_driver[@]}" "-DVERSION=$version" "-DLISTS=$PWD/$work" \
    "-DICON=$PWD/resources/images/quillmarsh.ico" "-DPICTURE=$PWD/packaging/windows/finish.bmp" \
    "-DOUTPUT=$PWD/build/packages/$name-setup.exe" \
    packaging/windows/quillmarsh.nsi
ls -l "build/packages/$name".* "build/packages/$name-setup.exe"
