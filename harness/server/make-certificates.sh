#!/usr/bin/env bash
# Creates a certificate authority for tests in a folder (authority.key, authority.crt), and NAME.key and
# NAME.crt for each certificate.
# Usage: make-certificates.sh FOLDER [NAME:HOST:DAYS...]
# DAYS is when the validity of two days ends, from now on; a negative value creates an expired certificate, "self" a
# self-signed one.
# By default creates the certificates that nginx-configuration.sh needs.
set -euo pipefail
mkdir -p "$1"
cd "$1"
shift
[ $# -gt 0 ] ||
    set -- trusted:localhost:2 expired:localhost:-1 wrong-host:other.example:2 self-signed:localhost:self

key() { openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:prime256v1 -out "$1.key"; }
# For keys that sign certificates. Not elliptic curves: in about one of 128 of their signatures a number has a
# leading zero byte, and Wine takes those signatures for invalid.
signing_key() { openssl genpkey -algorithm RSA -pkeyopt rsa_keygen_bits:2048 -out "$1.key"; }
moment() { date -u -d "$1 days" +%y%m%d%H%M%SZ; }
# NAME HOST DAYS
signed() {
    openssl req -new -key "$1.key" -subj "/CN=$2" -out "$1.csr"
    : >issued
    echo 07 >serial
    # Only "openssl ca" makes expired certificates in all versions.
    openssl ca -batch -notext -config authority.conf -cert authority.crt -keyfile authority.key \
        -startdate "$(moment $(($3 - 2)))" -enddate "$(moment "$3")" \
        -extfile <(echo "subjectAltName=DNS:$2") -in "$1.csr" -out "$1.crt"
    # Wine needs the server to send the issuer, even if the client trusts it.
    cat authority.crt >>"$1.crt"
}
make_all() {
    set -e
    printf '%s\n' '[ca]' 'default_ca=test' '[any]' 'commonName=supplied' '[test]' 'database=issued' 'serial=serial' \
        'new_certs_dir=.' 'default_md=sha256' 'policy=any' >authority.conf
    signing_key authority
    openssl req -x509 -new -key authority.key -subj '/CN=Test authority' -days 2 -out authority.crt
    for certificate; do
        IFS=: read -r name host days <<<"$certificate"
        if [ "$days" = self ]; then
            signing_key "$name"
            openssl req -x509 -new -key "$name.key" -subj "/CN=$host" -addext "subjectAltName=DNS:$host" \
                -days 2 -out "$name.crt"
        else
            key "$name"
            signed "$name" "$host" "$days"
        fi
    done
}
# openssl is verbose: print its messages only after an error.
set +e
(make_all "$@") 2>openssl.log
made=$?
set -e
[ "$made" -eq 0 ] || { cat openssl.log >&2; exit 125; }
