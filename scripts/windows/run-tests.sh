#!/usr/bin/env bash
# The part of test.sh that is run by in-prefix.sh. Usage: run-tests.sh EXCLUSIONS [CTEST ARGUMENT...]
set -euo pipefail
exclusions=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

ctest --preset test --show-only=json-v1 >"$work/linux.json"
ctest --preset mingw --show-only=json-v1 >"$work/windows.json"
scripts/windows/group-tests.py "$exclusions" "$work/linux.json" "$work/windows.json" "$work"
# Twice as many jobs as processors, because tests mostly wait.
scripts/windows/ctest-under-wine.sh "$work" --parallel "$((2 * $(nproc)))" "$@"
