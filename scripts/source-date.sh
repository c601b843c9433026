#!/usr/bin/env bash
# Prints the time that packages carry instead of the time of their build: SOURCE_DATE_EPOCH, or else the date of
# the newest entry of the changelog. In seconds since 1970.
set -euo pipefail
cd "$(dirname "$0")/.."
[ -z "${SOURCE_DATE_EPOCH-}" ] || { echo "$SOURCE_DATE_EPOCH"; exit; }
date -d "$(sed -nE '/^ -- .*>  /{s///p;q}' packaging/linux/changelog)" +%s
