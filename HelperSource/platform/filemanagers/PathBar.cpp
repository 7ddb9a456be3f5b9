#include "platform/filemanagers/PathBar.h"

#include "platform/filemanagers/FolderAddress.h"

#include <algorithm>

namespace orvane {

namespace {

bool isFolderName(const std::string &name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos && name.find('\0') == std::string::npos;
}

} // namespace

std::optional<std::string> pathOfPathBar(std::vector<PathButton> buttons, PathBarOrder order) {
    if (order == PathBarOrder::DeepestFirst) {
        std::reverse(buttons.begin(), buttons.end());
    }
    const auto checked = [](const PathButton &button) { return button.isChecked; };
    if (std::count_if(buttons.begin(), buttons.end(), checked) != 1) {
        return std::nullopt;
    }
    const PathButton &root = buttons.front();
    if ((!root.name.empty() && root.name != "/") || !root.description.empty()) {
        return std::nullopt;
    }
    // Buttons behind the checked one are where the user was before.
    const auto end = std::find_if(buttons.begin(), buttons.end(), checked) + 1;
    std::string path;
    for (auto button = buttons.begin() + 1; button < end; ++button) {
        if (!isFolderName(button->name)) {
            return std::nullopt;
        }
        path += "/" + button->name;
    }
    return path.empty() ? "/" : path;
}

std::size_t commonTail(const std::string &path, const std::vector<std::string> &bar) {
    std::size_t count = 0;
    std::string rest = withoutTrailingSlashes(path);
    while (count < bar.size() && rest.size() > 1 && lastComponent(rest) == bar[bar.size() - 1 - count]) {
        rest = withoutTrailingSlashes(std::string_view(rest).substr(0, rest.rfind('/') + 1));
        ++count;
    }
    return count;
}

} // namespace orvane
