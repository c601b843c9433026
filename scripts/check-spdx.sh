#!/usr/bin/env bash
# Compares a package with its SPDX list: the same files, each with its sum, each of a component that has a name,
# a version and a licence. Prints the components.
# Usage: scripts/check-spdx.sh LIST PACKAGE
# PACKAGE is a .deb, a .zip, the Windows installer, or a folder of files.
set -euo pipefail
list=$(realpath "$1") package=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "$package does not agree with $list: $*" >&2; exit 1; }

mkdir "$work/files"
case $package in
*.deb) dpkg-deb -x "$package" "$work/files" || fail 'it cannot be unpacked' ;;
*.zip)
    unzip -q "$package" -d "$work/zip" || fail 'it cannot be unpacked'
    # Everything is in one folder.
    mv "$work"/zip/*/* "$work/files/"
    ;;
*.exe)
    7zz x -y -o"$work/files" "$package" >"$work/7zz.log" 2>&1 || { tail -n 5 "$work/7zz.log" >&2; fail 'it cannot be unpacked'; }
    # What the installer itself is made of: its plugins, and the uninstaller.
    rm -rf "$work/files/\$PLUGINSDIR" "$work/files/"*[uU]ninst*.exe
    # The driver step's copies: none of them may be anything else than a listed file.
    mkdir "$work/copies"
    find "$work/files" -maxdepth 1 -name '$PROGRAMFILES*' -exec mv {} "$work/copies/" \;
    # The control list is a copy that the installer makes, so that it can tell a user's own from it.
    cp "$work/files/qmake/ControlDevList.default.json" "$work/files/qmake/ControlDevList.json" || fail 'it has no control list'
    ;;
*) cp -r "$package/." "$work/files/" ;;
esac

(cd "$work/files" && find . -type f -exec sha256sum {} +) | sed -E 's/^([0-9a-f]+) [ *]/\1 /' | LC_ALL=C sort -k 2 >"$work/has"
jq -r '.files[] | (.checksums[] | select(.algorithm == "SHA256") | .checksumValue) + " " + .fileName' "$list" |
    LC_ALL=C sort -k 2 >"$work/listed"
[ -s "$work/listed" ] || fail 'the list has no files'
diff "$work/listed" "$work/has" >&2 || fail 'the lines marked "<" are listed, those marked ">" are there'
if [ -d "$work/copies" ]; then
    (cd "$work/copies" && find . -type f -exec sha256sum {} +) | while read -r sum copy; do
        grep -q "^$sum " "$work/listed" || { echo "$copy is no listed file" >&2; exit 1; }
    done || fail 'a copy for the driver step is another file'
fi

orphans=$(jq -r '[.relationships[] | select(.relationshipType == "CONTAINS") | .relatedSpdxElement] as $owned
    | .files[] | select(.SPDXID as $id | $owned | index($id) | not) | .fileName' "$list")
[ -z "$orphans" ] || fail "these belong to no component: $orphans"
incomplete=$(jq -r '.packages[] | select((.name // "") == "" or (.versionInfo // "") == "" or (.licenseConcluded // "") == "")
    | .SPDXID' "$list")
[ -z "$incomplete" ] || fail "these lack a name, a version or a licence: $incomplete"
jq -r '.packages[] | "  \(.name) \(.versionInfo): \(.licenseConcluded)"' "$list"
echo "${package##*/} has the $(wc -l <"$work/has") files of ${list##*/}."
