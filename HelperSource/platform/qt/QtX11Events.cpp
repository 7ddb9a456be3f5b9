#include "platform/qt/QtX11Events.h"

#include <QGuiApplication>

namespace orvane {

QtX11Events::QtX11Events(Handler handler) : _handler(std::move(handler)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
}

QtX11Events::~QtX11Events() {
    if (QCoreApplication *application = QCoreApplication::instance(); application != nullptr) {
        application->removeNativeEventFilter(this);
    }
}

xcb_connection_t *QtX11Events::connection() {
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

bool QtX11Events::nativeEventFilter(const QByteArray &type, void *message, qintptr * /*result*/) {
    return type == "xcb_generic_event_t" && _handler(*static_cast<const xcb_generic_event_t *>(message));
}

} // namespace orvane
