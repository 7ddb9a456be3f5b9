#include "platform/filemanagers/PathBarFileManager.h"

#include "platform/filemanagers/AccessibleTree.h"
#include "platform/filemanagers/FolderAddress.h"

#include <algorithm>

namespace orvane {

std::optional<std::string> theOnlyFolder(const std::vector<std::string> &candidates, const TitleRule &rule, const std::string &title,
                                         const std::string &home) {
    std::optional<std::string> found;
    for (const std::string &candidate : candidates) {
        if (!titleAgreesWithPath(rule, title, candidate, home)) {
            continue;
        }
        if (found && *found != candidate) {
            return std::nullopt;
        }
        found = candidate;
    }
    return found && isFolder(*found) ? found : std::nullopt;
}

bool PathBarFileManager::hasClass(const std::string &className) const {
    return std::find(_rule.classNames.begin(), _rule.classNames.end(), className) != _rule.classNames.end();
}

std::optional<std::string> PathBarFileManager::folder(const ApplicationWindow &window, const Surroundings &surroundings,
                                                      const Deadline &deadline) const {
    if (const auto path = fullPathInTitle(_rule.title, window.title)) {
        return isFolder(*path) ? path : std::nullopt;
    }
    const auto contents = readWindowContents(window.pid, window.title, _rule.buttonRole, deadline);
    if (!contents) {
        return std::nullopt;
    }
    std::vector<std::string> paths;
    for (const ButtonRow &row : contents->rows) {
        if (auto path = pathOfPathBar(row, _rule.order)) {
            paths.push_back(std::move(*path));
        }
    }
    if (!paths.empty()) {
        return theOnlyFolder(paths, _rule.title, window.title, surroundings.home);
    }
    for (const std::string &text : contents->texts) {
        if (auto path = pathOfLocation(text, surroundings.runtimeFolder)) {
            paths.push_back(std::move(*path));
        }
    }
    return theOnlyFolder(paths, _rule.title, window.title, surroundings.home);
}

} // namespace orvane
