#!/usr/bin/env bash
# Prints an nginx configuration with a site from docs/firmware-server, in which the names, ports and files of the
# example are replaced by those of a test; everything else is unchanged. nginx writes its process id to nginx.pid
# in its prefix once it has bound its port, and a line for each request to access.log: status, bytes of the body,
# bytes in total, "range", path.
# Usage: NAME=VALUE... site-configuration.sh SITE
#   HOST PORT              name and port of the site, on all addresses; its certificate is server.crt in the prefix
#   SERVED                 the folder that an origin serves
#   ORIGIN_HOST ORIGIN_PORT AUTHORITY CACHE
#                          the origin of an edge, on loopback; the authority of its certificate; the cache folder
#   MANIFEST_SECONDS CACHE_SIZE CACHE_FREE
#                          how long the manifest may be cached, and the limits of the cache, unless the example's
#   WORKERS EXTRA DAEMON   worker processes, lines for the http block, "on" to go to the background
set -euo pipefail
site=$1

# Without "user", nginx started by root (also of a user namespace) would give its folders to a user who cannot
# read them or does not exist there.
cat <<END
daemon ${DAEMON:-off}; user root; pid nginx.pid; worker_processes ${WORKERS:-1}; worker_rlimit_nofile $(ulimit -Hn);
events { worker_connections 8192; }
http {
    log_format requests '\$status \$body_bytes_sent \$bytes_sent "\$http_range" \$uri';
    access_log access.log requests;
    client_body_temp_path scratch; proxy_temp_path scratch;
    fastcgi_temp_path scratch; uwsgi_temp_path scratch; scgi_temp_path scratch;
    ${EXTRA-}
END
changes=()
change() { changes+=(-e "s|$1|$2|"); }
change 'listen 443 ' "listen $PORT "
change '(server_name )firmware\.example\.com' "\\1$HOST"
change '/srv/firmware' "${SERVED-}"
change '/etc/ssl/certs/ca-certificates\.crt' "${AUTHORITY-}"
change '/etc/ssl/certs/firmware.*;' 'server.crt;'
change '/etc/ssl/private/.*;' 'server.key;'
change '(server )origin\.example\.com:443' "\\1127.0.0.1:${ORIGIN_PORT-}"
change 'origin\.example\.com' "${ORIGIN_HOST-}"
change '/var/cache/nginx/firmware' "${CACHE-}"
[ -z "${MANIFEST_SECONDS-}" ] || change '"public, max-age=60"' "\"public, max-age=$MANIFEST_SECONDS\""
[ -z "${CACHE_SIZE-}" ] || change 'max_size=\w+' "max_size=$CACHE_SIZE"
[ -z "${CACHE_FREE-}" ] || change 'min_free=\w+' "min_free=$CACHE_FREE"
sed -E "${changes[@]}" "$site"
echo '}'
