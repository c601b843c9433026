#!/usr/bin/env bash
# Builds the package for this release of the distribution, build/packages/quillmarsh_VERSION_amd64.deb, and checks it.
# Arguments go to CMake, such as -DQUILLMARSH_FIRMWARE_SERVER=https://firmware.example.com.
set -euo pipefail
cd "$(dirname "$0")/../.."
packages=$PWD/build/packages
log=$PWD/build/package.log
scripts/install-dependencies.sh lintian appstream desktop-file-utils dpkg-dev

sources=packaging/linux
desktop-file-validate "$sources/quillmarsh.desktop"
appstreamcli validate --no-net --pedantic "$sources"/*.metainfo.xml

# Hardened as the distribution hardens what it builds itself.
flags() { DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --get "$1"; }
mkdir -p "$packages"
CXXFLAGS="$(flags CPPFLAGS) $(flags CXXFLAGS)" LDFLAGS=$(flags LDFLAGS) \
    cmake --preset package "$@" >"$log" 2>&1 || { cat "$log"; exit 1; }
cmake --build --preset package
(umask 022 && cd build/package && cpack -G DEB -B "$packages" >>"$log" 2>&1) || { cat "$log"; exit 1; }
rm -rf "$packages/_CPack_Packages"

version=$(dpkg-parsechangelog -l "$sources/changelog" -S Version)
package=$packages/quillmarsh_${version}_$(dpkg --print-architecture).deb
[ -f "$package" ] || { echo "The changelog's version is $version, the project's is another." >&2; exit 1; }
for text in quillmarsh.1 quillmarsh-cli.1 example.quillmarsh.quillmarsh.metainfo.xml; do
    grep -qF "$version" "$sources/$text" || { echo "$sources/$text does not name $version." >&2; exit 1; }
done
# Software centres are not to offer the program for a device: the ids in the rules are the maker's to fill in.
lintian --allow-root --no-cfg --tag-display-limit 0 --fail-on error,warning \
    --suppress-tags appstream-metadata-missing-modalias-provide "$package"
for program in quillmarsh quillmarsh-cli; do
    scripts/check-server-address.sh "build/package/bin/$program" build/package
done
echo "$package"
