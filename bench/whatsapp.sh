#!/bin/sh
# What WhatsApp chats cost from the backup to page and CSV: bench/whatsapp.sh BUILD [FOLDER]
# BUILD is a build folder; FOLDER is for the backups of 100,000 and 1,000,000 messages and needs about
# 2 GB; those in it are used again.
set -eu

build=${1:?"usage: $0 BUILD [FOLDER]"}
folder=${2:-${TMPDIR:-/tmp}/dataexport-bench}
none='--photos 0 --videos 0 --shared-photos 0 --voice-memos 0 --books 0 --ringtones 0
      --app-documents 0 --voicemail 0 --messages 0'

mkdir -p "$folder"
for size in '100000 50' '1000000 500'; do
    messages=${size% *}
    backup=$folder/whatsapp-$messages
    if [ ! -e "$backup/Manifest.db" ]; then
        # shellcheck disable=SC2086 # a list of options
        "$build/sample/make-sample-backup" "$backup" $none \
            --whatsapp-messages "$messages" --whatsapp-chats "${size#* }" > /dev/null
    fi
    for run in 1 2 3; do
        rm -rf "$folder/out"
        /usr/bin/time -f "$messages messages, run $run: %U s user, %S s system, %e s in all, peak %M KB" \
            "$build/src/cli/dataexport" --quiet --only whatsapp "$backup" "$folder/out"
    done
    rm -rf "$folder/out"
done
