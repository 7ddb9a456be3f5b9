#include "window/LocalFiles.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace orvane {

QStringList localPaths(const QMimeData &data) {
    QStringList paths;
    for (const QUrl &url : data.urls()) {
        if (url.isLocalFile()) {
            paths.append(QFileInfo(url.toLocalFile()).absoluteFilePath());
        }
    }
    return paths;
}

void takeAsCopy(QEvent &event) {
    if (event.type() != QEvent::DragEnter && event.type() != QEvent::DragMove && event.type() != QEvent::Drop) {
        return;
    }
    auto &drop = static_cast<QDropEvent &>(event); // the other two are made of it
    if (drop.isAccepted() && drop.source() == nullptr && drop.mimeData()->hasUrls()) {
        drop.setDropAction(Qt::CopyAction);
        drop.setAccepted(drop.dropAction() == Qt::CopyAction); // files that can only be moved are not taken
    }
}

} // namespace orvane
