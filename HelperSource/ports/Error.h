#pragma once

#include <map>
#include <optional>
#include <string>

namespace orvane {

/// The entry of `ORVError::userInfo` that holds the text meant for people.
inline constexpr const char *LocalizedDescriptionKey = "NSLocalizedDescriptionKey";
/// The entry that holds the cause: for a script, its whole standard error.
inline constexpr const char *LocalizedFailureReasonKey = "NSLocalizedFailureReasonErrorKey";

/// What an operation that failed leaves for its caller: who failed, a number, and texts by name.
/// A plain value; texts are UTF-8.
struct ORVError {
    std::string domain;                          ///< name of the class that made the error
    long code = 0;                               ///< always 0 for the program's own errors
    std::map<std::string, std::string> userInfo; ///< texts by entry name

    /// The entry's text, or nothing when the error has none of that name.
    [[nodiscard]] std::optional<std::string> text(const char *entry) const {
        const auto found = userInfo.find(entry);
        return found == userInfo.end() ? std::nullopt : std::optional(found->second);
    }
    [[nodiscard]] std::optional<std::string> localizedDescription() const { return text(LocalizedDescriptionKey); }
    [[nodiscard]] std::optional<std::string> localizedFailureReason() const { return text(LocalizedFailureReasonKey); }
};

} // namespace orvane
