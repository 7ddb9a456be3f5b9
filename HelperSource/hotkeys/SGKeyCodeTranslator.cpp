#include "hotkeys/SGKeyCodeTranslator.h"

#include "ports/UTF16.h"

#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace orvane {

namespace {

/// The process's one translator. Main thread only.
struct SharedTranslator {
    KeyboardLayouts *layouts = nullptr;
    std::optional<SGKeyCodeTranslator> translator;
};

SharedTranslator &sharedTranslator() {
    static SharedTranslator slot;
    return slot;
}

} // namespace

void SGKeyCodeTranslator::setSharedLayouts(KeyboardLayouts *layouts) {
    sharedTranslator().translator.reset();
    sharedTranslator().layouts = layouts;
}

SGKeyCodeTranslator *SGKeyCodeTranslator::currentTranslator() {
    SharedTranslator &shared = sharedTranslator();
    if (shared.layouts == nullptr) {
        return nullptr;
    }
    auto current = shared.layouts->copyCurrentKeyboardInputSource();
    if (!shared.translator || shared.translator->keyboardLayout() != current) {
        shared.translator.emplace(*shared.layouts, std::move(current));
    }
    return &*shared.translator;
}

SGKeyCodeTranslator::SGKeyCodeTranslator(KeyboardLayouts &layouts, std::shared_ptr<const KeyboardInputSource> keyboardLayout)
    : _layouts(layouts), _keyboardLayout(std::move(keyboardLayout)) {
    if (_keyboardLayout) {
        _keyboardLayoutData = std::shared_ptr<const KeyboardLayoutData>(_keyboardLayout, _keyboardLayout->unicodeKeyLayoutData());
    }
}

void SGKeyCodeTranslator::setKeyboardLayout(std::shared_ptr<const KeyboardInputSource> keyboardLayout) {
    _keyboardLayout = std::move(keyboardLayout);
}

std::string SGKeyCodeTranslator::translateKeyCode(std::uint16_t keyCode) {
    constexpr std::size_t LongestText = 4;
    constexpr std::uint32_t KeyboardTypeBits = 0xFF;
    std::array<char16_t, LongestText> text{};
    std::size_t length = 0;
    // Neither the status nor the length counts: the first unit is the name as it stands.
    _layouts.keyTranslate(_keyboardLayoutData.get(), keyCode, KeyAction::Display, 0, _layouts.keyboardType() & KeyboardTypeBits, 0,
                          _deadKeyState, text, length);
    return ORVTextOfUTF16(std::u16string_view(text.data(), 1));
}

} // namespace orvane
