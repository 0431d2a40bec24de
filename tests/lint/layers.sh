#!/bin/sh
# Layers point one way: fails for every include that goes against it. $1: the src folder.
set -eu
cd "$1"
bad=0

# check FOLDER ALLOWED…: includes with a path in FOLDER's files begin with one of ALLOWED.
check() {
    folder=$1
    shift
    allowed=$(printf '|%s' "$@")
    found=$(grep -rnE '^#include "[^"]+/' "$folder" | grep -vE "#include \"(${allowed#|})" || true)
    if [ -n "$found" ]; then
        printf 'against the layers:\n%s\n' "$found"
        bad=1
    fi
}

check DataExport/platform platform/
check DataExport/export export/ platform/
check DataExport/backup backup/ export/ platform/
for translators in message contact table; do
    [ -d "DataExport/$translators" ] || continue
    check "DataExport/$translators" "$translators/" backup/ export/ platform/
done
# The reader sees the item model and the helpers, never a sink or a translator.
check PhoneBackup crypto/ folder/ sqlite/ plist/ record/ model/ platform/ \
    'backup/Bk' 'message/Bk' 'contact/Bk' 'table/Bk'

up=$(grep -rnE '#include ["<]\.\./' . || true)
if [ -n "$up" ]; then
    printf 'includes that climb:\n%s\n' "$up"
    bad=1
fi
# One class a file, and no file that nobody can read in one sitting.
long=$(find . -name '*.cpp' -o -name '*.h' | xargs wc -l | awk '$2 != "total" && $1 > 800')
if [ -n "$long" ]; then
    printf 'longer than 800 lines:\n%s\n' "$long"
    bad=1
fi
exit $bad
