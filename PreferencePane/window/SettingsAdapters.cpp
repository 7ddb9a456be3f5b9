#include "window/SettingsAdapters.h"

#include "platform/posix/PosixUserFolders.h"
#include "presets/ORVFileHelpers.h"

#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <memory>
#include <optional>

namespace orvane {

namespace {

constexpr const char *AutostartFile = "org.orvane.Helper.desktop";

/// The first bytes of a regular file; nothing for anything else, which is never opened.
std::optional<std::string> readHead(const std::string &path, std::size_t bytes) {
    const QString name = QFile::decodeName(path.c_str());
    QFile file(name);
    if (!QFileInfo(name).isFile() || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return file.read(static_cast<qint64>(bytes)).toStdString();
}

/// Started at login where no system-wide entry is installed.
std::string autostartEntry(const std::string &helperPath) {
    return "[Desktop Entry]\nType=Application\nName=Orvane\nIcon=org.orvane.Helper\nExec=\"" + helperPath +
           "\"\nTerminal=false\nNoDisplay=true\nStartupNotify=false\n";
}

} // namespace

SettingsAdapters::SettingsAdapters(SettingsPaths paths, DistributedNotifications &notifications, Workspace &workspace,
                                   const std::string &helperPath)
    : _paths(std::move(paths)), _notifications(notifications), _workspace(workspace), _log(_paths.stateFolder),
      _preferences(_paths.preferencesFile, _paths.stateFolder + "/preferences.lock", _log, std::chrono::milliseconds::zero()),
      _recovery(_paths.stateFolder + "/unsaved"), _contents(_paths.supportFolder, _finderInformation),
      _loginItem(XDGAutostart::configurationFolderOfEnvironment(PosixUserFolders().homeDirectory()),
                 XDGAutostart::systemFoldersOfEnvironment(), AutostartFile, autostartEntry(helperPath)) {}

SettingsPorts SettingsAdapters::ports() {
    const auto makeResources = [this]() -> std::unique_ptr<ORVPresetResources> {
        return std::make_unique<ORVStoredResources>(_fileSystem, _finderInformation, _paths.supportFolder, readHead);
    };
    return {_preferences, _notifications, _recovery, _form, _loginItem, _contents, _processes, _workspace, _log, _textCase, makeResources};
}

SettingsPaths SettingsAdapters::pathsOfUser(std::string resourceFolder) {
    PosixUserFolders folders;
    return {folders.preferencesFile(), ORVApplicationSupportPath(folders), folders.stateDirectory(), std::move(resourceFolder)};
}

} // namespace orvane
