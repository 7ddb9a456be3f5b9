#pragma once

#include "ports/VariablePrompt.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Name templates seen from outside the engine: where the keys of a template stand (to check it, or to mark them while it
// is typed), and how a template is written that gives a wanted name. The engine's own scan gives the same names in the
// same order; unlike it, nothing here runs without end.

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

/// Finds the keys of a template in linear time.
[[nodiscard]] ORVTemplateScan ORVScanTemplate(std::string_view text);

/// The text with every brace's backslash taken away: first of all opening, then of all closing ones.
[[nodiscard]] std::string ORVUnescapeBraces(std::string_view text);

/// The text with a backslash put before every brace; `ORVUnescapeBraces` brings it back, whatever it holds.
[[nodiscard]] std::string ORVEscapeBraces(std::string_view text);

/// What a template gives for the rows: unchanged when there are none, else unescaped and with each row's key replaced, row by
/// row, wherever it stands by then.
[[nodiscard]] std::string ORVFillTemplate(std::string_view text, std::span<const PromptValueRow> rows);

} // namespace orvane
