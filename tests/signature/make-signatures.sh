#!/usr/bin/env bash
# Creates keys, an image and signatures of it with the real minisign, for the tests of the verifier. They are
# created when the tests are built, because the tests also run on systems without minisign.
# Usage: make-signatures.sh FOLDER
# Writes FOLDER/image, KEY.pub and KEY.key for each of the keys "first", "second" and "stranger", and signatures
# with descriptive names.
set -euo pipefail
rm -rf "$1"
mkdir -p "$1"
cd "$1"
export HOME=$PWD

for key in first second stranger; do
    minisign -G -W -p "$key.pub" -s "$key.key" >/dev/null
done
# Longer than a block of the verifier, and not a multiple of it.
for ((line = 0; line < 60000; ++line)); do echo "line $line"; done >image
sed 's/^line 59999$/line 59998/' image >other-image
: >empty

comment='model:DevMaa version:1.4.2'
sign() { # NAME KEY COMMENT [FILE] [OPTION...]
    minisign -S -s "$2.key" -m "${4:-image}" -x "$1.minisig" -t "$3" "${@:5}" >/dev/null
}
sign good first "$comment"
sign second second "$comment"
sign stranger stranger "$comment"
sign other-model first 'model:DevMab version:1.4.2'
sign longer-model first 'model:DevMaab version:1.4.2'
sign model-in-a-word first 'supermodel:DevMaa version:1.4.2'
sign no-model first 'version:1.4.2'
sign two-models first $'version:1.4.2\tmodel:DevMab  model:DevMaa'
sign legacy first "$comment" image -l
sign of-another-image first "$comment" other-image
sign empty first "$comment" empty
minisign -S -s first.key -m image -x without-a-comment.minisig >/dev/null
