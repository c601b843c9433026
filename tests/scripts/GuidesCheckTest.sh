#!/usr/bin/env bash
# GuidesCheckTest.sh CASE: one test of scripts/check-guides.sh on a copy of the project with one thing changed.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT

git -C "$project" ls-files -z --cached --others --exclude-standard |
    (cd "$project" && xargs -0 sh -c 'for file; do [ ! -e "$file" ] || printf "%s\0" "$file"; done' sh) |
    tar -C "$project" --null -T - -c | tar -x -C "$stage"
cd "$stage"
git init -q

fail() {
    echo "$*" >&2
    cat said >&2 || true
    exit 1
}
changed() { # FILE PERL: the file has to change, or the case tests nothing
    cp "$1" before
    perl -0pi -e "$2" "$1"
    ! cmp -s "$1" before || fail "$1 is as it was"
    rm before
}
finds() { # TEXT [HOW MANY COMPLAINTS]: there may be no others, or the change might not be what it found
    ! scripts/check-guides.sh >said 2>&1 || fail 'it passed'
    grep -qF -- "$1" said || fail "it did not say: $1"
    [ "$(grep -cvE "^(The |Further documentation| - MD|$)" said)" -eq "${2:-1}" ] || fail "it did not say ${2:-1} things"
}

WithoutAChangeItPasses() {
    scripts/check-guides.sh >said 2>&1 || fail 'it did not pass'
}
ALinkToNowhereIsFound() {
    changed README.md 's/docs\/support\.md\)/docs\/suport.md)/'
    finds 'there is no docs/suport.md'
}
AnAnchorToNowhereIsFound() {
    changed docs/makers.md 's/## Intentional quirks/## Quirks/'
    finds 'docs/makers.md has no heading for #intentional-quirks'
}
ANamedFileThatIsGoneIsFound() {
    git mv -f devices/models/ModelIds.inc devices/Ids.inc 2>/dev/null || mv devices/models/ModelIds.inc devices/Ids.inc
    finds 'docs/makers.md:10: there is no devices/models/ModelIds.inc' 3
}
ARowWithTooManyCellsIsFound() {
    changed docs/companions.md 's/ZN58\\\|Tessilonix/ZN58|Tessilonix/'
    finds '3 cells under a head of 2'
}
ATableWithoutABlankLineBeforeItIsFound() {
    changed docs/companions.md 's/needs these:\n\n/needs these:\n/'
    finds 'a table needs a blank line before it'
}
WhatTheLinterMindsIsFound() {
    changed README.md 's/## quillmarsh-cli/#### quillmarsh-cli/'
    finds 'MD001'
}
AScriptThatIsNotListedIsFound() {
    echo '#!/bin/sh' >scripts/new.sh
    finds 'the table "Script" lacks `scripts/new.sh`'
}
AListedScriptThatIsGoneIsFound() {
    rm scripts/pause-check.sh
    finds 'the table "Script" names `scripts/pause-check.sh`' 2
}
AScriptInTheReadmeIsFound() {
    changed README.md 's/scripts\/test\.sh/scripts\/fuzz.sh/'
    finds 'README.md names ./scripts/fuzz.sh'
}
APresetThatIsNotListedIsFound() {
    changed CMakePresets.json 's/"configurePresets": \[/$&\{"name": "new"},/'
    finds 'the table "Preset" lacks `new`'
}
AFaultThatIsNotListedIsFound() {
    changed simulator/server/ServerFault.cpp 's/\{"404", "",/{"410", "",/'
    finds 'the table "Fault" lacks `410`' 2
    grep -qF 'names `404`, which' said || fail 'the old one is not missed'
}
AStepOfTheStandInThatIsNotListedIsFound() {
    changed simulator/standin/ScriptPlayer.cpp 's/contains\("hang"\)/contains("wait")/'
    finds 'the table "Step" lacks `wait`' 2
}
ARequestOfTheBusThatIsNotListedIsFound() {
    changed simulator/bus/BusServer.cpp 's/operation == QLatin1String\("state"\)/operation == QLatin1String("status")/'
    finds 'the table "Request" lacks `status`' 2
}
AnOperationOfTheProbeThatIsNotListedIsFound() {
    changed harness/probe/ProbeRequestHandler.cpp 's/operation == QLatin1String\("tree"\)/operation == QLatin1String("wood")/'
    finds 'the table "Operation" lacks `wood`' 2
}
AModuleThatMayIncludeMoreIsFoundAndItsGraphDrawnAnew() {
    changed cmake/ModuleList.cmake 's/declare_module\(driver PRODUCT MAY_INCLUDE support/$& session/'
    finds 'docs/architecture.md: driver/ may include: support, session' 2
    grep -qF 'the graph of the modules is out of date' said || fail 'the old graph passed'
    changed docs/architecture.md 's/(`driver\/`.*) support \|/$1 support, session |/'
    scripts/guides/check-lists.py --write >said 2>&1 || fail 'the graph was not drawn'
    grep -qF 'driver --> session' docs/architecture.md || fail 'the graph lacks the new arrow'
    WithoutAChangeItPasses
}
AVariableThatIsGoneIsFound() {
    local gone=QUILLMARSH_
    gone+=GONE # in two parts, or this script would use it
    changed harness/README.md "s/QUILLMARSH_NO_NAMESPACE/$gone/"
    finds "harness/README.md: nothing uses $gone"
}
AThreadThatIsNotListedIsFound() {
    echo 'void f() { std::thread([] {}).detach(); }' >support/Wanderer_win.cpp
    finds 'the section on threads lacks `Wanderer`'
}
AFunctionThatIsGoneIsFound() {
    changed docs/architecture.md 's/readFlasherChunk\(\)`/readFlasherPiece()`/'
    finds 'docs/architecture.md: no source has readFlasherPiece()'
}
AVersionThatIsNotEverywhereIsFound() {
    changed CMakeLists.txt 's/VERSION [\d.]+ LANGUAGES/VERSION 9.9.9 LANGUAGES/'
    finds 'CHANGELOG.md names' 7
}
ALineThatSupportCannotLookUpIsFound() {
    changed update/UpdateWorkflow.cpp 's/"try to bootloader\.\.\."/"a line that nobody knows"/'
    finds 'docs/support.md does not explain "a line that nobody knows"'
}

"$1"
