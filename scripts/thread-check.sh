#!/usr/bin/env bash
# Runs the tests with the thread sanitizer and prints the number of reports of each kind. Fails if there is a
# report or if a test fails. Arguments are passed to ctest, for example -R NAME.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
libraries=$(scripts/thread-qt.sh)
mkdir -p build
cmake --preset tsan >build/tsan-configure.log 2>&1 || { cat build/tsan-configure.log; exit 1; }
cmake --build --preset tsan

# The sanitizer cannot see the synchronisation in libraries that were built without it, so reports about their
# memory are suppressed. Our code and Qt's Core and Network libraries are checked completely. A process ends at
# its first report: a test fails if its program ends, and prints the output of the program. (With a log_path,
# programs on the simulated bus would not find any device.) By default it would also wait for a second before a process
# ends, in which the program's watchdog ends it by force.
export LD_LIBRARY_PATH=$libraries${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
export TSAN_OPTIONS="ignore_noninstrumented_modules=1:halt_on_error=1:second_deadlock_stack=1:history_size=4"
TSAN_OPTIONS+=":atexit_sleep_ms=0"
TSAN_OPTIONS+=":suppressions=$PWD/cmake/races-of-libraries.supp:print_suppressions=0"

# These tests have the time limits of the shipped program, which is several times as fast.
speed='FiveThousandLinesASecond|WellBelowFiveMilliseconds'
# These run the programs as another user, who does not get the libraries built above.
other_user='DesktopDemoTest.AUserWithoutRights'
log=$PWD/build/tsan/thread-check.log
check=(ctest --preset tsan --exclude-regex "$speed|$other_user")
count=0
# Runs a check and adds its reports to `count`.
run() { # CTEST ARGUMENT...
    local status=0 reports
    "${check[@]}" --output-log "$log" "$@" || status=$?
    reports=$(grep -a -c '^WARNING: ThreadSanitizer' "$log" || true)
    count=$((count + reports))
    [ "$reports" -eq 0 ] || {
        sed -n 's/^SUMMARY: ThreadSanitizer: //p' "$log" | sed -E 's/:[0-9]+ in / in /' | sort | uniq -c | sort -rn
        echo "in full: $log"
    }
    return "$status"
}
rm -f build/tsan/Testing/Temporary/LastTestsFailed.log
status=0
run --parallel "$((3 * $(nproc)))" "$@" || status=$?
# The copy of a program that becomes another program hangs if a different thread held a lock of the sanitizer while
# it was made. The test then fails without a report, and is run once more.
again=$(scripts/failed-tests.sh build/tsan)
if [ "$status" -ne 0 ] && [ "$count" -eq 0 ] && [ -n "$again" ]; then
    printf '\nOnce more, alone:\n'
    status=0
    run --tests-regex "$again" || status=$?
    [ "$status" -ne 0 ] || printf '\nPassed only when run once more: %s\n' "$again"
fi
printf '\n%5d  reports of the thread sanitizer\n' "$count"
[ "$count" -eq 0 ] || status=1
exit "$status"
