#!/usr/bin/env bash
# What ./dev does about missing packages, with programs in place of the system's that only note how they were called.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd -P)
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
failures=0
unset DEBIAN_FRONTEND

mkdir -p "$tree/tests/lint" "$tree/bin"
cp "$here/../../dev" "$tree/dev"
printf '#!/bin/sh\necho linted >>"%s/calls"\n' "$tree" >"$tree/tests/lint/lint.sh"
chmod 755 "$tree/tests/lint/lint.sh"
# Only these are found, and nothing of the system's that is not needed for the rest of the script.
for program in bash cat mkdir tail dirname; do
    ln -s "$(command -v "$program")" "$tree/bin/$program"
done

# stand_in NAME BODY
stand_in() {
    printf '#!%s\n%s\n' "$(command -v bash)" "$2" >"$tree/bin/$1"
    chmod 755 "$tree/bin/$1"
}

# situation USER-ID MISSING-PACKAGE|none: clears the notes and sets the stand-ins up.
situation() {
    : >"$tree/calls"
    rm -f "$tree/bin/sudo"
    stand_in id "echo $1"
    stand_in env "while [[ \$1 == *=* ]]; do export \"\$1\"; shift; done; exec \"\$@\""
    stand_in dpkg-query "[ \"\${!#}\" = $2 ] || printf installed"
    stand_in apt-get "echo \"apt-get \${DEBIAN_FRONTEND-} \$*\" >>'$tree/calls'"
}

# expect STATUS CALLS OUTPUT-PATTERN
expect() {
    local status=0 output
    output=$(PATH="$tree/bin" "$tree/dev" lint 2>&1 </dev/null) || status=$?
    # shellcheck disable=SC2053 # the last argument is a pattern
    if [ "$status" -ne "$1" ] || [ "$(cat "$tree/calls")" != "$2" ] || [[ $output != $3 ]]; then
        printf 'expected status %s, calls:\n%s\noutput like: %s\ngot status %s, calls:\n%s\noutput: %s\n\n' \
            "$1" "$2" "$3" "$status" "$(cat "$tree/calls")" "$output"
        failures=$((failures + 1))
    fi
}

situation 0 none
expect 0 "linted" "*"

installing=$'apt-get  update\napt-get noninteractive install --yes --no-install-recommends shellcheck\nlinted'
situation 0 shellcheck
expect 0 "$installing" "*Installing shellcheck*"

situation 1000 shellcheck
expect 1 "" "*missing and need root*apt-get install shellcheck*"

situation 1000 shellcheck
stand_in sudo "echo sudo >>'$tree/calls'; exec \"\$@\""
expect 0 "sudo"$'\n'"${installing/$'\n'/$'\nsudo\n'}" "*Installing shellcheck*"

situation 0 shellcheck
stand_in apt-get "echo 'no route to the archive'; exit 100"
expect 1 "" "*no route to the archive*ended with status 100*"

situation 0 shellcheck
rm "$tree/bin/apt-get"
expect 0 "linted" "*no Debian system*shellcheck*"

if [ "$failures" -ne 0 ]; then
    printf '%d expectations failed\n' "$failures"
    exit 1
fi
