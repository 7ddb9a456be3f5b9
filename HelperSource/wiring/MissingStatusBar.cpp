#include "wiring/MissingStatusBar.h"

#include "platform/posix/FileDescriptor.h"

#include <QCoreApplication>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

MissingStatusBar::MissingStatusBar(QtDBusSession &session, SystemLog &log, const std::string &stateDirectory)
    : _log(log), _notice(session, log), _memoryFile(stateDirectory + "/told-of-missing-status-bar") {}

void MissingStatusBar::tell() {
    _log.log("this desktop has no status bar (no StatusNotifierItem host and no XEmbed tray); the menu comes up with the hot key, with "
             "'orvane menu' and from the file manager's context menu");
    if (::access(_memoryFile.c_str(), F_OK) == 0) {
        return;
    }
    _notice.show(QCoreApplication::translate("Orvane", "Orvane has no icon on this desktop"),
                 QCoreApplication::translate("Orvane", "It is running all the same: its menu opens with the hot key, from the file "
                                                       "manager's context menu, and with the command “orvane menu”."),
                 [this] { _remember(); });
}

/// Where that fails the user reads the message once more next time.
void MissingStatusBar::_remember() const {
    constexpr mode_t ForTheUser = 0600;
    // The log has made the folder.
    const FileDescriptor file(uninterrupted([&] { return ::open(_memoryFile.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, ForTheUser); }));
}

} // namespace orvane
