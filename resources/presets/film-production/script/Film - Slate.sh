#!/bin/sh
# Runs after the folder has been made and writes Slate.txt into it: what this production is, for people and programs.
# The environment holds ORV_CONTEXT, ORV_ROOT_PATH and one P_ variable for each variable of the preset, nothing else;
# not even PATH.
PATH=/usr/local/bin:/usr/bin:/bin
export PATH
set -eu

if [ -z "${ORV_ROOT_PATH-}" ] || [ ! -d "$ORV_ROOT_PATH" ]; then
    echo "ORV_ROOT_PATH names no folder: '${ORV_ROOT_PATH-}'" >&2
    exit 1
fi
slate=$ORV_ROOT_PATH/Slate.txt
if [ -e "$slate" ] || [ -L "$slate" ]; then
    echo "Slate.txt is there already" >&2
    exit 1
fi

# A value on one line, whatever was typed.
line() {
    printf '%-12s%s\n' "$1" "$(printf '%s' "${2:--}" | tr '[:cntrl:]' ' ')"
}

# Written under another name first, so that nobody ever sees half a slate.
draft=$slate.$$
trap 'rm -f "$draft"' EXIT
{
    line "Job" "${P_AUTOJOB-}"
    line "Client" "${P_CLIENT-}"
    line "Production" "${P_PRODUCTION-}"
    line "Director" "${P_DIRECTOR-}"
    line "Opened" "$(date +%Y-%m-%d)"
} >"$draft"
mv "$draft" "$slate"

# Lines of the form key=value are this script's result.
echo "slate=Slate.txt"
