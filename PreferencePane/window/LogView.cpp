#include "window/LogView.h"

#include "window/Page.h"

#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QFontDatabase>
#include <QScrollBar>

#include <algorithm>
#include <chrono>
#include <utility>

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr auto PauseBetweenReadings = 200ms;
constexpr qint64 MostBytes = qint64{64} * 1024;
constexpr qsizetype MostLines = 200;
constexpr int LinesShown = 7;

/// The end of the file, from the start of a line on.
QString lastLinesOf(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const qint64 start = std::max<qint64>(0, file.size() - MostBytes);
    file.seek(start);
    QByteArray text = file.read(MostBytes);
    if (start > 0) {
        text.remove(0, text.indexOf('\n') + 1);
    }
    while (text.endsWith('\n')) {
        text.chop(1);
    }
    qsizetype from = text.size();
    for (qsizetype lines = 0; lines < MostLines && from > 0; ++lines) {
        from = text.lastIndexOf('\n', from - 1);
    }
    return QString::fromUtf8(from > 0 ? text.mid(from + 1) : text);
}

} // namespace

LogView::LogView(QString path, QWidget *parent) : QPlainTextEdit(parent), _path(std::move(path)), _watcher(new QFileSystemWatcher(this)) {
    setReadOnly(true);
    setTabChangesFocus(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setPlaceholderText(translated("Nothing has been logged yet."));
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    _pause.setSingleShot(true);
    _pause.setInterval(PauseBetweenReadings);
    connect(&_pause, &QTimer::timeout, this, [this] { _read(); });
    const auto later = [this] {
        if (!_pause.isActive()) {
            _pause.start();
        }
    };
    connect(_watcher, &QFileSystemWatcher::fileChanged, this, later);
    connect(_watcher, &QFileSystemWatcher::directoryChanged, this, later); // the file is made, or another takes its place
    _read();
}

void LogView::_watch() {
    const QString folder = QFileInfo(_path).path();
    for (const QString &path : {folder, _path}) {
        if (QFileInfo::exists(path)) {
            _watcher->addPath(path); // one that is watched already is let alone
        }
    }
}

void LogView::_read() {
    _watch();
    const QString text = lastLinesOf(_path);
    if (text == toPlainText()) {
        return;
    }
    const bool wasAtEnd = verticalScrollBar()->value() == verticalScrollBar()->maximum();
    const int place = verticalScrollBar()->value();
    setPlainText(text);
    verticalScrollBar()->setValue(wasAtEnd ? verticalScrollBar()->maximum() : place);
}

QSize LogView::sizeHint() const {
    const int frame = 2 * frameWidth() + 2 * static_cast<int>(document()->documentMargin());
    return {60 * fontMetrics().averageCharWidth(),
            LinesShown * fontMetrics().lineSpacing() + frame + horizontalScrollBar()->sizeHint().height()};
}

} // namespace orvane
