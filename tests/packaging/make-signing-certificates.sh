#!/usr/bin/env bash
# Makes the certificates for the tests of signing: ca.pem, a certificate authority; maker.p12, a certificate for
# programs that the authority has signed; stranger.p12, a self-signed one. The password is in the file "password".
# Usage: make-signing-certificates.sh FOLDER
set -euo pipefail
mkdir -p "$1"
cd "$1"
make_all() {
    set -e
    openssl req -x509 -newkey rsa:2048 -nodes -keyout ca.key -out ca.pem -days 2 -subj '/CN=Test authority'
    for name in maker stranger; do
        openssl req -newkey rsa:2048 -nodes -keyout $name.key -out $name.csr -subj "/CN=$name"
    done
    printf 'extendedKeyUsage=codeSigning\nkeyUsage=digitalSignature\n' >extensions
    openssl x509 -req -in maker.csr -CA ca.pem -CAkey ca.key -set_serial 2 -days 2 -extfile extensions -out maker.pem
    openssl x509 -req -in stranger.csr -key stranger.key -days 2 -extfile extensions -out stranger.pem
    echo secret >password
    for name in maker stranger; do
        openssl pkcs12 -export -inkey $name.key -in $name.pem -certfile ca.pem -passout file:password -out $name.p12
    done
}
# openssl is verbose: print its messages only when something went wrong.
(make_all) >openssl.log 2>&1 || { cat openssl.log >&2; exit 1; }
