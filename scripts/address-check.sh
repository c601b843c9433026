#!/usr/bin/env bash
# Runs the tests, those of the whole programs included, with the address and undefined-behaviour sanitizers. A
# program ends at its first report, so its test fails and prints the report. Fails if there is a report or if a test
# fails. Arguments are passed to ctest, for example -R NAME.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
mkdir -p build
cmake --preset asan >build/asan-configure.log 2>&1 || { cat build/asan-configure.log; exit 1; }
cmake --build --preset asan

export ASAN_OPTIONS=detect_stack_use_after_return=1:check_initialization_order=1
export UBSAN_OPTIONS=print_stacktrace=1
export LSAN_OPTIONS=suppressions=$PWD/cmake/leaks-of-libraries.supp:print_suppressions=0
log=$PWD/build/asan/address-check.log
status=0
ctest --preset asan --parallel "$((3 * $(nproc)))" --output-log "$log" "$@" || status=$?

count=$(grep -a -c -E '^==[0-9]+==ERROR: |: runtime error: ' "$log" || true)
printf '\n%5d  reports of the sanitizers\n' "$count"
[ "$count" -eq 0 ] || {
    grep -a -E '^==[0-9]+==ERROR: |: runtime error: |^SUMMARY: ' "$log" | sort | uniq -c | sort -rn
    echo "in full: $log"
    status=1
}
exit "$status"
