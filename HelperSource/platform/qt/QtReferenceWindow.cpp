#include "platform/qt/QtReferenceWindow.h"

#include <QWindow>

namespace orvane {

QtReferenceWindow::QtReferenceWindow() : _window(std::make_unique<QWindow>()) {}

QtReferenceWindow::~QtReferenceWindow() = default;

std::int64_t QtReferenceWindow::windowNumber() {
    return static_cast<std::int64_t>(_window->winId()); // makes the window the first time
}

} // namespace orvane
