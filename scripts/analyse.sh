#!/usr/bin/env bash
# Runs clang-tidy over the product's rooms. Usage: scripts/analyse.sh BUILD_FOLDER
set -euo pipefail
cd "$(dirname "$0")/.."
build=$1

# Only what this build compiles: the other platform's sources have no compile command here.
git ls-files --cached --others --exclude-standard -- {support,widgets,devices,download,update,iap,driver,app}'/*.cpp' |
    while read -r source; do
        grep -q "\"file\": \"$PWD/$source\"" "$build/compile_commands.json" && printf '%s\0' "$source"
    done |
    xargs -0 -P "$(nproc)" -n 4 clang-tidy --quiet -p "$build" 2> >(grep -v 'warnings generated' >&2 || true)
echo 'Static analysis found nothing.'
