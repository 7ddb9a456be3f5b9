#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace orvane {

/// Colour names of the Finder labels; a name's position is its label number, 0 is "no label".
/// The order is that of the label numbers stored on disk, not that of any menu.
inline constexpr std::array<std::string_view, 8> FinderLabelColors = {"", "gray", "green", "purple", "blue", "yellow", "red", "orange"};

/// Bits 1 to 3 of the 16-bit Finder flags hold the label (Apple, Finder.h: kColor).
inline constexpr std::uint16_t FinderLabelMask = 0x000E;

/// `flags` with its label bits replaced by the low three bits of `label`; the other 13 bits stay.
[[nodiscard]] constexpr std::uint16_t finderFlagsWithLabel(std::uint16_t flags, long label) noexcept {
    const auto bits = static_cast<std::uint16_t>((static_cast<unsigned long>(label) << 1U) & FinderLabelMask);
    return static_cast<std::uint16_t>((flags & static_cast<std::uint16_t>(~FinderLabelMask)) | bits);
}

/// The label number in `flags`, 0 to 7.
[[nodiscard]] constexpr int finderLabelOfFlags(std::uint16_t flags) noexcept {
    return (flags & FinderLabelMask) >> 1U;
}

} // namespace orvane
