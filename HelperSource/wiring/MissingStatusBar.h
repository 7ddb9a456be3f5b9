#pragma once

#include "platform/qtdbus/DesktopNotice.h"
#include "ports/SystemLog.h"

#include <string>

namespace orvane {

/// What the user is told when the desktop has no status bar: a line in the log each time, and a message of the desktop once and never
/// again, which a file in Orvane's own folder remembers. Main thread only.
class MissingStatusBar {
public:
    /// The references must outlive it. `stateDirectory` is Orvane's own folder for the log.
    MissingStatusBar(QtDBusSession &session, SystemLog &log, const std::string &stateDirectory);

    void tell();

private:
    void _remember() const;

    SystemLog &_log;
    DesktopNotice _notice;
    const std::string _memoryFile;
};

} // namespace orvane
