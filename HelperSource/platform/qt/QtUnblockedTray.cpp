#include "platform/qt/QtUnblockedTray.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>

namespace orvane {

namespace {

bool isOfTray(const QObject *window) {
    for (const QWidget *each : QApplication::topLevelWidgets()) {
        if (each->windowHandle() == window) {
            return each->inherits("QSystemTrayIconSys"); // Qt's class for the window that the tray embeds
        }
    }
    return false;
}

} // namespace

QtUnblockedTray::QtUnblockedTray() {
    qApp->installEventFilter(this);
}

bool QtUnblockedTray::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::WindowBlocked && isOfTray(watched)) {
        // A modal window blocks all but what belongs to it.
        static_cast<QWindow *>(watched)->setTransientParent(QGuiApplication::modalWindow());
    }
    return false;
}

} // namespace orvane
