#include "platform/qt/QtX11Activation.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QWindow>

namespace orvane {

namespace {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};
template <typename Reply> using Owned = std::unique_ptr<Reply, Free>;
using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

/// Who asks for activation (EWMH 1.5, _NET_ACTIVE_WINDOW): 2 stands for the user's direct request, which is never refused.
constexpr std::uint32_t SourceIsUser = 2;

xcb_atom_t atom(xcb_connection_t *connection, std::string_view name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

/// The server's present time: that of a property's change (ICCCM 2.0, section 2.1). A connection of its own leaves Qt's events alone.
xcb_timestamp_t serverTime() {
    const Connection connection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0) {
        return XCB_CURRENT_TIME;
    }
    xcb_connection_t *const c = connection.get();
    const xcb_screen_t *const screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    const xcb_window_t window = xcb_generate_id(c);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, screen->root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_EVENT_MASK, &events);
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(c);
    while (const Owned<xcb_generic_event_t> event{xcb_wait_for_event(c)}) {
        if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY) {
            return reinterpret_cast<const xcb_property_notify_event_t *>(event.get())->time;
        }
    }
    return XCB_CURRENT_TIME;
}

} // namespace

bool QtX11DisplayAnswers() {
    const Connection connection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    return xcb_connection_has_error(connection.get()) == 0;
}

void QtX11ActivateWindow(const QWindow &window) {
    const auto *const native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (native == nullptr) {
        return;
    }
    xcb_connection_t *const connection = native->connection();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const xcb_timestamp_t now = serverTime();
    const auto id = static_cast<xcb_window_t>(window.winId());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, atom(connection, "_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, 32, 1, &now);

    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = id;
    message.type = atom(connection, "_NET_ACTIVE_WINDOW");
    message.data.data32[0] = SourceIsUser;
    message.data.data32[1] = now;
    xcb_send_event(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(connection);
}

} // namespace orvane
