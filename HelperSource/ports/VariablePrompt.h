#pragma once

#include <span>
#include <string>
#include <string_view>

namespace orvane {

/// One variable with its value. Rows are at once the prompt's content, the replacement table and the source of the
/// script's variables.
struct PromptValueRow {
    std::string key;   ///< name of the variable as found, without braces; may stand in several rows
    std::string value; ///< text that replaces it; a default at first, then what the user left
    bool operator==(const PromptValueRow &) const = default;
};

/// Asks the user for all variables at once.
class VariablePrompt {
public:
    virtual ~VariablePrompt() = default;
    /// Shows the rows, lets the user edit the values in place and blocks until done. `directoryName` is the raw template
    /// of the top-level folder's name. True when the user confirmed, false when the user gave up or nothing could be
    /// shown. Main thread only.
    [[nodiscard]] virtual bool runModally(std::string_view directoryName, std::span<PromptValueRow> rows) = 0;
};

} // namespace orvane
