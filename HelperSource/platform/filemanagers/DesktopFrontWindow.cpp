#include "platform/filemanagers/DesktopFrontWindow.h"

#include "platform/filemanagers/FolderAddress.h"
#include "platform/filemanagers/UserDirectories.h"

#include <chrono>
#include <cstdlib>
#include <string>
#include <utility>

namespace orvane {

namespace {

/// What the port promises is 300 ms; the rest is for this thread to be woken up.
constexpr std::chrono::milliseconds Limit(280);
/// What may be left when a call ends for want of an answer: Qt's timers ring up to 5 % early (Qt::CoarseTimer).
constexpr std::chrono::milliseconds AsGoodAsOver = Limit / 10;

std::string variable(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr && value[0] == '/' ? value : "";
}

std::optional<std::string> shownFolder(const FileManager &fileManager, const ApplicationWindow &window, const Surroundings &surroundings,
                                       const Deadline &deadline) {
    if (!window.isDesktop) {
        return fileManager.folder(window, surroundings, deadline);
    }
    const std::string folder = desktopDirectory(surroundings.configurationFolder, surroundings.home);
    return isFolder(folder) ? std::optional(folder) : std::nullopt;
}

} // namespace

Surroundings surroundingsOfEnvironment() {
    Surroundings surroundings = {withoutTrailingSlashes(variable("HOME")), variable("XDG_CONFIG_HOME"), variable("XDG_RUNTIME_DIR")};
    if (surroundings.configurationFolder.empty()) {
        surroundings.configurationFolder = surroundings.home + "/.config";
    }
    return surroundings;
}

DesktopFrontWindow::DesktopFrontWindow(ActiveApplication &active, SystemLog &log)
    : DesktopFrontWindow(active, log, allFileManagers(), surroundingsOfEnvironment()) {}

DesktopFrontWindow::DesktopFrontWindow(ActiveApplication &active, SystemLog &log,
                                       std::vector<std::shared_ptr<const FileManager>> fileManagers, Surroundings surroundings)
    : _active(active), _log(log), _fileManagers(std::move(fileManagers)), _surroundings(std::move(surroundings)) {}

bool DesktopFrontWindow::fileManagerIsActive() {
    const auto window = _active.window();
    return window && fileManagerOf(*window, _fileManagers) != nullptr;
}

std::optional<std::string> DesktopFrontWindow::folder() {
    const Deadline deadline(Limit);
    const auto window = _active.window();
    const auto fileManager = window ? fileManagerOf(*window, _fileManagers) : nullptr;
    if (!fileManager) {
        return std::nullopt;
    }
    std::optional<std::string> folder;
    if (window->isLocal) {
        folder = _work.run(deadline, [fileManager, window = *window, surroundings = _surroundings, deadline] {
            return shownFolder(*fileManager, window, surroundings, deadline);
        });
    }
    const bool hasNoTimeLeft = deadline.remaining() <= AsGoodAsOver.count();
    if (!folder) {
        _log.log(std::string("The folder of ") + fileManager->name() + "'s front window is not known" +
                 (hasNoTimeLeft || _work.isBusy() ? " (no answer in time)." : "."));
    }
    return folder;
}

} // namespace orvane
