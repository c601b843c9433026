#!/usr/bin/env bash
# Builds the packages from a fresh clone of the current commit, installs each into an empty system, updates
# a simulated device there and removes the package. Prints the files and registry entries that remain: only
# logs and settings are expected. On Linux it also tries the package on the distribution's kernel in QEMU, and lets
# 330 devices (or those of --soak NUMBER) come and go in one process. The Windows programs are signed by an authority
# made for the check, the packages by a key made for it; every check of docs/checking-packages.md refuses a changed
# package. Then the packages are built twice more and compared, and all tests run with the sanitizers for threads and
# addresses. Needs root and takes a long time.
# Usage: scripts/release-check.sh [--soak NUMBER] [linux] [windows] [trust] [reproducible] [sanitizers],
# all by default
set -euo pipefail
project=$(cd "$(dirname "$0")/.." && pwd)
soak_devices=330
if [ "${1-}" = --soak ]; then
    soak_devices=$2
    shift 2
fi
[ $# -gt 0 ] || set -- linux windows trust reproducible sanitizers
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
    scripts/kernel-check.sh build/packages/quillmarsh_*.deb build/demo
    scripts/soak.sh --devices "$soak_devices"
}

check_windows() {
    scripts/windows/build.sh
    tests/packaging/make-signing-certificates.sh "$work/signing"
    QUILLMARSH_SIGN_PASSWORD_FILE=$work/signing/password scripts/windows/package.sh --sign "$work/signing/maker.p12"
    scripts/windows/check-signatures.sh "$work/signing/ca.pem" build/packages
    scripts/windows/check-package.sh build/packages/quillmarsh-*-setup.exe build/demo build/mingw
}

# What linux and windows have left.
check_trust() {
    minisign -G -W -p "$work/maker.pub" -s "$work/maker.sec" >/dev/null
    scripts/sign-sums.sh "$work/maker.sec"
    local authorities=()
    [ ! -e "$work/signing/ca.pem" ] || authorities=("$work/signing/ca.pem")
    scripts/check-trust.sh build/packages "$work/maker.pub" "${authorities[@]}"
}

check_reproducible() {
    scripts/reproducible.sh
}

check_sanitizers() {
    scripts/thread-check.sh
    scripts/address-check.sh
}

for system; do
    printf '\n==== %s\n' "$system"
    "check_$system"
done
printf '\nRelease checks passed for %s.\n' "$*"
