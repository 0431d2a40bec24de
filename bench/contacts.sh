#!/bin/sh
# What contacts cost from end to end: bench/contacts.sh BUILD [FOLDER]
# BUILD is a build folder; FOLDER is for the backups of 5,000 and 20,000 contacts and needs about
# 1 GB; those in it are used again.
set -eu

build=${1:?"usage: $0 BUILD [FOLDER]"}
folder=${2:-${TMPDIR:-/tmp}/dataexport-bench}
none='--photos 0 --videos 0 --shared-photos 0 --voice-memos 0 --books 0 --ringtones 0
      --app-documents 0 --voicemail 0 --messages 0'

measure() {
    rm -rf "$folder/out"
    printf '%s: ' "$1"
    /usr/bin/time -f '%U s user, %S s system, %e s in all, peak %M KB' \
        "$build/src/cli/dataexport" --quiet --only contacts "$2" "$folder/out"
    rm -rf "$folder/out"
}

mkdir -p "$folder"
for size in '5000 500' '20000 2000' '5000 0'; do
    contacts=${size% *}
    photos=${size#* }
    backup=$folder/contacts-$contacts-$photos
    if [ ! -e "$backup/Manifest.db" ]; then
        # shellcheck disable=SC2086 # a list of options
        "$build/sample/make-sample-backup" "$backup" $none \
            --contacts "$contacts" --contact-photos "$photos" > /dev/null
    fi
    measure "$contacts contacts, $photos photos" "$backup"
done
# The address book, by its hash.
book=$folder/contacts-5000-0/31/31bb7ba8914766d4ba40d6dfb6113c8b614be442
python3 -c "import sqlite3, sys
book = sqlite3.connect(sys.argv[1])
book.execute(\"UPDATE ABPerson SET First = 'Ada', Last = 'Example', Organization = NULL, Kind = 0\")
book.commit()
book.execute('PRAGMA wal_checkpoint(TRUNCATE)')" "$book"
measure '5000 contacts of one name' "$folder/contacts-5000-0"
