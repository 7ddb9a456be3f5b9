#include "platform/qtdbus/QtXEmbedTrayColor.h"

#include <QGuiApplication>
#include <QTimer>

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

namespace orvane {

namespace {

struct Free {
    void operator()(void *reply) const { std::free(reply); } // xcb allocates replies with malloc
};
template <typename Reply> using Owned = std::unique_ptr<Reply, Free>;

xcb_connection_t *connectionOfQt() {
    auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_atom_t atomOf(xcb_connection_t *connection, std::string_view name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

xcb_window_t trayOf(xcb_connection_t *connection) {
    // Qt's own icons go to the tray of screen 0, too.
    const auto cookie = xcb_get_selection_owner(connection, atomOf(connection, "_NET_SYSTEM_TRAY_S0"));
    const Owned<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

} // namespace

QtXEmbedTrayColor::QtXEmbedTrayColor(std::function<void()> changed) : _changed(std::move(changed)) {
    xcb_connection_t *const connection = connectionOfQt();
    if (connection == nullptr) {
        return;
    }
    _manager = atomOf(connection, "MANAGER");
    qGuiApp->installNativeEventFilter(this);
}

QtXEmbedTrayColor::~QtXEmbedTrayColor() {
    if (qGuiApp != nullptr) {
        qGuiApp->removeNativeEventFilter(this);
    }
}

std::optional<QColor> QtXEmbedTrayColor::foreground() const {
    xcb_connection_t *const connection = connectionOfQt();
    const xcb_window_t tray = connection == nullptr ? static_cast<xcb_window_t>(XCB_WINDOW_NONE) : trayOf(connection);
    if (tray == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    constexpr std::uint32_t components = 3; // of the first of four colours, the foreground; 16 bits each
    const auto cookie =
        xcb_get_property(connection, 0, tray, atomOf(connection, "_NET_SYSTEM_TRAY_COLORS"), XCB_ATOM_CARDINAL, 0, components);
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32 || reply->value_len < components) {
        return std::nullopt;
    }
    const auto *const values = static_cast<const std::uint32_t *>(xcb_get_property_value(reply.get()));
    std::array<int, components> bytes{};
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        bytes[index] = static_cast<int>((values[index] >> 8) & 0xFF);
    }
    return QColor(bytes[0], bytes[1], bytes[2]);
}

bool QtXEmbedTrayColor::nativeEventFilter(const QByteArray & /*eventType*/, void *message, qintptr * /*result*/) {
    const auto *const event = static_cast<const xcb_generic_event_t *>(message);
    constexpr int sentBit = 0x80; // of events that came by SendEvent
    if ((event->response_type & ~sentBit) == XCB_CLIENT_MESSAGE &&
        reinterpret_cast<const xcb_client_message_event_t *>(event)->type == _manager) {
        QTimer::singleShot(0, &_context, _changed);
    }
    return false;
}

} // namespace orvane
