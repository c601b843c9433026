#!/usr/bin/env bash
# Checks the sources against the project's rules: which module may include which, no platform conditionals
# outside the platform files, no conversion by the locale's codec, and a main widget of at most 400 lines.
set -euo pipefail
cd "$(dirname "$0")/.."
failed=0
complain() { echo "$*" >&2; failed=1; }

# The rules are in cmake/ModuleList.cmake and are printed as "NAME [product]: ALLOWED MODULES" lines.
modules=$(cmake -P cmake/print-modules.cmake)
names=$(sed -E 's/[ :].*//' <<<"$modules")
product=$(sed -nE 's/ product:.*//p' <<<"$modules")
sources_of() { git ls-files --cached --others --exclude-standard -- "${@/%//*.cpp}" "${@/%//*.h}"; }

while IFS=: read -r module allowed; do
    module=${module%% *}
    mapfile -t sources < <(sources_of "$module")
    [ "${#sources[@]}" -gt 0 ] || continue
    while IFS=: read -r file line include; do
        target=$(sed -E 's/.*"([a-z]+)\/.*/\1/' <<<"$include")
        [[ "$allowed " == *" $target "* ]] ||
            complain "$file:$line: \"$module\" may not include \"$target\", only:$allowed (cmake/ModuleList.cmake)"
    done < <(grep -nE "^#include \"($(paste -sd '|' <<<"$names"))/" "${sources[@]}" /dev/null || true)
done <<<"$modules"

# The path of each include must begin at the project's folder, so that the check above can find it.
mapfile -t sources < <(sources_of $names)
unnamed=$(grep -nE '^#include "' "${sources[@]}" | grep -vE "#include \"($(paste -sd '|' <<<"$names"))/|\.(moc|inc)\"" || true)
[ -z "$unnamed" ] || complain "Includes that do not begin with a module's name:"$'\n'"$unnamed"

conditionals=$(git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h' |
    grep -vE '_(win|linux)\.cpp$' |
    xargs grep -nE '^\s*#\s*(if|ifdef|ifndef|elif).*(_WIN32|Q_OS_|__linux__|_MSC_VER)' || true)
[ -z "$conditionals" ] || complain "Platform conditionals outside the platform files:"$'\n'"$conditionals"
headers=$(git ls-files --cached --others --exclude-standard -- '*.h' | xargs grep -nE '#include <windows\.h>' || true)
[ -z "$headers" ] || complain "Headers that include windows.h:"$'\n'"$headers"

# On Windows the locale's codec is UTF-16, so these conversions would pass wrong texts to the system.
by_locale=$(sources_of $product |
    grep -v '_linux\.cpp$' |
    xargs grep -nE '(to|from)Local8Bit|qPrintable|codecForLocale|QFile::(en|de)codeName' || true)
[ -z "$by_locale" ] || complain "Conversions by the locale's codec:"$'\n'"$by_locale"

main_widget=app/bringToForeground.cpp
[ "$(wc -l <"$main_widget")" -le 400 ] || complain "$main_widget has more than 400 lines"
[ "$failed" -eq 0 ] && echo 'The structure follows the rules.'
exit "$failed"
