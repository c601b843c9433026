#!/usr/bin/env bash
# PackageTrustTest.sh CASE: what shows that a package is the maker's, tried on small packages with a key and a
# certificate authority of the test's own.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
export SOURCE_DATE_EPOCH=1700000000
packages=$stage/packages
mkdir -p "$packages" "$stage/content/qmake" "$stage/content/licences"
fail() { echo "$*" >&2; cat "$stage/said" >&2 || true; exit 1; }

# A Windows program, as small as can be.
make_program() { # FILE
    echo 'int start(void) { return 0; }' | gcc -ffreestanding -fno-stack-protector -x c -c - -o "$stage/program.o"
    objcopy --remove-section .comment "$stage/program.o"
    ld -m i386pep --subsystem console -e start "$stage/program.o" -o "$1" 2>"$stage/said"
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
    minisign -G -W -f -p "$stage/maker.pub" -s "$stage/maker.sec" >"$stage/said"
    minisign -G -W -f -p "$stage/stranger.pub" -s "$stage/stranger.sec" >"$stage/said"
}
agrees() { "$project/scripts/check-spdx.sh" "$packages/"*.spdx.json "$stage/content" >"$stage/said" 2>&1; }

EachCheckOfTheGuideRefusesAPackageWithOneByteChanged() {
    make_keys
    make_packages
    "$project/scripts/sign-sums.sh" "$stage/maker.sec" "$packages" >"$stage/said"
    "$project/scripts/check-trust.sh" "$packages" "$stage/maker.pub"
}
SumsSignedByAStrangerAreRefused() {
    make_keys
    make_packages
    "$project/scripts/sign-sums.sh" "$stage/stranger.sec" "$packages" >"$stage/said"
    cd "$packages"
    if minisign -Vm SHA256SUMS -p "$stage/maker.pub" >"$stage/said" 2>&1; then fail 'they were accepted'; fi
    minisign -Vm SHA256SUMS -p "$stage/stranger.pub" >"$stage/said" 2>&1 || fail 'they were not signed'
}
EachPackageAndEachListIsAmongTheSums() {
    make_keys
    make_packages
    "$project/scripts/sign-sums.sh" "$stage/maker.sec" "$packages" >"$stage/said"
    for file in "$packages"/quillmarsh*; do
        grep -qF "  ${file##*/}" "$packages/SHA256SUMS" || fail "$file is missing"
    done
    [ "$(wc -l <"$packages/SHA256SUMS")" -eq 2 ] || fail 'there are others'
}
ASignedProgramIsTheMakersAndNoChangedOneIs() {
    "$project/tests/packaging/make-signing-certificates.sh" "$stage"
    export QUILLMARSH_SIGN_PASSWORD_FILE=$stage/password
    make_program "$stage/program.exe"
    local verify=(osslsigncode verify -CAfile "$stage/ca.pem" -in)
    if "${verify[@]}" "$stage/program.exe" >"$stage/said" 2>&1; then fail 'one without a signature was accepted'; fi
    cp "$stage/program.exe" "$stage/strange.exe"
    "$project/scripts/windows/sign.sh" "$stage/maker.p12" "$stage/program.exe" 2>"$stage/said"
    "${verify[@]}" "$stage/program.exe" >"$stage/said" 2>&1 || fail 'it was refused'
    "$project/scripts/windows/sign.sh" "$stage/stranger.p12" "$stage/strange.exe" 2>"$stage/said"
    if "${verify[@]}" "$stage/strange.exe" >"$stage/said" 2>&1; then fail "a stranger's signature was accepted"; fi
    # A byte of its code.
    printf 'x' | dd of="$stage/program.exe" bs=1 seek=1024 conv=notrunc status=none
    if "${verify[@]}" "$stage/program.exe" >"$stage/said" 2>&1; then fail 'a changed one was accepted'; fi
}
AListNamesEachFileWithItsComponentVersionAndLicence() {
    make_packages
    agrees || fail 'it does not agree with what it was made of'
    local list=$packages/quillmarsh-1.0.0-windows-x64.spdx.json
    [ "$(jq '.files | length' "$list")" -eq 3 ] || fail 'the number of files'
    [ "$(jq -r '.packages[] | "\(.name) \(.versionInfo) \(.licenseConcluded)"' "$list")" = 'quillmarsh 1.0.0 MIT' ] ||
        fail "the components: $(jq .packages "$list")"
    [ "$(jq -r .creationInfo.created "$list")" = 2023-11-14T22:13:20Z ] || fail 'the date'
}
AListRefusesAnotherFileAMissingOneAndAChangedOne() {
    make_packages
    agrees || fail 'it does not agree with what it was made of'
    echo more >"$stage/content/licences/other.txt"
    if agrees; then fail 'a further file was accepted'; fi
    rm "$stage/content/licences/other.txt"
    echo '{ }' >"$stage/content/qmake/ControlDevList.json"
    if agrees; then fail 'a changed file was accepted'; fi
    rm "$stage/content/qmake/ControlDevList.json"
    if agrees; then fail 'a missing file was accepted'; fi
}
AFileOfNoComponentStopsTheList() {
    make_packages
    echo code >"$stage/content/unheard-of.dll"
    if make_list name >"$stage/said" 2>&1; then fail 'there is a list'; fi
    grep -q 'unheard-of.dll belongs to no component' "$stage/said" || fail 'the reason is another'
}

"$1"
