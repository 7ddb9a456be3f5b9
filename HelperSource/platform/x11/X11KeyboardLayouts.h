#pragma once

#include "platform/x11/X11Keyboard.h"
#include "platform/x11/XkbKeyboardLayouts.h"

#include <cstdint>
#include <memory>

namespace orvane {

/// What the server's keymap prints on its keys, in the group in use.
class X11KeyboardLayouts final : public XkbKeyboardLayouts {
public:
    /// Borrowed; somebody else hands it the connection's events.
    explicit X11KeyboardLayouts(X11Keyboard &keyboard) : XkbKeyboardLayouts(keyboard.context()), _keyboard(keyboard) {}

    /// Another object after every change of keymap or group.
    [[nodiscard]] std::shared_ptr<const KeyboardInputSource> copyCurrentKeyboardInputSource() override;

private:
    X11Keyboard &_keyboard;
    std::shared_ptr<const KeyboardInputSource> _source;
    std::uint64_t _generation = 0; ///< the keyboard's when the source was made
};

} // namespace orvane
