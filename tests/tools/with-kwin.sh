#!/usr/bin/env bash
# Runs a command on KWin's Wayland compositor without a screen: compositor, session bus and home folder of its own. All of it is gone
# afterwards. The command's status is this script's, or 77 ("skipped") when KWin is not installed.
#
#   tests/tools/with-kwin.sh [--size WxH] [--outputs N] [--layouts us,ru] -- COMMAND [ARGUMENT]...
#
# The command finds WAYLAND_DISPLAY, DBUS_SESSION_BUS_ADDRESS, HOME, XDG_RUNTIME_DIR, the other XDG folders below HOME, and
# DESKTOP_SCRATCH (a folder that goes away too). KWin itself runs KGlobalAccel.
set -euo pipefail
# shellcheck source=tests/tools/scratch.sh
. "$(dirname "${BASH_SOURCE[0]}")/scratch.sh"

size=1280x800 outputs=1 layouts=
while [ $# -gt 0 ]; do
    case $1 in
    --size) size=$2 && shift 2 ;;
    --outputs) outputs=$2 && shift 2 ;;
    --layouts) layouts=$2 && shift 2 ;;
    --) shift && break ;;
    *) printf 'with-kwin.sh: what is %s?\n' "$1" >&2 && exit 2 ;;
    esac
done
[ $# -gt 0 ] || { printf 'with-kwin.sh: no command\n' >&2 && exit 2; }

# Second stage, on the session bus.
if [ "${ORVANE_DESKTOP_STAGE-}" = 2 ]; then
    unset ORVANE_DESKTOP_STAGE
    # KWin is a program of Qt itself: what QT_QPA_PLATFORM says is for the command. KDE_FULL_SESSION makes Qt look for Plasma's own
    # looks, and KWin 6 ends in that where they are not installed.
    env -u QT_QPA_PLATFORM -u KDE_FULL_SESSION "$DESKTOP_SCRATCH/kwin_wayland" --virtual --width "${size%x*}" \
        --height "${size#*x}" --no-lockscreen --output-count "$outputs" --socket orvane-kwin >"$DESKTOP_SCRATCH/kwin.log" 2>&1 &
    kwin=$!
    # shellcheck disable=SC2317 # called by the trap
    stop() {
        end_program "$kwin"
    }
    trap stop EXIT
    for ((i = 0; i < 400; i++)); do
        if [ -S "$XDG_RUNTIME_DIR/orvane-kwin" ] && gdbus call --session --dest org.freedesktop.DBus --object-path / \
            --method org.freedesktop.DBus.NameHasOwner org.kde.KWin 2>/dev/null | grep -q true; then
            break
        fi
        kill -0 "$kwin" 2>/dev/null || i=400
        sleep 0.025
    done
    if [ "$i" -ge 400 ]; then
        tail -n 40 "$DESKTOP_SCRATCH/kwin.log" >&2
        printf 'with-kwin.sh: KWin did not start\n' >&2
        exit 3
    fi
    export WAYLAND_DISPLAY=orvane-kwin
    dbus-update-activation-environment WAYLAND_DISPLAY XDG_CURRENT_DESKTOP KDE_FULL_SESSION KDE_SESSION_VERSION 2>/dev/null || true
    status=0
    "$@" || status=$?
    exit "$status"
fi

program=$(command -v kwin_wayland || true)
[ -n "$program" ] || { printf 'with-kwin.sh: skipped, KWin is not installed\n' >&2 && exit 77; }

scratch=$(mktemp -d "${TMPDIR:-/tmp}/orvane-kwin.XXXXXX")
# shellcheck disable=SC2317 # called by the trap
cleanup() {
    remove_scratch "$scratch"
}
trap cleanup EXIT
trap 'exit 143' TERM INT

mkdir -p "$scratch/home/.config" "$scratch/run"
chmod 700 "$scratch/run"
# KWin from 6.1 on lets the pointer go to another output only after some way against the edge between them.
printf '[EdgeBarrier]\nEdgeBarrier=0\nCornerBarrier=false\n' >"$scratch/home/.config/kwinrc"
[ -z "$layouts" ] || printf '[Layout]\nUse=true\nLayoutList=%s\n' "$layouts" >"$scratch/home/.config/kxkbrc"
# The installed program has a file capability that a container may not grant; a copy has none.
install -m 755 "$program" "$scratch/kwin_wayland"
surroundings=(
    env -i PATH="$PATH" LANG="${LANG:-C.UTF-8}" LC_ALL="${LC_ALL:-C.UTF-8}" TMPDIR="${TMPDIR:-/tmp}"
    HOME="$scratch/home" USER="${USER:-user}" SHELL=/bin/sh XDG_RUNTIME_DIR="$scratch/run" XDG_SESSION_TYPE=wayland
    XDG_CURRENT_DESKTOP=KDE KDE_FULL_SESSION=true KDE_SESSION_VERSION=5 XDG_CONFIG_HOME="$scratch/home/.config"
    XDG_DATA_HOME="$scratch/home/.local/share" XDG_CACHE_HOME="$scratch/home/.cache" XDG_STATE_HOME="$scratch/home/.local/state"
    DESKTOP_SCRATCH="$scratch" ORVANE_DESKTOP_STAGE=2 QT_QPA_PLATFORM=wayland KWIN_COMPOSE=O2 LIBGL_ALWAYS_SOFTWARE=1
    KWIN_WAYLAND_NO_PERMISSION_CHECKS=1 KWIN_SCREENSHOT_NO_PERMISSION_CHECKS=1 KDE_APPLICATIONS_AS_SCOPE=0
    GSETTINGS_BACKEND=memory NO_AT_BRIDGE=1
)
while IFS= read -r variable; do
    surroundings+=("$variable=${!variable}")
done < <(compgen -e | grep -E '^(ORVANE_TEST_|QT_SCALE_FACTOR$|GTEST_)' || true)
status=0
"${surroundings[@]}" dbus-run-session -- "$(readlink -f "${BASH_SOURCE[0]}")" --size "$size" --outputs "$outputs" -- "$@" || status=$?
exit "$status"
