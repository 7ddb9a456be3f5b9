#pragma once

#include "fakes/FakeAssertionHandler.h"
#include "fakes/FakeKeyboardLayouts.h"
#include "fakes/FakeResources.h"
#include "fakes/FakeTextCase.h"
#include "hotkeys/SGKeyCombo.h"
#include "unit/core/Plist.h"

#include <memory>
#include <string>

namespace orvane::test {

/// What keys are named with, set as the shared ports while it lives.
class KeyDesk {
public:
    KeyDesk() {
        const SGKeyComboPorts ports{assertions, layouts, resources, textCase};
        SGKeyCombo::setSharedPorts(&ports);
    }
    KeyDesk(const KeyDesk &) = delete;
    KeyDesk &operator=(const KeyDesk &) = delete;
    ~KeyDesk() { SGKeyCombo::setSharedPorts(nullptr); }

    /// Makes `list` the list of key names.
    void setKeyCodes(const PropertyList &list) {
        resources.strings["SGKeyCodes.plist"] = "key codes";
        resources.lists["key codes"] = list;
    }
    /// A list of the newer form: code 36 is Return, codes 83 and 65 are on the keypad.
    void setNewKeyCodes() {
        setKeyCodes(dict({{"version", number(1)},
                          {"unmappedKeys", dict({{"36", text("Return")}})},
                          {"padKeys", list({text("83"), text("65")})},
                          {"padKeyString", text("Pad")}}));
    }
    void useLayout(std::map<std::uint16_t, std::u16string> keys) {
        layouts.current = std::make_shared<const FakeKeyboardLayouts::Layout>(std::move(keys));
    }

    FakeAssertionHandler assertions;
    FakeKeyboardLayouts layouts;
    FakeResources resources;
    FakeTextCase textCase;
};

} // namespace orvane::test
