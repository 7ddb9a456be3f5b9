#include "platform/qt/QtOpenPanel.h"

#include "platform/posix/PosixPrivateFolder.h"
#include "platform/qt/QtText.h"

#include <utility>

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QSaveFile>
#include <QScreen>
#include <QTreeView>

namespace orvane {

namespace {

/// Longest path that the system takes (PATH_MAX of Linux).
constexpr qint64 LongestPath = 4096;

/// So wide that names and dates of Qt's own panel stand there whole.
constexpr int CharactersWide = 110;

QString nearestFolder(const QString &path) {
    QString folder = path;
    while (!folder.isEmpty() && !QFileInfo(folder).isDir()) {
        const QString above = QFileInfo(folder).path();
        if (above == folder || !QDir::isAbsolutePath(above)) {
            return {};
        }
        folder = above;
    }
    return folder;
}

/// Qt's own panel, by the names that its parts have there: dates stand whole, and where only folders are shown nothing is said of
/// sizes and kinds. The desktop's panel has none of these parts.
void makeClearer(QFileDialog &panel, bool showsFoldersOnly) {
    enum Column { Name, Size, Kind, Date };
    if (auto *const details = panel.findChild<QTreeView *>(QStringLiteral("treeView"))) {
        details->header()->setStretchLastSection(false);
        details->header()->setSectionResizeMode(Name, QHeaderView::Stretch);
        details->header()->setSectionResizeMode(Date, QHeaderView::ResizeToContents);
        details->setColumnHidden(Size, showsFoldersOnly);
        details->setColumnHidden(Kind, showsFoldersOnly);
    }
    for (const char *const part : {"fileTypeLabel", "fileTypeCombo"}) {
        if (auto *const widget = panel.findChild<QWidget *>(QLatin1String(part))) {
            widget->setHidden(showsFoldersOnly);
        }
    }
}

void prepare(QFileDialog &panel, const OpenPanelSettings &settings) {
    panel.setObjectName(QStringLiteral("openPanel"));
    panel.setAcceptMode(QFileDialog::AcceptOpen);
    const bool directoriesOnly = settings.canChooseDirectories && !settings.canChooseFiles;
    panel.setFileMode(directoriesOnly ? QFileDialog::Directory : QFileDialog::ExistingFile);
    panel.setOption(QFileDialog::ShowDirsOnly, directoriesOnly);
    panel.setSupportedSchemes({QStringLiteral("file")}); // folders are made here, not on another computer's share by its address
    panel.setOption(QFileDialog::ReadOnly, !settings.canCreateDirectories); // no new folders, and no renaming either
    panel.setWindowTitle(QtTextOf(settings.title));
    panel.setLabelText(QFileDialog::Accept, QtTextOf(settings.prompt));
    makeClearer(panel, directoriesOnly);
}

} // namespace

QtOpenPanel::QtOpenPanel(QtApplication &application, std::string memoryFile)
    : _application(application), _memoryFile(std::move(memoryFile)) {}

std::optional<std::vector<std::string>> QtOpenPanel::runModal(const OpenPanelSettings &settings) {
    if (_isUp || _application.isQuitting()) {
        _application.activateIgnoringOtherApps(true);
        return {};
    }
    QFileDialog panel;
    prepare(panel, settings);
    const QString last = _lastFolder();
    panel.setDirectory(last.isEmpty() ? QDir::homePath() : last);
    panel.setModal(true);
    const QSize room = panel.screen()->availableGeometry().size() * 4 / 5;
    panel.resize(panel.sizeHint().expandedTo(QSize(CharactersWide * panel.fontMetrics().averageCharWidth(), 0)).boundedTo(room));
    _isUp = true;
    // Shown once and waited for: exec() would show it again, and then Plasma 6 has its own panel on the screen twice.
    QEventLoop choice;
    QObject::connect(&panel, &QDialog::finished, &choice, &QEventLoop::quit);
    _application.bringToFront(panel);
    choice.exec(QEventLoop::DialogExec);
    const int result = panel.result();
    _isUp = false;
    const QStringList chosen = panel.selectedFiles();
    if (result != QDialog::Accepted || chosen.isEmpty() || !QDir::isAbsolutePath(chosen.front())) {
        return {};
    }
    _remember(settings.canChooseDirectories ? chosen.front() : QFileInfo(chosen.front()).path());
    std::vector<std::string> paths;
    for (const QString &path : chosen) {
        paths.push_back(QtUtf8Of(path));
    }
    return paths;
}

QString QtOpenPanel::_lastFolder() const {
    if (!_folder.isEmpty() || _memoryFile.empty()) {
        return nearestFolder(_folder);
    }
    QFile file(QtTextOf(_memoryFile));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString path = QString::fromUtf8(file.read(LongestPath));
    return QDir::isAbsolutePath(path) ? nearestFolder(path) : QString();
}

void QtOpenPanel::_remember(const QString &folder) {
    _folder = folder;
    if (_memoryFile.empty()) {
        return;
    }
    const QString path = QtTextOf(_memoryFile);
    // A memory that cannot be kept costs the user some clicks after a restart, no more: no message.
    static_cast<void>(makePrivateFolders(_memoryFile.substr(0, _memoryFile.rfind('/'))));
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        file.write(folder.toUtf8());
        file.commit();
    }
}

} // namespace orvane
