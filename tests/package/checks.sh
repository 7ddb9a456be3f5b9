#!/usr/bin/env bash
# For scripts that look at one thing after the other: counts what held and what did not, and goes on.
# shellcheck shell=bash

passed=0 failed=0

# check WORDS COMMAND...: the command's output is shown when it fails.
check() {
    local words=$1 output status=0
    shift
    output=$("$@" 2>&1) || status=$?
    if [ "$status" -eq 0 ]; then
        passed=$((passed + 1))
        printf 'ok      %s\n' "$words"
    else
        failed=$((failed + 1))
        printf 'FAILED  %s (status %s)\n' "$words" "$status"
        printf '%s\n' "$output" | sed 's/^/        /'
    fi
    return 0
}

# soon SECONDS COMMAND...: succeeds as soon as the command does, fails when the time is over.
soon() {
    local end=$((SECONDS + $1))
    shift
    until "$@" >/dev/null 2>&1; do
        if [ "$SECONDS" -ge "$end" ]; then
            printf 'not within the time: %s\n' "$*"
            "$@"
            return 1
        fi
        sleep 0.1
    done
}

# fails COMMAND...: succeeds when the command does not.
fails() {
    if "$@"; then
        return 1
    fi
}

# results: prints the count; status 1 when anything failed or nothing was looked at.
results() {
    printf '%d passed, %d failed\n' "$passed" "$failed"
    [ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
}
