#!/usr/bin/env bash
# What is shipped must fetch from the maker's server and from nowhere else.
# Usage: scripts/check-release.sh EXECUTABLE [BUILD_FOLDER]
# With its build folder, the server is the one that was configured there.
set -euo pipefail
executable=$1

# The toolkit's string literals are UTF-16 in the executable.
text=$(strings --encoding=l "$executable"; strings "$executable")
if grep -E '127\.0\.0\.1|localhost' <<<"$text"; then
    echo "A loopback address is built into $executable." >&2
    exit 1
fi
server='https://firmware\.'
if [ -n "${2-}" ]; then
    server=$(sed -n 's/^QUILLMARSH_FIRMWARE_SERVER:STRING=//p' "$2/CMakeCache.txt" | sed 's/[.]/\\./g')'$'
fi
grep -q "^$server" <<<"$text" || { echo "No firmware server is built into $executable." >&2; exit 1; }
echo "$executable fetches from $(grep -m1 "^$server" <<<"$text")."
