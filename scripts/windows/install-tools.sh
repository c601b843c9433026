#!/usr/bin/env bash
# Installs the packages that are needed to build for Windows and to run the programs under Wine, in addition to
# the general ones.
set -euo pipefail
exec "$(dirname "$0")/../install-dependencies.sh" \
    g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev googletest dpkg-dev bzip2 patch perl xz-utils \
    autoconf automake libtool \
    wine wine64 locales
