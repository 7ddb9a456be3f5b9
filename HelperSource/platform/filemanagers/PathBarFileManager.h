#pragma once

#include "platform/filemanagers/FileManager.h"
#include "platform/filemanagers/PathBar.h"
#include "platform/filemanagers/WindowTitle.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvane {

/// What has to be known of a file manager whose windows are read from the accessibility bus.
struct PathBarRule {
    const char *name = nullptr;
    std::vector<std::string> classNames; ///< in lower case
    std::uint32_t buttonRole = 0;        ///< of the path bar's buttons
    PathBarOrder order = PathBarOrder::DeepestFirst;
    TitleRule title;
};

/// A file manager with a path bar or a location field in every window, and no question on the session bus that would give the
/// folder. The path bar comes first: what stands in the field may have been typed and not entered.
class PathBarFileManager final : public FileManager {
public:
    explicit PathBarFileManager(PathBarRule rule) : _rule(std::move(rule)) {}

    [[nodiscard]] const char *name() const override { return _rule.name; }
    [[nodiscard]] bool hasClass(const std::string &className) const override;
    [[nodiscard]] std::optional<std::string> folder(const ApplicationWindow &window, const Surroundings &surroundings,
                                                    const Deadline &deadline) const override;

private:
    PathBarRule _rule;
};

/// The one path among several candidates that passes both checks: it agrees with the window's title, and it is a folder now.
/// Nothing when none does or when two different ones do.
[[nodiscard]] std::optional<std::string> theOnlyFolder(const std::vector<std::string> &candidates, const TitleRule &rule,
                                                       const std::string &title, const std::string &home);

} // namespace orvane
