#!/usr/bin/env bash
# Runs the tests under the thread sanitizer and prints how many reports came, by what they are about.
# Fails when there is one, or when a test fails. Arguments go to ctest, for instance -R NAME.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
libraries=$(scripts/thread-qt.sh)
mkdir -p build
cmake --preset tsan >build/tsan-configure.log 2>&1 || { cat build/tsan-configure.log; exit 1; }
cmake --build --preset tsan

reports=$PWD/build/tsan/reports
rm -rf "$reports"
mkdir -p "$reports"
# Of the libraries that are not built with the sanitizer it sees no synchronisation, so what it would
# say of their own memory is left out: it still watches everything of ours, and of Qt's Core and Network.
export LD_LIBRARY_PATH=$libraries${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
export TSAN_OPTIONS="ignore_noninstrumented_modules=1:second_deadlock_stack=1:log_path=$reports/report"

status=0
ctest --preset tsan --parallel "$(nproc)" "$@" || status=$?

count=$(cat "$reports"/* 2>/dev/null | grep -c '^WARNING: ThreadSanitizer' || true)
printf '\n%5d  reports of the thread sanitizer\n' "$count"
[ "$count" -eq 0 ] || {
    cat "$reports"/* | sed -n 's/^SUMMARY: ThreadSanitizer: //p' | sed -E 's/:[0-9]+ in / in /' | sort | uniq -c | sort -rn
    echo "in full: $reports"
    status=1
}
exit "$status"
