#!/usr/bin/env bash
# Holds the sources against the rules of the house: which room may include which, no platform
# conditionals outside the platform files, no conversion by the locale, and a main widget that only
# hands over.
set -euo pipefail
cd "$(dirname "$0")/.."
failed=0
complain() { echo "$*" >&2; failed=1; }

declare -A may_include=(
    [support]='support'
    [widgets]='widgets support'
    [devices]='devices support'
    [download]='download support'
    [driver]='driver support'
    [iap]='iap support'
    [update]='update support devices download'
    [app]='app support widgets devices download driver iap update'
)
rooms='support|widgets|devices|download|driver|iap|update|app|simulator|tests|benchmarks'
for room in "${!may_include[@]}"; do
    [ -d "$room" ] || continue
    while IFS=: read -r file line include; do
        target=$(sed -E 's/.*"([a-z]+)\/.*/\1/' <<<"$include")
        [[ " ${may_include[$room]} " == *" $target "* ]] || complain "$file:$line: $room may not include $target"
    done < <(grep -nE "^#include \"($rooms)/" -r "$room" --include='*.cpp' --include='*.h' || true)
done

conditionals=$(git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h' |
    grep -vE '_(win|linux)\.cpp$' |
    xargs grep -nE '^\s*#\s*(if|ifdef|ifndef|elif).*(_WIN32|Q_OS_|__linux__|_MSC_VER)' || true)
[ -z "$conditionals" ] || complain "Platform conditionals outside the platform files:"$'\n'"$conditionals"
headers=$(git ls-files --cached --others --exclude-standard -- '*.h' | xargs grep -nE '#include <windows\.h>' || true)
[ -z "$headers" ] || complain "The Windows header in a header:"$'\n'"$headers"

# On Windows the locale's codec is UTF-16: whoever converts by it gives the system two bytes for one.
by_locale=$(git ls-files --cached --others --exclude-standard -- {support,widgets,devices,download,driver,iap,update,app}'/*.cpp' \
    {support,widgets,devices,download,driver,iap,update,app}'/*.h' |
    grep -v '_linux\.cpp$' |
    xargs grep -nE '(to|from)Local8Bit|qPrintable|codecForLocale|QFile::(en|de)codeName' || true)
[ -z "$by_locale" ] || complain "Conversions by the locale's codec:"$'\n'"$by_locale"

main_widget=app/bringToForeground.cpp
[ "$(wc -l <"$main_widget")" -le 400 ] || complain "$main_widget has more than 400 lines"
# A statement ends a line with a semicolon; the constructor alone may list many.
long_operations=$(awk '
    /^[A-Za-z].*\(/ || /^bringToForeground::/ { name = $0 }
    /^{/ { statements = 0 }
    /;$/ && !/^ *(case|break)/ { ++statements }
    /^}/ && statements > 5 && name !~ /bringToForeground::bringToForeground/ { print name ": " statements " statements" }
' "$main_widget")
[ -z "$long_operations" ] || complain "Too long for the main widget:"$'\n'"$long_operations"

[ "$failed" -eq 0 ] && echo 'The structure is as it should be.'
exit "$failed"
