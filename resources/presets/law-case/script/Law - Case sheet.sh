#!/bin/sh
# Runs after the folder has been made: keeps everybody but its owner out of it and writes "Case sheet.txt" into it,
# with reference, parties, and the day on which it was opened.
# The environment holds ORV_CONTEXT, ORV_ROOT_PATH and one P_ variable for each variable of the preset, nothing else;
# not even PATH.
PATH=/usr/local/bin:/usr/bin:/bin
export PATH
set -eu
umask 077

if [ -z "${ORV_ROOT_PATH-}" ] || [ ! -d "$ORV_ROOT_PATH" ]; then
    echo "ORV_ROOT_PATH names no folder: '${ORV_ROOT_PATH-}'" >&2
    exit 1
fi
chmod go= "$ORV_ROOT_PATH"
sheet="$ORV_ROOT_PATH/Case sheet.txt"
if [ -e "$sheet" ] || [ -L "$sheet" ]; then
    echo "Case sheet.txt is there already" >&2
    exit 1
fi

# A value on one line, whatever was typed.
line() {
    printf '%-16s%s\n' "$1" "$(printf '%s' "${2:--}" | tr '[:cntrl:]' ' ')"
}

# Written under another name first, so that nobody ever sees half a sheet.
draft=$sheet.$$
trap 'rm -f "$draft"' EXIT
{
    line "Our reference" "${P_YEAR-}-${P_AUTOCASE-}"
    line "Client" "${P_CLIENT-}"
    line "Opponent" "${P_OPPONENT-}"
    line "Opened" "$(date +%Y-%m-%d)"
    line "Their reference" ""
    line "Court" ""
    line "Court's number" ""
    line "Amount" ""
    line "Responsible" ""
} >"$draft"
mv "$draft" "$sheet"

# Lines of the form key=value are this script's result.
echo "sheet=Case sheet.txt"
