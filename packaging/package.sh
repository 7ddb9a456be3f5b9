#!/usr/bin/env bash
# Makes the Debian package. Two made from the same sources are the same, byte for byte.
#
#   packaging/package.sh FOLDER              FOLDER gets orvane_VERSION_ARCHITECTURE.deb and what else dpkg-buildpackage makes
#   packaging/package.sh --sources FOLDER    FOLDER gets the sources as the package is made from them
#   packaging/package.sh --from SOURCES FOLDER
#                                            the package, from such a folder, which is copied first
#
# Time in the package is SOURCE_DATE_EPOCH, else that of the last commit.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)

fail() {
    printf 'package: %s\n' "$*" >&2
    exit 1
}

# lay_out FOLDER: what is in version control, or new and not ignored, with debian/ where its tools look for it.
lay_out() {
    local to=$1 version epoch git=(git -c safe.directory='*' -C "$top")
    version=$(sed -n 's/^project(Orvane VERSION \([0-9.]*\).*/\1/p' "$top/CMakeLists.txt")
    [ -n "$version" ] || fail "CMakeLists.txt names no version"
    epoch=${SOURCE_DATE_EPOCH-$("${git[@]}" log -1 --format=%ct)} || fail "no commit tells the time; set SOURCE_DATE_EPOCH"
    rm -rf "$to"
    mkdir -p "$to"
    # Version control may still list what has just been deleted.
    "${git[@]}" ls-files -z --cached --others --exclude-standard |
        (cd "$top" && while IFS= read -r -d '' file; do [ ! -e "$file" ] || printf '%s\0' "$file"; done) |
        tar -C "$top" --null --files-from=- --create | tar -C "$to" --extract
    cp -r "$to/packaging/debian" "$to/debian"
    sed "s/@VERSION@/$version/; s/@DATE@/$(LC_ALL=C date -u -R -d "@$epoch")/" "$to/debian/changelog.in" >"$to/debian/changelog"
    rm "$to/debian/changelog.in"
}

# build SOURCES FOLDER
build() {
    local from=$1 to=$2 copy
    [ -f "$from/debian/changelog" ] || fail "$from was not made by --sources"
    mkdir -p "$to"
    copy=$(cd "$to" && pwd -P)/orvane
    rm -rf "$copy" "$to"/orvane_*
    cp -r "$from" "$copy"
    export DEB_BUILD_OPTIONS=${DEB_BUILD_OPTIONS-parallel=$(nproc)}
    (cd "$copy" && dpkg-buildpackage --build=binary --unsigned-changes)
    rm -rf "$copy"
}

case ${1-} in
--sources) lay_out "${2:?a folder for the sources}" ;;
--from) build "${2:?a folder with sources}" "${3:?a folder for the package}" ;;
'' | -*) sed -n '2,/^set/{/^#/s/^# \{0,1\}//p}' "$0" >&2 && exit 2 ;;
*)
    mkdir -p "$1"
    scratch=$(mktemp -d "$1/sources.XXXXXX")
    trap 'rm -rf "$scratch"' EXIT
    lay_out "$scratch/orvane"
    build "$scratch/orvane" "$1"
    ;;
esac
