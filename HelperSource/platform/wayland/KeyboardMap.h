#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct xkb_keymap;

namespace orvane {

/// What the keyboard's layouts have on the keys that virtual key codes of the Mac stand for: some services know keys by that rather than
/// by their place. Layouts are counted from 0. Main thread only.
class KeyboardMap {
public:
    /// That of the compositor's keyboard; the system's default layout where it cannot be had.
    [[nodiscard]] static KeyboardMap ofSession();
    /// Layouts by their names in xkeyboard-config, as in "de" or "us,ru".
    [[nodiscard]] static KeyboardMap ofLayout(const std::string &layout);

    /// The key of Qt, with its modifiers, that this combination is for KGlobalAccel. Shift on a key that prints something else with it
    /// becomes that: Shift and 1 is "!", as KDE's own settings store it. Nothing when there is no such key.
    [[nodiscard]] std::optional<int> qtKey(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t layout = 0) const;
    /// The same for every layout, without repetitions, the first layout's in front: together they stand for the place on the keyboard.
    [[nodiscard]] std::vector<int> qtKeys(std::uint32_t keyCode, std::uint32_t modifiers) const;
    /// The combination as the desktop portal writes it ("CTRL+SHIFT+h", the XDG shortcuts format); nothing when there is no such key.
    [[nodiscard]] std::optional<std::string> portalTrigger(std::uint32_t keyCode, std::uint32_t modifiers) const;
    /// The keysym on the key, without (level 0) or with (level 1) Shift; nothing when there is none.
    [[nodiscard]] std::optional<std::uint32_t> keysym(std::uint32_t keyCode, unsigned level, std::uint32_t layout = 0) const;

private:
    explicit KeyboardMap(std::shared_ptr<xkb_keymap> keymap) : _keymap(std::move(keymap)) {}

    std::shared_ptr<xkb_keymap> _keymap; ///< null when there is none at all
};

} // namespace orvane
