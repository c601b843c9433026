#!/usr/bin/env bash
# Builds everything with warnings as errors and runs all tests. Installs the required packages first.
set -euo pipefail
cd "$(dirname "$0")/.."

step() { printf '\n== %s\n' "$*"; }

step 'Tools and libraries'
scripts/install-dependencies.sh

step 'Formatting'
git ls-files -z --cached --others --exclude-standard -- '*.cpp' '*.h' | xargs -0 clang-format --dry-run --Werror

step 'Structure'
scripts/check-structure.sh

step 'Build'
cmake --preset test
cmake --build --preset test

step 'Facts and their tests'
scripts/check-coverage.sh

step 'Tests'
# Six for each processor: most tests spend most of their time waiting.
ctest --preset test --parallel "$((6 * $(nproc)))" || {
    step 'What the failed tests print when they run once more, alone'
    ctest --preset test --rerun-failed --output-on-failure | tail -n 100
    exit 1
}

step 'Static analysis'
scripts/analyse.sh

step 'Fuzzing, for a moment'
scripts/fuzz.sh 5

step 'The product itself'
cmake --preset release
cmake --build --preset release
scripts/check-server-address.sh build/release/bin/quillmarsh
