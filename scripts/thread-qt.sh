#!/usr/bin/env bash
# Builds Qt's Core and Network libraries with the thread sanitizer, from the distribution's sources of the
# installed version, in a cache folder outside the repository, and prints the folder of the two libraries. They
# replace the installed ones in the thread check only: without them the sanitizer cannot see how Qt passes data
# between threads and reports false races. The first build takes about ten minutes. QUILLMARSH_THREAD_QT_CACHE
# sets another cache folder.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts=$PWD/scripts
cache=${QUILLMARSH_THREAD_QT_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/quillmarsh-tsan-qt}
jobs=${QUILLMARSH_JOBS:-$(nproc)}
installed=$(dpkg-query -W -f='${source:Version}' libqt5core5a)
build=$cache/build-$installed

if [ ! -e "$build/.done" ]; then
    "$scripts/install-dependencies.sh" dpkg-dev libdouble-conversion-dev libglib2.0-dev libicu-dev \
        libpcre2-dev libssl-dev libzstd-dev qt5-qmake-bin qtbase5-dev-tools zlib1g-dev >&2
    source=$("$scripts/fetch-source.sh" qtbase-opensource-src "$cache")
    fetched=$(dpkg-parsechangelog -l "$source/debian/changelog" -S Version)
    if [ "$fetched" != "$installed" ]; then
        echo "Qt $installed is installed, but the source is that of $fetched: upgrade the packages first." >&2
        exit 1
    fi
    mkdir -p "$build"
    cd "$build"
    multiarch=$(dpkg-architecture -qDEB_HOST_MULTIARCH)
    ccache=()
    ! command -v ccache >/dev/null || ccache=(-ccache)
    if [ ! -e .configured ]; then
        # With the folders of the installed Qt, in which the plugins are found.
        MAKEFLAGS=-j$jobs "$source/configure" -opensource -confirm-license -silent -release -shared \
            -sanitize thread "${ccache[@]}" -platform linux-g++ \
            -prefix /usr -libdir "/usr/lib/$multiarch" -archdatadir "/usr/lib/$multiarch/qt5" \
            -plugindir "/usr/lib/$multiarch/qt5/plugins" -datadir /usr/share/qt5 \
            -translationdir /usr/share/qt5/translations -sysconfdir /etc/xdg \
            -icu -glib -system-zlib -system-pcre -system-doubleconversion -openssl \
            -no-rpath -no-strip -no-mimetype-database -no-feature-relocatable -no-pch \
            -no-gui -no-widgets -no-dbus -no-feature-sql -no-feature-testlib -no-feature-concurrent \
            -no-feature-xml -nomake examples -nomake tests QMAKE_CXXFLAGS_RELEASE+=-g1 >&2
        make -s -j"$jobs" sub-src-qmake_all >&2
        # Uses the installed tools; building them would take as long as one of the libraries.
        for tool in moc rcc; do
            ln -sf "/usr/lib/qt5/bin/$tool" bin/
        done
        # With little optimisation the sanitizer's stack traces are better and the build is faster.
        sed -i '/^C\(XX\)\?FLAGS /{s/-O[23]/-O1/}' src/corelib/Makefile src/network/Makefile
        touch .configured
    fi
    for library in corelib network; do
        make -s -j"$jobs" -C "src/$library" >&2
    done
    touch .done
fi
printf '%s\n' "$build/lib"
