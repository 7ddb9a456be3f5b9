#include "hotkeys/SGHotKey.h"

#include <utility>

namespace orvane {

SGHotKey::SGHotKey(Identifier identifier, std::optional<SGKeyCombo> keyCombo) {
    setIdentifier(std::move(identifier));
    setKeyCombo(keyCombo);
}

SGHotKey::SGHotKey(Identifier identifier, std::optional<SGKeyCombo> keyCombo, void *target, SGSelector action)
    : SGHotKey(std::move(identifier), keyCombo) {
    setTarget(target);
    setAction(action);
}

std::string SGHotKey::description() const {
    return "<SGHotKey: " + _identifier.value_or("(null)") + ", " + _keyCombo.description() + ">";
}

} // namespace orvane
