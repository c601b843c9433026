#!/usr/bin/env bash
# Runs each fuzzer for a while, starting with the inputs in tests/fuzz/corpus.
# Usage: scripts/fuzz.sh [SECONDS_EACH] [--keep]
# With --keep, inputs that reach new code are added to that folder.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-10}
keep=${2:-}

cmake --preset fuzz >build/fuzz-configure.log 2>&1 || { cat build/fuzz-configure.log; exit 1; }
cmake --build --preset fuzz
for name in manifest control-list flasher-output content-range iap-texts report signature answers; do
    found=build/fuzz/found/$name
    mkdir -p "$found"
    dictionary=()
    [ ! -e "tests/fuzz/$name.dict" ] || dictionary=("-dict=tests/fuzz/$name.dict")
    echo "== $name, $seconds s"
    ASAN_OPTIONS=detect_leaks=0 "build/fuzz/tests/fuzz-$name" -max_total_time="$seconds" -max_len=4096 -verbosity=0 "${dictionary[@]}" \
        -print_final_stats=1 -artifact_prefix="build/fuzz/$name-" "$found" "tests/fuzz/corpus/$name" 2>&1 |
        { grep -E 'ERROR|does not hold|Test unit written|number_of_executed_units|SUMMARY' || true; }
    if [ "$keep" = --keep ]; then
        "build/fuzz/tests/fuzz-$name" -merge=1 "tests/fuzz/corpus/$name" "$found" 2>/dev/null
    fi
done
