#!/usr/bin/env bash
# Makes the package twice from the same sources, in surroundings as different as one machine has them, and compares the two byte by
# byte. Says what differs; status 1 if anything does.
#
#   tests/package/twice.sh FOLDER              builds below FOLDER, which is made and may be deleted afterwards
#   tests/package/twice.sh --compare ONE OTHER compares the packages in two folders
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)

fail() {
    printf 'twice: %s\n' "$*" >&2
    exit 1
}

# Differences of two packages in words: members, then listings, then the bytes of files.
explain() {
    local one=$1 other=$2 scratch side
    scratch=$(mktemp -d)
    for side in one other; do
        mkdir "$scratch/$side"
        dpkg-deb --contents "${!side}" >"$scratch/$side.list"
        dpkg-deb --raw-extract "${!side}" "$scratch/$side/files"
    done
    diff --unified=0 "$scratch/one.list" "$scratch/other.list" | sed -n '3,$p' | head -n 40 || true
    (cd "$scratch" && diff --recursive --brief --no-dereference one/files other/files) | while IFS= read -r line; do
        printf '%s\n' "${line//$scratch\//}"
        if [[ $line =~ ^Files\ (.*)\ and\ (.*)\ differ$ ]]; then
            cmp --print-bytes --verbose "$scratch/${BASH_REMATCH[1]}" "$scratch/${BASH_REMATCH[2]}" 2>&1 | head -n 8 || true
        fi
    done
    rm -rf "$scratch"
}

# compare ONE OTHER
compare() {
    local package name found=0 status=0
    for package in "$1"/*.deb; do
        [ -f "$package" ] || fail "there is no package in $1"
        found=$((found + 1))
        name=${package##*/}
        if [ ! -f "$2/$name" ]; then
            printf '%s was made only once\n' "$name"
            status=1
        elif cmp --silent "$package" "$2/$name"; then
            printf '%s: the same twice, %s bytes, SHA-256 %s\n' "$name" "$(stat -c %s "$package")" "$(sha256sum <"$package" | cut -d ' ' -f 1)"
        else
            printf '%s differs:\n' "$name"
            explain "$package" "$2/$name"
            status=1
        fi
    done
    for package in "$2"/*.deb; do
        if [ ! -f "$1/${package##*/}" ]; then
            printf '%s was made only once\n' "${package##*/}"
            status=1
        fi
    done
    return "$status"
}

# A locale that is installed and is not what most have; else the bare one.
other_locale() {
    locale -a 2>/dev/null | grep -vE '^(C|POSIX|C\.utf8|en_)' | head -n 1 || true
}

build_twice() {
    local folder=$1 sources=$1/sources one=$1/one other=$1/another/folder-further+down locale host=()
    if [ -e "$one" ] || [ -e "${other%/*}" ]; then
        fail "$folder holds packages already"
    fi
    mkdir -p "$one" "$other" "$folder/home"
    "$top/packaging/package.sh" --sources "$sources"
    (
        umask 022
        env -i PATH="$PATH" HOME="$HOME" LC_ALL=C.UTF-8 TZ=UTC USER="${USER-root}" DEB_BUILD_OPTIONS="parallel=$(nproc)" \
            "$top/packaging/package.sh" --from "$sources" "$one"
    )
    locale=$(other_locale)
    if unshare --uts true 2>/dev/null; then
        host=(unshare --uts sh -c 'hostname elsewhere && exec "$@"' sh)
    fi
    (
        umask 077
        env -i PATH="$PATH:/nowhere" HOME="$folder/home" LC_ALL="${locale:-C}" LANGUAGE=fr TZ=Pacific/Kiritimati USER=somebody \
            DEB_BUILD_OPTIONS="parallel=$(($(nproc) + 1))" "${host[@]}" "$top/packaging/package.sh" --from "$sources" "$other"
    )
    compare "$one" "$other"
}

case ${1-} in
--compare) compare "${2:?a folder with packages}" "${3:?another one}" ;;
'' | -*) sed -n '2,/^set/{/^#/s/^# \{0,1\}//p}' "$0" >&2 && exit 2 ;;
*)
    mkdir -p "$1"
    build_twice "$(cd "$1" && pwd -P)"
    ;;
esac
