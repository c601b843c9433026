#!/usr/bin/env bash
# Runs clang-tidy on the product's modules. A source without findings is not analysed again as long as nothing
# changes on which the result depends. ~/.cache/quillmarsh-analysis contains an empty file for each such result;
# remove it to analyse everything again.
set -euo pipefail
cd "$(dirname "$0")/.."

# A separate configuration without precompiled headers, because each header must include what it needs.
build=build/analysis
mkdir -p build
cmake --preset test -B "$build" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >build/analysis.log 2>&1 ||
    { cat build/analysis.log; exit 1; }
commands=$build/compile_commands.json

# Only the sources that this build compiles: those for the other platform have no compile command.
sources=()
while IFS= read -r source; do
    if grep -qF "\"file\": \"$PWD/$source\"" "$commands"; then
        sources+=("$source")
    fi
done < <(cmake -P cmake/print-modules.cmake | sed -nE 's/ product:.*/\/*.cpp/p' |
    xargs git ls-files --cached --others --exclude-standard --)
[ "${#sources[@]}" -gt 0 ] || { echo "$commands names none of the product's sources." >&2; exit 1; }

clean=${XDG_CACHE_HOME:-$HOME/.cache}/quillmarsh-analysis
mkdir -p "$clean"
# Results that were not used for a month are out of date.
find "$clean" -type f -mtime +30 -delete
analysed=$(mktemp)
trap 'rm -f "$analysed"' EXIT

here=$(sed 's/[][\.*^$|]/\\&/g' <<<"$PWD")
version=$(clang-tidy --version)
export build commands clean analysed here version

# Prints the compile command of a source for the shell.
command_of() { # SOURCE
    grep -F -B 1 "\"file\": \"$PWD/$1\"" "$commands" |
        sed -nE '/"command": "/ { s/^ *"command": "(.*)",$/\1/; s/\\(.)/\1/g; p; q }'
}
# Prints a hash of everything on which the result of an analysis depends: the source with all its includes,
# comments and macros, which checks examine, too, but not the path of this folder. Fails if the source cannot be
# preprocessed; clang-tidy then reports the error.
key_of() { # SOURCE
    local command arguments
    command=$(command_of "$1")
    # The arguments after the compiler, without the output file.
    arguments=$(sed -E 's/^[^ ]+ //; s/ -o [^ ]+ -c / /' <<<"$command")
    {
        printf '%s\n' "$version" "$command"
        clang-tidy --dump-config "$1" -- &&
            eval "(cd '$build' && clang++ -E -frewrite-includes -w $arguments)" 2>/dev/null
    } | sed "s|$here|.|g" | sha256sum | cut -d ' ' -f 1
}
analyse() { # SOURCE
    local key said status=0
    key=$(key_of "$1") || key=
    if [ -n "$key" ] && [ -e "$clean/$key" ]; then
        touch "$clean/$key"
        return 0
    fi
    echo "$1" >>"$analysed"
    # For each source clang-tidy prints the number of suppressed warnings; only this line is removed.
    said=$(clang-tidy --quiet -p "$build" "$1" 2>&1) || status=$?
    said=$(grep -vE '^[0-9]+ warnings? generated\.$' <<<"$said" || true)
    [ -z "$said" ] || echo "$said"
    [ "$status" -eq 0 ] || return 1
    [ -n "$key" ] || echo "$1 is analysed each time: clang++ cannot read it as clang-tidy does." >&2
    # The source may have changed meanwhile.
    if [ -z "$said" ] && [ -n "$key" ] && [ "$(key_of "$1")" = "$key" ]; then
        : >"$clean/$key"
    fi
}
export -f command_of key_of analyse

# One file at a time, so that the long ones are distributed among the processors.
printf '%s\0' "${sources[@]}" | xargs -0 -P "$(nproc)" -n 1 bash -c 'set -o pipefail; analyse "$1"' analyse
count=$(wc -l <"$analysed")
echo "Static analysis of ${#sources[@]} sources found nothing; $count of them were analysed, the others are unchanged."
