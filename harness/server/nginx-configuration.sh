#!/usr/bin/env bash
# Prints a configuration with which nginx serves the folder "served" in its prefix, in one process in the
# foreground. nginx logs its requests to access.log and writes its process id to nginx.pid once it has bound
# all ports.
# Usage: nginx-configuration.sh [ADDRESS:PORT] [FIRST_TLS_PORT]
# The first argument is for http. The second is the first of four ports on loopback for https, with the
# certificates of make-certificates.sh: a valid one, an expired one, one for another host, and a self-signed
# one. Over https, a path that begins with "/to-self-signed/" or "/to-plain/" is redirected to that server.
set -euo pipefail
plain='' tls=''
for wanted; do
    case $wanted in *:*) plain=$wanted ;; *) tls=$wanted ;; esac
done

# Redirects all paths below /NAME/ to ADDRESS.
redirect() { echo "location /$1/ { rewrite ^/$1(/.*) $2\$1 redirect; }"; }

# Without "user", nginx started by root (also of a user namespace) would give its folders to a user who cannot
# read them or does not exist there. For other users the line only causes a warning.
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
