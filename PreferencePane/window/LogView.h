#pragma once

#include <QPlainTextEdit>
#include <QString>
#include <QTimer>

class QFileSystemWatcher;

namespace orvane {

/// The last lines of a log file, followed while it grows. Stays at its end unless the user has scrolled away from there.
class LogView final : public QPlainTextEdit {
public:
    LogView(QString path, QWidget *parent);

    [[nodiscard]] QSize sizeHint() const override;

private:
    void _watch();
    void _read();

    const QString _path;
    QFileSystemWatcher *_watcher;
    QTimer _pause; ///< a file that grows quickly is read now and then
};

} // namespace orvane
