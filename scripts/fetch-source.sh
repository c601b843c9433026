#!/usr/bin/env bash
# fetch-source.sh NAME DIR: unpacks the distribution's source package NAME in DIR, with the distribution's
# patches, and prints the folder. Needs no special rights and does not change the package sources of the machine:
# it uses a copy of them for source packages, with separate lists in DIR/.apt.
set -euo pipefail
name=$1
mkdir -p "$2"
directory=$(cd "$2" && pwd)

unpacked() { find "$directory" -mindepth 1 -maxdepth 1 -type d -name "$name-*" | sort | tail -n 1; }

if [ ! -e "$directory/.fetched-$name" ]; then
    apt=$directory/.apt
    mkdir -p "$apt/sources.d" "$apt/lists/partial"
    # Both formats of package sources, changed to source packages.
    for list in /etc/apt/sources.list.d/*.sources; do
        [ ! -e "$list" ] || sed 's/^Types:.*/Types: deb-src/' "$list" >"$apt/sources.d/$(basename "$list")"
    done
    for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ ! -e "$list" ] || sed -n 's/^deb \(.*\)/deb-src \1/p' "$list" >"$apt/sources.d/$(basename "$list" .list).list"
    done
    options=(-o "Dir::Etc::sourcelist=/dev/null" -o "Dir::Etc::sourceparts=$apt/sources.d"
        -o "Dir::State::lists=$apt/lists" -o "Dir::Cache::pkgcache=" -o "Dir::Cache::srcpkgcache=")
    # A repository without source packages is not an error.
    apt-get "${options[@]}" update -q >&2 || true
    (cd "$directory" && apt-get "${options[@]}" source -q "$name") >&2
    touch "$directory/.fetched-$name"
fi
unpacked
