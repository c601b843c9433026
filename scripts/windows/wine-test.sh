#!/usr/bin/env bash
# Runs a Windows program as wine.sh does, and prints what it printed when it has ended. Whoever reads
# that would otherwise wait for everybody who holds the stream, and of a console program that was
# killed while it started, Wine leaves its console behind.
set -euo pipefail
output=$(mktemp)
trap 'rm -f "$output"' EXIT
status=0
"$(dirname "$0")/wine.sh" "$@" </dev/null >"$output" 2>&1 || status=$?
# Now and then, seen once in two thousand starts, it ends at once and without a word. A test that has
# begun has said so, and is not run again.
if [ "$status" -ne 0 ] && [ ! -s "$output" ]; then
    echo "The start came to nothing, with $status; once more."
    status=0
    "$(dirname "$0")/wine.sh" "$@" </dev/null >"$output" 2>&1 || status=$?
fi
cat "$output"
exit "$status"
