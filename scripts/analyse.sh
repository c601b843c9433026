#!/usr/bin/env bash
# Runs clang-tidy over the product's rooms. Usage: scripts/analyse.sh BUILD_FOLDER
set -euo pipefail
cd "$(dirname "$0")/.."
commands=${1:?'Usage: scripts/analyse.sh BUILD_FOLDER'}/compile_commands.json
[ -f "$commands" ] || { echo "There is no $commands: configure that build first." >&2; exit 1; }

# Only what this build compiles: the other platform's sources have no compile command here.
sources=()
while IFS= read -r source; do
    if grep -qF "\"file\": \"$PWD/$source\"" "$commands"; then
        sources+=("$source")
    fi
done < <(git ls-files --cached --others --exclude-standard -- {support,widgets,devices,download,update,iap,driver,app}'/*.cpp')
[ "${#sources[@]}" -gt 0 ] || { echo "$commands names none of the product's sources." >&2; exit 1; }

# A file at a time, so that no processor is left with the long ones. What clang-tidy counts as
# suppressed it says for each; that alone is left out.
printf '%s\0' "${sources[@]}" |
    xargs -0 -P "$(nproc)" -n 1 clang-tidy --quiet -p "$1" 2>&1 |
    { grep -vE '^[0-9]+ warnings? generated\.$' || true; }
echo "Static analysis of ${#sources[@]} sources found nothing."
