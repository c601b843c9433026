#!/usr/bin/env bash
# Sets up what a release check fetches its firmware from: an image, the manifest, and a web server's
# configuration as the makers' guide has it, with certificates of an authority of its own. The address is the
# one that programs are built with.
# Usage: scripts/release-server.sh STAGE MODEL
# Leaves STAGE/image, STAGE/authority.crt, STAGE/host, and STAGE/nginx, which nginx takes as its prefix.
set -euo pipefail
cd "$(dirname "$0")/.."
stage=$1 model=$2
address=$(scripts/firmware-server.sh)
[[ $address =~ ^https://([^:/]+)(:([0-9]+))?$ ]] || { echo "$address is no address with HTTPS." >&2; exit 1; }
host=${BASH_REMATCH[1]} port=${BASH_REMATCH[3]:-443}
scripts/install-dependencies.sh jq

mkdir -p "$stage/nginx"
echo "$host" >"$stage/host"
head -c 1000007 /dev/urandom >"$stage/image"
docs/firmware-server/add-model.sh "$stage/served" "$address" "$model" "$stage/image"

# The site of the guide, with this server's name and files.
{
    echo 'user root; pid nginx.pid; events {} http { access_log access.log;'
    sed -E -e "s|listen 443 |listen $port |" -e "s|firmware\.example\.com;|$host;|" -e "s|/srv/firmware|$stage/served|" \
        -e "s|/etc/ssl/certs/.*;|server.crt;|" -e "s|/etc/ssl/private/.*;|server.key;|" docs/firmware-server/nginx.conf
    echo '}'
} >"$stage/nginx/nginx.conf"

key() { openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:prime256v1 -out "$1.key"; }
cd "$stage/nginx"
{
    key authority
    openssl req -x509 -new -key authority.key -subj '/CN=Test authority' -days 2 -out ../authority.crt
    key server
    openssl req -new -key server.key -subj "/CN=$host" -out server.csr
    openssl x509 -req -in server.csr -CA ../authority.crt -CAkey authority.key -set_serial 7 -days 2 \
        -extfile <(echo "subjectAltName=DNS:$host") -out server.crt
} 2>openssl.log || { cat openssl.log >&2; exit 1; }
