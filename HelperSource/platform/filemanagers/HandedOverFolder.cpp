#include "platform/filemanagers/HandedOverFolder.h"

#include "platform/filemanagers/FolderAddress.h"

#include <chrono>
#include <utility>

namespace orvane {

namespace {

/// For a look at a folder whose file system may hang.
constexpr std::chrono::milliseconds Limit(280);

} // namespace

bool HandedOverFolder::_isFolder(const std::string &path) {
    return _work.run(Deadline(Limit), [path] { return isFolder(path) ? std::optional(path) : std::nullopt; }).has_value();
}

bool HandedOverFolder::setFolder(std::string path) {
    _folder.clear();
    if (!_isFolder(path)) {
        return false;
    }
    _folder = std::move(path);
    return true;
}

bool HandedOverFolder::fileManagerIsActive() {
    return !_folder.empty() || _behind.fileManagerIsActive();
}

std::optional<std::string> HandedOverFolder::folder() {
    if (_folder.empty()) {
        return _behind.folder();
    }
    return _isFolder(_folder) ? std::optional(_folder) : std::nullopt;
}

} // namespace orvane
