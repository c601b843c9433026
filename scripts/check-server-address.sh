#!/usr/bin/env bash
# Checks that an executable fetches from the maker's firmware server and has no loopback address built in.
# Usage: scripts/check-server-address.sh EXECUTABLE [BUILD_FOLDER]
# The expected address is the one configured in the build folder, or the default without one.
set -euo pipefail
executable=$1

# Qt's string literals are UTF-16 in the executable.
text=$(strings --encoding=l "$executable"; strings "$executable")
if grep -E '127\.0\.0\.1|localhost' <<<"$text"; then
    echo "A loopback address is built into $executable." >&2
    exit 1
fi
server=$("$(dirname "$0")/print-server-address.sh" "${2-}")
grep -qxF "$server" <<<"$text" || { echo "$executable does not fetch from $server." >&2; exit 1; }
echo "$executable fetches from $server."
