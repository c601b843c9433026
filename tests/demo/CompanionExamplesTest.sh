#!/usr/bin/env bash
# CompanionExamplesTest.sh BUILD_FOLDER CASE: runs an unchanged example of docs/companions.md. The quillmarsh-cli that
# the example finds is a script, which replays the output of the real one.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
build=$1
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT

fail() {
    echo "$*" >&2
    tail -n 60 "$stage/output" "$stage/errors" >&2 || true
    exit 1
}
# Extracts the only block of that language from the guide and checks its length.
take_example() { # LANGUAGE
    [ "$(grep -c "^\`\`\`$1$" "$project/docs/companions.md")" -eq 1 ] || fail "the guide must have exactly one $1 example"
    sed -n "/^\`\`\`$1$/,/^\`\`\`$/{/^\`\`\`/d;p}" "$project/docs/companions.md" >"$stage/example"
    [ -s "$stage/example" ] || fail 'the example is empty'
    [ "$(wc -l <"$stage/example")" -le 40 ] || fail 'the example has more than 40 lines'
    chmod +x "$stage/example"
}
# Makes a quillmarsh-cli that prints the file "replayed", records its arguments and ends with CODE.
replay() { # CODE
    mkdir -p "$stage/bin"
    printf '#!/bin/sh\necho "$*" >>"%s/arguments"\ncat "%s/replayed"\nexit %d\n' "$stage" "$stage" "$1" \
        >"$stage/bin/quillmarsh-cli"
    chmod +x "$stage/bin/quillmarsh-cli"
    : >"$stage/arguments"
}
run_example() { # CODE
    local code=0
    PATH=$stage/bin:$PATH "$stage/example" >"$stage/output" 2>"$stage/errors" </dev/null || code=$?
    [ "$code" -eq "$1" ] || fail "the example ended with $code, not $1"
}
# Expects that the real quillmarsh-cli accepts these arguments of an example.
expect_real_program_accepts() { # ARGUMENT...
    local code=0
    "$build/bin/quillmarsh-cli" "$@" --help >"$stage/output" 2>"$stage/errors" || code=$?
    [ "$code" -eq 0 ] || fail "quillmarsh-cli does not accept: $*"
}

TheShellExampleDistinguishesTheExitCodes() {
    take_example sh
    echo 'The output of the program.' >"$stage/replayed"
    local code
    for code in 0 1 2 3 4 5 6 130; do
        replay "$code"
        run_example "$code"
        sort -u "$stage/output" >>"$stage/answers"
    done
    grep -q '^update --yes --wait 60$' "$stage/arguments" || fail 'it does not update'
    # 2 and 130 have the same answer and 5 shows the output of "check"; the line of the program comes in addition.
    [ "$(sort -u "$stage/answers" | wc -l)" -eq 7 ] || fail "the answers are: $(sort -u "$stage/answers")"
    expect_real_program_accepts update --yes --wait 60
    expect_real_program_accepts check
}
ThePythonExampleShowsTheEventsOfARealUpdate() {
    take_example python
    TMPDIR=$stage "$project/demo/start.sh" "$build" --cli --json >"$stage/replayed" 2>"$stage/errors" \
        </dev/null || fail 'there is no real update to replay'
    replay 0
    run_example 0
    grep -q '^Stage: flashing$' "$stage/output" || fail 'it does not show the stages'
    grep -q '^Progress: 100 %$' "$stage/output" || fail 'it does not show the progress'
    [ "$(tail -n 1 "$stage/output")" = 'Result: succeeded none DevMaa' ] || fail 'it does not show the result'
    # shellcheck disable=SC2046 # several arguments
    expect_real_program_accepts $(cat "$stage/arguments")
}
ThePythonExampleReportsThatThereIsNoDevice() {
    take_example python
    # Record the output of the real program, which finds no device here.
    TMPDIR=$stage "$build/bin/quillmarsh-cli" update --yes --json --model DevMaa >"$stage/replayed" \
        2>"$stage/errors" </dev/null && fail 'a device was found'
    replay 3
    run_example 3
    grep -q '^Result: failed no-device DevMaa$' "$stage/output" || fail 'it does not show the reason'
}
ThePythonExampleNoticesAProgramThatEndsTooSoon() {
    take_example python
    echo '{"event":"hello"}' >"$stage/replayed"
    replay 139
    run_example 1
    grep -q 'without a result' "$stage/errors" || fail 'it does not report that'
}

"$2"
