#include "platform/x11/XkbKeyboardLayouts.h"

#include "platform/x11/X11KeyCodes.h"
#include "ports/UTF16.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace orvane {

namespace {

constexpr std::int32_t ParameterError = -50; // paramErr of Apple's MacErrors.h

/// One group of a keymap.
class XkbLayout final : public KeyboardInputSource, public KeyboardLayoutData {
public:
    XkbLayout(std::shared_ptr<xkb_keymap> keymap, xkb_layout_index_t group) : _keymap(std::move(keymap)), _group(group) {}

    [[nodiscard]] const KeyboardLayoutData *unicodeKeyLayoutData() const override { return this; }

    /// The symbol that is printed on the key: of the first level, or on the keypad, whose first level moves the cursor on PC
    /// keyboards, of the first that is a character. XKB_KEY_NoSymbol for a key that has none.
    [[nodiscard]] xkb_keysym_t symbol(std::uint16_t keyCode) const;

private:
    std::shared_ptr<xkb_keymap> _keymap;
    xkb_layout_index_t _group;
};

std::string utf8OfSymbol(xkb_keysym_t symbol) {
    constexpr std::size_t Room = 8; // xkbcommon asks for 7 at least
    std::array<char, Room> text{};
    const int size = xkb_keysym_to_utf8(symbol, text.data(), text.size());
    if (size <= 1) { // the size includes the NUL at the end
        return {};
    }
    const auto first = static_cast<unsigned char>(text.front());
    constexpr unsigned char Blank = 0x20;
    constexpr unsigned char Delete = 0x7F;
    return first < Blank || first == Delete ? std::string() : std::string(text.data(), static_cast<std::size_t>(size) - 1);
}

xkb_keysym_t XkbLayout::symbol(std::uint16_t keyCode) const {
    const auto key = X11KeyCodeOfVirtualKeyCode(keyCode);
    if (!key) {
        return XKB_KEY_NoSymbol;
    }
    const xkb_level_index_t levels = X11IsKeypadKey(keyCode) ? xkb_keymap_num_levels_for_key(_keymap.get(), *key, _group) : 1;
    for (xkb_level_index_t level = 0; level < levels; ++level) {
        const xkb_keysym_t *symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(_keymap.get(), *key, _group, level, &symbols);
        if (count > 0 && (levels == 1 || !utf8OfSymbol(symbols[0]).empty())) {
            return symbols[0];
        }
    }
    return XKB_KEY_NoSymbol;
}

std::u16string accentOf(xkb_keysym_t symbol) {
    const char32_t accent = X11AccentOfDeadKey(symbol); // all of them are single units
    return accent == U'\0' ? std::u16string() : std::u16string(1, static_cast<char16_t>(accent));
}

} // namespace

std::shared_ptr<const KeyboardInputSource> XkbKeyboardLayouts::_sourceOf(std::shared_ptr<xkb_keymap> keymap, std::uint32_t group) {
    return keymap == nullptr ? nullptr : std::make_shared<const XkbLayout>(std::move(keymap), group);
}

std::int32_t XkbKeyboardLayouts::keyTranslate(const KeyboardLayoutData *layout, std::uint16_t keyCode, KeyAction action,
                                              std::uint32_t /*modifierKeyState*/, std::uint32_t /*keyboardType*/, std::uint32_t /*options*/,
                                              std::uint32_t &deadKeyState, std::span<char16_t> text, std::size_t &length) {
    length = 0;
    const auto *const keys = dynamic_cast<const XkbLayout *>(layout);
    if (keys == nullptr) {
        return ParameterError;
    }
    const xkb_keysym_t symbol = keys->symbol(keyCode);
    const std::u16string accent = accentOf(symbol);
    std::u16string found = accent.empty() ? ORVUTF16OfText(utf8OfSymbol(symbol)) : accent;
    if (deadKeyState != 0) {
        const std::u16string combined = ORVUTF16OfText(_deadKeys.compose(deadKeyState, symbol));
        found = combined.empty() ? accentOf(deadKeyState) + found : combined; // what does not combine is typed one after the other
        deadKeyState = 0;
    } else if (!accent.empty() && action == KeyAction::Down) {
        deadKeyState = symbol;
        return 0;
    }
    length = std::min(found.size(), text.size());
    std::copy_n(found.begin(), length, text.begin());
    return 0;
}

} // namespace orvane
