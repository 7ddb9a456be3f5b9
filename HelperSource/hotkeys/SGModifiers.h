#pragma once

#include "ports/HotKeyEvents.h"

#include <array>
#include <cstdint>

namespace orvane {

/// One modifier in its two conventions, with its glyph in UTF-8.
struct SGModifier {
    std::uint32_t carbonBit; ///< `EventModifier…`
    std::uint32_t cocoaBit;  ///< Apple's NSEvent.h: NSEventModifierFlagCommand and so on
    const char *glyph;
};

/// In the order in which they are shown: command first, shift last. Deliberately not the usual order, which is control, option,
/// shift, command.
inline constexpr std::array<SGModifier, 4> SGModifiers{{
    {EventModifierCommand, 0x100000, "\u2318"}, // command
    {EventModifierOption, 0x080000, "\u2325"},  // option
    {EventModifierControl, 0x040000, "\u2303"}, // control
    {EventModifierShift, 0x020000, "\u21E7"},   // shift
}};

} // namespace orvane
