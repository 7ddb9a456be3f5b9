#pragma once

#include "ports/KeyboardLayouts.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace orvane {

/// Layouts as told. What was asked of them is kept.
class FakeKeyboardLayouts final : public KeyboardLayouts {
public:
    class Layout final : public KeyboardInputSource, public KeyboardLayoutData {
    public:
        explicit Layout(std::map<std::uint16_t, std::u16string> keys) : _keys(std::move(keys)) {}
        [[nodiscard]] const KeyboardLayoutData *unicodeKeyLayoutData() const override { return this; }
        [[nodiscard]] std::u16string text(std::uint16_t keyCode) const {
            const auto found = _keys.find(keyCode);
            return found == _keys.end() ? std::u16string() : found->second;
        }

    private:
        std::map<std::uint16_t, std::u16string> _keys;
    };
    struct Question {
        const KeyboardLayoutData *layout;
        std::uint16_t keyCode;
        KeyAction action;
        std::uint32_t modifierKeyState;
        std::uint32_t keyboardType;
        std::uint32_t options;
        std::uint32_t deadKeyState;
        std::size_t room;
    };

    /// The layout in use; null for none.
    std::shared_ptr<const Layout> current;
    std::uint32_t type = 0;
    std::vector<Question> questions;
    /// What the next translation leaves as dead-key state, and reports as its status.
    std::uint32_t nextDeadKeyState = 0;
    std::int32_t nextStatus = 0;

    [[nodiscard]] std::shared_ptr<const KeyboardInputSource> copyCurrentKeyboardInputSource() override { return current; }
    [[nodiscard]] std::uint32_t keyboardType() override { return type; }
    std::int32_t keyTranslate(const KeyboardLayoutData *layout, std::uint16_t keyCode, KeyAction action, std::uint32_t modifierKeyState,
                              std::uint32_t keyboardType, std::uint32_t options, std::uint32_t &deadKeyState, std::span<char16_t> text,
                              std::size_t &length) override {
        questions.push_back({layout, keyCode, action, modifierKeyState, keyboardType, options, deadKeyState, text.size()});
        deadKeyState = nextDeadKeyState;
        const auto *keys = dynamic_cast<const Layout *>(layout);
        const std::u16string found = keys == nullptr ? std::u16string() : keys->text(keyCode);
        length = std::min(found.size(), text.size());
        std::copy_n(found.begin(), length, text.begin());
        return nextStatus;
    }
};

} // namespace orvane
