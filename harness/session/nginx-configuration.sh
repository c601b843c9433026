#!/usr/bin/env bash
# Prints a configuration with which nginx serves the folder "served" of its prefix, in one process that stays
# in the foreground. It writes its requests to access.log, and its process id to nginx.pid once it has bound
# all ports.
# Usage: nginx-configuration.sh [ADDRESS:PORT] [FIRST_TLS_PORT]
# The first is for http. The second is the first of four ports on loopback for https, with the certificates
# of make-certificates.sh: one of the authority, one that has expired, one for another host, and one that
# nobody has signed. There a path that begins with "/to-self-signed/" or "/to-plain/" is redirected to that
# server.
set -euo pipefail
plain='' tls=''
for wanted; do
    case $wanted in *:*) plain=$wanted ;; *) tls=$wanted ;; esac
done

# Redirects what is below the folder /NAME/ to ADDRESS.
redirect() { echo "location /$1/ { rewrite ^/$1(/.*) $2\$1 redirect; }"; }

# When root starts it, also as the root of a user namespace, it would give its folders to a user who cannot read
# them or does not exist there. For other users the line "user" has no effect but a warning.
echo 'daemon off; master_process off; user root; pid nginx.pid;'
echo 'events { worker_connections 64; }'
echo 'http { access_log access.log; sendfile on;'
for kind in client_body proxy fastcgi uwsgi scgi; do
    echo "${kind}_temp_path scratch;"
done
[ -z "$plain" ] || echo "server { listen $plain; root served; }"
if [ -n "$tls" ]; then
    names=(trusted expired wrong-host self-signed)
    for i in "${!names[@]}"; do
        echo "server { listen 127.0.0.1:$((tls + i)) ssl; root served;"
        echo "ssl_certificate ${names[i]}.crt; ssl_certificate_key ${names[i]}.key;"
        redirect to-self-signed "https://localhost:$((tls + 3))"
        [ -z "$plain" ] || redirect to-plain "http://localhost:${plain##*:}"
        echo '}'
    done
fi
echo '}'
