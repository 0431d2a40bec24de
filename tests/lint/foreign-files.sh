#!/bin/sh
# Files of a backup are opened in one way: regular files only, never waiting for a pipe, access times
# left as they are. Fails for code that opens or maps a file by another. $1: the project.
set -eu
cd "$1"

candidates() {
    # System calls, C and C++ streams, and libraries that are given a path.
    grep -rnE '(^|[^A-Za-z0-9_])::(open|openat|creat|mmap|opendir)\(|fopen\(|[io]?fstream|gzopen' "$@"
    grep -rnE 'unzOpen|zipOpen(64)?\(|sqlite3_open|_read_from_file|plist_read_from' "$@"
    grep -rnE 'QImageReader [A-Za-z_]+[({][^&]|Q(Image|Pixmap|Movie)[({][A-Za-z_.]*[Pp]ath' "$@"
    # A QFile that opens or maps itself. (What lies in memory is opened likewise, but is no QFile.)
    for file in $(grep -rlE 'QFile [a-zA-Z_]+[({;]|QFile>\(|QTemporaryFile' "$@"); do
        grep -HnE '(\.|->)open\(Q[A-Za-z]+::(ReadOnly|ReadWrite)|[a-z]\.map\(|QFile::copy\(' "$file"
    done
}

# Lines that may, and why.
exceptions=$(
    sed -n 's/^\([^ ].*[^ ]\)  *# .*$/\1/p' <<'LIST'
^src/Files/OpenToRead\.h:                                             # the way
^src/DataExport/platform/NativeFile\.cpp:.*::open\(                   # of the output
^src/DataExport/platform/OutputFile\.cpp:.*::open\(                   # of the output
^src/PhoneBackup/base/FolderReader\.cpp:.*::openat\(parent           # folders, never files
^src/PhoneBackup/folder/BackupFolder\.cpp:.*O_PATH \| O_DIRECTORY      # likewise, and not read
^src/PhoneBackup/base/PrivateFolder\.cpp:.*m_descriptor\(::open\(    # the lock of our own folder
^src/PhoneBackup/folder/(BackupFiles|ManifestFile)\.cpp:.*(decrypted->|plain\.)open\( # decrypted as it is read
^src/PhoneBackup/sqlite/Database\.cpp:.*::open\(path, flags            # in that way, for SQLite
^src/PhoneBackup/sqlite/Database\.cpp:.*sqlite3_open_v2                # with the line above
^src/PhoneItems/media/BookArchive\.cpp:.*zipOpen64\(                   # writes into our own folder
LIST
)

found=$(candidates src/Files src/PhoneBackup src/PhoneItems src/DataExport plugins | grep -vE "$exceptions" || true)
if [ -n "$found" ]; then
    printf 'opened past Files::openToRead():\n%s\n' "$found"
    exit 1
fi
