#include "platform/x11/X11KeyboardLayouts.h"

namespace orvane {

std::shared_ptr<const KeyboardInputSource> X11KeyboardLayouts::copyCurrentKeyboardInputSource() {
    if (_generation != _keyboard.generation()) {
        _generation = _keyboard.generation();
        _source = _sourceOf(_keyboard.keymap(), _keyboard.group());
    }
    return _source;
}

} // namespace orvane
