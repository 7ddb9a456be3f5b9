#!/usr/bin/env bash
# A user's first session with the installed package, on an X server of its own: the helper, started by the bus and as at log-in, a
# folder made by keys, the settings. install_test.sh runs it in its root, on a session bus. Pictures of the screen go into the folder
# `pictures` of the home folder.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=checks.sh
. "$(dirname "${BASH_SOURCE[0]}")/checks.sh"

limit=30 # seconds that anything may take
helper_id=org.orvane.Helper
settings_id=org.orvane.Settings
programs=()

mkdir -p "$HOME/pictures" "$HOME/screen" "$HOME/Jobs"
coproc server { exec Xvfb -displayfd 1 -screen 0 1024x768x24 -nolisten tcp -fbdir "$HOME/screen" 2>"$HOME/screen/log"; }
# shellcheck disable=SC2154 # set by coproc
programs+=("$server_PID")
end() {
    kill "${programs[@]}" 2>/dev/null || true
    wait 2>/dev/null || true
}
trap end EXIT
read -r -t "$limit" display <&"${server[0]}"
export DISPLAY=:$display
dbus-update-activation-environment DISPLAY
openbox --sm-disable >"$HOME/screen/openbox.log" 2>&1 &
programs+=($!)

# Whether something is painted in the middle of the screen, whose file has a head and then four bytes for each point (XWD).
painted() { [ "$(tail -c +$((4000 + 384 * 1024 * 4)) "$HOME/screen/Xvfb_screen0" | head -c 4096 | tr -d '\0' | wc -c)" -gt 1000 ]; }
picture() { cp "$HOME/screen/Xvfb_screen0" "$HOME/pictures/$1.xwd"; }
owns() { gdbus call --session --dest org.freedesktop.DBus --object-path / --method org.freedesktop.DBus.NameHasOwner "$1" | grep -q true; }
gone() { fails owns "$1"; }
window_of() { xdotool search --onlyvisible --classname "^$1\$" | grep -q .; }
no_window_of() { fails window_of "$1"; }
act() { gapplication action "$helper_id" "$@"; }

check "openbox is up" soon "$limit" xprop -root _NET_SUPPORTING_WM_CHECK

# The helper as the bus starts it.
check "the bus knows how to start the helper" \
    grep -q "'$helper_id'" <(gdbus call --session --dest org.freedesktop.DBus --object-path / --method org.freedesktop.DBus.ListActivatableNames)
check "its actions are known by its desktop file" grep -qx make-preset <(gapplication list-actions "$helper_id")
check "nothing has started it yet" gone "$helper_id"
check "an action starts it" act make-preset
check "its name is on the bus" soon "$limit" owns "$helper_id"
check "its menu comes up" soon "$limit" window_of orvane-helper
picture menu
check "Escape closes the menu" xdotool key Escape
check "and nothing else is open" soon "$limit" no_window_of orvane-helper
check "orvane menu brings it up" orvane menu
check "so that it is seen" soon "$limit" window_of orvane-helper
check "Escape closes that, too" xdotool key Escape
check "and again nothing is open" soon "$limit" no_window_of orvane-helper
check "it is told to quit" act quit
check "and gives its name back" soon "$limit" gone "$helper_id"

# As at log-in, and a folder by keys alone.
command=$(sed -n 's/^Exec=//p' "/etc/xdg/autostart/$helper_id.desktop")
check "the autostart entry names the program" test -x "$command"
"$command" >"$HOME/screen/helper.log" 2>&1 &
helper=$!
programs+=("$helper")
check "log-in starts it" soon "$limit" owns "$helper_id"
check "without a menu" no_window_of orvane-helper
check "a second start only brings the menu up" "$command"
check "and that is the first one's" soon "$limit" window_of orvane-helper
xdotool key Escape
check "which Escape closes" soon "$limit" no_window_of orvane-helper
check "another program asks for the menu, for a folder" act make-preset-in "'$HOME/Jobs'"
check "the menu comes up" soon "$limit" window_of orvane-helper
xdotool key Down Return
dialog_of() { xdotool search --onlyvisible --classname '^orvane-helper$' | xargs -r -n 1 xprop -id 2>/dev/null | grep -q _NET_WM_WINDOW_TYPE_DIALOG; }
check "choosing a preset asks for its values" soon "$limit" dialog_of
picture prompt
type_values() {
    local end=$((SECONDS + limit))
    while dialog_of && [ "$SECONDS" -lt "$end" ]; do
        xdotool key --clearmodifiers Return
        sleep 0.2
    done
    fails dialog_of
}
check "Return after Return takes them" type_values
made() { find "$HOME/Jobs" -mindepth 2 -name 'Slate.txt' | grep -q .; }
check "the folder is made, and the preset's script has run" soon "$limit" made
kill -TERM "$helper"
check "told to end it gives its name back" soon "$limit" gone "$helper_id"
status=0
wait "$helper" || status=$?
check "and ends in order" [ "$status" -eq 0 ]

# The settings, by their own start and by the bus.
LANGUAGE=de LANG=de_DE.UTF-8 orvane-settings >"$HOME/screen/settings.log" 2>&1 &
settings=$!
programs+=("$settings")
check "the settings' window comes up" soon "$limit" window_of orvane-settings
titled() { xdotool search --onlyvisible --name "$1" | grep -q .; }
check "in German" soon "$limit" titled '^Orvane-Einstellungen$'
check "and is painted" soon "$limit" painted
picture settings
kill -TERM "$settings"
check "the settings end when they are told to" soon "$limit" gone "$settings_id"
wait "$settings" || true
check "the bus starts them" gapplication launch "$settings_id"
check "and their window comes up" soon "$limit" window_of orvane-settings
check "in English" soon "$limit" titled '^Orvane Settings$'
check "they are told to quit" gapplication action "$settings_id" quit
check "and end" soon "$limit" gone "$settings_id"

# What the programs keep for themselves, and the preferences, is nobody else's affair.
open_to_others() { find "$HOME/.local/state/orvane" "$HOME/Library/Preferences" -perm /077 -printf '%M %p\n' | grep .; }
check "there is a log" test -s "$HOME/.local/state/orvane/log"
check "nobody else may read log, state and preferences" fails open_to_others

check "presets have a media type" grep -q 'application/x-orvane-preset+xml' \
    <(gio info -a standard::content-type /usr/share/orvane/presets/film-production/film-production.orvpreset)
check "which the settings open" grep -q "$settings_id.desktop" <(gio mime application/x-orvane-preset+xml)
results
