#!/usr/bin/env bash
# PackageTrustTest.sh CASE: tests, with small packages, a key and a certificate authority made for the test, how users
# can check that a package comes from its maker.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
export SOURCE_DATE_EPOCH=1700000000
packages=$stage/packages
mkdir -p "$packages" "$stage/content/qmake" "$stage/content/licences"
fail() { echo "$*" >&2; cat "$stage/output" >&2 || true; exit 1; }

# Makes a minimal Windows program.
make_program() { # FILE
    echo 'int start(void) { return 0; }' | gcc -ffreestanding -fno-stack-protector -x c -c - -o "$stage/program.o"
    objcopy --remove-section .comment "$stage/program.o"
    ld -m i386pep --subsystem console -e start "$stage/program.o" -o "$1" 2>"$stage/output"
}
make_list() { # NAME >LIST
    "$project/scripts/make-spdx.py" windows "$stage/content" "$1" 1.0.0
}
make_packages() {
    local folder
    echo '{}' >"$stage/content/qmake/ControlDevList.json"
    echo terms >"$stage/content/licences/quillmarsh.txt"
    make_program "$stage/content/quillmarsh.exe"
    folder=$stage/zipped/quillmarsh-1.0.0
    mkdir -p "$stage/zipped"
    cp -r "$stage/content" "$folder"
    (cd "$stage/zipped" && python3 -m zipfile -c "$packages/quillmarsh-1.0.0-windows-x64.zip" quillmarsh-1.0.0)
    make_list quillmarsh-1.0.0-windows-x64 >"$packages/quillmarsh-1.0.0-windows-x64.spdx.json"
}
make_keys() {
    minisign -G -W -f -p "$stage/maker.pub" -s "$stage/maker.sec" >"$stage/output"
    minisign -G -W -f -p "$stage/stranger.pub" -s "$stage/stranger.sec" >"$stage/output"
}
agrees() { "$project/scripts/check-spdx.sh" "$packages/"*.spdx.json "$stage/content" >"$stage/output" 2>&1; }

EachCheckOfTheGuideRefusesAPackageWithAChangedByte() {
    make_keys
    make_packages
    "$project/scripts/sign-sums.sh" "$stage/maker.sec" "$packages" >"$stage/output"
    "$project/scripts/check-trust.sh" "$packages" "$stage/maker.pub"
}
SumsSignedByAStrangerAreRefused() {
    make_keys
    make_packages
    "$project/scripts/sign-sums.sh" "$stage/stranger.sec" "$packages" >"$stage/output"
    cd "$packages"
    if minisign -Vm SHA256SUMS -p "$stage/maker.pub" >"$stage/output" 2>&1; then fail 'the sums were accepted'; fi
    minisign -Vm SHA256SUMS -p "$stage/stranger.pub" >"$stage/output" 2>&1 || fail 'the sums were not signed'
}
TheSumsIncludeEachPackageAndEachList() {
    make_keys
    make_packages
    "$project/scripts/sign-sums.sh" "$stage/maker.sec" "$packages" >"$stage/output"
    for file in "$packages"/quillmarsh*; do
        grep -qF "  ${file##*/}" "$packages/SHA256SUMS" || fail "$file is missing"
    done
    [ "$(wc -l <"$packages/SHA256SUMS")" -eq 2 ] || fail 'there are other sums'
}
ASignedProgramIsAcceptedAndAChangedOneIsNot() {
    "$project/tests/packaging/make-signing-certificates.sh" "$stage"
    export QUILLMARSH_SIGN_PASSWORD_FILE=$stage/password
    make_program "$stage/program.exe"
    local verify=(osslsigncode verify -CAfile "$stage/ca.pem" -in)
    if "${verify[@]}" "$stage/program.exe" >"$stage/output" 2>&1; then fail 'a program without a signature was accepted'; fi
    cp "$stage/program.exe" "$stage/strange.exe"
    "$project/scripts/windows/sign.sh" "$stage/maker.p12" "$stage/program.exe" 2>"$stage/output"
    "${verify[@]}" "$stage/program.exe" >"$stage/output" 2>&1 || fail 'the signed program was refused'
    "$project/scripts/windows/sign.sh" "$stage/stranger.p12" "$stage/strange.exe" 2>"$stage/output"
    if "${verify[@]}" "$stage/strange.exe" >"$stage/output" 2>&1; then fail "a stranger's signature was accepted"; fi
    # Change a byte of its code.
    printf 'x' | dd of="$stage/program.exe" bs=1 seek=1024 conv=notrunc status=none
    if "${verify[@]}" "$stage/program.exe" >"$stage/output" 2>&1; then fail 'a changed program was accepted'; fi
}
AListNamesEachFileWithItsComponentVersionAndLicence() {
    make_packages
    agrees || fail 'the list does not agree with the folder that it was made from'
    local list=$packages/quillmarsh-1.0.0-windows-x64.spdx.json
    [ "$(jq '.files | length' "$list")" -eq 3 ] || fail 'the number of files is wrong'
    [ "$(jq -r '.packages[] | "\(.name) \(.versionInfo) \(.licenseConcluded)"' "$list")" = 'quillmarsh 1.0.0 MIT' ] ||
        fail "wrong components: $(jq .packages "$list")"
    [ "$(jq -r .creationInfo.created "$list")" = 2023-11-14T22:13:20Z ] || fail 'the date is wrong'
}
AListRefusesAnAdditionalAMissingAndAChangedFile() {
    make_packages
    agrees || fail 'the list does not agree with the folder that it was made from'
    echo more >"$stage/content/licences/other.txt"
    if agrees; then fail 'an additional file was accepted'; fi
    rm "$stage/content/licences/other.txt"
    echo '{ }' >"$stage/content/qmake/ControlDevList.json"
    if agrees; then fail 'a changed file was accepted'; fi
    rm "$stage/content/qmake/ControlDevList.json"
    if agrees; then fail 'a missing file was accepted'; fi
}
AFileThatBelongsToNoComponentIsAnError() {
    make_packages
    echo code >"$stage/content/unheard-of.dll"
    if make_list name >"$stage/output" 2>&1; then fail 'a list was made'; fi
    grep -q 'unheard-of.dll belongs to no component' "$stage/output" || fail 'another reason was given'
}

"$1"
