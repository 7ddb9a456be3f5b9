#!/bin/sh
# The media types of the settings program, as a desktop learns them: media_types_test.sh PACKAGE
# PACKAGE is the file for the shared MIME-info database.
set -eu
data=$(mktemp -d)
trap 'rm -rf "$data"' EXIT
mkdir -p "$data/mime/packages" "$data/files"
cp "$1" "$data/mime/packages/"
# It warns that the folder is not where programs look; whatever else it says is about the file.
said=$(XDG_DATA_HOME=$data update-mime-database "$data/mime" 2>&1) || {
    printf '%s\n' "$said" >&2
    exit 1
}

# type_is FILE TYPE
type_is() {
    found=$(XDG_DATA_HOME=$data XDG_CURRENT_DESKTOP=none gio info -a standard::content-type "$data/files/$1" |
        sed -n 's/.*standard::content-type: //p')
    if [ "$found" != "$2" ]; then
        printf '%s: %s instead of %s\n' "$1" "$found" "$2" >&2
        exit 1
    fi
}

printf '<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0"><dict/></plist>\n' >"$data/files/Film.orvpreset"
cp "$data/files/Film.orvpreset" "$data/files/Film.xml"
printf 'Orvane\n' >"$data/files/ORVPrefPane.prefPane"
type_is Film.orvpreset application/x-orvane-preset+xml
type_is Film.xml application/xml
type_is ORVPrefPane.prefPane application/x-orvane-prefpane
