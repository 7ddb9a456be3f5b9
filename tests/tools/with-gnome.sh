#!/usr/bin/env bash
# Runs a command on GNOME Shell without a screen: compositor, session bus and home folder of its own. All of it is gone afterwards. The
# command's status is this script's, or 77 ("skipped") when GNOME Shell is not installed.
#
#   tests/tools/with-gnome.sh [--size WxH] -- COMMAND [ARGUMENT]...
#
# The command finds WAYLAND_DISPLAY, DBUS_SESSION_BUS_ADDRESS, HOME, XDG_RUNTIME_DIR, the other XDG folders below HOME, and
# DESKTOP_SCRATCH (a folder that goes away too). The shell is in its unsafe mode, so that its method Eval gives the command a keyboard.
# There is no login manager: a second session bus stands in for the system's, with nobody on it.
set -euo pipefail
# shellcheck source=tests/tools/scratch.sh
. "$(dirname "${BASH_SOURCE[0]}")/scratch.sh"

size=1280x800
while [ $# -gt 0 ]; do
    case $1 in
    --size) size=$2 && shift 2 ;;
    --) shift && break ;;
    *) printf 'with-gnome.sh: what is %s?\n' "$1" >&2 && exit 2 ;;
    esac
done
[ $# -gt 0 ] || { printf 'with-gnome.sh: no command\n' >&2 && exit 2; }

# Second stage, on the session bus.
if [ "${ORVANE_DESKTOP_STAGE-}" = 2 ]; then
    unset ORVANE_DESKTOP_STAGE
    shell_says() {
        gdbus call --session --dest org.gnome.Shell --object-path /org/gnome/Shell --method org.gnome.Shell.Eval "$1" 2>/dev/null || true
    }
    gsettings set org.gnome.shell welcome-dialog-last-shown-version 99
    env -u QT_QPA_PLATFORM gnome-shell --headless --no-x11 --virtual-monitor "$size" --unsafe-mode --wayland-display orvane-gnome \
        >"$DESKTOP_SCRATCH/gnome-shell.log" 2>&1 &
    shell=$!
    # shellcheck disable=SC2317 # called by the trap
    stop() {
        end_program "$shell"
    }
    trap stop EXIT
    # It starts with an overview of all windows, in which new windows do not get the keyboard.
    for ((i = 0; i < 1200; i++)); do
        if shell_says 'if (!Main.layoutManager._startingUp) Main.overview.hide(); !Main.layoutManager._startingUp && !Main.overview.visible' |
            grep -q "'true'"; then
            break
        fi
        kill -0 "$shell" 2>/dev/null || i=1200
        sleep 0.025
    done
    if [ "$i" -ge 1200 ]; then
        tail -n 40 "$DESKTOP_SCRATCH/gnome-shell.log" >&2
        printf 'with-gnome.sh: GNOME Shell did not start\n' >&2
        exit 3
    fi
    export WAYLAND_DISPLAY=orvane-gnome
    dbus-update-activation-environment WAYLAND_DISPLAY XDG_CURRENT_DESKTOP 2>/dev/null || true
    status=0
    "$@" || status=$?
    exit "$status"
fi

command -v gnome-shell >/dev/null || { printf 'with-gnome.sh: skipped, GNOME Shell is not installed\n' >&2 && exit 77; }

scratch=$(mktemp -d "${TMPDIR:-/tmp}/orvane-gnome.XXXXXX")
bus=
# shellcheck disable=SC2317 # called by the trap
cleanup() {
    [ -z "$bus" ] || kill "$bus" 2>/dev/null || true
    remove_scratch "$scratch"
}
trap cleanup EXIT
trap 'exit 143' TERM INT

mkdir -p "$scratch/home/.config" "$scratch/run"
chmod 700 "$scratch/run"
dbus-daemon --session --nofork --nopidfile --print-address=7 7>"$scratch/bus" 2>/dev/null &
bus=$!
for ((i = 0; i < 400; i++)); do
    [ ! -s "$scratch/bus" ] || break
    sleep 0.025
done
surroundings=(
    env -i PATH="$PATH" LANG="${LANG:-C.UTF-8}" LC_ALL="${LC_ALL:-C.UTF-8}" TMPDIR="${TMPDIR:-/tmp}"
    HOME="$scratch/home" USER="${USER:-user}" SHELL=/bin/sh XDG_RUNTIME_DIR="$scratch/run" XDG_SESSION_TYPE=wayland
    XDG_CURRENT_DESKTOP=GNOME XDG_SESSION_DESKTOP=gnome GNOME_SHELL_SESSION_MODE=gnome XDG_CONFIG_HOME="$scratch/home/.config"
    XDG_DATA_HOME="$scratch/home/.local/share" XDG_CACHE_HOME="$scratch/home/.cache" XDG_STATE_HOME="$scratch/home/.local/state"
    DESKTOP_SCRATCH="$scratch" ORVANE_DESKTOP_STAGE=2 QT_QPA_PLATFORM=wayland LIBGL_ALWAYS_SOFTWARE=1 NO_AT_BRIDGE=1
    GSETTINGS_BACKEND=keyfile DBUS_SYSTEM_BUS_ADDRESS="$(cat "$scratch/bus")"
)
while IFS= read -r variable; do
    surroundings+=("$variable=${!variable}")
done < <(compgen -e | grep -E '^(ORVANE_TEST_|QT_SCALE_FACTOR$|GTEST_)' || true)
status=0
"${surroundings[@]}" dbus-run-session -- "$(readlink -f "${BASH_SOURCE[0]}")" --size "$size" -- "$@" || status=$?
exit "$status"
