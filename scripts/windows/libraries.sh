#!/usr/bin/env bash
# Builds Qt, libusb, hidapi, libsodium and GoogleTest for Windows from the distribution's sources, and prints the
# folder that contains them. They are kept in ${QUILLMARSH_WINDOWS_CACHE:-~/.cache/quillmarsh-windows} and built
# again only if their recipe below changes. The first build takes half an hour.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
cache=${QUILLMARSH_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quillmarsh-windows}
mkdir -p "$cache/logs"
cache=$(cd "$cache" && pwd)

host=x86_64-w64-mingw32
say() { printf '%s\n' "$*" >&2; }

# recipe_NAME builds one library. It runs in an empty temporary folder and installs the library to $out, with the
# folders bin, include and lib. A changed recipe results in a new folder in the cache.
recipe_qt() {
    # Without ccache: the result is cached anyway, and precompiled headers and ccache slow each other down.
    export CCACHE_DISABLE=1
    unpack qtbase-opensource-src
    # The names of two system libraries have a letter case that only a case-insensitive file system finds.
    sed -i 's/-lCrypt32/-lcrypt32/g; s/-lSecur32/-lsecur32/g' source/src/network/ssl/ssl.pri
    mkdir build && cd build
    ../source/configure -opensource -confirm-license -prefix "$out" -xplatform win32-g++ \
        -device-option CROSS_COMPILE=$host- -release -shared -no-opengl -schannel -no-openssl \
        -qt-zlib -qt-pcre -qt-libpng -qt-freetype -qt-harfbuzz -no-libjpeg -no-dbus -no-icu \
        -no-feature-sql -no-feature-tabletevent -no-feature-direct2d -no-feature-printer \
        -no-feature-graphicsview -no-feature-statemachine -no-feature-wizard -no-feature-mdiarea \
        -nomake examples -nomake tests -nomake tools -pch
    make -j"$(nproc)"
    make install
}

recipe_libusb() {
    unpack libusb-1.0
    cd source
    # In this order no file is older than its sources, so that nothing is generated again.
    touch aclocal.m4 && sleep 1 && touch configure config.h.in && find . -name Makefile.in -exec touch {} +
    ./configure --host=$host --prefix="$out" --enable-shared --disable-static
    make -j"$(nproc)"
    make install
}

recipe_hidapi() {
    unpack hidapi
    cmake -S source -B build -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_INSTALL_PREFIX="$out" -DBUILD_SHARED_LIBS=ON
    cmake --build build --target install
}

recipe_libsodium() {
    unpack libsodium
    cd source
    # The source package has no configure script.
    autoreconf --force --install
    ./configure --host=$host --prefix="$out" --enable-shared --disable-static
    make -j"$(nproc)"
    make install
}

recipe_googletest() {
    cmake -S /usr/src/googletest -B build -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_INSTALL_PREFIX="$out" -DCMAKE_CXX_STANDARD=17
    cmake --build build --target install
}

# Unpacks the distribution's source package with this name, with its patches, to "source".
unpack() { mv "$("$project/scripts/fetch-source.sh" "$1" "$PWD")" source; }

key_of() { { declare -f "recipe_$1" unpack; printf '%s\n' "$host"; } | sha256sum | cut -c1-12; }

# Makes the compiler with POSIX threads available under the usual names, through ccache.
compilers() {
    mkdir "$1"
    local tool
    for tool in gcc g++; do
        printf '#!/bin/sh\nexec ccache %s-%s-posix "$@"\n' $host $tool >"$1/$host-$tool"
        printf '#!/bin/sh\nexec ccache /usr/bin/%s "$@"\n' $tool >"$1/$tool"
    done
    chmod +x "$1"/*
}

build() {
    local name=$1 kept=$2
    local log=$cache/logs/$name.log work started=$SECONDS
    work=$(mktemp -d "$cache/building-$name.XXXXXX")
    say "Building $name for Windows; the log is $log"
    compilers "$work/compilers"
    mkdir "$work/in"
    # In the background, because "set -e" has no effect where the exit status is tested.
    (
        set -e
        out=$work/out toolchain=$project/cmake/mingw-w64.cmake
        export PATH=$work/compilers:$PATH CCACHE_BASEDIR=$work CCACHE_NOHASHDIR=1
        unset MAKEFLAGS CFLAGS CXXFLAGS LDFLAGS
        cd "$work/in"
        "recipe_$name"
    ) >"$log" 2>&1 &
    if ! wait $!; then
        rm -rf "$work"
        tail -n 30 "$log" >&2
        say "Building $name failed: see $log"
        return 1
    fi
    mv -T "$work/out" "$kept"
    rm -rf "$work"
    say "Built $name in $((SECONDS - started)) s"
}

libraries=(libusb hidapi libsodium googletest qt)
exec 9>"$cache/lock" && flock 9
keys=()
for name in "${libraries[@]}"; do
    kept=$cache/$name-$(key_of "$name")
    keys+=("${kept##*/}")
    [ -d "$kept" ] || build "$name" "$kept"
done

# One folder with all libraries, made of links to the same files.
root=$cache/root-$(printf '%s\n' "${keys[@]}" | sha256sum | cut -c1-12)
if [ ! -d "$root" ]; then
    assembled=$(mktemp -d "$cache/building-root.XXXXXX")
    for key in "${keys[@]}"; do
        cp -al "$cache/$key/." "$assembled"
    done
    # The installed files contain the path in which they were built.
    for file in "$assembled"/lib/pkgconfig/*.pc; do
        sed 's|^prefix=.*|prefix=${pcfiledir}/../..|' "$file" >"$file.new" && mv "$file.new" "$file"
    done
    chmod 755 "$assembled"
    mv -T "$assembled" "$root"
fi
ln -sfn "${root##*/}" "$cache/current"
printf '%s\n' "$root"
