#!/usr/bin/env bash
# Installs the package into a minimal system of the Debian release that this runs on, updates a simulated device
# there as an ordinary user, with the window and with quillmarsh-cli, removes the package, and prints the remaining
# files: only the user's own files may remain. Needs root.
# Usage: scripts/linux/check-package.sh PACKAGE HARNESS_BUILD [BASE]
# HARNESS_BUILD is a build folder with the test harness; BASE is a minimal system to copy instead of downloading
# one.
set -euo pipefail
cd "$(dirname "$0")/../.."

model=DevMaa
user=1000
home=/home/tester

# The mounts are only visible to the processes of this script and end with them, so that the folders can be
# removed afterwards. There is no network except loopback.
if [ "${1-}" = --inside ]; then
    root=$2 stage=$3 harness=$4
    mount -t proc proc "$root/proc"
    mkdir -p "$root$stage"
    mount --bind "$stage" "$root$stage"
    nginx -p "$stage/nginx" -c nginx.conf -e error.log
    # PROGRAM [OPTION]
    update_with() {
        TMPDIR=$stage QUILLMARSH_HARNESS_BUILD=$harness "$harness/bin/quillmarsh-installed-update" "${@:2}" \
            --model "$model" --image "$stage/image" --stage "$stage" --home "$home" --user "$user" \
            -- chroot "--userspec=$user:$user" "$root" "/usr/bin/$1"
    }
    # Unlike the window program, this one must not leave any files except the lock between copies, which is empty.
    update_with quillmarsh-cli --cli || { tail -n 30 "$stage/stderr"; exit 1; }
    left=$(find "$root$home" "$root/tmp" -path "$root$stage" -prune -o -newer "$stage/started" ! -type d \
        ! \( -name QuillmarshV3TmpPath.lock -empty \) -print)
    [ -z "$left" ] || { echo "quillmarsh-cli has left $left" >&2; exit 1; }
    update_with quillmarsh && exit
    tail -n 30 "$stage/stderr" "$root$home/.local/share/quillmarsh/UPDLog.txt"
    exit 1
fi

package=$(realpath "$1") harness=$(realpath "$2") base=${3-}
scripts/install-dependencies.sh debootstrap groff-base
work=$(mktemp -d --tmpdir quillmarsh-package.XXXXXX)
trap '[ $? -eq 0 ] || tail -n 20 "$work/log"; rm -rf --one-file-system "$work"' EXIT
chmod 755 "$work"
root=$work/root stage=$work/stage
step() { printf '\n== %s\n' "$*"; }
in_root() {
    unshare --mount --pid --fork --mount-proc="$root/proc" \
        chroot "$root" env DEBIAN_FRONTEND=noninteractive LC_ALL=C "$@"
}
# Everything except the records of the package tools.
listing() {
    (cd "$root" && find . -xdev \
        \( -path ./proc -o -path ./tmp -o -path ./var/lib/dpkg -o -path ./var/lib/apt -o -path ./var/cache \
        -o -path ./var/log \) -prune -o \
        -printf '%p %y %m %U:%G ' \( -type f -exec md5sum {} \; -o -type l -printf '%l\n' -o -printf '\n' \) |
        sed -E 's/([0-9a-f]{32})  .*/\1/' | sort)
}

step 'An empty system'
if [ -n "$base" ]; then
    cp -a "$base" "$root"
else
    debootstrap --variant=minbase "$(. /etc/os-release && echo "$VERSION_CODENAME")" "$root" >"$work/log"
fi
cp /etc/resolv.conf "$root/etc/resolv.conf"
cp "$package" "$root/tmp/quillmarsh.deb"
in_root apt-get update -q >>"$work/log" 2>&1
in_root apt-get satisfy -q -y --no-install-recommends "$(dpkg-deb -f "$package" Depends)" >>"$work/log" 2>&1

step 'A user, a firmware server, and the maker'\''s flasher'
in_root apt-get install -q -y --no-install-recommends umockdev >>"$work/log" 2>&1
in_root useradd --uid "$user" --user-group --create-home --home-dir "$home" tester
scripts/prepare-release-server.sh "$stage" "$model"
cp "$stage/authority.crt" "$root/usr/local/share/ca-certificates/"
in_root update-ca-certificates >>"$work/log" 2>&1
echo "127.0.0.1 $(cat "$stage/host")" >>"$root/etc/hosts"
mkdir -p "$stage/tools" "$root/usr/local/lib/quillmarsh"
cp "$harness/bin/quillmarsh-standin" "$stage/tools/upgcmd.exe"
ln -s "$stage/tools/upgcmd.exe" "$root/usr/local/lib/quillmarsh/upgcmd.exe"
cp -r "$harness/plugins" "$stage/"
chown -R "$user:$user" "$stage"

listing >"$work/before"
step 'Installation'
in_root dpkg -i /tmp/quillmarsh.deb
in_root bash -eu <<'EOF' || { echo 'bash does not complete the commands of quillmarsh-cli.' >&2; exit 1; }
source /usr/share/bash-completion/completions/quillmarsh-cli
COMP_WORDS=(quillmarsh-cli up) COMP_CWORD=1
_quillmarsh_cli quillmarsh-cli up quillmarsh-cli
[ "${COMPREPLY[*]}" = update ]
EOF
for page in quillmarsh quillmarsh-cli; do
    # As plain text: without bold and underlined letters, which would be printed twice.
    zcat "$root/usr/share/man/man1/$page.1.gz" | groff -man -Tascii -ww -P-cbou >"$work/page" 2>"$work/warnings"
    grep -q '^SEE ALSO' "$work/page" || { echo "There is no manual page $page." >&2; exit 1; }
    [ ! -s "$work/warnings" ] || { cat "$work/warnings" >&2; exit 1; }
done
if readelf -d "$root/usr/bin/quillmarsh-cli" | grep -E 'libQt5(Gui|Widgets)'; then
    echo 'quillmarsh-cli needs libraries for windows.' >&2
    exit 1
fi
echo 'Completion and manual pages are installed.'

step 'Update, without a window and with it'
touch "$stage/started"
unshare --mount --net --pid --fork --kill-child --mount-proc sh -c 'ip link set lo up && exec "$@"' sh \
    "$0" --inside "$root" "$stage" "$harness"
grep -c '^206 ' "$stage/nginx/access.log" | sed 's/$/ ranges were served over HTTPS./'
step 'Removal'
in_root dpkg --purge quillmarsh
listing >"$work/after"

step 'What is left'
diff "$work/before" "$work/after" >"$work/left" && { echo 'There is not even a log: the program did not run.'; exit 1; }
cat "$work/left"
own="[<>] \.$home(/\.local(/share(/quillmarsh(/UPDLog\.txt|/log\.txt)?)?)?|/\.cache(/.*)?)? "
if grep -E '^[<>]' "$work/left" | grep -vE "^$own"; then
    echo 'The files above should not exist.' >&2
    exit 1
fi
echo 'Only the logs in the user'\''s folder and a cache remain.'
