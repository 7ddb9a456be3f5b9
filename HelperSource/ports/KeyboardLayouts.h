#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace orvane {

/// What a layout puts on each key. Opaque to the core.
class KeyboardLayoutData {
public:
    virtual ~KeyboardLayoutData() = default;
};

/// A layout that the user can choose. Another layout, and the same one after it was changed, is another object.
class KeyboardInputSource {
public:
    virtual ~KeyboardInputSource() = default;
    /// Valid as long as the source; null for a source that has no keys of its own.
    [[nodiscard]] virtual const KeyboardLayoutData *unicodeKeyLayoutData() const = 0;
};

/// Why a key is translated; the values are those of Apple's UnicodeUtilities.h.
enum class KeyAction : std::uint16_t { Down = 0, Up = 1, AutoKey = 2, Display = 3 };

/// Layouts of the keyboard. Main thread only.
class KeyboardLayouts {
public:
    virtual ~KeyboardLayouts() = default;
    /// The layout in use: the same object as long as it is in use and unchanged. Null when it cannot be told.
    [[nodiscard]] virtual std::shared_ptr<const KeyboardInputSource> copyCurrentKeyboardInputSource() = 0;
    /// Kind of keyboard; only the low 8 bits count.
    [[nodiscard]] virtual std::uint32_t keyboardType() = 0;
    /// Translates a virtual key code of the Mac. Puts up to `text.size()` UTF-16 units into `text` and their number into
    /// `length`; other units of `text` are left alone. `modifierKeyState` 0 is no modifier.
    ///
    /// `deadKeyState` is 0 or what an earlier call left there. For `KeyAction::Down` a dead key gives no text and sets the
    /// state, and the next key is combined with it. For `KeyAction::Display` a dead key gives the accent that is printed
    /// on it and leaves the state alone. A state that is not 0 is combined with the key, whatever the action, and cleared.
    /// The status is 0, or not when there is no layout data; `length` is then 0. A key without a character gives no text.
    virtual std::int32_t keyTranslate(const KeyboardLayoutData *layout, std::uint16_t keyCode, KeyAction action,
                                      std::uint32_t modifierKeyState, std::uint32_t keyboardType, std::uint32_t options,
                                      std::uint32_t &deadKeyState, std::span<char16_t> text, std::size_t &length) = 0;
};

} // namespace orvane
