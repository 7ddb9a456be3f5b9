#!/usr/bin/env bash
# Status 0 when a program needs no shared library but those named.
#
#   tests/lint/libraries.sh PROGRAM LIBRARY...      LIBRARY without its ".so" and what follows, as in libc
set -euo pipefail

program=$1
shift
dynamic=$(LC_ALL=C readelf --dynamic --wide "$program")
needed=$(sed -n 's/.*(NEEDED).*\[\(.*\)\]$/\1/p' <<<"$dynamic")
status=0
while IFS= read -r library; do
    case " $* " in
    *" ${library%%.so*} "*) ;;
    *)
        if [ -n "$library" ]; then
            printf '%s needs %s\n' "$program" "$library"
            status=1
        fi
        ;;
    esac
done <<<"$needed"
exit "$status"
