#!/usr/bin/env bash
# Builds the package for the Debian release that this runs on, build/packages/quillmarsh_VERSION_amd64.deb, and
# checks it. Arguments are passed to CMake, for example -DQUILLMARSH_FIRMWARE_SERVER=https://firmware.example.com.
set -euo pipefail
cd "$(dirname "$0")/../.."
packages=$PWD/build/packages
log=$PWD/build/package.log
scripts/install-dependencies.sh lintian appstream desktop-file-utils dpkg-dev jq python3

sources=packaging/linux
desktop-file-validate "$sources/quillmarsh.desktop"
appstreamcli validate --no-net --pedantic "$sources"/*.metainfo.xml

SOURCE_DATE_EPOCH=$(scripts/source-date.sh)
export SOURCE_DATE_EPOCH
# With the hardening options of the distribution's own packages. Without debug information, which is stripped
# anyway: it has paths and the compiler cache's options in it, and changes the build id.
flags() { DEB_BUILD_MAINT_OPTIONS=hardening=+all DEB_CXXFLAGS_MAINT_STRIP=-g dpkg-buildflags --get "$1"; }
mkdir -p "$packages"
CXXFLAGS="$(flags CPPFLAGS) $(flags CXXFLAGS)" LDFLAGS=$(flags LDFLAGS) \
    cmake --preset package "$@" >"$log" 2>&1 || { cat "$log"; exit 1; }
cmake --build --preset package
(umask 022 && cd build/package && cpack -G DEB -B "$packages" >>"$log" 2>&1) || { cat "$log"; exit 1; }
rm -rf "$packages/_CPack_Packages"

version=$(dpkg-parsechangelog -l "$sources/changelog" -S Version)
package=$packages/quillmarsh_${version}_$(dpkg --print-architecture).deb
[ -f "$package" ] || { echo "The version in the changelog, $version, differs from that of the project." >&2; exit 1; }
for text in quillmarsh.1 quillmarsh-cli.1 example.quillmarsh.quillmarsh.metainfo.xml; do
    grep -qF "$version" "$sources/$text" || { echo "$sources/$text does not contain $version." >&2; exit 1; }
done
# Software centres are not to offer the program for a device: the ids in the rules are the maker's to fill in.
lintian --allow-root --no-cfg --tag-display-limit 0 --fail-on error,warning \
    --suppress-tags appstream-metadata-missing-modalias-provide "$package"
for program in quillmarsh quillmarsh-cli; do
    scripts/check-server-address.sh "build/package/bin/$program" build/package
done

# What the package holds and needs, beside it.
contents=$(mktemp -d)
trap 'rm -rf "$contents"' EXIT
dpkg-deb -x "$package" "$contents"
list=${package%.deb}.spdx.json
scripts/make-spdx.py linux "$contents" "$(basename "$package" .deb)" "$version" \
    --depends "$(dpkg-deb -f "$package" Depends)" >"$list.new"
mv "$list.new" "$list"
scripts/check-spdx.sh "$list" "$package"
echo "$package"
