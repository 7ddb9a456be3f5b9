#!/bin/sh
# Runs after the folder has been made: puts the project's name, its author and the year into the texts, and makes the folder a
# git repository where git is installed. Nothing is committed: that is for you to do.
# The environment holds ORV_CONTEXT, ORV_ROOT_PATH and one P_ variable for each variable of the preset, nothing else;
# not even PATH.
PATH=/usr/local/bin:/usr/bin:/bin
export PATH
set -eu

if [ -z "${ORV_ROOT_PATH-}" ] || ! cd "$ORV_ROOT_PATH" 2>/dev/null; then
    echo "ORV_ROOT_PATH names no folder: '${ORV_ROOT_PATH-}'" >&2
    exit 1
fi

# A value on one line, in which sed finds nothing to interpret.
value() {
    printf '%s' "$1" | tr '[:cntrl:]' ' ' | sed -e 's/[\\&|]/\\&/g'
}

# There is no variable for the author: it is the user, as the system knows the name.
author=$(getent passwd "$(id -u)" 2>/dev/null | cut -d : -f 5 | cut -d , -f 1) || author=
rules="s|@PROJECT@|$(value "${P_PROJECT-}")|g
s|@AUTHOR@|$(value "${author:-the author}")|g
s|@YEAR@|$(date +%Y)|g"

for file in README.md CHANGELOG.md CONTRIBUTING.md LICENSE docs/architecture.md docs/decisions/0001-*.md; do
    [ -f "$file" ] || continue
    # Through the file itself, so that it keeps its mode.
    text=$(sed -e "$rules" "$file")
    printf '%s\n' "$text" >"$file"
done
echo "author=${author:--}"

if command -v git >/dev/null 2>&1; then
    git init --quiet
    # Older versions of git cannot be told the branch's name at once.
    git symbolic-ref HEAD refs/heads/main
    echo "repository=git"
fi
