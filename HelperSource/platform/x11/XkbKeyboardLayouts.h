#pragma once

#include "platform/x11/X11DeadKeys.h"
#include "ports/KeyboardLayouts.h"

#include <cstdint>
#include <memory>
#include <span>

struct xkb_context;
struct xkb_keymap;

namespace orvane {

/// What keymaps of XKB print on their keys. A dead-key state is the dead key's symbol. Modifiers and options are not looked at: nobody
/// asks for other than none. Which keymap is in use, subclasses know.
class XkbKeyboardLayouts : public KeyboardLayouts {
public:
    /// Always 0: the keymap says what kind of keyboard it is.
    [[nodiscard]] std::uint32_t keyboardType() override { return 0; }
    std::int32_t keyTranslate(const KeyboardLayoutData *layout, std::uint16_t keyCode, KeyAction action, std::uint32_t modifierKeyState,
                              std::uint32_t keyboardType, std::uint32_t options, std::uint32_t &deadKeyState, std::span<char16_t> text,
                              std::size_t &length) override;

protected:
    /// The context is borrowed.
    explicit XkbKeyboardLayouts(xkb_context *context) : _deadKeys(context) {}
    /// One group of a keymap; null for none.
    [[nodiscard]] static std::shared_ptr<const KeyboardInputSource> _sourceOf(std::shared_ptr<xkb_keymap> keymap, std::uint32_t group);

private:
    X11DeadKeys _deadKeys;
};

} // namespace orvane
