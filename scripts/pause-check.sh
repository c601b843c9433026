#!/usr/bin/env bash
# Runs the tests with pauses: every 10 to 20 seconds all processes of the run are stopped for three to five
# seconds. Fails if a run fails or was too short for a pause.
#
# scripts/pause-check.sh [RUNS] [-- CTEST ARGUMENTS]
#
# For example: scripts/pause-check.sh 3 -- -R 'Close|LogLoad'
# The tests must have been built. Needs process namespaces: run it as root, or on a system that allows user
# namespaces.
set -euo pipefail
cd "$(dirname "$0")/.."
self=$PWD/scripts/$(basename "$0")

# Everything from here to the check runs as the first process of a separate namespace, in which a signal to all
# processes reaches only those of the run.
if [ "${1-}" = --inside ]; then
    outside=$2
    shift 2
    if [ "$$" -ne 1 ] || [ "$(readlink /proc/self/ns/pid)" = "$outside" ]; then
        echo 'Not in a separate process namespace: no processes are stopped.' >&2
        exit 2
    fi
    log=$1
    private=$2
    shift 2
    # X servers store their process ids in /tmp, and process ids are different outside of the namespace.
    if [[ $PWD/ != /tmp/* ]]; then
        mount --bind "$private" /tmp
    fi
    (
        wait=$((3 + RANDOM % 5))
        while sleep "$wait"; do
            length=$((3000 + RANDOM % 2001))
            at=$SECONDS
            # Does not reach its sender and the first process. Stopped processes cannot start others meanwhile.
            kill -STOP -1
            sleep "$((length / 1000)).$(printf %03d $((length % 1000)))"
            kill -CONT -1
            echo "paused after $at s for $length ms" | tee -a "$log"
            wait=$((10 + RANDOM % 11))
        done
    ) &
    status=0
    ctest --preset test --parallel "$((6 * $(nproc)))" --output-on-failure "$@" </dev/null || status=$?
    # The end of this process ends all processes in the namespace.
    exit "$status"
fi

runs=1
if [[ ${1-} =~ ^[0-9]+$ ]]; then
    runs=$1
    shift
fi
if [ "${1-}" = -- ]; then
    shift
elif [ $# -gt 0 ]; then
    sed -n '2,9s/^# \{0,1\}//p' "$self" >&2
    exit 2
fi

namespace=(unshare --pid --mount-proc --fork --kill-child)
if ! "${namespace[@]}" true 2>/dev/null; then
    namespace=(unshare --user --map-root-user --pid --mount-proc --fork --kill-child)
    if ! "${namespace[@]}" true 2>/dev/null; then
        echo 'pause-check: process namespaces are not allowed: run it as root.' >&2
        exit 2
    fi
fi

private=$(mktemp -d)
chmod 1777 "$private"
pauses=$(mktemp -p build/test)
trap 'rm -rf "$private" "$pauses"' EXIT
failed=0
for ((run = 1; run <= runs; ++run)); do
    : >"$pauses"
    result=passed
    "${namespace[@]}" "$self" --inside "$(readlink /proc/self/ns/pid)" "$pauses" "$private" "$@" || result=failed
    count=$(wc -l <"$pauses")
    [ "$count" -gt 0 ] || result='failed: it was too short for a pause'
    # Tests that depend on a time limit of the program are repeated if they failed because of a pause.
    again=$(grep -c '^\[ PAUSED   \] Once more' build/test/Testing/Temporary/LastTest.log || true)
    echo "run $run of $runs: $result, $count pauses, $again tests run once more"
    grep '^\[ PAUSED   \]' build/test/Testing/Temporary/LastTest.log || true
    [ "$result" = passed ] || failed=1
done
exit "$failed"
