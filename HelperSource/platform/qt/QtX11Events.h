#pragma once

#include <QAbstractNativeEventFilter>

#include <functional>

#include <xcb/xcb.h>

namespace orvane {

/// Qt's own connection to the X server, and every event on it before Qt sees it. Main thread only, once the application is loaded.
class QtX11Events final : public QAbstractNativeEventFilter {
public:
    /// True keeps the event from Qt. It may handle further events meanwhile.
    using Handler = std::function<bool(const xcb_generic_event_t &)>;

    explicit QtX11Events(Handler handler);
    QtX11Events(const QtX11Events &) = delete;
    QtX11Events &operator=(const QtX11Events &) = delete;
    ~QtX11Events() override;

    /// Null when Qt does not run on X11.
    [[nodiscard]] static xcb_connection_t *connection();

    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

private:
    Handler _handler;
};

} // namespace orvane
