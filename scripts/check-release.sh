#!/usr/bin/env bash
# What is shipped must fetch from the maker's server and from nowhere else.
# Usage: scripts/check-release.sh EXECUTABLE [BUILD_FOLDER]
# The server is the one that is configured in its build folder, or else the default.
set -euo pipefail
executable=$1

# The toolkit's string literals are UTF-16 in the executable.
text=$(strings --encoding=l "$executable"; strings "$executable")
if grep -E '127\.0\.0\.1|localhost' <<<"$text"; then
    echo "A loopback address is built into $executable." >&2
    exit 1
fi
server=$("$(dirname "$0")/firmware-server.sh" "${2-}")
grep -qxF "$server" <<<"$text" || { echo "$executable does not fetch from $server." >&2; exit 1; }
echo "$executable fetches from $server."
