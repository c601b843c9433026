#!/usr/bin/env bash
# Cross-builds the programs for Windows x64 and all their tests, with warnings as errors. The files to ship are in
# build/windows/quillmarsh, from which the programs can be run on Windows. The first run on a machine takes half
# an hour, because it builds the libraries (libraries.sh). With --product, builds only what is shipped.
set -euo pipefail
cd "$(dirname "$0")/../.."

step() { printf '\n== %s (after %s s)\n' "$*" "$SECONDS"; }

step 'Tools'
scripts/windows/install-tools.sh

step 'Libraries'
QUILLMARSH_WINDOWS_ROOT=$(scripts/windows/libraries.sh)
export QUILLMARSH_WINDOWS_ROOT
echo "They are in $QUILLMARSH_WINDOWS_ROOT."

# A build folder that was configured with other libraries would keep their paths.
for build in build/mingw build/mingw-release; do
    if [ -e "$build/CMakeCache.txt" ] && ! grep -qF "=$QUILLMARSH_WINDOWS_ROOT/" "$build/CMakeCache.txt"; then
        rm -r "$build"
    fi
done

if [ "${1-}" != --product ]; then
    step 'Program and tests'
    cmake --preset mingw
    cmake --build --preset mingw
    scripts/windows/check-stand-ins.sh build/mingw/stand-ins build/mingw/bin/quillmarsh{,-cli}.exe
fi

step 'Program, as it is shipped'
cmake --preset mingw-release
cmake --build --preset mingw-release --target quillmarsh quillmarsh-cli quillmarsh-driver
for program in quillmarsh quillmarsh-cli; do
    scripts/check-server-address.sh "build/mingw-release/bin/$program.exe"
done

step 'The folder for Windows'
scripts/windows/assemble.sh build/mingw-release/bin/quillmarsh.exe "$QUILLMARSH_WINDOWS_ROOT" \
    build/windows/quillmarsh build/mingw-release/bin/quillmarsh-{cli,driver}.exe
step 'Done'
