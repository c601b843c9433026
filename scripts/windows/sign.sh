#!/usr/bin/env bash
# Signs Windows programs in place, with Authenticode.
# Usage: scripts/windows/sign.sh CERTIFICATE FILE...
# CERTIFICATE is a PKCS#12 file with the certificate, its chain and the key. QUILLMARSH_SIGN_PASSWORD_FILE names a
# file with its password, if it has one. With QUILLMARSH_TIMESTAMP_SERVER, the address of an RFC 3161 server, the
# signatures stay valid when the certificate has expired.
set -euo pipefail
certificate=$1
shift
options=(-pkcs12 "$certificate" -h sha256 -n Quillmarsh)
[ -z "${QUILLMARSH_SIGN_PASSWORD_FILE-}" ] || options+=(-readpass "$QUILLMARSH_SIGN_PASSWORD_FILE")
[ -z "${QUILLMARSH_TIMESTAMP_SERVER-}" ] || options+=(-ts "$QUILLMARSH_TIMESTAMP_SERVER")
for file; do
    rm -f "$file.signed"
    osslsigncode sign "${options[@]}" -in "$file" -out "$file.signed" >&2
    mv "$file.signed" "$file"
done
