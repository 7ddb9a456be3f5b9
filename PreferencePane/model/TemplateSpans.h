#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace orvane {

/// A part of a name template that stands out while it is typed.
struct TemplateSpan {
    enum class Kind : std::uint8_t {
        Variable,
        AutomaticVariable,
        UnreplacedVariable, ///< asked for, but not replaced here: its name holds ":" or "/" in the name of a folder or file
        EscapedBrace,       ///< a backslash and the brace behind it
        Problem             ///< an open brace that is never closed, or that keeps the scan from ever ending, and all behind it
    };
    Kind kind = Kind::Variable;
    std::size_t begin = 0; ///< in bytes
    std::size_t end = 0;
    std::size_t beginUnit = 0; ///< the same in UTF-16 units
    std::size_t endUnit = 0;
    bool operator==(const TemplateSpan &) const = default;
};

/// The spans of a template in their order, none overlapping another, found with the engine's own scan. `isDirectoryName`: it is the
/// top-level folder's, which is scanned as it stands.
[[nodiscard]] std::vector<TemplateSpan> spansOfTemplate(std::string_view text, bool isDirectoryName);

} // namespace orvane
