#!/usr/bin/env bash
# The installed helper under a user's own systemd: as the unit that the bus starts, and as the unit that systemd makes of the autostart
# entry; with the sandbox in force, for the helper and for the scripts of presets.
#
#   tests/package/user_manager.sh --can              says why not, when systemd cannot be run for a user here; status 1 then
#   tests/package/user_manager.sh --outside ROOT USER   called by install_test.sh, in its namespace: runs the following in the root
#   user_manager.sh                                  in the root, as the user, in a control group of the user's
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)

# Outside ----------------------------------------------------------------------------------------------------------------

# The version 2 hierarchy of control groups, in which systemd follows what it starts.
groups_folder() {
    if [ -f /sys/fs/cgroup/cgroup.controllers ]; then
        printf /sys/fs/cgroup
    elif [ -f /sys/fs/cgroup/unified/cgroup.controllers ]; then
        printf /sys/fs/cgroup/unified
    else
        printf 'this kernel has no control groups of version 2 mounted\n' >&2
        return 1
    fi
}

can() {
    local folder
    folder=$(groups_folder) || return 1
    if ! mkdir "$folder/orvane-test-$$" 2>/dev/null; then
        printf 'no control group can be made in %s\n' "$folder" >&2
        return 1
    fi
    rmdir "$folder/orvane-test-$$"
}

# Control groups are the one thing that does not go away with the namespace: those of runs that were killed go now.
remove_groups() {
    find "$1" -mindepth 1 -depth -type d -path "$1/orvane-test-*" -exec rmdir {} + 2>/dev/null || true
}

outside() {
    local root=$1 user=$2 folder group status=0
    folder=$(groups_folder)
    remove_groups "$folder"
    group=$(mktemp -d "$folder/orvane-test-XXXXXX")
    chmod 755 "$group"
    chown -R "$(stat -c %u:%g "$root/home/$user")" "$group"
    mkdir -p "$root/sys/fs/cgroup" "$root/run/systemd/system" # the latter says that systemd runs the machine
    mount --rbind /sys/fs/cgroup "$root/sys/fs/cgroup"
    (
        echo "$BASHPID" >"$group/cgroup.procs"
        exec chroot --userspec="$user:$user" "$root" env -i --chdir="/home/$user" HOME="/home/$user/under systemd" USER="$user" \
            PATH=/usr/bin:/bin LC_ALL=C.UTF-8 XDG_RUNTIME_DIR=/run/user/1000 /opt/test/user_manager.sh
    ) || status=$?
    umount -l "$root/sys/fs/cgroup"
    rmdir "$root/sys/fs/cgroup" "$root/sys/fs" "$root/run/systemd/system"
    [ ! -f "$group/cgroup.kill" ] || echo 1 >"$group/cgroup.kill"
    for ((i = 0; i < 50; i++)); do
        remove_groups "$folder"
        [ -d "$group" ] || break
        sleep 0.1
    done
    return "$status"
}

case ${1-} in
--can)
    can
    exit
    ;;
--outside)
    outside "$2" "$3"
    exit
    ;;
esac

# In the root ------------------------------------------------------------------------------------------------------------

# shellcheck source-path=SCRIPTDIR source=checks.sh
. "$here/checks.sh"
limit=30
id=org.orvane.Helper
unit=app-$id.service
autostarted=app-$id@autostart.service
export DBUS_SESSION_BUS_ADDRESS=unix:path=$XDG_RUNTIME_DIR/bus
logs=$HOME/screen
jobs=$HOME/Jobs
mkdir -p "$logs" "$jobs" "$HOME/Library/Preferences" "$HOME/.local/share/Orvane/Scripts"

# A preset whose script says what it can do.
cat >"$HOME/Library/Preferences/org.orvane.ORVPrefPane.plist" <<'PLIST'
<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>ORVPresets</key><array><dict>
<key>label</key><string>Probe</string><key>directoryName</key><string>Probe</string><key>scriptFile</key><string>probe</string>
</dict></array></dict></plist>
PLIST
cat >"$HOME/.local/share/Orvane/Scripts/probe" <<'SCRIPT'
#!/usr/bin/perl
use strict; use warnings; use Socket;
open my $out, '>', "$ENV{ORV_ROOT_PATH}/probe.part" or die;
open my $status, '<', '/proc/self/status' or die;
while (<$status>) { print $out $_ if /^(NoNewPrivs|Seccomp):/ }
sub try { my ($what, $can) = @_; print $out "$what: ", ($can ? "yes" : "no"), "\n" }
try("local socket", socket(my $a, AF_UNIX, SOCK_STREAM, 0));
try("network socket", socket(my $b, AF_INET, SOCK_STREAM, 0));
try("socket of the kernel's cryptography", socket(my $c, 38, SOCK_SEQPACKET, 0)); # AF_ALG in <sys/socket.h>
try("set-group-ID", chmod(02770, $ENV{ORV_ROOT_PATH}) && ((stat $ENV{ORV_ROOT_PATH})[2] & 02000));
try("file in /tmp", open(my $d, '>', "/tmp/orvane-probe-$$") && unlink("/tmp/orvane-probe-$$"));
try("another program", system('/bin/true') == 0);
close $out;
rename "$ENV{ORV_ROOT_PATH}/probe.part", "$ENV{ORV_ROOT_PATH}/probe" or die;
SCRIPT
chmod 755 "$HOME/.local/share/Orvane/Scripts/probe"

/lib/systemd/systemd --user >"$logs/systemd.log" 2>&1 &
manager=$!
server=
end() {
    systemctl --user exit >/dev/null 2>&1 || kill "$manager" 2>/dev/null || true
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    wait 2>/dev/null || true
}
trap end EXIT

coproc display_server { exec Xvfb -displayfd 1 -screen 0 1024x768x24 -nolisten tcp 2>"$logs/xvfb.log"; }
# shellcheck disable=SC2154 # set by coproc
server=$display_server_PID
read -r -t "$limit" number <&"${display_server[0]}"
export DISPLAY=:$number

property() { systemctl --user show --value --property="$2" "$1"; }
has_state() { [ "$(property "$1" ActiveState)" = "$2" ]; }
owns() { gdbus call --session --dest org.freedesktop.DBus --object-path / --method org.freedesktop.DBus.NameHasOwner "$1" | grep -q true; }
gone() { fails owns "$1"; }
menu_is_up() { xdotool search --onlyvisible --classname '^orvane-helper$' | grep -q .; }
menu_is_down() { fails menu_is_up; }
act() { gapplication action "$id" "$@"; }
confined() { grep -q '^NoNewPrivs:[[:space:]]*1$' "/proc/$1/status" && grep -q '^Seccomp:[[:space:]]*2$' "/proc/$1/status"; }
says() { grep -qxE "$1:[[:space:]]*$2" "$jobs/Probe/probe" || { cat "$jobs/Probe/probe" && false; }; }
is_another() { local now && now=$(property "$unit" MainPID) && [ "$now" -gt 0 ] && [ "$now" != "$1" ]; }
manager_is_up() { systemctl --user is-system-running | grep -qE '^(running|degraded)$'; }

check "systemd runs for the user" soon "$limit" manager_is_up
check "and has started the session bus" soon "$limit" test -S "$XDG_RUNTIME_DIR/bus"
dbus-update-activation-environment --systemd DISPLAY
# Windows are brought to the front by a window manager.
openbox --sm-disable >"$logs/openbox.log" 2>&1 &

check "no log-in starts the unit" [ "$(systemctl --user is-enabled "$unit")" = static ]
check "an action has the bus start it" act make-preset-in "'$jobs'"
check "the unit is active" soon "$limit" has_state "$unit" active
check "its name is on the bus" soon "$limit" owns "$id"
helper=$(property "$unit" MainPID)
check "its process is the helper" [ "$(cat "/proc/$helper/comm")" = orvane-helper ]
check "which is in the sandbox" confined "$helper"
check "the menu comes up" soon "$limit" menu_is_up
xdotool key Down Return
check "a preset is made, and its script runs to its end" soon "$limit" test -f "$jobs/Probe/probe"
check "the script gains no rights" says NoNewPrivs 1
check "its calls are filtered" says Seccomp 2
check "it has local sockets" says "local socket" yes
check "and the network" says "network socket" yes
check "but no exotic sockets" says "socket of the kernel's cryptography" no
check "it may set the group's bit of a folder" says "set-group-ID" yes
check "and write in /tmp" says "file in /tmp" yes
check "and start programs" says "another program" yes

check "the menu is closed" soon "$limit" menu_is_down
kill -SEGV "$helper"
check "after a crash it is started again" soon "$limit" is_another "$helper"
check "and has its name again" soon "$limit" owns "$id"
check "told to quit it ends" act quit
check "its unit is inactive" soon "$limit" has_state "$unit" inactive
check "with success" [ "$(property "$unit" Result)" = success ]
check "and stays so" gone "$id"

check "systemd makes a unit of the autostart entry" systemctl --user start "$autostarted"
check "which takes the name" soon "$limit" owns "$id"
helper=$(property "$autostarted" MainPID)
check "and is in the sandbox by the drop-in" confined "$helper"
check "no menu comes up at log-in" menu_is_down
check "an action is served by it" act make-preset
check "with its menu" soon "$limit" menu_is_up
check "and no second helper is started" has_state "$unit" inactive
xdotool key Escape
check "the menu closes" soon "$limit" menu_is_down
check "systemd stops it" systemctl --user stop "$autostarted"
check "in order" [ "$(property "$autostarted" Result)" = success ]
check "and its name is free" soon "$limit" gone "$id"
results
