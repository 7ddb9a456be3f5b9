#!/usr/bin/env bash
# What the completion for bash offers, with the built program in a home of its own.
#
#   completion_test.sh PROGRAM COMPLETION
set -euo pipefail

program=$1
completion=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$scratch/bin" "$scratch/home/Library/Preferences" "$scratch/home/a folder"
ln -s "$program" "$scratch/bin/orvane"
touch "$scratch/home/a file"
cat >"$scratch/home/Library/Preferences/org.orvane.ORVPrefPane.plist" <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>ORVPresets</key><array>
<dict><key>label</key><string>Film production</string><key>directoryName</key><string>{Client} {Job no}</string></dict>
<dict><key>label</key><string>Film $(touch ran)</string></dict>
<dict><key>label</key><string>Photo</string></dict>
</array></dict></plist>
END
export HOME=$scratch/home PATH=$scratch/bin:$PATH
cd "$HOME"
# shellcheck source=/dev/null
source "$completion"

failed=0
# expect "WORD|WORD|..." word...: completing the last word offers exactly these.
expect() {
    local expected=$1 offered
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    _orvane
    offered=$(printf '%s\n' ${COMPREPLY[@]+"${COMPREPLY[@]}"} | LC_ALL=C sort | paste -s -d '|')
    if [ "$offered" != "$expected" ]; then
        printf 'for %s: expected %s, got %s\n' "${*@Q}" "$expected" "$offered"
        failed=1
    fi
}

expect 'check|create' orvane c
expect 'import' orvane i
expect '--dry-run|--help|--in|--json|--no-input|--no-open|--set' orvane create --
expect '--with-content' orvane import --w
expect 'Film\ \$\(touch\ ran\)|Film\ production|Photo' orvane create ''
expect 'Film\ \$\(touch\ ran\)|Film\ production' orvane show Fi
expect 'Film\ production' orvane export 'Film\ p'
expect 'Film production' orvane show '"Film p'
expect 'Photo' orvane create --in x --no-input P
expect 'a folder' orvane create Photo --in a
expect 'a file|a folder' orvane add a
expect 'a folder' orvane import a
expect 'Client=|Job\ no=' orvane create 'Film\ production' --set ''
expect '' orvane notify x
expect '' orvane nothing x
if [ -e ran ]; then
    echo 'a label was run as a command'
    failed=1
fi
exit "$failed"
