#!/usr/bin/env bash
# Runs a command on sway without a screen: compositor, session bus and home folder of its own. All of it is gone afterwards. The
# command's status is this script's, or 77 ("skipped") when sway is not installed.
#
#   tests/tools/with-sway.sh [OPTION]... -- COMMAND [ARGUMENT]...
#
#   --outputs N      number of outputs, side by side, 1280x800 each (1 unless told)
#   --scale N        scale of all outputs (1 unless told)
#   --line TEXT      a line more for sway's configuration; may be given again
#   --bar            waybar with a tray (StatusNotifierItem) runs
#   --no-bus         no session bus
#
# The command finds WAYLAND_DISPLAY, SWAYSOCK, DBUS_SESSION_BUS_ADDRESS, HOME, XDG_RUNTIME_DIR, the other XDG folders below HOME, and
# DESKTOP_SCRATCH (a folder that goes away too). sway refuses to run as root: for root all of it runs as nobody, and the command must
# be a program that can be copied (a test) or that nobody may run.
set -euo pipefail
# shellcheck source=tests/tools/scratch.sh
. "$(dirname "${BASH_SOURCE[0]}")/scratch.sh"

outputs=1 scale=1 bar=no bus=yes lines=()
while [ $# -gt 0 ]; do
    case $1 in
    --outputs) outputs=$2 && shift 2 ;;
    --scale) scale=$2 && shift 2 ;;
    --line) lines+=("$2") && shift 2 ;;
    --bar) bar=yes && shift ;;
    --no-bus) bus=no && shift ;;
    --) shift && break ;;
    *) printf 'with-sway.sh: what is %s?\n' "$1" >&2 && exit 2 ;;
    esac
done
[ $# -gt 0 ] || { printf 'with-sway.sh: no command\n' >&2 && exit 2; }

# Second stage: as an ordinary user, on the session bus.
if [ "${ORVANE_DESKTOP_STAGE-}" = 2 ]; then
    unset ORVANE_DESKTOP_STAGE
    sway -c "$DESKTOP_SCRATCH/sway.conf" >"$DESKTOP_SCRATCH/sway.log" 2>&1 &
    sway=$!
    # shellcheck disable=SC2317 # called by the trap
    stop() {
        end_program "$sway"
    }
    trap stop EXIT
    for ((i = 0; i < 400; i++)); do
        # Written by sway itself when it is ready.
        if [ -s "$DESKTOP_SCRATCH/sway.ready" ]; then
            break
        fi
        kill -0 "$sway" 2>/dev/null || break
        sleep 0.025
    done
    if [ ! -s "$DESKTOP_SCRATCH/sway.ready" ]; then
        tail -n 40 "$DESKTOP_SCRATCH/sway.log" >&2
        printf 'with-sway.sh: sway did not start\n' >&2
        exit 3
    fi
    # shellcheck disable=SC1091 # two assignments
    . "$DESKTOP_SCRATCH/sway.ready"
    export SWAYSOCK WAYLAND_DISPLAY
    if [ "$bus" = yes ]; then
        dbus-update-activation-environment WAYLAND_DISPLAY SWAYSOCK XDG_CURRENT_DESKTOP 2>/dev/null || true
    fi
    if [ "$bar" = yes ]; then
        printf '%s' '{"layer":"top","position":"top","height":30,"modules-right":["tray"],"tray":{"icon-size":21}}' \
            >"$DESKTOP_SCRATCH/waybar.json"
        waybar -c "$DESKTOP_SCRATCH/waybar.json" >"$DESKTOP_SCRATCH/waybar.log" 2>&1 &
    fi
    status=0
    "$@" || status=$?
    exit "$status"
fi

command -v sway >/dev/null || { printf 'with-sway.sh: skipped, sway is not installed\n' >&2 && exit 77; }

scratch=$(mktemp -d "${TMPDIR:-/tmp}/orvane-sway.XXXXXX")
# shellcheck disable=SC2317 # called by the trap
cleanup() {
    remove_scratch "$scratch"
}
trap cleanup EXIT
trap 'exit 143' TERM INT

mkdir -p "$scratch/home/.config" "$scratch/run"
chmod 700 "$scratch/run"
{
    printf 'xwayland disable\nfocus_follows_mouse no\ndefault_border normal\n'
    for ((i = 0; i < outputs; i++)); do
        printf 'output HEADLESS-%d resolution 1280x800 position %d,0 scale %s bg #204060 solid_color\n' \
            $((i + 1)) $((i * 1280 / scale)) "$scale"
    done
    [ ${#lines[@]} -eq 0 ] || printf '%s\n' "${lines[@]}"
    # shellcheck disable=SC2016 # sway's own shell puts the values in
    printf 'exec printf "SWAYSOCK=%%s\\nWAYLAND_DISPLAY=%%s\\n" "$SWAYSOCK" "$WAYLAND_DISPLAY" >%s\n' "$scratch/sway.ready"
} >"$scratch/sway.conf"

again=("$(readlink -f "${BASH_SOURCE[0]}")")
user=()
if [ "$(id -u)" -eq 0 ]; then
    user=(setpriv --reuid=nobody --regid=nogroup --clear-groups --inh-caps=-all)
    program=$(type -P "$1" || true)
    # What lies in a folder that nobody may enter is copied.
    if [ -n "$program" ] && ! "${user[@]}" test -x "$program"; then
        install -m 755 "$program" "$scratch/command"
        shift
        set -- "$scratch/command" "$@"
    fi
    if ! "${user[@]}" test -r "${again[0]}"; then
        install -m 755 "${again[0]}" "$scratch/with-sway.sh"
        again=("$scratch/with-sway.sh")
    fi
    chmod 711 "$scratch"
    chown -R nobody:nogroup "$scratch"
fi
surroundings=(
    env -i PATH="$PATH" LANG="${LANG:-C.UTF-8}" LC_ALL="${LC_ALL:-C.UTF-8}" TMPDIR="${TMPDIR:-/tmp}"
    HOME="$scratch/home" USER=nobody SHELL=/bin/sh XDG_RUNTIME_DIR="$scratch/run" XDG_SESSION_TYPE=wayland
    XDG_CURRENT_DESKTOP=sway XDG_CONFIG_HOME="$scratch/home/.config" XDG_DATA_HOME="$scratch/home/.local/share"
    XDG_CACHE_HOME="$scratch/home/.cache" XDG_STATE_HOME="$scratch/home/.local/state" DESKTOP_SCRATCH="$scratch"
    ORVANE_DESKTOP_STAGE=2 QT_QPA_PLATFORM=wayland WLR_BACKENDS=headless WLR_RENDERER=pixman WLR_LIBINPUT_NO_DEVICES=1
    WLR_HEADLESS_OUTPUTS="$outputs" GSETTINGS_BACKEND=memory LIBGL_ALWAYS_SOFTWARE=1 NO_AT_BRIDGE=1
)
while IFS= read -r variable; do
    surroundings+=("$variable=${!variable}")
done < <(compgen -e | grep -E '^(ORVANE_TEST_|QT_SCALE_FACTOR$|GTEST_)' || true)
[ "$bar" = no ] || again+=(--bar)
[ "$bus" = yes ] || again+=(--no-bus)
cd "$scratch"
status=0
if [ "$bus" = yes ]; then
    "${user[@]}" "${surroundings[@]}" dbus-run-session -- "${again[@]}" -- "$@" || status=$?
else
    "${user[@]}" "${surroundings[@]}" "${again[@]}" -- "$@" || status=$?
fi
exit "$status"
