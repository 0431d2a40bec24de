#!/bin/sh
# Translators get every text, and in the context in which the library looks for it. $1: lupdate,
# $2: project folder.
set -eu
out=$(mktemp -d)
trap 'rm -rf "$out"' EXIT
"$2/scripts/update-translations" "$out/all.ts" "$1" >"$out/log" 2>&1
wrong=$(grep 'without context' "$out/log" || true)
others=$(grep '<name>' "$out/all.ts" | grep -v '<name>DataExport</name>' || true)
if [ -n "$wrong$others" ] || ! grep -q '<source>' "$out/all.ts"; then
    printf 'texts that no translation reaches:\n%s\n%s\n' "$wrong" "$others"
    exit 1
fi
