#!/usr/bin/env bash
# The helper's user unit, its drop-in and its service on the bus, as they are installed: systemd understands every line, they agree
# with each other, and nothing starts the helper twice.
#
#   tests/package/unit_test.sh PACKAGING PROGRAM      PACKAGING is the build's folder of that name, PROGRAM the helper
set -euo pipefail
packaging=$1 program=$2
name=app-org.orvane.Helper
unit=$packaging/systemd/$name.service
drop_in=$packaging/systemd/$name@.service.d/sandbox.conf
service=$packaging/helper/org.orvane.Helper.service
autostart=$packaging/helper/autostart/org.orvane.Helper.desktop
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0

expect() {
    local words=$1
    shift
    if ! "$@"; then
        printf 'not so: %s\n' "$words"
        failures=$((failures + 1))
    fi
}

# What systemd says of a unit; nothing when all is well.
verdict() {
    XDG_RUNTIME_DIR=$scratch/run SYSTEMD_UNIT_PATH=$scratch/units: systemd-analyze --user verify --man=no "$1" 2>&1 || printf 'refused\n'
}
silent() { [ -z "$1" ] || { printf '%s\n' "$1" && false; }; }
value() { sed -n "s/^$1=//p" "$2"; }
settings() { grep -E '^[A-Z][A-Za-z]*=' "$1" | LC_ALL=C sort; }
equal() { [ "$1" = "$2" ] || { printf '"%s" is not "%s"\n' "$1" "$2" && false; }; }

mkdir -p "$scratch/run" "$scratch/units/$name@.service.d"
sed "s|^ExecStart=.*|ExecStart=$program|" "$unit" >"$scratch/units/$name.service"
expect "systemd understands the unit" silent "$(verdict "$scratch/units/$name.service")"
# A unit as systemd makes it of the autostart entry.
printf '[Service]\nType=exec\nExecStart=%s\n' "$program" >"$scratch/units/$name@autostart.service"
cp "$drop_in" "$scratch/units/$name@.service.d/"
expect "systemd understands the drop-in" silent "$(verdict "$scratch/units/$name@autostart.service")"

# That it would say so if it did not.
sed -i 's/^RestrictRealtime=/RestrictRealtimes=/' "$scratch/units/$name.service"
expect "a wrong line of the unit is found" test -n "$(verdict "$scratch/units/$name.service")"
sed -i 's/@module/@modules/' "$scratch/units/$name@.service.d/sandbox.conf"
expect "a wrong line of the drop-in is found" test -n "$(verdict "$scratch/units/$name@autostart.service")"

expect "the bus starts this unit" equal "$(value SystemdService "$service")" "$name.service"
expect "under this name" equal "$(value Name "$service")" "$(value BusName "$unit")"
expect "with the program that it would start without systemd" equal "$(value Exec "$service")" "$(value ExecStart "$unit")"
expect "which is that of the autostart entry" equal "$(value Exec "$autostart")" "$(value ExecStart "$unit")"
expect "the drop-in is called after that entry" equal "${drop_in%@.service.d/*}" "$packaging/systemd/app-$(basename "$autostart" .desktop)"
expect "no log-in starts the unit besides that entry" test -z "$(grep -n '^\[Install\]' "$unit")"
expect "and systemd makes a unit of the entry" test -z "$(grep -n '^X-systemd-skip' "$autostart")"
expect "the sandbox is the same in both" equal "$(settings "$drop_in")" \
    "$(settings "$unit" | grep -vE '^(Description|Documentation|PartOf|After|Type|BusName|ExecStart|Restart|KillMode)=')"
expect "and is there" grep -q '^NoNewPrivileges=yes$' "$drop_in"
[ "$failures" -eq 0 ] || exit 1
