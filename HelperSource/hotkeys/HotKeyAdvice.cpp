#include "hotkeys/HotKeyAdvice.h"

#include <algorithm>
#include <cctype>

namespace orvane {

namespace {

/// Whether the desktop is one of those named, whatever the case.
bool isNamed(std::string_view desktops, std::string_view wanted) {
    const auto isSame = [](char left, char right) {
        return std::tolower(static_cast<unsigned char>(left)) == std::tolower(static_cast<unsigned char>(right));
    };
    while (!desktops.empty()) {
        const std::size_t end = std::min(desktops.find(':'), desktops.size());
        const std::string_view name = desktops.substr(0, end);
        if (std::equal(name.begin(), name.end(), wanted.begin(), wanted.end(), isSame)) {
            return true;
        }
        desktops.remove_prefix(std::min(end + 1, desktops.size()));
    }
    return false;
}

std::string gnomeCommands(const std::string &command) {
    const std::string schema = "org.gnome.settings-daemon.plugins.media-keys";
    const std::string path = "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/orvane/";
    const std::string set = "\n  gsettings set " + schema + ".custom-keybinding:" + path + " ";
    // The list of custom keys is named last and replaces what stands there: users who have some add to it in Settings instead.
    return "In Settings, Keyboard, View and Customize Shortcuts, Custom Shortcuts, add one with the command '" + command +
           "'. Or in a terminal, if you have no custom shortcuts yet:" + set + "name Orvane" + set + "command '" + command + "'" + set +
           "binding '<Control><Shift>h'" + "\n  gsettings set " + schema + " custom-keybindings \"['" + path + "']\"";
}

} // namespace

std::string ORVHotKeyAdvice(std::string_view currentDesktop, std::string_view command) {
    return "This desktop gives programs no hot keys of their own. " + ORVHotKeyInstructions(currentDesktop, command);
}

std::string ORVHotKeyInstructions(std::string_view currentDesktop, std::string_view command) {
    const std::string bound(command);
    const std::string start = "Bind a key to the command '" + bound + "': ";
    if (isNamed(currentDesktop, "GNOME") || isNamed(currentDesktop, "Unity")) {
        return start + gnomeCommands(bound);
    }
    if (isNamed(currentDesktop, "KDE")) {
        return start + "in System Settings, Shortcuts, Add Command.";
    }
    if (isNamed(currentDesktop, "sway")) {
        return start + "add this line to ~/.config/sway/config and reload:\n  bindsym Ctrl+Shift+h exec " + bound;
    }
    if (isNamed(currentDesktop, "Hyprland")) {
        return start + "add this line to ~/.config/hypr/hyprland.conf:\n  bind = CTRL SHIFT, H, exec, " + bound;
    }
    if (isNamed(currentDesktop, "niri")) {
        return start + "add this to the section binds of ~/.config/niri/config.kdl:\n  Ctrl+Shift+H { spawn-sh \"" + bound + "\"; }";
    }
    if (isNamed(currentDesktop, "weston")) {
        return start + "weston has no keys for commands; a launcher in its panel (section [launcher] of ~/.config/weston.ini, "
                       "path=) can start it.";
    }
    return start + "where your desktop's settings or your compositor's configuration name keys for commands.";
}

} // namespace orvane
