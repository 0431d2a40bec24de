#!/bin/sh
# What calls and web history cost from end to end: bench/tables.sh BUILD [FOLDER]
# BUILD is a build folder; FOLDER is for the backups and needs about 300 MB; those in it are used
# again.
set -eu

build=${1:?"usage: $0 BUILD [FOLDER]"}
folder=${2:-${TMPDIR:-/tmp}/dataexport-bench}
none='--photos 0 --videos 0 --shared-photos 0 --voice-memos 0 --books 0 --ringtones 0
      --app-documents 0 --voicemail 0 --messages 0 --notes 0 --events 0 --reminders 0'

mkdir -p "$folder"
for size in '10000 20000' '50000 100000' '100000 200000'; do
    calls=${size% *}
    pages=${size#* }
    backup=$folder/tables-$calls
    if [ ! -e "$backup/Manifest.db" ]; then
        # shellcheck disable=SC2086 # a list of options
        "$build/sample/make-sample-backup" "$backup" $none \
            --calls "$calls" --history "$pages" > /dev/null
    fi
    echo "$calls calls, $pages pages"
    rm -rf "$folder/out"
    /usr/bin/time -f '  %U s user, %S s system, %e s in all, peak %M KB' \
        "$build/src/cli/dataexport" --quiet --only calls,safari "$backup" "$folder/out"
    rm -rf "$folder/out"
done
