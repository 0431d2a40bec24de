#!/bin/sh
# Every source is formatted by the project's .clang-format, and the documentation's titles have lines of
# their own, which wrapping by hand or by program may take from them. $1: clang-format, $2: project folder.
set -eu
cd "$2"
find src plugins sample tests bench examples -name '*.cpp' -o -name '*.h' \
    | xargs "$1" --dry-run -Werror
titles=$(grep -rnE '\\par( |$)' src plugins sample tests bench examples --include='*.h' --include='*.cpp' \
    | grep -vE ':[0-9]+: *(/\*! *)?\\par [A-Z][a-z]*( [a-z]+)*$' || true)
if [ -n "$titles" ]; then
    printf 'titles that share a line:\n%s\n' "$titles"
    exit 1
fi
