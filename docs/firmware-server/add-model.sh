#!/bin/sh
# add-model.sh [--key FILE [--version VERSION]] ROOT SERVER MODEL IMAGE: puts an image onto the firmware server,
# whose files are in ROOT and whose address is SERVER, and names it in the manifest. With --key the image is
# signed with this secret key of minisign, for this model and version. Needs jq, and minisign with --key.
set -eu
usage() { sed -n '2,4s/^# //p' "$0" >&2; exit 2; }
key='' version=''
while [ $# -gt 4 ]; do
    case $1 in
    --key) key=$2 ;;
    --version) version=$2 ;;
    *) usage ;;
    esac
    shift 2
done
[ $# -eq 4 ] || usage
case $version in *[!A-Za-z0-9._+-]*) echo "A version has letters, digits, and . _ + - only." >&2; exit 2 ;; esac
folder=$1/Tessilonix/firmware
address=$2/Tessilonix/firmware
model=$3
manifest=$folder/firmware-version-check-test.json

mkdir -p "$folder"
# What is put there appears whole or not at all: it is made in this folder and then renamed.
work=$(mktemp -d "$folder/.adding.XXXXXX")
trap 'rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM
# One at a time: the last to write the manifest would undo what another has added.
exec 9>"$folder/.lock"
flock 9

cp "$4" "$work/image"
# The sum is in the name: a download that runs while the image changes still gets the one it was promised.
md5=$(md5sum <"$work/image" | cut -d ' ' -f 1)
case $4 in
*.bin) name=$model-$md5.bin ;;
*) name=$model-$md5.img ;;
esac
if [ -s "$manifest" ]; then
    cp "$manifest" "$work/before"
else
    echo '{ "CurrentVersion": {} }' >"$work/before"
fi
entry='{ fileURL: $url, downloadURL: $url, md5: $md5 }'
if [ -n "$key" ]; then
    minisign -S -H -s "$key" -m "$work/image" -x "$work/signature" -t "model:$model${version:+ version:$version}"
    entry="$entry + { signature: \$signature }"
elif jq -e --arg model "$model" '.CurrentVersion[$model].signature' "$work/before" >/dev/null; then
    echo "$model is signed in the manifest: give --key, or devices will refuse the new image." >&2
    exit 1
fi
jq --arg model "$model" --arg url "$address/$name" --arg md5 "$md5" \
    --arg signature "$(cat "$work/signature" 2>/dev/null)" \
    ".CurrentVersion[\$model] = $entry" "$work/before" >"$work/manifest"

# The image first, so that the manifest never names one that is not there. An image that is there stays.
chmod 644 "$work"/*
if [ ! -e "$folder/$name" ]; then
    mv "$work/image" "$folder/$name"
elif ! cmp -s "$work/image" "$folder/$name"; then
    echo "$folder/$name is another image." >&2
    exit 1
fi
[ -z "$key" ] || mv "$work/signature" "$folder/$name.minisig"
mv "$work/manifest" "$manifest"
