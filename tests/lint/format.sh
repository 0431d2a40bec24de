#!/bin/sh
# Every source is formatted by the project's .clang-format. $1: clang-format, $2: project folder.
set -eu
cd "$2"
find src plugins sample tests bench examples -name '*.cpp' -o -name '*.h' \
    | xargs "$1" --dry-run -Werror
