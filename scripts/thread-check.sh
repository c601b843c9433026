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

# Of the libraries that are not built with the sanitizer it sees no synchronisation, so what it would
# say of their own memory is left out: it still watches everything of ours, and of Qt's Core and Network.
# A process ends at its first report: no test passes on a program that vanishes, and each prints what
# its program wrote. (With a log_path, programs on the simulated bus find no device.)
export LD_LIBRARY_PATH=$libraries${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
export TSAN_OPTIONS="ignore_noninstrumented_modules=1:halt_on_error=1:second_deadlock_stack=1"
TSAN_OPTIONS+=":suppressions=$PWD/cmake/races-of-libraries.supp:print_suppressions=0"

# Their limits are those of the program as it is shipped, which runs several times as fast.
speed='FiveThousandLinesASecond|WellBelowFiveMilliseconds'
log=$PWD/build/tsan/thread-check.log
status=0
ctest --preset tsan --parallel "$(nproc)" --exclude-regex "$speed" --output-log "$log" "$@" || status=$?

count=$(grep -a -c '^WARNING: ThreadSanitizer' "$log" || true)
printf '\n%5d  reports of the thread sanitizer\n' "$count"
[ "$count" -eq 0 ] || {
    sed -n 's/^SUMMARY: ThreadSanitizer: //p' "$log" | sed -E 's/:[0-9]+ in / in /' | sort | uniq -c | sort -rn
    echo "in full: $log"
    status=1
}
exit "$status"
