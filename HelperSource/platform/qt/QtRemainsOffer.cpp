#include "platform/qt/QtRemainsOffer.h"

#include <utility>

#include <QAccessible>
#include <QApplication>
#include <QEvent>

namespace orvane {

void QtRemainsOffer::offer(const std::vector<CreationRemains> &remains, std::function<void(bool)> answered) {
    _window = std::make_unique<QtRemainsWindow>(remains, std::move(answered));
    _window->installEventFilter(this);
    connect(_window.get(), &QDialog::finished, this, [this] {
        _waitForEnd(false);
        _window.release()->deleteLater(); // it is in the middle of ending
    });
    _showUnlessAsking();
}

void QtRemainsOffer::showRemoval(const RemainsRemoval &removal) {
    if (_window) {
        _window->showRemoval(removal);
    }
}

bool QtRemainsOffer::eventFilter(QObject *watched, QEvent *event) {
    // Windows are taken away in the middle of what others do; what follows waits until that is done.
    if (watched == _window.get() && event->type() == QEvent::WindowBlocked) {
        QMetaObject::invokeMethod(
            this, [this] { _withdraw(); }, Qt::QueuedConnection);
    } else if (_isWaiting && event->type() == QEvent::Hide && watched->isWidgetType()) {
        QMetaObject::invokeMethod(
            this, [this] { _showUnlessAsking(); }, Qt::QueuedConnection);
    }
    return false;
}

void QtRemainsOffer::_showUnlessAsking() {
    if (!_window || _window->isVisible() || _application.isQuitting()) {
        return;
    }
    const bool isAsking = QtApplication::modalWindow() != nullptr || QApplication::activePopupWidget() != nullptr;
    _waitForEnd(isAsking);
    if (isAsking) {
        return;
    }
    _application.showQuietly(*_window);
    QAccessibleEvent announcement(_window.get(), QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void QtRemainsOffer::_withdraw() {
    if (_window && _window->isVisible() && QtApplication::modalWindow() != nullptr) {
        _waitForEnd(true);
        _window->setVisible(false);
    }
}

void QtRemainsOffer::_waitForEnd(bool isWaiting) {
    _isWaiting = isWaiting;
    qApp->removeEventFilter(this);
    if (isWaiting) {
        qApp->installEventFilter(this);
    }
}

} // namespace orvane
