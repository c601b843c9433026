#!/usr/bin/env bash
# Shows that packages can be built again: builds those of the current commit in two fresh clones, in folders of
# other names and lengths, one after the other, without the compiler cache, and compares them byte by byte. The
# second build has another time zone, language and umask. What is compared are packages without signatures. The
# libraries for Windows are taken as scripts/windows/libraries.sh has built them. Takes a long time.
# Usage: scripts/reproducible.sh [linux] [windows], both by default
set -euo pipefail
project=$(cd "$(dirname "$0")/.." && pwd)
[ $# -gt 0 ] || set -- linux windows
work=$(mktemp -d --tmpdir quillmarsh-reproducible.XXXXXX)
trap 'rm -rf --one-file-system "$work"' EXIT
chmod 755 "$work"
first=$work/one second=$work/another/folder/of-a-longer-name
export CCACHE_DISABLE=1
unset SOURCE_DATE_EPOCH

build_linux() { scripts/linux/package.sh; }
build_windows() {
    scripts/windows/build.sh --product
    scripts/windows/package.sh
}
# Builds the packages of a clone in FOLDER and leaves them in FOLDER/build/packages.
build_in() { # FOLDER SYSTEM...
    local folder=$1
    shift
    git clone -q "$project" "$folder"
    cd "$folder"
    git checkout -q --detach "$commit"
    mkdir build
    for system; do
        "build_$system" >"build/$system.log" 2>&1 || { tail -n 40 "build/$system.log" >&2; return 1; }
    done
}

commit=$(git -C "$project" rev-parse HEAD)
echo "Building $(git -C "$project" log -1 --format='%h %s') twice."
(build_in "$first" "$@")
echo "The first build has ended after $SECONDS s."
(
    export TZ=Asia/Kathmandu LC_ALL=C.UTF-8
    umask 027
    build_in "$second" "$@"
)
echo "The second build has ended after $SECONDS s."

failed=0 compared=0
for package in "$first"/build/packages/quillmarsh*; do
    [ -f "$package" ] || continue
    name=${package##*/}
    compared=$((compared + 1))
    if cmp "$package" "$second/build/packages/$name"; then
        echo "The same: $(sha256sum <"$package" | cut -d ' ' -f 1)  $name"
    else
        failed=1
    fi
done
[ "$compared" -ge $# ] || { echo "There are only $compared packages to compare." >&2; failed=1; }
if [ "$failed" -ne 0 ] && [ -n "${QUILLMARSH_KEEP_BUILDS-}" ]; then
    trap - EXIT
    echo "The builds are kept in $work." >&2
fi
exit "$failed"
