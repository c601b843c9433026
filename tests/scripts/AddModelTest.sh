#!/usr/bin/env bash
# AddModelTest.sh CASE: one test of docs/firmware-server/add-model.sh, with the real minisign.
set -euo pipefail
project=$(cd "$(dirname "$0")/../.." && pwd)
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
cd "$stage"
export HOME=$stage
folder=root/Tessilonix/firmware
manifest=$folder/firmware-version-check-test.json

fail() {
    echo "$*" >&2
    find root >&2
    exit 1
}
add() { "$project/docs/firmware-server/add-model.sh" "$@"; }
entry() { jq -r --arg model "$1" ".CurrentVersion[\$model].$2" "$manifest"; } # MODEL FIELD
make_key() { minisign -G -W -p "$1.pub" -s "$1.key" >/dev/null; }              # NAME
# What is served, with its content.
served() { find root -type f ! -name .lock -exec sha256sum {} + | sort; }

AnImageIsNamedAfterItsSum() {
    echo first >image.img
    add root https://server DevMaa image.img
    local sum
    sum=$(md5sum <image.img | cut -d ' ' -f 1)
    cmp image.img "$folder/DevMaa-$sum.img"
    [ "$(entry DevMaa md5)" = "$sum" ] || fail 'the sum is wrong'
    [ "$(entry DevMaa fileURL)" = "https://server/Tessilonix/firmware/DevMaa-$sum.img" ] || fail 'the address is wrong'
    [ "$(entry DevMaa signature)" = null ] || fail 'there is a signature'
    [ "$(stat -c %a "$manifest" "$folder"/*.img | sort -u)" = 644 ] || fail 'the server cannot read it'
}

AnEarlierImageKeepsItsNameAndItsContent() {
    echo first >image.img
    add root https://server DevMaa image.img
    served | grep img >before
    echo second >image.img
    add root https://server DevMaa image.img
    served | grep -Fxf before | cmp - before
    [ "$(find "$folder" -name '*.img' | wc -l)" = 2 ] || fail 'there are not two images'
}

ASignedImageHasASignatureForItsModelInTheManifestAndBesideIt() {
    make_key own
    echo image >image.bin
    add --key own.key --version 1.4.2 root https://server DevMdq image.bin
    entry DevMdq signature >signature
    minisign -V -p own.pub -m image.bin -x signature >told
    grep -qx 'Trusted comment: model:DevMdq version:1.4.2' told || fail "$(cat told)"
    minisign -V -p own.pub -m "$folder"/*.bin >told || fail 'the signature beside the image is wrong'
    add --key own.key root https://server DevMaa image.bin
    entry DevMaa signature | grep -qx 'trusted comment: model:DevMaa' || fail 'the comment is wrong'
}

WhatCannotBeSignedChangesNothing() {
    make_key own
    echo image >image.img
    add --key own.key root https://server DevMaa image.img
    served >before
    echo other >image.img
    ! add --key not-there.key root https://server DevMaa image.img 2>errors || fail 'it was published'
    ! add root https://server DevMaa image.img 2>errors || fail 'it was published unsigned'
    grep -q 'give --key' errors || fail "$(cat errors)"
    ! add --key own.key --version 'a b' root https://server DevMaa image.img 2>errors || fail 'a version of two words'
    ! add --key own.key root https://server DevMaa not-there.img 2>errors || fail 'an image that is not there'
    served | diff before - || fail 'something changed'
    [ -z "$(find "$folder" -name '.adding*')" ] || fail 'something was left'
}

ADamagedManifestIsNotReplaced() {
    echo image >image.img
    mkdir -p "$folder"
    echo '{ "CurrentVersion": {' >"$manifest"
    ! add root https://server DevMaa image.img 2>errors || fail 'it was replaced'
    [ "$(cat "$manifest")" = '{ "CurrentVersion": {' ] || fail 'it was changed'
}

AReaderNeverFindsHalfAManifest() {
    echo image >image.img
    add root https://server Dev0 image.img
    (
        while [ ! -e stop ]; do
            jq -e '.CurrentVersion.Dev0.md5' "$manifest" >/dev/null || touch damaged
        done
    ) &
    local i
    for i in 1 2 3 4 5 6 7 8; do
        add root https://server "Dev$i" image.img
    done
    touch stop
    wait
    [ ! -e damaged ] || fail 'a manifest could not be read'
}

TwoAtATimeLoseNothing() {
    make_key own
    local i
    for i in 1 2 3 4 5 6; do
        echo "image $i" >"image$i.img"
        add --key own.key root https://server "Dev$i" "image$i.img" &
    done
    wait
    for i in 1 2 3 4 5 6; do
        [ "$(entry "Dev$i" md5)" = "$(md5sum <"image$i.img" | cut -d ' ' -f 1)" ] || fail "Dev$i was lost"
    done
}

"$1"
