#include "platform/wayland/KeyboardMap.h"

#include "platform/wayland/SeatKeymap.h"
#include "platform/x11/X11KeyCodes.h"
#include "ports/HotKeyEvents.h"

#include <algorithm>
#include <array>
#include <utility>

#include <QChar>
#include <Qt>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

namespace orvane {

namespace {

struct SpecialKey {
    xkb_keysym_t keysym;
    Qt::Key key;
};

/// Keys that print nothing.
constexpr std::array<SpecialKey, 26> SpecialKeys{{
    {XKB_KEY_Return, Qt::Key_Return},
    {XKB_KEY_KP_Enter, Qt::Key_Enter},
    {XKB_KEY_Tab, Qt::Key_Tab},
    {XKB_KEY_BackSpace, Qt::Key_Backspace},
    {XKB_KEY_Escape, Qt::Key_Escape},
    {XKB_KEY_Delete, Qt::Key_Delete},
    {XKB_KEY_Insert, Qt::Key_Insert},
    {XKB_KEY_Home, Qt::Key_Home},
    {XKB_KEY_End, Qt::Key_End},
    {XKB_KEY_Prior, Qt::Key_PageUp},
    {XKB_KEY_Next, Qt::Key_PageDown},
    {XKB_KEY_Left, Qt::Key_Left},
    {XKB_KEY_Right, Qt::Key_Right},
    {XKB_KEY_Up, Qt::Key_Up},
    {XKB_KEY_Down, Qt::Key_Down},
    {XKB_KEY_Help, Qt::Key_Help},
    {XKB_KEY_Menu, Qt::Key_Menu},
    {XKB_KEY_Num_Lock, Qt::Key_NumLock},
    {XKB_KEY_Muhenkan, Qt::Key_Muhenkan},
    {XKB_KEY_Henkan, Qt::Key_Henkan},
    {XKB_KEY_Hangul, Qt::Key_Hangul},
    {XKB_KEY_Hangul_Hanja, Qt::Key_Hangul_Hanja},
    {XKB_KEY_XF86AudioMute, Qt::Key_VolumeMute},
    {XKB_KEY_XF86AudioLowerVolume, Qt::Key_VolumeDown},
    {XKB_KEY_XF86AudioRaiseVolume, Qt::Key_VolumeUp},
    {XKB_KEY_XF86Tools, Qt::Key_F13},
}};

std::optional<int> qtKeyOf(xkb_keysym_t keysym) {
    if (keysym >= XKB_KEY_F1 && keysym <= XKB_KEY_F35) {
        return Qt::Key_F1 + static_cast<int>(keysym - XKB_KEY_F1);
    }
    for (const SpecialKey &special : SpecialKeys) {
        if (special.keysym == keysym) {
            return special.key;
        }
    }
    // Other keys are numbered by the character they print, letters by the capital one (Qt::Key).
    const std::uint32_t character = xkb_keysym_to_utf32(keysym);
    return character < 0x20 || character == 0x7F ? std::nullopt : std::optional<int>(static_cast<int>(QChar::toUpper(character)));
}

bool isLetter(xkb_keysym_t keysym) {
    const std::uint32_t character = xkb_keysym_to_utf32(keysym);
    return character != 0 && QChar::isLetter(character);
}

std::shared_ptr<xkb_keymap> keymapOf(xkb_keymap *keymap) {
    return keymap == nullptr ? nullptr : std::shared_ptr<xkb_keymap>(keymap, xkb_keymap_unref);
}

/// `make` gets a context that need not outlive it: a keymap keeps its own hold of it.
template <typename Make> std::shared_ptr<xkb_keymap> makeKeymap(const Make &make) {
    xkb_context *const context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    if (context == nullptr) {
        return nullptr;
    }
    std::shared_ptr<xkb_keymap> keymap = keymapOf(make(context));
    xkb_context_unref(context);
    return keymap;
}

} // namespace

KeyboardMap KeyboardMap::ofSession() {
    if (const std::optional<std::string> text = WaylandSeatKeymapText()) {
        return KeyboardMap(makeKeymap([&text](xkb_context *context) {
            return xkb_keymap_new_from_string(context, text->c_str(), XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS);
        }));
    }
    return ofLayout({});
}

KeyboardMap KeyboardMap::ofLayout(const std::string &layout) {
    return KeyboardMap(makeKeymap([&layout](xkb_context *context) {
        xkb_rule_names names{};
        names.layout = layout.c_str();
        return xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    }));
}

std::optional<std::uint32_t> KeyboardMap::keysym(std::uint32_t keyCode, unsigned level, std::uint32_t layout) const {
    const std::optional<std::uint8_t> key = X11KeyCodeOfVirtualKeyCode(keyCode);
    if (!key || _keymap == nullptr) {
        return std::nullopt;
    }
    const xkb_keysym_t *symbols = nullptr;
    const int number = xkb_keymap_key_get_syms_by_level(_keymap.get(), *key, layout, level, &symbols);
    return number == 1 && symbols[0] != XKB_KEY_NoSymbol ? std::optional<std::uint32_t>(symbols[0]) : std::nullopt;
}

std::optional<int> KeyboardMap::qtKey(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t layout) const {
    // The keypad's digits are on its second level.
    const std::optional<std::uint32_t> plain = keysym(keyCode, X11IsKeypadKey(keyCode) ? 1 : 0, layout);
    const std::optional<std::uint32_t> symbol = plain ? plain : keysym(keyCode, 0, layout);
    if (!symbol || (modifiers & ~(EventModifierCommand | EventModifierShift | EventModifierOption | EventModifierControl)) != 0) {
        return std::nullopt;
    }
    std::optional<int> key = qtKeyOf(*symbol);
    if (!key) {
        return std::nullopt;
    }
    bool hasShift = (modifiers & EventModifierShift) != 0;
    if (hasShift && !isLetter(*symbol) && !X11IsKeypadKey(keyCode)) {
        const std::optional<std::uint32_t> shifted = keysym(keyCode, 1, layout);
        const std::optional<int> other = shifted ? qtKeyOf(*shifted) : std::nullopt;
        if (other && other != key) {
            key = other;
            hasShift = false;
        }
    }
    int combination = *key;
    combination |= hasShift ? static_cast<int>(Qt::ShiftModifier) : 0;
    combination |= (modifiers & EventModifierControl) != 0 ? static_cast<int>(Qt::ControlModifier) : 0;
    combination |= (modifiers & EventModifierOption) != 0 ? static_cast<int>(Qt::AltModifier) : 0;
    combination |= (modifiers & EventModifierCommand) != 0 ? static_cast<int>(Qt::MetaModifier) : 0;
    return combination;
}

std::vector<int> KeyboardMap::qtKeys(std::uint32_t keyCode, std::uint32_t modifiers) const {
    std::vector<int> keys;
    const xkb_layout_index_t layouts = _keymap == nullptr ? 0 : xkb_keymap_num_layouts(_keymap.get());
    for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
        const std::optional<int> key = qtKey(keyCode, modifiers, layout);
        if (key && std::find(keys.begin(), keys.end(), *key) == keys.end()) {
            keys.push_back(*key);
        }
    }
    return keys;
}

std::optional<std::string> KeyboardMap::portalTrigger(std::uint32_t keyCode, std::uint32_t modifiers) const {
    const std::optional<std::uint32_t> symbol = keysym(keyCode, X11IsKeypadKey(keyCode) ? 1 : 0);
    std::array<char, 64> name{};
    if (!symbol || xkb_keysym_get_name(*symbol, name.data(), name.size()) <= 0) {
        return std::nullopt;
    }
    std::string trigger;
    for (const auto &[bit, text] : {std::pair{EventModifierControl, "CTRL+"}, std::pair{EventModifierOption, "ALT+"},
                                    std::pair{EventModifierShift, "SHIFT+"}, std::pair{EventModifierCommand, "LOGO+"}}) {
        if ((modifiers & bit) != 0) {
            trigger += text;
        }
    }
    return trigger + name.data();
}

} // namespace orvane
