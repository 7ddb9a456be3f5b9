#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// One button of a row of them, as the accessibility tree shows it. UTF-8.
struct PathButton {
    std::string name;
    std::string description;
    bool isChecked = false;
};

/// In what order a path bar holds its buttons.
enum class PathBarOrder { DeepestFirst, RootFirst };

/// The absolute path that a path bar shows: from the root to the one button that is checked. Nothing when the row is no path
/// bar of local folders: none or several are checked, the root's button bears another name than "" or "/" or a description
/// (rows of other switches), or a name cannot be a folder's.
[[nodiscard]] std::optional<std::string> pathOfPathBar(std::vector<PathButton> buttons, PathBarOrder order);

/// How many of a path's components, counted from its end, are also the last ones that a path bar shows.
[[nodiscard]] std::size_t commonTail(const std::string &path, const std::vector<std::string> &bar);

} // namespace orvane
