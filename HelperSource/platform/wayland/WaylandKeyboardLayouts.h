#pragma once

#include "platform/x11/XkbKeyboardLayouts.h"

#include <memory>
#include <string>

struct xkb_context;

namespace orvane {

/// What the compositor's keymap prints on its keys, in its first layout: which of several is in use, a compositor tells only to the
/// window that has the keyboard. The compositor is asked each time. Main thread only.
class WaylandKeyboardLayouts final : public XkbKeyboardLayouts {
public:
    WaylandKeyboardLayouts();

    /// Another object after every change of the keymap; the system's default layout where the compositor has none.
    [[nodiscard]] std::shared_ptr<const KeyboardInputSource> copyCurrentKeyboardInputSource() override;

private:
    explicit WaylandKeyboardLayouts(std::shared_ptr<xkb_context> context);

    std::shared_ptr<xkb_context> _context; ///< null when there is no memory for one
    std::string _text;                     ///< of the keymap that the source was made of
    std::shared_ptr<const KeyboardInputSource> _source;
};

} // namespace orvane
