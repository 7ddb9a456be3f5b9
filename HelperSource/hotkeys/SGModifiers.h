#pragma once

#include <array>
#include <cstdint>

namespace orvane {

/// One modifier in its two conventions, with its glyph in UTF-8.
struct SGModifier {
    std::uint32_t carbonBit; ///< Apple's Events.h: cmdKey, optionKey, controlKey, shiftKey
    std::uint32_t cocoaBit;  ///< Apple's NSEvent.h: NSEventModifierFlagCommand and so on
    const char *glyph;
};

/// In the order in which they are shown: command first, shift last. Deliberately not the usual order, which is control, option,
/// shift, command.
inline constexpr std::array<SGModifier, 4> SGModifiers{{
    {0x0100, 0x100000, "\u2318"}, // command
    {0x0800, 0x080000, "\u2325"}, // option
    {0x1000, 0x040000, "\u2303"}, // control
    {0x0200, 0x020000, "\u21E7"}, // shift
}};

} // namespace orvane
