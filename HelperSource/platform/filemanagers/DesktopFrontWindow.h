#pragma once

#include "platform/filemanagers/ActiveApplication.h"
#include "platform/filemanagers/BoundedWork.h"
#include "platform/filemanagers/FileManager.h"
#include "ports/FrontWindow.h"
#include "ports/SystemLog.h"

#include <memory>
#include <vector>

namespace orvane {

/// The front window of whichever file manager is active. Main thread only; the questions themselves are asked on another, so
/// that a program or a file system that hangs costs no more than the limit.
class DesktopFrontWindow final : public FrontWindow {
public:
    /// `active` and `log` must outlive it. Reads HOME and the XDG folders once.
    DesktopFrontWindow(ActiveApplication &active, SystemLog &log);
    /// The same with file managers and surroundings of one's own, for tests.
    DesktopFrontWindow(ActiveApplication &active, SystemLog &log, std::vector<std::shared_ptr<const FileManager>> fileManagers,
                       Surroundings surroundings);

    [[nodiscard]] bool fileManagerIsActive() override;
    /// Writes into the log when a file manager is active and its folder is not known.
    [[nodiscard]] std::optional<std::string> folder() override;

private:
    ActiveApplication &_active;
    SystemLog &_log;
    std::vector<std::shared_ptr<const FileManager>> _fileManagers;
    Surroundings _surroundings;
    BoundedWork _work;
};

/// The surroundings that this process's environment names.
[[nodiscard]] Surroundings surroundingsOfEnvironment();

} // namespace orvane
