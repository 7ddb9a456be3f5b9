#include "platform/filemanagers/X11Windows.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

namespace orvane {

namespace {

/// Longest property that is read, in units of four bytes.
constexpr std::uint32_t LongestProperty = 16384;
/// Dialogs of dialogs; more means a ring.
constexpr int MostOwners = 8;

/// What a panel, its menus and notifications are (EWMH 1.5, _NET_WM_WINDOW_TYPE; the last is KDE's, for a panel's pop-ups).
constexpr const char *PassingTypeNames[] = {"_NET_WM_WINDOW_TYPE_DOCK",
                                            "_NET_WM_WINDOW_TYPE_POPUP_MENU",
                                            "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
                                            "_NET_WM_WINDOW_TYPE_TOOLTIP",
                                            "_NET_WM_WINDOW_TYPE_NOTIFICATION",
                                            "_NET_WM_WINDOW_TYPE_COMBO",
                                            "_KDE_NET_WM_WINDOW_TYPE_APPLET_POPUP"};

} // namespace

X11Windows::X11Windows() : _connection(::xcb_connect(nullptr, nullptr)) {
    int number = 0;
    if (!isUsable()) {
        return;
    }
    // The screen of the display's name; its number again, which xcb_connect gives only to who asks.
    char *host = nullptr;
    int display = 0;
    if (::xcb_parse_display(nullptr, &host, &display, &number) == 0) {
        number = 0;
    }
    std::free(host);
    xcb_screen_iterator_t screens = ::xcb_setup_roots_iterator(::xcb_get_setup(_connection));
    for (; screens.rem > 1 && number > 0; --number) {
        ::xcb_screen_next(&screens);
    }
    _root = screens.data->root;
    _atoms.activeWindow = _atom("_NET_ACTIVE_WINDOW");
    _atoms.windowType = _atom("_NET_WM_WINDOW_TYPE");
    _atoms.pid = _atom("_NET_WM_PID");
    _atoms.name = _atom("_NET_WM_NAME");
    _atoms.gtkBusName = _atom("_GTK_UNIQUE_BUS_NAME");
    _atoms.gtkWindowPath = _atom("_GTK_WINDOW_OBJECT_PATH");
    _atoms.desktopType = _atom("_NET_WM_WINDOW_TYPE_DESKTOP");
    for (const char *name : PassingTypeNames) {
        _atoms.passingTypes.push_back(_atom(name));
    }
}

X11Windows::~X11Windows() {
    ::xcb_disconnect(_connection);
}

bool X11Windows::isUsable() const {
    return ::xcb_connection_has_error(_connection) == 0;
}

int X11Windows::descriptor() const {
    return ::xcb_get_file_descriptor(_connection);
}

void X11Windows::watchRoot() {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    ::xcb_change_window_attributes(_connection, _root, XCB_CW_EVENT_MASK, &mask);
    ::xcb_flush(_connection);
}

bool X11Windows::takeEvents() {
    bool isChanged = false;
    while (const X11Reply<xcb_generic_event_t> event{::xcb_poll_for_event(_connection)}) {
        if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY) {
            xcb_property_notify_event_t notice;
            std::memcpy(&notice, event.get(), sizeof notice);
            isChanged = isChanged || notice.atom == _atoms.activeWindow;
        }
    }
    return isChanged;
}

xcb_atom_t X11Windows::_atom(std::string_view name) {
    const auto cookie = ::xcb_intern_atom(_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const X11Reply<xcb_intern_atom_reply_t> reply(::xcb_intern_atom_reply(_connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

X11Reply<xcb_get_property_reply_t> X11Windows::_property(xcb_window_t window, xcb_atom_t property) {
    const auto cookie = ::xcb_get_property(_connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, LongestProperty);
    return X11Reply<xcb_get_property_reply_t>(::xcb_get_property_reply(_connection, cookie, nullptr));
}

std::vector<std::uint32_t> X11Windows::_words(xcb_window_t window, xcb_atom_t property) {
    const auto reply = _property(window, property);
    if (!reply || reply->format != 32) {
        return {};
    }
    std::vector<std::uint32_t> words(reply->value_len);
    if (!words.empty()) {
        std::memcpy(words.data(), ::xcb_get_property_value(reply.get()), words.size() * sizeof words.front());
    }
    return words;
}

std::string X11Windows::_text(xcb_window_t window, xcb_atom_t property) {
    const auto reply = _property(window, property);
    if (!reply || reply->format != 8) {
        return {};
    }
    return {static_cast<const char *>(::xcb_get_property_value(reply.get())), reply->value_len};
}

xcb_window_t X11Windows::activeWindow() {
    const auto words = _words(_root, _atoms.activeWindow);
    return words.empty() ? static_cast<xcb_window_t>(XCB_WINDOW_NONE) : words.front();
}

X11WindowKind X11Windows::kindOf(xcb_window_t window) {
    const auto pid = _words(window, _atoms.pid);
    if (!pid.empty() && pid.front() == static_cast<std::uint32_t>(::getpid()) && _isOnThisMachine(window)) {
        return X11WindowKind::Own;
    }
    for (const std::uint32_t type : _words(window, _atoms.windowType)) {
        if (std::find(_atoms.passingTypes.begin(), _atoms.passingTypes.end(), type) != _atoms.passingTypes.end()) {
            return X11WindowKind::Passing;
        }
    }
    return X11WindowKind::Application;
}

bool X11Windows::isViewable(xcb_window_t window) {
    const auto cookie = ::xcb_get_window_attributes(_connection, window);
    const X11Reply<xcb_get_window_attributes_reply_t> reply(::xcb_get_window_attributes_reply(_connection, cookie, nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// The window at the end of the chain of WM_TRANSIENT_FOR.
xcb_window_t X11Windows::_owner(xcb_window_t window) {
    for (int step = 0; step < MostOwners; ++step) {
        const auto owner = _words(window, XCB_ATOM_WM_TRANSIENT_FOR);
        if (owner.empty() || owner.front() == XCB_WINDOW_NONE || owner.front() == _root || owner.front() == window ||
            !isViewable(owner.front())) {
            break;
        }
        window = owner.front();
    }
    return window;
}

bool X11Windows::_isOnThisMachine(xcb_window_t window) {
    char name[256] = {};
    const std::string machine = _text(window, XCB_ATOM_WM_CLIENT_MACHINE);
    return machine.empty() || ::gethostname(name, sizeof name - 1) != 0 || machine == name;
}

std::optional<ApplicationWindow> X11Windows::describe(xcb_window_t window) {
    window = _owner(window);
    const auto classes = _property(window, XCB_ATOM_WM_CLASS);
    if (!classes) {
        return std::nullopt;
    }
    ApplicationWindow description;
    // Two texts, each closed by a NUL: instance and class (ICCCM 2.0, 4.1.2.5).
    const std::string_view both(static_cast<const char *>(::xcb_get_property_value(classes.get())), classes->value_len);
    const std::string_view second = both.substr(std::min(both.size(), both.find('\0') + 1));
    description.className = second.substr(0, second.find('\0'));
    description.title = _text(window, _atoms.name);
    description.gtkBusName = _text(window, _atoms.gtkBusName);
    description.gtkWindowPath = _text(window, _atoms.gtkWindowPath);
    const auto pid = _words(window, _atoms.pid);
    description.pid = pid.empty() ? 0 : pid.front();
    const auto types = _words(window, _atoms.windowType);
    description.isDesktop = std::find(types.begin(), types.end(), _atoms.desktopType) != types.end();
    description.isLocal = _isOnThisMachine(window);
    return description;
}

} // namespace orvane
