#include "platform/wayland/WaylandKeyboardLayouts.h"

#include "platform/wayland/SeatKeymap.h"

#include <utility>
#include <vector>

#include <xkbcommon/xkbcommon.h>

namespace orvane {

WaylandKeyboardLayouts::WaylandKeyboardLayouts(const QtDBusSession *session)
    : WaylandKeyboardLayouts(session, std::shared_ptr<xkb_context>(xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref)) {}

WaylandKeyboardLayouts::WaylandKeyboardLayouts(const QtDBusSession *session, std::shared_ptr<xkb_context> context)
    : XkbKeyboardLayouts(context.get()), _context(std::move(context)), _active(session) {}

std::uint32_t WaylandKeyboardLayouts::_numberOfLayout() const {
    std::vector<std::string> names;
    const xkb_layout_index_t number = _keymap == nullptr ? 0 : xkb_keymap_num_layouts(_keymap.get());
    for (xkb_layout_index_t layout = 0; layout < number; ++layout) {
        const char *const name = xkb_keymap_layout_get_name(_keymap.get(), layout);
        names.emplace_back(name == nullptr ? "" : name);
    }
    return number < 2 ? 0 : _active.index(names).value_or(0);
}

std::shared_ptr<const KeyboardInputSource> WaylandKeyboardLayouts::copyCurrentKeyboardInputSource() {
    if (_context == nullptr) {
        return nullptr;
    }
    std::string text = WaylandSeatKeymapText().value_or(std::string());
    const bool isOther = _source == nullptr || text != _text;
    if (isOther) {
        _text = std::move(text);
        xkb_keymap *const keymap = _text.empty() ? xkb_keymap_new_from_names(_context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS)
                                                 : xkb_keymap_new_from_string(_context.get(), _text.c_str(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                                                              XKB_KEYMAP_COMPILE_NO_FLAGS);
        _keymap = keymap == nullptr ? nullptr : std::shared_ptr<xkb_keymap>(keymap, xkb_keymap_unref);
    }
    const std::uint32_t layout = _numberOfLayout();
    if (isOther || layout != _layout) {
        _layout = layout;
        _source = _sourceOf(_keymap, layout);
    }
    return _source;
}

} // namespace orvane
