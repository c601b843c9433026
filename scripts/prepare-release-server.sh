#!/usr/bin/env bash
# Prepares a firmware server for a release check, without starting it: an image, the manifest, the nginx
# configuration from the makers' guide, and certificates signed by a test authority. The server's address is
# the one that is built into the program.
# Usage: scripts/prepare-release-server.sh STAGE MODEL
# QUILLMARSH_RELEASE_KEY names the secret key to sign with, for a program that was built with keys.
# Writes STAGE/image, STAGE/authority.crt, STAGE/host and STAGE/nginx, which is the prefix to start nginx with.
set -euo pipefail
cd "$(dirname "$0")/.."
stage=$1 model=$2
address=$(scripts/print-server-address.sh)
[[ $address =~ ^https://([^:/]+)(:([0-9]+))?$ ]] || { echo "$address is not an HTTPS address." >&2; exit 1; }
host=${BASH_REMATCH[1]} port=${BASH_REMATCH[3]:-443}

mkdir -p "$stage/nginx"
echo "$host" >"$stage/host"
head -c 1000007 /dev/urandom >"$stage/image"
key=()
[ -z "${QUILLMARSH_RELEASE_KEY-}" ] || key=(--key "$QUILLMARSH_RELEASE_KEY")
docs/firmware-server/add-model.sh "${key[@]}" "$stage/served" "$address" "$model" "$stage/image"

# The configuration from the guide, with the name and the files of this server.
HOST=$host PORT=$port SERVED=$stage/served DAEMON=on \
    harness/server/site-configuration.sh docs/firmware-server/origin.conf >"$stage/nginx/nginx.conf"

harness/server/make-certificates.sh "$stage/nginx" "server:$host:2"
cp "$stage/nginx/authority.crt" "$stage/authority.crt"
