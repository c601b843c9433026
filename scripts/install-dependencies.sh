#!/usr/bin/env bash
# Installs the distribution's packages that are needed to build, test and demonstrate the program. Does nothing,
# and needs no special rights, if all of them are installed. Arguments are additional packages.
set -euo pipefail

packages=(
    build-essential cmake ninja-build ccache mold pkg-config git ca-certificates
    qtbase5-dev qtbase5-private-dev libusb-1.0-0-dev libhidapi-dev
    libsodium-dev minisign libdbus-1-dev
    libumockdev-dev umockdev
    libgtest-dev libgmock-dev
    clang libclang-rt-dev clang-format clang-tidy
    nlohmann-json3-dev
    nginx-core jq osslsigncode openssl dbus-daemon python3 python3-jsonschema ruby-mdl
    xvfb xauth xdotool openbox wmctrl at-spi2-core gir1.2-atspi-2.0 python3-gi
    fonts-dejavu-core fonts-noto-cjk
    iproute2 util-linux unzip
    "$@"
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[ "${#missing[@]}" -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive

# The tests start the web server themselves, so its service must not be started.
policy=/usr/sbin/policy-rc.d
if [ ! -e "$policy" ]; then
    trap '"${as_root[@]}" rm -f "$policy"' EXIT
    printf '#!/bin/sh\nexit 101\n' | "${as_root[@]}" tee "$policy" >/dev/null
    "${as_root[@]}" chmod 755 "$policy"
fi
"${as_root[@]}" apt-get update -q
"${as_root[@]}" apt-get install -q -y --no-install-recommends "${missing[@]}"
