#pragma once

#include "window/SettingsModels.h"

#include "platform/PosixRecoveryFile.h"
#include "platform/PosixSupportFolder.h"
#include "platform/PropertyListTexts.h"
#include "platform/XDGAutostart.h"

#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixFinderInformation.h"
#include "platform/posix/PosixPreferencesStore.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/PosixSystemLog.h"
#include "platform/posix/UnistringTextCase.h"

#include <string>

namespace orvane {

/// The settings program's ports on this system's files. What needs a desktop is handed in.
class SettingsAdapters {
public:
    /// The references must outlive it; `helperPath` is that of the program that is started at login.
    SettingsAdapters(SettingsPaths paths, DistributedNotifications &notifications, Workspace &workspace, const std::string &helperPath);
    SettingsAdapters(const SettingsAdapters &) = delete;
    SettingsAdapters &operator=(const SettingsAdapters &) = delete;

    /// May be added to before models are made of them.
    [[nodiscard]] SettingsPorts ports();
    [[nodiscard]] const SettingsPaths &paths() const { return _paths; }
    [[nodiscard]] SystemLog &log() { return _log; }

    /// The paths of the user whose environment this is.
    [[nodiscard]] static SettingsPaths pathsOfUser(std::string resourceFolder);

private:
    SettingsPaths _paths;
    DistributedNotifications &_notifications;
    Workspace &_workspace;
    PosixSystemLog _log;
    PosixPreferencesStore _preferences;
    PosixRecoveryFile _recovery;
    PropertyListTexts _form;
    PosixFinderInformation _finderInformation;
    PosixFileSystem _fileSystem;
    PosixSupportFolder _contents;
    PosixProcessLauncher _processes;
    UnistringTextCase _textCase;
    XDGAutostart _loginItem;
};

} // namespace orvane
