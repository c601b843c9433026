#!/bin/sh
# add-model.sh ROOT SERVER MODEL IMAGE: puts an image onto the firmware server, whose files are in
# ROOT and whose address is SERVER, and names it in the manifest. Needs jq.
set -eu
[ $# -eq 4 ] || { sed -n '2,3s/^# //p' "$0" >&2; exit 2; }
folder=$1/Tessilonix/firmware
address=$2/Tessilonix/firmware
model=$3
manifest=$folder/firmware-version-check-test.json

mkdir -p "$folder"
# The sum is in the name: a download that runs while the image changes still gets the one it was promised.
md5=$(md5sum <"$4" | cut -d ' ' -f 1)
case $4 in
*.bin) name=$model-$md5.bin ;;
*) name=$model-$md5.img ;;
esac
cp "$4" "$folder/$name"
[ -s "$manifest" ] || echo '{ "CurrentVersion": {} }' >"$manifest"
jq --arg model "$model" --arg url "$address/$name" --arg md5 "$md5" \
    '.CurrentVersion[$model] = { fileURL: $url, downloadURL: $url, md5: $md5 }' "$manifest" >"$manifest.new"
mv "$manifest.new" "$manifest"
