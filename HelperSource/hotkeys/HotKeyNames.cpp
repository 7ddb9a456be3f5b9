#include "hotkeys/HotKeyNames.h"

#include "ports/AssertionHandler.h"

#include <cstdint>

namespace orvane {

namespace {

/// The answer of `ask`, or when the names' list is missing, the other one.
template <typename Ask, typename Answer> Answer orElse(Ask ask, Answer otherwise) {
    try {
        return ask();
    } catch (const AssertionFailure &) { // told of; a name is not worth more than that
        return otherwise;
    }
}

std::string numberOf(const SGKeyCombo &combo) {
    return SGKeyCombo::_stringForKeyCodeLegacyKeyCodeMap(static_cast<std::int16_t>(combo.keyCode()), {});
}

} // namespace

std::string ORVKeyName(const SGKeyCombo &combo) {
    return orElse([&] { return combo.keyCodeString(); }, numberOf(combo));
}

std::string ORVHotKeyName(const SGKeyCombo &combo) {
    return orElse([&] { return combo.description(); }, SGKeyCombo::_stringForModifiers(combo.modifiers()) + numberOf(combo));
}

bool ORVKeyHasOwnName(const SGKeyCombo &combo) {
    return orElse(
        [&] {
            const PropertyListValue *const names = SGKeyCombo::_keyCodesDictionary().root().find("unmappedKeys");
            return names != nullptr && names->find(std::to_string(combo.keyCode())) != nullptr;
        },
        false);
}

} // namespace orvane
