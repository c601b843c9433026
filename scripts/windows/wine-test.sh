#!/usr/bin/env bash
# Runs a Windows program as wine.sh does, and prints what it printed when it has ended. Whoever reads
# that would otherwise wait for everybody who holds the stream, and of a console program that was
# killed while it started, Wine leaves its console behind.
set -euo pipefail
output=$(mktemp)
trap 'rm -f "$output"' EXIT
status=0
"$(dirname "$0")/wine.sh" "$@" </dev/null >"$output" 2>&1 || status=$?
cat "$output"
exit "$status"
