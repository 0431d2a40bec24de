#!/bin/sh
# The library's public surface is the list in $3, no symbol more and none less. $1: nm, $2: library.
# UPDATE_GOLDEN=1 rewrites the list, and fails so that a rewrite never passes.
set -eu
actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
"$1" -DC --defined-only "$2" | awk '$2 ~ /^[TBDRW]$/' | cut -d' ' -f3- \
    | grep -E '^(C[A-Z]|Bk[A-Z]|Ux[A-Z]|FileProgress|OutputNames)' | LC_ALL=C sort -u >"$actual"
[ -s "$actual" ] || { echo "no symbol at all: is this the library?"; exit 1; }

private=$("$1" -DC --defined-only "$2" | grep -E ' (DataExport|PhoneBackup|PhoneItems)::| [A-Z][A-Za-z]*_p|TextFile' || true)
if [ -n "$private" ]; then
    printf 'private code is exported:\n%s\n' "$private"
    exit 1
fi
if [ "${UPDATE_GOLDEN:-}" = 1 ]; then
    cp "$actual" "$3"
    echo "rewritten: $3"
    exit 1
fi
diff -u "$3" "$actual"
