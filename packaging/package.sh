#!/usr/bin/env bash
# Makes the Debian package from the sources in version control, so that two of the same commit are identical.
#
#   packaging/package.sh FOLDER        FOLDER gets orvane_VERSION_ARCHITECTURE.deb and what else dpkg-buildpackage makes
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
out=${1:?a folder for the package}
mkdir -p "$out"
out=$(cd "$out" && pwd -P)

version=$(sed -n 's/^project(Orvane VERSION \([0-9.]*\).*/\1/p' "$top/CMakeLists.txt")
[ -n "$version" ] || { echo "package: CMakeLists.txt names no version" >&2; exit 1; }
git=(git -c safe.directory='*' -C "$top")
SOURCE_DATE_EPOCH=$("${git[@]}" log -1 --format=%ct)
export SOURCE_DATE_EPOCH

sources=$out/orvane-$version
rm -rf "$sources"
mkdir -p "$sources"
"${git[@]}" ls-files -z --cached --others --exclude-standard | tar -C "$top" --null --files-from=- --ignore-failed-read -c | tar -C "$sources" -x
cp -r "$sources/packaging/debian" "$sources/debian"
sed "s/@VERSION@/$version/; s/@DATE@/$(date -u -R -d "@$SOURCE_DATE_EPOCH")/" "$sources/debian/changelog.in" >"$sources/debian/changelog"
rm "$sources/debian/changelog.in"
cd "$sources"
dpkg-buildpackage --build=binary --unsigned-changes --no-check-builddeps
