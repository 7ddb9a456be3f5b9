#include "hotkeys/HotKeyAdvice.h"

#include <algorithm>
#include <array>
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

constexpr const char *Why = "This desktop gives programs no hot keys of their own.";
constexpr const char *Start = "Bind a key to the command '%1':";
constexpr const char *Anywhere = "where your desktop's settings or your compositor's configuration name keys for commands.";

// The list of custom keys stands last, and replaces what stands there: users who have some add to it in Settings instead.
constexpr const char *GnomePlace = "In Settings, Keyboard, View and Customize Shortcuts, Custom Shortcuts, add one with the command '%1'.";
constexpr const char *GnomeShell = "Or in a terminal, if you have no custom shortcuts yet:"
                                   "\n  gsettings set org.gnome.settings-daemon.plugins.media-keys.custom-keybinding:"
                                   "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/orvane/ name Orvane"
                                   "\n  gsettings set org.gnome.settings-daemon.plugins.media-keys.custom-keybinding:"
                                   "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/orvane/ command '%1'"
                                   "\n  gsettings set org.gnome.settings-daemon.plugins.media-keys.custom-keybinding:"
                                   "/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/orvane/ binding '<Control><Shift>h'"
                                   "\n  gsettings set org.gnome.settings-daemon.plugins.media-keys custom-keybindings "
                                   "\"['/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/orvane/']\"";

struct Place {
    std::string_view desktop;
    const char *text;
    const char *shell = "";
};
constexpr std::array<Place, 7> Places{
    {{"GNOME", GnomePlace, GnomeShell},
     {"Unity", GnomePlace, GnomeShell},
     {"KDE", "in System Settings, Shortcuts, Add Command."},
     {"sway", "add this line to ~/.config/sway/config and reload:\n  bindsym Ctrl+Shift+h exec %1"},
     {"Hyprland", "add this line to ~/.config/hypr/hyprland.conf:\n  bind = CTRL SHIFT, H, exec, %1"},
     {"niri", "add this to the section binds of ~/.config/niri/config.kdl:\n  Ctrl+Shift+H { spawn-sh \"%1\"; }"},
     {"weston",
      "weston has no keys for commands; a launcher in its panel (section [launcher] of ~/.config/weston.ini, path=) can start it."}}};

std::string withCommand(std::string text, std::string_view command) {
    for (std::size_t at = text.find("%1"); at != std::string::npos; at = text.find("%1", at + command.size())) {
        text.replace(at, 2, command);
    }
    return text;
}

} // namespace

ORVHotKeyTexts ORVHotKeyTextsOf(std::string_view currentDesktop) {
    const auto *const found =
        std::find_if(Places.begin(), Places.end(), [&](const Place &place) { return isNamed(currentDesktop, place.desktop); });
    return found == Places.end() ? ORVHotKeyTexts{Why, Start, Anywhere, ""} : ORVHotKeyTexts{Why, Start, found->text, found->shell};
}

std::string ORVHotKeyAdvice(std::string_view currentDesktop, std::string_view command) {
    return std::string(Why) + " " + ORVHotKeyInstructions(currentDesktop, command);
}

std::string ORVHotKeyInstructions(std::string_view currentDesktop, std::string_view command) {
    const ORVHotKeyTexts texts = ORVHotKeyTextsOf(currentDesktop);
    const std::string shell = *texts.shell == '\0' ? std::string() : std::string(" ") + texts.shell;
    return withCommand(std::string(texts.start) + " " + texts.place + shell, command);
}

} // namespace orvane
