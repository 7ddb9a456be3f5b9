#!/usr/bin/env bash
# The comparison of packages: it must find a planted difference of each kind, and nothing in two that are the same.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd -P)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0

# tiny FOLDER CONTENTS MODE TIME: a package with one file in it.
tiny() {
    rm -rf "$scratch/tree"
    mkdir -p "$scratch/tree/DEBIAN" "$scratch/tree/usr/share/tiny" "$1"
    chmod -R 755 "$scratch/tree"
    printf 'Package: tiny\nVersion: 1\nArchitecture: all\nMaintainer: Orvane developers <developers@orvane.example>\nDescription: tiny\n' \
        >"$scratch/tree/DEBIAN/control"
    printf '%s' "$2" >"$scratch/tree/usr/share/tiny/file"
    chmod "$3" "$scratch/tree/usr/share/tiny/file"
    find "$scratch/tree" -exec touch --no-dereference -d "@$4" {} +
    SOURCE_DATE_EPOCH=$4 dpkg-deb --root-owner-group --build "$scratch/tree" "$1/tiny_1_all.deb" >/dev/null
}

# expect STATUS PATTERN WHAT
expect() {
    local status=0 output
    output=$("$here/twice.sh" --compare "$scratch/one" "$scratch/other" 2>&1) || status=$?
    # shellcheck disable=SC2053 # the second argument is a pattern
    if [ "$status" -ne "$1" ] || [[ $output != $2 ]]; then
        printf 'expected status %s and output like "%s" of %s; got %s:\n%s\n\n' "$1" "$2" "$3" "$status" "$output"
        failures=$((failures + 1))
    fi
}

tiny "$scratch/one" text 644 1700000000
tiny "$scratch/other" text 644 1700000000
expect 0 '*the same twice*' "two that are the same"
tiny "$scratch/other" other 644 1700000000
expect 1 '*differs*usr/share/tiny/file*' "other contents"
tiny "$scratch/other" text 600 1700000000
expect 1 '*differs*rw-------*' "another mode"
tiny "$scratch/other" text 644 1700086400
expect 1 '*differs*2023-11-15*' "another time"
rm "$scratch/other/tiny_1_all.deb"
expect 1 '*only once*' "one that is missing"
rm "$scratch/one/tiny_1_all.deb"
expect 1 '*no package*' "none at all"

[ "$failures" -eq 0 ] || exit 1
