#!/usr/bin/env bash
# AnalyseTest.sh CASE: one test of scripts/analyse.sh on a project of its own, a module with two sources, one of
# which includes a header.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
export XDG_CACHE_HOME=$stage/cache
unset CPATH CPLUS_INCLUDE_PATH

make_project() { # FOLDER
    mkdir -p "$1"/{scripts,cmake,module}
    cp "$project/scripts/analyse.sh" "$1/scripts"
    cp "$project/cmake/print-modules.cmake" "$1/cmake"
    cat >"$1/cmake/ModuleList.cmake" <<'END'
set(QUILLMARSH_MODULES module)
set(QUILLMARSH_PRODUCT_MODULES module)
set(QUILLMARSH_MAY_INCLUDE_module module)
END
    cat >"$1/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.24)
project(analysed LANGUAGES CXX)
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_EXTENSIONS OFF)
add_library(module STATIC module/Alone.cpp module/Including.cpp)
target_include_directories(module PRIVATE "${PROJECT_SOURCE_DIR}")
target_compile_definitions(module PRIVATE NAME="of two words")
END
    cat >"$1/CMakePresets.json" <<'END'
{
  "version": 5,
  "configurePresets": [
    {
      "name": "test",
      "generator": "Ninja",
      "binaryDir": "${sourceDir}/build",
      "cacheVariables": { "CMAKE_EXPORT_COMPILE_COMMANDS": "ON" }
    }
  ]
}
END
    printf '%s\n' "Checks: '-*,modernize-use-nullptr'" "WarningsAsErrors: '*'" "HeaderFilterRegex: '.*'" \
        >"$1/.clang-tidy"
    echo /build/ >"$1/.gitignore"
    echo '#pragma once' >"$1/module/Included.h"
    printf '%s\n' '#include "module/Included.h"' 'const char *name() { return NAME; }' >"$1/module/Including.cpp"
    echo 'int *alone() { return nullptr; }' >"$1/module/Alone.cpp"
    git init -q "$1"
}
fail() {
    echo "$*" >&2
    cat "$stage/said" >&2 || true
    exit 1
}
analyse() { "$folder/scripts/analyse.sh" >"$stage/said" 2>&1; }
passes_with() { # HOW MANY ARE ANALYSED
    analyse || fail 'it did not pass'
    grep -qF "of 2 sources found nothing; $1 of them were analysed" "$stage/said" || fail "it did not analyse $1"
}
finds() { # WHERE
    if analyse; then fail 'it passed'; fi
    grep -qF "$1" "$stage/said" || fail "it did not name $1"
}
folder=$stage/first
make_project "$folder"

AFindingFailsAndIsPrintedEachTime() {
    echo 'int *alone() { return 0; }' >"$folder/module/Alone.cpp"
    finds 'module/Alone.cpp:1:23: error: use nullptr'
    finds 'module/Alone.cpp:1:23: error: use nullptr'
    echo 'int *alone() { return nullptr; }' >"$folder/module/Alone.cpp"
    # The other one was clean before.
    passes_with 1
}

WhatWasCleanIsNotAnalysedAgain() {
    passes_with 2
    passes_with 0
}

AChangedSourceIsAnalysedAgain() {
    passes_with 2
    echo 'int *another() { return 0; }' >>"$folder/module/Alone.cpp"
    finds 'module/Alone.cpp:2:'
}

AChangedHeaderIsAnalysedAgainInWhatIncludesIt() {
    passes_with 2
    echo 'inline int one() { return 1; }' >>"$folder/module/Included.h"
    passes_with 1
    echo 'inline int *none() { return 0; }' >>"$folder/module/Included.h"
    finds 'module/Included.h:3:'
}

ACommentThatSilencedAFindingIsMissed() {
    echo 'int *alone() { return 0; } // NOLINT' >"$folder/module/Alone.cpp"
    passes_with 2
    echo 'int *alone() { return 0; }' >"$folder/module/Alone.cpp"
    finds 'module/Alone.cpp:1:'
}

AChangedMacroThatNobodyUsesIsAnalysedAgain() {
    passes_with 2
    echo '#define NOBODY 1' >>"$folder/module/Included.h"
    passes_with 1
}

AChangedConfigurationAnalysesEverythingAgain() {
    passes_with 2
    sed -i "s/nullptr'/nullptr,modernize-use-override'/" "$folder/.clang-tidy"
    passes_with 2
    sed -i "s/nullptr/trailing-return-type/" "$folder/.clang-tidy"
    finds 'module/Alone.cpp:1:'
}

AChangedArgumentOfTheCompilerAnalysesItsSourcesAgain() {
    passes_with 2
    echo 'set_source_files_properties(module/Alone.cpp PROPERTIES COMPILE_OPTIONS -fno-exceptions)' \
        >>"$folder/CMakeLists.txt"
    passes_with 1
}

AnotherVersionOfTheToolAnalysesEverythingAgain() {
    passes_with 2
    mkdir "$stage/bin"
    printf '#!/bin/sh\n[ "$1" != --version ] || { echo "another version"; exit 0; }\nexec "%s" "$@"\n' \
        "$(command -v clang-tidy)" >"$stage/bin/clang-tidy"
    chmod +x "$stage/bin/clang-tidy"
    PATH=$stage/bin:$PATH passes_with 2
}

AnotherFolderWithTheSameSourcesHasNothingToAnalyse() {
    passes_with 2
    folder=$stage/second
    make_project "$folder"
    passes_with 0
}

WhatHasNotBeenNeededForAMonthIsForgotten() {
    passes_with 2
    find "$XDG_CACHE_HOME" -type f -exec touch -d '20 days ago' {} +
    passes_with 0
    [ -z "$(find "$XDG_CACHE_HOME" -type f -mtime +1)" ] || fail 'what was needed keeps its age'
    find "$XDG_CACHE_HOME" -type f -exec touch -d '40 days ago' {} +
    passes_with 2
}

ASourceThatCannotBeCompiledFails() {
    echo '#include "module/Missing.h"' >"$folder/module/Alone.cpp"
    finds 'module/Alone.cpp:1:'
    finds 'module/Alone.cpp:1:'
}

"$1"
