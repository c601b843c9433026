#!/usr/bin/env bash
# Compares tests/COVERAGE.md with the existing tests: each fact must name at least one test, each named test must
# exist (and not be disabled), and the numbers at the top must be those of the lines below.
# Needs a build of the preset "test". To test the check itself with other inputs: check-coverage.sh FILE LISTING
set -euo pipefail
cd "$(dirname "$0")/.."
file=${1:-tests/COVERAGE.md}
listing=${2:-}

{ if [ -n "$listing" ]; then cat "$listing"; else ctest --preset test -N; fi; } |
    sed -nE 's/^ *Test +#[0-9]+: ([^#]*[^# ])( +# GetParam.*)?$/\1/p' |
    awk -v file="$file" '
    function complain(text) { print file ":" FNR ": " text > "/dev/stderr"; failed = 1 }
    FILENAME != file { known[$0] = 1; ++tests; next }
    /^Cases: / {
        if (!match($0, /^Cases: [0-9]+\. Proved: [0-9]+\. Not proved yet: [0-9]+\.$/))
            complain("the numbers cannot be read: " $0)
        split($0, said, /[^0-9]+/)
        counted = 1
        next
    }
    /^## / { open = $0 == "## Not proved yet" }
    /^\| (Fact|---)/ || /^\|---/ { next }
    /^\|/ {
        ++proved
        if (open) complain("a proved fact under \"Not proved yet\"")
        if (split($0, cell, / \| /) != 2 || cell[2] !~ / \|$/) {
            complain("this line does not have two columns: " $0)
            next
        }
        if (facts[cell[1]]++) complain("this fact occurs twice: " cell[1])
        named = 0
        names = rest = cell[2]
        gsub(/`[^`]+`/, "", rest)
        if (rest ~ /[^ ,|]/) complain("other text than names of tests: " rest)
        while (match(names, /`[^`]+`/)) {
            name = substr(names, RSTART + 1, RLENGTH - 2)
            names = substr(names, RSTART + RLENGTH)
            ++named
            if (!(name in known)) complain("there is no test " name)
        }
        if (!named) complain("no test is named: " $0)
    }
    /^- / { if (open) ++unproved; else complain("a fact without a test: " $0) }
    END {
        if (!tests) complain("no tests are known: build the preset test first")
        if (!counted) complain("the line with the numbers is missing")
        else if (said[2] != proved + unproved || said[3] != proved + 0 || said[4] != unproved + 0)
            complain("the lines are " proved + unproved ", of which " proved + 0 " are proved and " \
                     unproved + 0 " are not")
        if (!failed) print proved " of " proved + unproved " facts are proved by the tests named."
        exit failed
    }' /dev/stdin "$file"
