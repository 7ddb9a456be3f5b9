#!/usr/bin/env bash
# Runs a command on a desktop of its own: X server on a free display, window manager, session bus, home folder. All of it is gone
# afterwards. The command's status is this script's.
#
#   tests/tools/with-desktop.sh [OPTION]... -- COMMAND [ARGUMENT]...
#
#   --wm NAME        window manager: openbox (unless told), xfwm4, none
#   --tray NAME      trayer (XEmbed), xfce4-panel (StatusNotifierItem and XEmbed), none (unless told)
#   --size WxH       size of the screen, 1280x800 unless told
#   --no-bus         no session bus
#   --accessibility  the accessibility bus is up before the command starts
#   --ordinary-user  everything runs as nobody in particular where it would be root: some programs refuse to be root's
#
# The command finds DISPLAY, DBUS_SESSION_BUS_ADDRESS, HOME, XDG_RUNTIME_DIR, the other XDG folders below HOME, and DESKTOP_SCRATCH
# (a folder that goes away too). Trays can be started and killed by the command itself as well.
set -euo pipefail
# shellcheck source=tests/tools/scratch.sh
. "$(dirname "${BASH_SOURCE[0]}")/scratch.sh"

wm=openbox tray=none size=1280x800 bus=yes accessibility=no ordinary=no
words=("$@")
while [ $# -gt 0 ]; do
    case $1 in
    --wm) wm=$2 && shift 2 ;;
    --tray) tray=$2 && shift 2 ;;
    --size) size=$2 && shift 2 ;;
    --no-bus) bus=no && shift ;;
    --accessibility) accessibility=yes && shift ;;
    --ordinary-user) ordinary=yes && shift ;;
    --) shift && break ;;
    *) printf 'with-desktop.sh: what is %s?\n' "$1" >&2 && exit 2 ;;
    esac
done
[ $# -gt 0 ] || { printf 'with-desktop.sh: no command\n' >&2 && exit 2; }

if [ "$ordinary" = yes ] && [ "$(id -u)" -eq 0 ]; then
    exec setpriv --reuid 65534 --regid 65534 --clear-groups -- "$0" "${words[@]}"
fi

# Second stage, on the session bus.
if [ "${ORVANE_DESKTOP_STAGE-}" = 2 ]; then
    unset ORVANE_DESKTOP_STAGE
    case $wm in
    openbox) openbox --sm-disable >"$DESKTOP_SCRATCH/wm.log" 2>&1 & ;;
    xfwm4) xfwm4 --sm-client-disable >"$DESKTOP_SCRATCH/wm.log" 2>&1 & ;;
    none) ;;
    *) printf 'with-desktop.sh: what window manager is %s?\n' "$wm" >&2 && exit 2 ;;
    esac
    if [ "$wm" != none ]; then
        # A window manager says that it is there with a property of the root window (EWMH 1.5, _NET_SUPPORTING_WM_CHECK).
        for ((i = 0; i < 400; i++)); do
            if xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; then
                break
            fi
            sleep 0.025
        done
        [ "$i" -lt 400 ] || { printf 'with-desktop.sh: the window manager did not start\n' >&2 && exit 3; }
    fi
    if [ "$accessibility" = yes ]; then
        gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus --method org.a11y.Bus.GetAddress >/dev/null
    else
        export NO_AT_BRIDGE=1
    fi
    export DESKTOP_TRAY=$tray # for tests that differ by it
    case $tray in
    trayer) trayer --edge bottom --height 32 >"$DESKTOP_SCRATCH/tray.log" 2>&1 & ;;
    xfce4-panel)
        # One panel at the bottom with nothing in it but windows and tray; without a configuration it asks at its first start.
        settings=$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml
        mkdir -p "$settings"
        cat >"$settings/xfce4-panel.xml" <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=10;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="32"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/><value type="int" value="2"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="tasklist"/>
    <property name="plugin-2" type="string" value="systray"/>
  </property>
</channel>
END
        xfce4-panel --disable-wm-check >"$DESKTOP_SCRATCH/tray.log" 2>&1 &
        ;;
    none) ;;
    *) printf 'with-desktop.sh: what tray is %s?\n' "$tray" >&2 && exit 2 ;;
    esac
    status=0
    "$@" || status=$?
    exit "$status"
fi

scratch=$(mktemp -d "${TMPDIR:-/tmp}/orvane-desktop.XXXXXX")
server=
# shellcheck disable=SC2317 # called by the trap
cleanup() {
    [ -z "$server" ] || end_program "$server"
    remove_scratch "$scratch"
}
trap cleanup EXIT
trap 'exit 143' TERM INT

mkdir -p "$scratch/home/.config" "$scratch/run"
chmod 700 "$scratch/run"
# The server itself finds a free display and writes its number.
mkfifo "$scratch/display"
Xvfb -displayfd 7 -screen 0 "${size}x24" -dpi 96 -noreset -nolisten tcp 7>"$scratch/display" >"$scratch/xvfb.log" 2>&1 &
server=$!
if ! read -r -t 20 display <"$scratch/display"; then
    cat "$scratch/xvfb.log" >&2
    printf 'with-desktop.sh: no X server\n' >&2
    exit 3
fi

surroundings=(
    env -i PATH="$PATH" LANG="${LANG:-C.UTF-8}" LC_ALL="${LC_ALL:-C.UTF-8}" TMPDIR="${TMPDIR:-/tmp}" DISPLAY=":$display"
    HOME="$scratch/home" USER="${USER:-user}" SHELL=/bin/sh XDG_RUNTIME_DIR="$scratch/run" XDG_SESSION_TYPE=x11
    XDG_CONFIG_HOME="$scratch/home/.config" XDG_DATA_HOME="$scratch/home/.local/share" XDG_CACHE_HOME="$scratch/home/.cache"
    XDG_STATE_HOME="$scratch/home/.local/state" DESKTOP_SCRATCH="$scratch" ORVANE_DESKTOP_STAGE=2 QT_QPA_PLATFORM=xcb
    GSETTINGS_BACKEND=memory LIBGL_ALWAYS_SOFTWARE=1
)
while IFS= read -r variable; do
    surroundings+=("$variable=${!variable}")
done < <(compgen -e | grep -E '^(ORVANE_TEST_|QT_SCALE_FACTOR$|GTEST_)' || true)
again=("${BASH_SOURCE[0]}" --wm "$wm" --tray "$tray")
[ "$accessibility" = no ] || again+=(--accessibility)
status=0
if [ "$bus" = yes ]; then
    "${surroundings[@]}" dbus-run-session -- "${again[@]}" -- "$@" || status=$?
else
    "${surroundings[@]}" "${again[@]}" -- "$@" || status=$?
fi
exit "$status"
