#!/usr/bin/env bash
# Installs what building for Windows and running the result under Wine needs, beside what everything needs.
set -euo pipefail
exec "$(dirname "$0")/../install-dependencies.sh" \
    g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev googletest dpkg-dev bzip2 patch perl xz-utils \
    autoconf automake libtool \
    wine wine64 locales
