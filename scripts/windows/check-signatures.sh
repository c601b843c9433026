#!/usr/bin/env bash
# Checks that the installer, and the programs of ours in the archive and in the installer, are signed.
# Usage: scripts/windows/check-signatures.sh AUTHORITIES PACKAGES
set -euo pipefail
authorities=$(realpath "$1") packages=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unzip -q "$packages"/quillmarsh-*.zip -d "$work/zip"
7zz x -y -o"$work/setup" "$packages"/quillmarsh-*-setup.exe >"$work/log" || { tail -n 5 "$work/log" >&2; exit 1; }

checked=0
while IFS= read -r -d '' program; do
    osslsigncode verify -CAfile "$authorities" -in "$program" >"$work/said" 2>&1 ||
        { echo "The signature of $program is not valid:" >&2; cat "$work/said" >&2; exit 1; }
    echo "Signed: ${program#"$work/"}"
    checked=$((checked + 1))
done < <(find "$packages" -maxdepth 1 -name 'quillmarsh-*-setup.exe' -print0
    find "$work" \( -name 'quillmarsh*.exe' -o -iname 'uninst*.exe' \) -print0)
# At least the installer, and the program and the driver step in both packages.
[ "$checked" -ge 5 ] || { echo "Only $checked programs were found." >&2; exit 1; }
