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
names=(trusted expired wrong-host self-signed)

mkdir "$folder/served"
head -c 1000007 /dev/urandom >"$folder/served/image.bin"

key() { openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:prime256v1 -out "$1.key"; }
# NAME HOST DAYS
signed() {
    key "$1"
    openssl req -new -key "$1.key" -subj "/CN=$2" -out "$1.csr"
    openssl x509 -req -in "$1.csr" -CA authority.crt -CAkey authority.key -set_serial 7 -days "$3" \
        -extfile <(echo "subjectAltName=DNS:$2") -out "$1.crt"
    # Wine finds an issuer that is trusted in the client alone only where the server sends it along.
    cat authority.crt >>"$1.crt"
}
certificates() {
    cd "$folder"
    key authority
    openssl req -x509 -new -key authority.key -subj '/CN=Test authority' -days 2 -out authority.crt
    signed trusted localhost 2
    signed expired localhost -1
    signed wrong-host other.example 2
    key self-signed
    openssl req -x509 -new -key self-signed.key -subj /CN=localhost -addext subjectAltName=DNS:localhost \
        -days 2 -out self-signed.crt
}
set +e
(set -e; certificates) 2>"$folder/openssl.log"
made=$?
set -e
[ "$made" -eq 0 ] || { cat "$folder/openssl.log" >&2; exit 125; }

# FIRST_PORT
configuration() {
    echo 'daemon off; master_process off; pid nginx.pid; events {} http { access_log access.log;'
    for kind in client_body proxy fastcgi uwsgi scgi; do
        echo "${kind}_temp_path scratch;"
    done
    for i in "${!names[@]}"; do
        echo "server { listen 127.0.0.1:$(($1 + i)) ssl; root served;"
        echo "ssl_certificate ${names[i]}.crt; ssl_certificate_key ${names[i]}.key; }"
    done
    echo '}'
}
# Below the ports that the system gives out by itself; taken ones make the server end at once. It writes
# its process number when it has bound all of them.
for _ in $(seq 20); do
    port=$((20000 + RANDOM % 3000 * 4))
    configuration "$port" >"$folder/nginx.conf"
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
