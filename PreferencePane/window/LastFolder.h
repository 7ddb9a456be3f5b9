#pragma once

#include <QDir>
#include <QFileInfo>
#include <QString>

namespace orvane {

/// The folder in which the next file dialog begins: the home folder, then the one that was chosen from or into last. Main thread only.
class LastFolder {
public:
    [[nodiscard]] static QString path() { return QDir(_path()).exists() ? _path() : QDir::homePath(); }
    /// `chosen` is what the dialog gave back: a file or a folder, or nothing when it was cancelled.
    static void note(const QString &chosen) {
        if (!chosen.isEmpty()) {
            _path() = QFileInfo(chosen).path();
        }
    }

private:
    static QString &_path() {
        static QString folder = QDir::homePath();
        return folder;
    }
};

} // namespace orvane
