#pragma once

#include <string>

namespace orvane {

/// One variable with its value. Rows are at once the prompt's content, the replacement table and the source of the
/// script's variables.
struct PromptValueRow {
    std::string key;   ///< name of the variable as found, without braces; may stand in several rows
    std::string value; ///< text that replaces it; a default at first, then what the user left
    bool operator==(const PromptValueRow &) const = default;
};

} // namespace orvane
