#!/usr/bin/env bash
# Writes the sums of all packages, and of their SPDX lists, to SHA256SUMS, and signs that with minisign.
# Usage: scripts/sign-sums.sh KEY [FOLDER]
# KEY is the secret key that "minisign -G" has made; FOLDER is build/packages by default.
set -euo pipefail
key=$(realpath "$1") folder=${2:-$(dirname "$0")/../build/packages}
cd "$folder"
files=(quillmarsh*)
[ -f "${files[0]}" ] || { echo "There are no packages in $folder." >&2; exit 1; }
sha256sum "${files[@]}" >SHA256SUMS
minisign -Sm SHA256SUMS -s "$key" -t "quillmarsh packages"
