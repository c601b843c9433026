#!/usr/bin/env bash
# Runs a command beside a web server on loopback that speaks TLS, and ends that server afterwards.
# Usage: with-secure-server.sh COMMAND [ARGUMENT...]
# The command finds in QUILLMARSH_SECURE_FOLDER what the server serves (served/), its access.log and the
# authority.crt, and in QUILLMARSH_SECURE_PORT the first of four ports for https://localhost, whose
# certificates are in turn: the authority's, an expired one of the authority, the authority's for another
# host, and a self-signed one. The server runs on this system even where the command is a Windows program.
set -euo pipefail
folder=$(mktemp -d "${TMPDIR:-/tmp}/quillmarsh-secure-server.XXXXXX")
server=''
end() {
    [ -z "$server" ] || { kill "$server" && wait "$server"; } 2>/dev/null || true
    rm -rf "$folder"
}
trap end EXIT
PATH=$PATH:/usr/sbin
session=$(realpath "$(dirname "$0")/../../harness/session")

mkdir "$folder/served"
head -c 1000007 /dev/urandom >"$folder/served/image.bin"

"$session/make-certificates.sh" "$folder"

# Below the ports that the system gives out by itself; taken ones make the server end at once. It writes
# its process number when it has bound all of them.
for _ in $(seq 20); do
    port=$((20000 + RANDOM % 3000 * 4))
    "$session/nginx-configuration.sh" "$port" >"$folder/nginx.conf"
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
