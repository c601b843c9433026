#!/usr/bin/env bash
# Runs a command together with a TLS web server on loopback, which it ends afterwards.
# Usage: with-secure-server.sh COMMAND [ARGUMENT...]
# QUILLMARSH_SECURE_FOLDER is set to a folder with the server's files (served/), its access.log and
# authority.crt, and QUILLMARSH_SECURE_PORT to the first of four ports for https://localhost. Their
# certificates are, in order: a valid one, an expired one, one for another host, and a self-signed one. The
# server runs natively even if the command is a Windows program.
set -euo pipefail
folder=$(mktemp -d "${TMPDIR:-/tmp}/quillmarsh-secure-server.XXXXXX")
server=''
end() {
    [ -z "$server" ] || { kill "$server" && wait "$server"; } 2>/dev/null || true
    rm -rf "$folder"
}
trap end EXIT
PATH=$PATH:/usr/sbin
scripts=$(realpath "$(dirname "$0")/../../harness/server")

mkdir "$folder/served"
head -c 1000007 /dev/urandom >"$folder/served/image.bin"

"$scripts/make-certificates.sh" "$folder"

# Below the range from which the system assigns ports. If one of them is in use, the server ends at once. It
# writes its process id once it has bound all of them.
for _ in $(seq 20); do
    port=$((20000 + RANDOM % 3000 * 4))
    "$scripts/nginx-configuration.sh" "$port" >"$folder/nginx.conf"
    : >"$folder/error.log"
    nginx -p "$folder" -c "$folder/nginx.conf" -e "$folder/error.log" 2>"$folder/start.log" &
    server=$!
    while [ ! -s "$folder/nginx.pid" ] && kill -0 "$server" 2>/dev/null; do
        sleep 0.05
    done
    [ ! -s "$folder/nginx.pid" ] || break
    wait "$server" || true
    server=''
    grep -q 'Address already in use' "$folder/start.log" "$folder/error.log" || break
done
[ -n "$server" ] || { cat "$folder/start.log" >&2; exit 125; }

QUILLMARSH_SECURE_FOLDER=$folder QUILLMARSH_SECURE_PORT=$port "$@"
