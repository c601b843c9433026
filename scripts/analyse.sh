#!/usr/bin/env bash
# Runs clang-tidy over the product's modules. A source that was found clean is not analysed again while
# everything that the result depends on is unchanged. ~/.cache/quillmarsh-analysis holds what has been found
# clean, an empty file for each; remove it to have everything analysed.
set -euo pipefail
cd "$(dirname "$0")/.."

# A configuration of its own, without precompiled headers: each header has to include what it needs.
build=build/analysis
mkdir -p build
cmake --preset test -B "$build" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >build/analysis.log 2>&1 ||
    { cat build/analysis.log; exit 1; }
commands=$build/compile_commands.json

# Only what this build compiles: the other platform's sources have no compile command here.
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
# What has not been needed for a month belongs to a state that is gone.
find "$clean" -type f -mtime +30 -delete
analysed=$(mktemp)
trap 'rm -f "$analysed"' EXIT

here=$(sed 's/[][\.*^$|]/\\&/g' <<<"$PWD")
version=$(clang-tidy --version)
export build commands clean analysed here version

# The compile command of a source as a shell understands it.
command_of() { # SOURCE
    grep -F -B 1 "\"file\": \"$PWD/$1\"" "$commands" |
        sed -nE '/"command": "/ { s/^ *"command": "(.*)",$/\1/; s/\\(.)/\1/g; p; q }'
}
# Names the state of everything that the result of an analysis depends on. The source is there with all that it
# includes, and with its comments and macros, which checks look at as well; the path of this folder is not.
# Fails where the source cannot be read so: then clang-tidy has something to say about it.
key_of() { # SOURCE
    local command arguments
    command=$(command_of "$1")
    # Behind the compiler, and without the output file.
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
    # What clang-tidy counts as suppressed it says for each source; that alone is left out.
    said=$(clang-tidy --quiet -p "$build" "$1" 2>&1) || status=$?
    said=$(grep -vE '^[0-9]+ warnings? generated\.$' <<<"$said" || true)
    [ -z "$said" ] || echo "$said"
    [ "$status" -eq 0 ] || return 1
    [ -n "$key" ] || echo "$1 is analysed each time: clang++ cannot read it as clang-tidy does." >&2
    # Somebody may have changed the source meanwhile.
    if [ -z "$said" ] && [ -n "$key" ] && [ "$(key_of "$1")" = "$key" ]; then
        : >"$clean/$key"
    fi
}
export -f command_of key_of analyse

# A file at a time, so that no processor is left with the long ones.
printf '%s\0' "${sources[@]}" | xargs -0 -P "$(nproc)" -n 1 bash -c 'set -o pipefail; analyse "$1"' analyse
count=$(wc -l <"$analysed")
echo "Static analysis of ${#sources[@]} sources found nothing; $count of them were analysed, the others are unchanged."
