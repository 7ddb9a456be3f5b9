#pragma once

#include "ports/AssertionHandler.h"
#include "ports/KeyboardLayouts.h"
#include "ports/PropertyList.h"
#include "ports/Resources.h"
#include "ports/TextCase.h"

#include <cstdint>
#include <string>

namespace orvane {

/// What the names of keys need of the desktop. All are borrowed.
struct SGKeyComboPorts {
    AssertionHandler &assertionHandler;
    KeyboardLayouts &layouts;
    Resources &resources;
    TextCase &textCase;
};

/// A key with modifiers: a virtual key code of the Mac, or -1 for no key, and a mask in the Carbon convention, or -1 for no
/// modifiers. A value; its numbers are never checked. Names of keys are asked for on the main thread only.
class SGKeyCombo {
public:
    /// Says over which ports keys are named, and forgets the names and the translator of the ports before. To be called before the
    /// first name is asked for; null takes the ports away. Without ports every key's name is empty and the text of an
    /// invalid combination is "(None)".
    static void setSharedPorts(const SGKeyComboPorts *ports);

    /// No key, no modifiers.
    [[nodiscard]] static SGKeyCombo clearKeyCombo() { return {-1, -1}; }
    [[nodiscard]] static SGKeyCombo keyComboWithKeyCodeModifiers(std::intptr_t keyCode, std::intptr_t modifiers) {
        return {keyCode, modifiers};
    }

    SGKeyCombo(std::intptr_t keyCode, std::intptr_t modifiers) : _keyCode(keyCode), _modifiers(modifiers) {}
    /// From a dictionary with `keyCode` and `modifiers`. Numbers of 0 and below become -1, so key code 0 does not come back
    /// (kept deliberately); an absent or empty dictionary gives the clear combination.
    explicit SGKeyCombo(const PropertyListValue *plistRepresentation);
    /// A dictionary with both numbers as they are.
    [[nodiscard]] PropertyList plistRepresentation() const;

    [[nodiscard]] std::intptr_t keyCode() const { return _keyCode; }
    void setKeyCode(std::intptr_t keyCode) { _keyCode = keyCode; }
    [[nodiscard]] std::intptr_t modifiers() const { return _modifiers; }
    void setModifiers(std::intptr_t modifiers) { _modifiers = modifiers; }

    /// Whether `other`, anything that answers `keyCode` and `modifiers`, has the same.
    template <typename Other> [[nodiscard]] bool isEqual(const Other &other) const {
        return other.keyCode() == _keyCode && other.modifiers() == _modifiers;
    }
    bool operator==(const SGKeyCombo &other) const { return isEqual(other); }

    /// Neither key nor modifiers.
    [[nodiscard]] bool isClearCombo() const { return _keyCode == -1 && _modifiers == -1; }
    /// A key (0 counts) with at least one modifier.
    [[nodiscard]] bool isValidHotKeyCombo() const { return _keyCode >= 0 && _modifiers > 0; }

    /// The key's name by the present layout; empty for the clear combination.
    [[nodiscard]] std::string keyCodeString() const;
    /// The modifiers in the Cocoa convention; 0 for the clear combination. Bits that stand for none of the four are dropped.
    [[nodiscard]] std::uintptr_t modifierMask() const;
    /// Glyphs of the modifiers, then the key's name; for what is no valid hot key the user's words for "(None)".
    [[nodiscard]] std::string description() const;

    /// Glyphs in the order command, option, control, shift.
    [[nodiscard]] static std::string _stringForModifiers(std::intptr_t modifiers);
    /// The list of key names, loaded once. Its root is null when there is none.
    [[nodiscard]] static const PropertyList &_keyCodesDictionary();
    [[nodiscard]] static std::string _stringForKeyCode(std::int16_t keyCode);
    [[nodiscard]] static std::string _stringForKeyCodeLegacyKeyCodeMap(std::int16_t keyCode, const PropertyListValue &map);
    [[nodiscard]] static std::string _stringForKeyCodeNewKeyCodeMap(std::int16_t keyCode, const PropertyListValue &map);

private:
    std::intptr_t _keyCode;
    std::intptr_t _modifiers;
};

} // namespace orvane
