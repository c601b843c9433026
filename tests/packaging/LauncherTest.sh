#!/bin/sh
# LauncherTest.sh LAUNCHER CASE: runs one test of the launcher in a temporary folder, the stage. The program is
# replaced by a script that records how it was started.
set -eu

stage=$(mktemp -d)
trap 'chmod -R u+w "$stage"; rm -rf "$stage"' EXIT
launcher=$stage/bin/quillmarsh
mkdir -p "$stage/bin" "$stage/lib/quillmarsh/tools" "$stage/local/lib/quillmarsh" "$stage/etc/quillmarsh"
sed "s|@STAGE@|$stage|g" "$1" >"$launcher"
chmod +x "$launcher"
echo shipped >"$stage/etc/quillmarsh/ControlDevList.json"

# A name that a shell would split and expand, with characters outside the locale's encoding.
HOME="$stage/home of 用户 \$x"
mkdir "$HOME"
export HOME
unset XDG_CACHE_HOME XDG_DATA_HOME TMPDIR
beside=$HOME/.cache/quillmarsh
own=$HOME/.local/share/quillmarsh

install_program() { # TEXT: what its script ends with
    rm -f "$stage/lib/quillmarsh/quillmarsh"
    cat >"$stage/lib/quillmarsh/quillmarsh" <<END
#!/bin/sh
printf '%s\n' "\$0" "\$PWD" "\$TMPDIR" "\$\$" "\$#" "\$@" >"$stage/recorded"
$1
END
    chmod 755 "$stage/lib/quillmarsh/quillmarsh"
}
recorded() { sed -n "$1p" "$stage/recorded"; }
fail() {
    echo "$*" >&2
    exit 1
}
equal() { # WHAT GOT EXPECTED
    [ "$2" = "$3" ] || fail "$1: '$2', not '$3'"
}
wait_for() { # FILE
    tries=0
    until [ -s "$1" ]; do
        tries=$((tries + 1))
        [ $tries -lt 500 ] || fail "$1 did not appear"
        sleep 0.02
    done
}
install_program 'exit 0'

TheProgramRunsFromACopyInAFolderThatItMayWriteTo() {
    "$launcher"
    equal program "$(recorded 1)" "$beside/quillmarsh"
    [ ! -L "$beside/quillmarsh" ] || fail "the program is a link"
    cmp "$beside/quillmarsh" "$stage/lib/quillmarsh/quillmarsh"
    equal "files beside it" "$(ls "$beside")" "$(printf 'qmake\nquillmarsh\ntmp')"
    touch "$beside/qmake/dev.jn"
}

ItsWorkingFolderBelongsToTheUser() {
    cd /
    "$launcher"
    equal "working folder" "$(recorded 2)" "$own"
    equal "files in it" "$(ls -A "$own")" ""
}

ArgumentsArePassedOnUnchanged() {
    "$launcher" TessilonixUpDate "Dev Mac" "" '$HOME *'
    equal count "$(recorded 5)" 4
    equal arguments "$(sed -n '6,$p' "$stage/recorded")" "$(printf '%s\n' TessilonixUpDate 'Dev Mac' '' '$HOME *')"
}

TheExitCodeIsPassedOn() {
    install_program 'exit 7'
    code=0
    "$launcher" || code=$?
    equal "exit code" "$code" 7
}

TheProgramReplacesTheLauncherSoThatSignalsReachIt() {
    install_program 'trap "exit 9" TERM; while :; do sleep 0.02; done'
    "$launcher" &
    wait_for "$stage/recorded"
    equal "process id" "$(recorded 4)" $!
    kill -TERM $!
    code=0
    wait $! || code=$?
    equal "exit code" "$code" 9
}

ANewProgramReplacesTheCopyEvenWhileTheOldOneRuns() {
    install_program 'trap "exit 9" TERM; while :; do sleep 0.02; done # old'
    "$launcher" &
    wait_for "$stage/recorded"
    install_program 'exit 3'
    code=0
    "$launcher" || code=$?
    kill -TERM $!
    equal "exit code of the new one" "$code" 3
    wait $! || true
    equal "files beside it" "$(ls "$beside")" "$(printf 'qmake\nquillmarsh\ntmp')"
}

TheSameProgramIsNotCopiedAgain() {
    "$launcher"
    before=$(stat -c %i,%Y "$beside/quillmarsh")
    "$launcher"
    equal copy "$(stat -c %i,%Y "$beside/quillmarsh")" "$before"
}

TheControlListIsTheSystemsUntilTheUserHasOne() {
    "$launcher"
    equal list "$(cat "$beside/qmake/ControlDevList.json")" shipped
    echo changed >"$stage/etc/quillmarsh/ControlDevList.json"
    equal list "$(cat "$beside/qmake/ControlDevList.json")" changed
    echo mine >"$own/ControlDevList.json"
    "$launcher"
    equal list "$(cat "$beside/qmake/ControlDevList.json")" mine
    rm "$own/ControlDevList.json"
    "$launcher"
    equal list "$(cat "$beside/qmake/ControlDevList.json")" changed
}

TheMakersToolsAreFoundInTheUsersFolderFirst() {
    echo package >"$stage/lib/quillmarsh/tools/upgcmd.exe"
    echo package >"$stage/lib/quillmarsh/tools/upgcmdHid.exe"
    echo local >"$stage/local/lib/quillmarsh/upgcmdHid.exe"
    echo local >"$stage/local/lib/quillmarsh/IAP_Programmer.exe"
    "$launcher"
    equal tools "$(cd "$beside" && cat upgcmd.exe upgcmdHid.exe IAP_Programmer.exe)" \
        "$(printf 'package\nlocal\nlocal')"
    for tool in upgcmd.exe IAP_Programmer.exe; do
        echo mine >"$own/$tool"
    done
    "$launcher"
    equal tools "$(cd "$beside" && cat upgcmd.exe upgcmdHid.exe IAP_Programmer.exe)" "$(printf 'mine\nlocal\nmine')"
    rm "$own/IAP_Programmer.exe" "$stage/local/lib/quillmarsh/upgcmdHid.exe" "$stage/local/lib/quillmarsh/IAP_Programmer.exe"
    "$launcher"
    equal tools "$(cd "$beside" && cat upgcmd.exe upgcmdHid.exe)" "$(printf 'mine\npackage')"
    [ ! -L "$beside/IAP_Programmer.exe" ] || fail "the link to a tool that went away is left"
}

TemporaryFilesGoToTheUsersFolderWhateverTMPDIRIs() {
    "$launcher"
    equal TMPDIR "$(recorded 3)" "$beside/tmp"
    [ -d "$beside/tmp" ] || fail "$beside/tmp is missing"
    TMPDIR=$stage "$launcher"
    equal TMPDIR "$(recorded 3)" "$beside/tmp"
}

OnlyTheUserMayEnterTheFolderForTemporaryFiles() {
    (umask 0 && "$launcher")
    equal mode "$(stat -c %a "$beside/tmp")" 700
    chmod 777 "$beside/tmp"
    "$launcher"
    equal mode "$(stat -c %a "$beside/tmp")" 700
}

ALinkIsNotUsedAsTheFolderForTemporaryFiles() {
    mkdir -p "$beside"
    ln -s "$stage" "$beside/tmp"
    code=0
    "$launcher" 2>"$stage/errors" || code=$?
    equal "exit code" "$code" 1
    grep -qF "quillmarsh: $beside/tmp is a link" "$stage/errors" || fail "$(cat "$stage/errors")"
    [ ! -e "$stage/recorded" ] || fail "the program was started"
}

TheBaseFoldersOfTheEnvironmentAreUsedIfTheyAreAbsolute() {
    XDG_CACHE_HOME="$stage/c c" XDG_DATA_HOME="$stage/d d" "$launcher"
    equal program "$(recorded 1)" "$stage/c c/quillmarsh/quillmarsh"
    equal "working folder" "$(recorded 2)" "$stage/d d/quillmarsh"
    XDG_CACHE_HOME=relative XDG_DATA_HOME=relative "$launcher"
    equal program "$(recorded 1)" "$beside/quillmarsh"
}

AFolderThatCannotBeMadeIsReportedAndNothingIsStarted() {
    : >"$HOME/.cache"
    code=0
    "$launcher" 2>"$stage/errors" || code=$?
    equal "exit code" "$code" 1
    grep -qF "quillmarsh: cannot write $beside" "$stage/errors" || fail "$(cat "$stage/errors")"
    [ ! -e "$stage/recorded" ] || fail "the program was started"
}

AProgramThatCannotBeCopiedIsReportedAndLeavesNothing() {
    rm "$stage/lib/quillmarsh/quillmarsh"
    code=0
    "$launcher" 2>"$stage/errors" || code=$?
    equal "exit code" "$code" 1
    grep -qF "quillmarsh: cannot copy" "$stage/errors" || fail "$(cat "$stage/errors")"
    equal "files beside it" "$(ls "$beside")" "$(printf 'qmake\ntmp')"
}

AFullDiskIsReportedAndLeavesNoPartialCopy() {
    code=0
    output=$(ulimit -f 0 && "$launcher" 2>&1) || code=$?
    equal "exit code" "$code" 1
    case $output in *"quillmarsh: cannot copy"*) ;; *) fail "$output" ;; esac
    equal "files beside it" "$(ls "$beside")" "$(printf 'qmake\ntmp')"
}

"$2"
