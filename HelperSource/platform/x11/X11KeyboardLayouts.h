#pragma once

#include "platform/x11/X11DeadKeys.h"
#include "platform/x11/X11Keyboard.h"
#include "ports/KeyboardLayouts.h"

#include <cstdint>
#include <memory>
#include <span>

namespace orvane {

/// What the server's keymap prints on its keys, in the group in use. A dead-key state is the dead key's symbol. Modifiers
/// and options are not looked at: nobody asks for other than none.
class X11KeyboardLayouts final : public KeyboardLayouts {
public:
    /// Borrowed; somebody else hands it the connection's events.
    explicit X11KeyboardLayouts(X11Keyboard &keyboard) : _keyboard(keyboard), _deadKeys(keyboard.context()) {}

    /// Another object after every change of keymap or group.
    [[nodiscard]] std::shared_ptr<const KeyboardInputSource> copyCurrentKeyboardInputSource() override;
    /// Always 0: the server's keymap says what kind of keyboard it is.
    [[nodiscard]] std::uint32_t keyboardType() override { return 0; }
    std::int32_t keyTranslate(const KeyboardLayoutData *layout, std::uint16_t keyCode, KeyAction action, std::uint32_t modifierKeyState,
                              std::uint32_t keyboardType, std::uint32_t options, std::uint32_t &deadKeyState, std::span<char16_t> text,
                              std::size_t &length) override;

private:
    X11Keyboard &_keyboard;
    X11DeadKeys _deadKeys;
    std::shared_ptr<const KeyboardInputSource> _source;
    std::uint64_t _generation = 0; ///< the keyboard's when the source was made
};

} // namespace orvane
