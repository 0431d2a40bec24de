#!/bin/sh
# Every operation of a public header is documented. $1: doxygen, $2: the library's source folder.
set -eu
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
headers=$(cd "$2" && find . -name '*.h' ! -name '*_p.h' | LC_ALL=C sort | sed "s|^\.|$2|" | tr '\n' ' ')
warnings=$(
    "$1" - 2>&1 >/dev/null <<CONFIG
INPUT = $headers
OUTPUT_DIRECTORY = $out
QUIET = YES
WARN_IF_UNDOCUMENTED = YES
WARN_IF_DOC_ERROR = YES
EXTRACT_STATIC = YES
GENERATE_LATEX = NO
GENERATE_HTML = NO
GENERATE_XML = YES
MACRO_EXPANSION = YES
EXPAND_ONLY_PREDEF = YES
PREDEFINED = DATAEXPORT_EXPORT= DATAEXPORT_MAY_BE_ABSENT=
CONFIG
)
if [ -n "$warnings" ]; then
    printf '%s\n' "$warnings"
    exit 1
fi
