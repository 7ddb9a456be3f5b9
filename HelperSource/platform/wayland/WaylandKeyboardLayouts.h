#pragma once

#include "platform/wayland/ActiveLayout.h"
#include "platform/x11/XkbKeyboardLayouts.h"

#include <cstdint>
#include <memory>
#include <string>

struct xkb_context;
struct xkb_keymap;

namespace orvane {

/// What the compositor's keymap prints on its keys, in the layout in use where that can be found out (`ActiveLayout`), else in the first
/// one. The compositor is asked each time. Main thread only.
class WaylandKeyboardLayouts final : public XkbKeyboardLayouts {
public:
    /// Borrowed; null where there is no session bus.
    explicit WaylandKeyboardLayouts(const QtDBusSession *session = nullptr);

    /// Another object after every change of keymap or layout; the system's default layout where the compositor has none.
    [[nodiscard]] std::shared_ptr<const KeyboardInputSource> copyCurrentKeyboardInputSource() override;

private:
    WaylandKeyboardLayouts(const QtDBusSession *session, std::shared_ptr<xkb_context> context);
    [[nodiscard]] std::uint32_t _numberOfLayout() const;

    std::shared_ptr<xkb_context> _context; ///< null when there is no memory for one
    ActiveLayout _active;
    std::string _text; ///< of the keymap
    std::shared_ptr<xkb_keymap> _keymap;
    std::uint32_t _layout = 0;
    std::shared_ptr<const KeyboardInputSource> _source;
};

} // namespace orvane
