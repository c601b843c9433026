#!/usr/bin/env bash
# Builds the packages from a fresh clone of the current commit, installs each into an empty system, updates
# a simulated device there and removes the package. Prints the files and registry entries that remain: only
# logs and settings are expected. Needs root and takes a long time.
# Usage: scripts/release-check.sh [linux] [windows], both by default
set -euo pipefail
project=$(cd "$(dirname "$0")/.." && pwd)
[ $# -gt 0 ] || set -- linux windows
work=$(mktemp -d --tmpdir quillmarsh-release.XXXXXX)
trap 'rm -rf --one-file-system "$work"' EXIT
chmod 755 "$work"

echo "Checking $(git -C "$project" log -1 --format='%h %s')."
git clone -q "$project" "$work/quillmarsh"
cd "$work/quillmarsh"
mkdir build

scripts/install-dependencies.sh
cmake --preset demo >build/demo.log || { cat build/demo.log; exit 1; }
cmake --build --preset demo

printf '\n==== signatures\n'
scripts/maker-day-check.sh

check_linux() {
    scripts/linux/package.sh
    scripts/linux/check-package.sh build/packages/quillmarsh_*.deb build/demo
}

check_windows() {
    scripts/windows/build.sh
    scripts/windows/package.sh
    scripts/windows/check-package.sh build/packages/quillmarsh-*-setup.exe build/demo build/mingw
}

for system; do
    printf '\n==== %s\n' "$system"
    "check_$system"
done
printf '\nRelease checks passed for %s.\n' "$*"
