#include "platform/wayland/WaylandKeyboardLayouts.h"

#include "platform/wayland/SeatKeymap.h"

#include <utility>

#include <xkbcommon/xkbcommon.h>

namespace orvane {

WaylandKeyboardLayouts::WaylandKeyboardLayouts()
    : WaylandKeyboardLayouts(std::shared_ptr<xkb_context>(xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref)) {}

WaylandKeyboardLayouts::WaylandKeyboardLayouts(std::shared_ptr<xkb_context> context)
    : XkbKeyboardLayouts(context.get()), _context(std::move(context)) {}

std::shared_ptr<const KeyboardInputSource> WaylandKeyboardLayouts::copyCurrentKeyboardInputSource() {
    std::string text = SeatKeymapText().value_or(std::string());
    if (_context == nullptr || (_source != nullptr && text == _text)) {
        return _source;
    }
    _text = std::move(text);
    xkb_keymap *const keymap =
        _text.empty() ? xkb_keymap_new_from_names(_context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS)
                      : xkb_keymap_new_from_string(_context.get(), _text.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS);
    _source = _sourceOf(keymap == nullptr ? nullptr : std::shared_ptr<xkb_keymap>(keymap, xkb_keymap_unref), 0);
    return _source;
}

} // namespace orvane
