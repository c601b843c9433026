#!/usr/bin/env bash
# Runs the commands of docs/checking-packages.md on the packages in a folder: all of them accept the packages as they
# are, and each refuses a package with one byte changed. Changes copies only.
# Usage: scripts/check-trust.sh FOLDER PUBLIC_KEY [AUTHORITIES]
# FOLDER holds the packages with their lists, SHA256SUMS and its signature. With AUTHORITIES, the certificates to
# trust, the signatures of installers are checked, too.
set -euo pipefail
project=$(cd "$(dirname "$0")/.." && pwd)
guide=$project/docs/checking-packages.md
folder=$(realpath "$1") public_key=$(realpath "$2") authorities=${3:+$(realpath "$3")}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*" >&2; cat "$work/said" >&2; exit 1; }

cp -r "$folder/." "$work/packages"
cd "$work/packages"
cp "$public_key" quillmarsh.pub
[ -z "$authorities" ] || cp "$authorities" authorities.pem
ln -s "$project/scripts" scripts

# Runs the guide's command that begins with WORDS, on these files in place of the guide's.
guide_says() { # WORDS [FILE...]
    local command
    command=$(grep -F -m 1 "    $1" "$guide") || { echo "The guide has no command \"$1\"." >"$work/said"; exit 1; }
    shift
    # Beside names of its own, the command has the names of the guide's example.
    case $command in
    *.spdx.json*) command="${command%% quillmarsh*} $(printf '%q ' "$@")" ;;
    *-setup.exe*) command="${command%% quillmarsh*} $(printf '%q ' "$@")" ;;
    esac
    bash -c "$command" >"$work/said" 2>&1
}
accepts() { guide_says "$@" || fail "refused although nothing was changed: $*"; }
refuses() {
    if guide_says "$@"; then fail "accepted although a byte was changed: $*"; fi
    refusals=$((refusals + 1))
}
refusals=0
# Replaces the byte in the middle by another one.
change() { # FILE
    cp "$1" "$work/kept"
    local middle byte
    middle=$(($(stat -c %s "$1") / 2))
    byte=$(od -An -tu1 -j "$middle" -N 1 "$1")
    # shellcheck disable=SC2059 # the format is the byte
    printf "$(printf '\\%03o' $(((byte + 1) % 256)))" | dd of="$1" bs=1 seek="$middle" conv=notrunc status=none
    ! cmp -s "$1" "$work/kept" || fail "$1 was not changed"
}
restore() { cp "$work/kept" "$1"; } # FILE
# Runs TEST with each installer, and with each package that has a list, as LIST PACKAGE.
list_of() { local list=${1%-setup.exe}; echo "${list%.@(deb|zip)}.spdx.json"; }
shopt -s extglob nullglob
packages=(quillmarsh*.@(deb|zip|exe))
[ "${#packages[@]}" -gt 0 ] || { echo "There are no packages in $folder." >&2; exit 1; }

accepts 'minisign -Vm'
accepts 'sha256sum --check'
for package in "${packages[@]}"; do
    accepts 'scripts/check-spdx.sh' "$(list_of "$package")" "$package"
    case $package in *.exe) [ -z "$authorities" ] || accepts 'osslsigncode verify' "$package" ;; esac

    change "$package"
    refuses 'sha256sum --check'
    refuses 'scripts/check-spdx.sh' "$(list_of "$package")" "$package"
    case $package in *.exe) [ -z "$authorities" ] || refuses 'osslsigncode verify' "$package" ;; esac
    # The checksums changed with the package: they fit, but are not the maker's.
    cp SHA256SUMS "$work/sums"
    sha256sum quillmarsh*.@(deb|zip|exe|json) >SHA256SUMS
    accepts 'sha256sum --check'
    refuses 'minisign -Vm'
    cp "$work/sums" SHA256SUMS
    restore "$package"
done
for file in SHA256SUMS SHA256SUMS.minisig; do
    change "$file"
    refuses 'minisign -Vm'
    restore "$file"
done
accepts 'minisign -Vm'
accepts 'sha256sum --check'
echo "${#packages[@]} packages were accepted, and changed ones refused $refusals times."
