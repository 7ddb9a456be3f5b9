#!/usr/bin/env bash
# Status 0 when programs are built so that misused memory ends them instead of serving somebody: at random addresses, with
# relocations that are read-only from the start, no memory that is writable and executable, and nothing for the network.
# --release also wants checked library calls and stack protection, which only optimised builds have.
#
#   tests/lint/hardening.sh [--release] PROGRAM...
set -euo pipefail
export LC_ALL=C

release=no
if [ "${1-}" = --release ]; then
    release=yes
    shift
fi
[ $# -gt 0 ] || { echo "hardening: no program" >&2; exit 2; }

status=0
complain() {
    printf '%s: %s\n' "$1" "$2"
    status=1
}

for program in "$@"; do
    header=$(readelf --file-header --wide "$program")
    segments=$(readelf --program-headers --wide "$program")
    dynamic=$(readelf --dynamic --wide "$program")
    symbols=$(readelf --symbols --wide "$program")
    grep -q 'Type: *DYN' <<<"$header" || complain "$program" "is loaded at a fixed address"
    grep -q 'Flags: .*PIE' <<<"$dynamic" || complain "$program" "is no position-independent executable"
    grep -q 'GNU_RELRO' <<<"$segments" || complain "$program" "has relocations that stay writable"
    grep -q 'BIND_NOW' <<<"$dynamic" || complain "$program" "binds its functions late"
    grep -Eq 'GNU_STACK .* RW +0x' <<<"$segments" || complain "$program" "has an executable stack"
    if grep -Eq 'LOAD .* RWE ' <<<"$segments"; then
        complain "$program" "has memory that is writable and executable"
    fi
    if grep -Eq '\(NEEDED\).*\[lib(Qt[0-9]Network|curl|soup|ssl|gnutls)' <<<"$dynamic"; then
        complain "$program" "links a library for the network"
    fi
    # A statically linked program holds what the C library itself uses.
    if grep -q '(NEEDED)' <<<"$dynamic" && grep -Eq 'UND (getaddrinfo|gethostbyname|inet_pton)(@|$)' <<<"$symbols"; then
        complain "$program" "looks up hosts"
    fi
    if [ "$release" = yes ] && grep -q '(NEEDED)' <<<"$dynamic"; then
        grep -q '__stack_chk_fail' <<<"$symbols" || complain "$program" "has no stack protection"
        # A small program may call nothing that could be checked; what prints by a format always could.
        if ! grep -Eq '__[a-z]+_chk(@| |$)' <<<"$symbols" && grep -Eq 'UND v?(f|d|s|sn|as)?printf(@|$)|UND v?syslog(@|$)' <<<"$symbols"; then
            complain "$program" "has no checked library calls"
        fi
    fi
done
exit "$status"
