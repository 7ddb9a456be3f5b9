#!/bin/sh
# Writes the SHA-256 sums of all originals beside this script, or, with the word "check", compares the originals with them.
set -eu
cd "$(dirname "$0")"
case "${1-}" in
check)
    exec sha256sum --quiet --check Checksums.txt
    ;;
"")
    find . -type f ! -name 'Checksums.*' ! -name checksums.sh -exec sha256sum {} + | LC_ALL=C sort -k 2 >Checksums.new
    mv Checksums.new Checksums.txt
    echo "$(wc -l <Checksums.txt) files listed in Checksums.txt"
    ;;
*)
    echo "usage: checksums.sh [check]" >&2
    exit 2
    ;;
esac
