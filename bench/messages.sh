#!/bin/sh
# What messages cost from end to end: bench/messages.sh BUILD [FOLDER]
# BUILD is a build folder with the benchmarks (-DDATAEXPORT_BUILD_BENCH=ON); FOLDER is for the
# backups of 10,000 and 1,000,000 messages and needs about 2 GB; those in it are used again.
set -eu

build=${1:?"usage: $0 BUILD [FOLDER]"}
folder=${2:-${TMPDIR:-/tmp}/dataexport-bench}
none='--photos 0 --videos 0 --shared-photos 0 --voice-memos 0 --books 0 --ringtones 0
      --app-documents 0 --voicemail 0 --calls 0 --bookmarks 0 --history 0
      --notes 0 --events 0 --reminders 0'

mkdir -p "$folder"
for size in '10000 20' '1000000 2000'; do
    messages=${size% *}
    backup=$folder/messages-$messages
    if [ ! -e "$backup/Manifest.db" ]; then
        # shellcheck disable=SC2086 # a list of options
        "$build/sample/make-sample-backup" "$backup" $none \
            --messages "$messages" --conversations "${size#* }" > /dev/null
    fi
    "$build/bench/bench_export" "$backup"
    rm -rf "$folder/out"
    /usr/bin/time -f 'program     %U s user, %S s system, %e s in all, peak %M KB' \
        "$build/src/cli/dataexport" --quiet --only messages "$backup" "$folder/out"
    rm -rf "$folder/out"
    echo
done
"$build/bench/bench_messages" 100000 200 | tail -n 1
