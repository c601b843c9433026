#!/usr/bin/env bash
# CommandTextsTest.sh PROGRAM CASE: compares quillmarsh-cli's manual page and its completion for bash with --help.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
program=$1
page=$project/packaging/linux/quillmarsh-cli.1
completion=$project/packaging/linux/quillmarsh-cli.bash

fail() {
    echo "$*" >&2
    exit 1
}
# The commands that --help lists, such as "list" and "manifest verify".
mapfile -t commands < <("$program" --help | sed -nE '/^Commands:$/,/^$/s/^  ([a-z]+( [a-z]+)?)  .*/\1/p')
[ "${#commands[@]}" -gt 3 ] || fail "--help lists only: ${commands[*]}"
options_of() { # COMMAND
    # shellcheck disable=SC2086 # "manifest verify" is two words
    "$program" $1 --help | sed -nE 's/^  (--[a-z0-9-]+).*/\1/p' | sort
}
# Prints the completions that are offered for the last of these words.
offered() { # WORD...
    # shellcheck disable=SC1090
    (
        source "$completion"
        COMP_WORDS=(quillmarsh-cli "$@")
        COMP_CWORD=$#
        COMPREPLY=()
        _quillmarsh_cli quillmarsh-cli "${!#}" "${COMP_WORDS[$# - 1]}"
        [ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\n' "${COMPREPLY[@]}" | sort
    )
}

TheManualPageNamesExactlyTheOptionsOfTheHelp() {
    local all named
    all=$(for command in "${commands[@]}"; do options_of "$command"; done | sort -u)
    [ "$(wc -l <<<"$all")" -gt 10 ] || fail "--help names only: $all"
    named=$(sed 's/\\-/-/g' "$page" | grep -oE -- '--[a-z][a-z0-9-]+' | grep -vx -- --version | sort -u)
    [ "$all" = "$named" ] || fail "$(diff <(echo "$all") <(echo "$named"))"
    for command in "${commands[@]}"; do
        grep -qxF ".B quillmarsh-cli $command" "$page" || fail "the synopsis of the manual page does not name $command"
        grep -qxF ".B $command" "$page" || fail "the manual page does not describe $command"
    done
    for code in 0 1 2 3 4 5 6 130; do
        grep -qxF ".B $code" "$page" || fail "the manual page does not explain the exit code $code"
    done
}
CompletionOffersEachCommandAndItsOptions() {
    [ "$(offered '')" = "$(printf '%s\n' "${commands[@]%% *}" | sort)" ] || fail "commands: $(offered '')"
    [ "$(offered manifest '')" = verify ] || fail "manifest: $(offered manifest '')"
    for command in "${commands[@]}"; do
        # shellcheck disable=SC2086
        [ "$(offered $command --)" = "$(options_of "$command")" ] ||
            fail "$command: $(diff <(offered $command --) <(options_of "$command"))"
    done
    [ "$(offered update --w | tr '\n' ' ')" = '--wait --write-type ' ] || fail "--w: $(offered update --w)"
}
CompletionOffersKnownValues() {
    [ "$(offered update --write-type '' | tr '\n' ' ')" = 'hid usb ' ] || fail 'write types'
    [ "$(offered list --lang '' | tr '\n' ' ')" = 'en zh ' ] || fail 'languages'
    [ -z "$(offered update --wait '')" ] || fail 'something is offered for a number'
    cd "$(mktemp -d)"
    touch 'an image.img'
    [ "$(offered update --file an)" = 'an image.img' ] || fail "files: $(offered update --file an)"
    [ "$(offered manifest verify an)" = 'an image.img' ] || fail "manifests: $(offered manifest verify an)"
    [ "$(offered report an)" = 'an image.img' ] || fail "reports: $(offered report an)"
    rm -r "$PWD"
}

"$2"
