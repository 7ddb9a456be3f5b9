#!/usr/bin/env bash
# Runs a command on weston, which shows itself in a window that fills an X server's screen (its own, see with-desktop.sh): there weston
# has a mouse and a keyboard. All of it is gone afterwards. The command's status is this script's, or 77 ("skipped") when weston is not
# installed.
#
#   tests/tools/with-weston.sh [--size WxH] -- COMMAND [ARGUMENT]...
#
# The command finds what with-desktop.sh gives, and WAYLAND_DISPLAY. DISPLAY is the X server that weston is on: for input by XTest.
set -euo pipefail
# shellcheck source=tests/tools/scratch.sh
. "$(dirname "${BASH_SOURCE[0]}")/scratch.sh"

size=1280x800
while [ $# -gt 0 ]; do
    case $1 in
    --size) size=$2 && shift 2 ;;
    --) shift && break ;;
    *) printf 'with-weston.sh: what is %s?\n' "$1" >&2 && exit 2 ;;
    esac
done
[ $# -gt 0 ] || { printf 'with-weston.sh: no command\n' >&2 && exit 2; }

# Second stage, on the X server.
if [ -n "${ORVANE_TEST_ON_X-}" ]; then
    unset ORVANE_TEST_ON_X
    printf '[core]\nidle-time=0\nrequire-input=false\n[shell]\nlocking=false\npanel-position=none\nbackground-color=0xff204060\nanimation=none\nstartup-animation=none\n' \
        >"$DESKTOP_SCRATCH/weston.ini"
    env -u QT_QPA_PLATFORM weston --backend=x11-backend.so --use-pixman --width="${size%x*}" --height="${size#*x}" \
        --socket=orvane-weston --config="$DESKTOP_SCRATCH/weston.ini" --log="$DESKTOP_SCRATCH/weston.log" >/dev/null 2>&1 &
    weston=$!
    # shellcheck disable=SC2317 # called by the trap
    stop() {
        end_program "$weston"
    }
    trap stop EXIT
    for ((i = 0; i < 400; i++)); do
        [ ! -S "$XDG_RUNTIME_DIR/orvane-weston" ] || break
        kill -0 "$weston" 2>/dev/null || i=400
        sleep 0.025
    done
    if [ "$i" -ge 400 ]; then
        cat "$DESKTOP_SCRATCH/weston.log" >&2
        printf 'with-weston.sh: weston did not start\n' >&2
        exit 3
    fi
    export WAYLAND_DISPLAY=orvane-weston XDG_SESSION_TYPE=wayland XDG_CURRENT_DESKTOP=weston QT_QPA_PLATFORM=wayland
    dbus-update-activation-environment WAYLAND_DISPLAY XDG_CURRENT_DESKTOP 2>/dev/null || true
    status=0
    "$@" || status=$?
    exit "$status"
fi

command -v weston >/dev/null || { printf 'with-weston.sh: skipped, weston is not installed\n' >&2 && exit 77; }
own=$(readlink -f "${BASH_SOURCE[0]}")
# The name passes through with-desktop.sh.
ORVANE_TEST_ON_X=yes exec "${own%/*}/with-desktop.sh" --wm none --size "$size" -- "$own" --size "$size" -- "$@"
