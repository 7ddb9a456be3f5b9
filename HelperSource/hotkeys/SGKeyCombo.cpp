#include "hotkeys/SGKeyCombo.h"

#include "hotkeys/SGIntegerValue.h"
#include "hotkeys/SGKeyCodeTranslator.h"
#include "hotkeys/SGModifiers.h"
#include "presets/ORVPropertyListReading.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace orvane {

namespace {

constexpr const char *KeyCodeEntry = "keyCode";
constexpr const char *ModifiersEntry = "modifiers";
constexpr const char *NoKeyText = "(None)";

/// What names of keys are made of. Main thread only.
struct SharedNames {
    std::optional<SGKeyComboPorts> ports;
    PropertyList keyCodes; ///< root null until it was loaded
};

SharedNames &sharedNames() {
    static SharedNames slot;
    return slot;
}

std::intptr_t positiveOrNone(const PropertyListValue *value) {
    const std::int64_t number = SGIntegerValue(value);
    return number <= 0 ? -1 : static_cast<std::intptr_t>(number);
}

std::string decimal(int number) {
    return std::to_string(number);
}

/// As "%X" writes it: the number's 32 bits in capitals.
std::string hexadecimal(int number) {
    std::array<char, 8> digits{};
    auto *const end = std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<unsigned>(number), 16).ptr;
    std::transform(digits.data(), end, digits.data(), [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    return {digits.data(), end};
}

const PropertyListValue *entryOf(const PropertyListValue &map, const char *entry, std::string_view key) {
    const PropertyListValue *names = map.find(entry);
    return names == nullptr ? nullptr : names->find(key);
}

bool containsText(const PropertyListValue *list, std::string_view text) {
    if (list == nullptr) {
        return false;
    }
    const auto items = list->array();
    return std::any_of(items.begin(), items.end(), [&](const PropertyListValue &item) { return item.isString() && item.string() == text; });
}

} // namespace

void SGKeyCombo::setSharedPorts(const SGKeyComboPorts *ports) {
    SharedNames &shared = sharedNames();
    shared.keyCodes = PropertyList();
    shared.ports.reset();
    if (ports != nullptr) {
        shared.ports.emplace(*ports);
    }
    SGKeyCodeTranslator::setSharedLayouts(ports == nullptr ? nullptr : &ports->layouts);
}

SGKeyCombo::SGKeyCombo(const PropertyListValue *plistRepresentation) : SGKeyCombo(-1, -1) {
    if (plistRepresentation != nullptr && !plistRepresentation->dictionary().empty()) {
        _keyCode = positiveOrNone(plistRepresentation->find(KeyCodeEntry));
        _modifiers = positiveOrNone(plistRepresentation->find(ModifiersEntry));
    }
}

PropertyList SGKeyCombo::plistRepresentation() const {
    const std::array<PropertyListEntry, 2> entries{
        {{KeyCodeEntry, PropertyListValue::ofInteger(_keyCode)}, {ModifiersEntry, PropertyListValue::ofInteger(_modifiers)}}};
    PropertyListBuilder builder;
    return builder.finish(builder.dictionary(entries));
}

std::string SGKeyCombo::keyCodeString() const {
    return isClearCombo() ? std::string() : _stringForKeyCode(static_cast<std::int16_t>(_keyCode));
}

std::uintptr_t SGKeyCombo::modifierMask() const {
    std::uintptr_t mask = 0;
    if (!isClearCombo()) {
        for (const SGModifier &modifier : SGModifiers) {
            mask |= (static_cast<std::uintptr_t>(_modifiers) & modifier.carbonBit) != 0 ? modifier.cocoaBit : 0U;
        }
    }
    return mask;
}

std::string SGKeyCombo::description() const {
    if (isValidHotKeyCombo()) {
        return _stringForModifiers(_modifiers) + keyCodeString();
    }
    return sharedNames().ports ? sharedNames().ports->resources.localizedString(NoKeyText) : NoKeyText;
}

std::string SGKeyCombo::_stringForModifiers(std::intptr_t modifiers) {
    std::string glyphs;
    for (const SGModifier &modifier : SGModifiers) {
        if ((static_cast<std::uintptr_t>(modifiers) & modifier.carbonBit) != 0) {
            glyphs += modifier.glyph;
        }
    }
    return glyphs;
}

const PropertyList &SGKeyCombo::_keyCodesDictionary() {
    SharedNames &shared = sharedNames();
    if (shared.keyCodes.root().type() == PropertyListType::Null && shared.ports) {
        const auto contents = shared.ports->resources.stringOfResource("SGKeyCodes", "plist");
        if (!contents) {
            constexpr int Line = 109;
            shared.ports->assertionHandler.handleFailureInMethod("+[SGKeyCombo _keyCodesDictionary]", nullptr, "SGKeyCombo", Line,
                                                                 "Contents of SGKeyCodes is nil");
        } else {
            shared.keyCodes = shared.ports->resources.propertyListOfString(*contents).value_or(PropertyList());
        }
    }
    return shared.keyCodes;
}

std::string SGKeyCombo::_stringForKeyCode(std::int16_t keyCode) {
    if (!sharedNames().ports) {
        return {};
    }
    const PropertyListValue &map = _keyCodesDictionary().root();
    return SGIntegerValue(map.find("version")) > 0 ? _stringForKeyCodeNewKeyCodeMap(keyCode, map)
                                                   : _stringForKeyCodeLegacyKeyCodeMap(keyCode, map);
}

std::string SGKeyCombo::_stringForKeyCodeLegacyKeyCodeMap(std::int16_t keyCode, const PropertyListValue &map) {
    const PropertyListValue *name = map.find(decimal(keyCode));
    return name != nullptr ? ORVTextValue(name) : hexadecimal(keyCode);
}

std::string SGKeyCombo::_stringForKeyCodeNewKeyCodeMap(std::int16_t keyCode, const PropertyListValue &map) {
    const std::string key = decimal(keyCode);
    if (const PropertyListValue *name = entryOf(map, "unmappedKeys", key)) {
        return ORVTextValue(name);
    }
    SGKeyCodeTranslator *translator = SGKeyCodeTranslator::currentTranslator();
    if (translator == nullptr || !sharedNames().ports) {
        return {};
    }
    std::string character = sharedNames().ports->textCase.uppercase(translator->translateKeyCode(static_cast<std::uint16_t>(keyCode)));
    if (!containsText(map.find("padKeys"), key)) {
        return character;
    }
    const PropertyListValue *prefix = map.find("padKeyString");
    return (prefix != nullptr ? ORVTextValue(prefix) : "(null)") + " " + character;
}

} // namespace orvane
