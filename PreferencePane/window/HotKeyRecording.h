#pragma once

#include "model/GeneralSettings.h"

#include <QString>

#include <cstdint>
#include <optional>

class QKeyEvent;

namespace orvane {

/// A key with modifiers while it is being recorded: what people press, turned into what the preferences hold.
struct HotKeyPress {
    /// The Mac's virtual key code of the key; nothing for a modifier alone, and for a key that the Mac does not know.
    std::optional<std::uint32_t> keyCode;
    bool isModifier = false;
    /// Cocoa mask of the modifiers that are down once the event has happened.
    std::uint32_t flags = 0;
};

/// What a press or release means. The key is known by its place on the keyboard, so that the layout does not matter.
[[nodiscard]] HotKeyPress hotKeyPressOf(const QKeyEvent &event);

/// The combination as the helper shows it; empty for none.
[[nodiscard]] QString textOfHotKey(const StoredHotKey &hotKey);
/// Modifiers alone, as they stand in front of a key.
[[nodiscard]] QString textOfModifiers(std::uint32_t flags);
/// The combination in words, as in "Super+Shift+K", for those who do not know the signs and for screen readers.
[[nodiscard]] QString wordsOfHotKey(const StoredHotKey &hotKey);

/// Whether the combination would take a character away from typing: a key that types with Shift alone.
[[nodiscard]] bool hotKeyTypesText(const StoredHotKey &hotKey);

} // namespace orvane
