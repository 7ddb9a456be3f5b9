#pragma once

#include "ports/PromptValueRow.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Name templates: where their keys stand (to ask for them, to check them, or to mark them while a template is typed),
// what a template gives, and how one is written that gives a wanted name. Nothing here runs without end; that a scan
// would is an answer.
//
// Rules count in UTF-16 units and texts are UTF-8. For one-unit delimiters the two agree on every position that matters,
// since no byte of a longer character is ever an ASCII character; only the length of the shortest text that is scanned
// at all is counted in units.

namespace orvane {

/// How the engine's scan for the keys of a text comes to its end.
enum class ORVScanEnding {
    Ends,              ///< it returns
    OpenBraceAtEnd,    ///< it never does: the text ends in "{" without a backslash before it
    EscapedCloseAtEnd, ///< it never does: the text ends in an escaped "}" while a key is open
};

/// One key with its place.
struct ORVTemplateKey {
    std::size_t begin = 0; ///< byte position of the opening brace
    std::size_t end = 0;   ///< just past the closing brace
    std::string name;      ///< unescaped; never empty
};

struct ORVTemplateScan {
    std::vector<ORVTemplateKey> keys; ///< in order of appearance, duplicates kept
    ORVScanEnding ending = ORVScanEnding::Ends;
    bool hasUnclosedKey = false; ///< an opening brace has no closing one, which ended the scan
};

inline constexpr std::string_view ORVOpenTag = "{";
inline constexpr std::string_view ORVCloseTag = "}";

/// Finds the keys of a template in linear time. A delimiter with a backslash just before it is none; a key starts one
/// position behind its opening delimiter, however long that is.
[[nodiscard]] ORVTemplateScan ORVScanTemplate(std::string_view text, std::string_view openTag = ORVOpenTag,
                                              std::string_view closeTag = ORVCloseTag);

/// The text with every delimiter's backslash taken away: first of all opening, then of all closing ones.
[[nodiscard]] std::string ORVUnescapeBraces(std::string_view text, std::string_view openTag = ORVOpenTag,
                                            std::string_view closeTag = ORVCloseTag);

/// The text with a backslash put before every brace; `ORVUnescapeBraces` brings it back, whatever it holds.
[[nodiscard]] std::string ORVEscapeBraces(std::string_view text);

/// What a template gives for the rows: unchanged when there are none, else unescaped and with each row's key replaced, row by
/// row, wherever it stands by then.
[[nodiscard]] std::string ORVFillTemplate(std::string_view text, std::span<const PromptValueRow> rows);

} // namespace orvane
