#include "platform/x11/X11Keyboard.h"

#include "platform/x11/X11Reply.h"
#include "platform/x11/XcbXkb.h"

#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace orvane {

namespace {

/// The fields that all of XKB's events begin with (XKB protocol, section 16.4).
struct XkbAnyEvent {
    std::uint8_t responseType;
    std::uint8_t xkbType;
    std::uint16_t sequence;
    xcb_timestamp_t time;
    std::uint8_t deviceID;
};

constexpr std::uint8_t WithoutSentBit = 0x7F;

} // namespace

void X11Keyboard::Unref::operator()(xkb_context *context) const noexcept {
    xkb_context_unref(context);
}

X11Keyboard::~X11Keyboard() = default;

std::unique_ptr<X11Keyboard> X11Keyboard::create(xcb_connection_t *connection) {
    std::unique_ptr<X11Keyboard> keyboard(new X11Keyboard);
    return keyboard->_init(connection) ? std::move(keyboard) : nullptr;
}

bool X11Keyboard::_init(xcb_connection_t *connection) {
    _connection = connection;
    _context.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!_context || xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                                 XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &_firstEvent, nullptr) == 0) {
        return false;
    }
    _device = xkb_x11_get_core_keyboard_device_id(connection);
    return _device >= 0 && _selectEvents();
}

bool X11Keyboard::_selectEvents() {
    constexpr auto Device = static_cast<xcb_xkb_device_spec_t>(XCB_XKB_ID_USE_CORE_KBD);
    constexpr std::uint16_t Events =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr std::uint16_t Parts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP |
                                    XCB_XKB_MAP_PART_VIRTUAL_MODS | XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
    // What is named in both halves is added to what others on this connection have asked for.
    xcb_xkb_select_events_details_t details = {};
    details.affectNewKeyboard = details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(_connection, Device, Events, 0, 0, Parts, Parts, &details);

    // A held key then gives presses alone and one release at its end (XKB protocol, section 4.1.2).
    constexpr std::uint32_t Flag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const X11Reply<xcb_xkb_per_client_flags_reply_t> reply(
        xcb_xkb_per_client_flags_reply(_connection, xcb_xkb_per_client_flags(_connection, Device, Flag, Flag, 0, 0, 0), nullptr));
    return reply && (reply->value & Flag) != 0;
}

X11Keyboard::Change X11Keyboard::handleEvent(const xcb_generic_event_t &event) {
    const auto type = static_cast<std::uint8_t>(event.response_type & WithoutSentBit);
    Change change = Change::Nothing;
    if (type == XCB_MAPPING_NOTIFY) {
        const auto &mapping = reinterpret_cast<const xcb_mapping_notify_event_t &>(event);
        change = mapping.request == XCB_MAPPING_POINTER ? Change::Nothing : Change::Keymap;
    } else if (type == _firstEvent) {
        const auto &any = reinterpret_cast<const XkbAnyEvent &>(event);
        if (any.deviceID != _device) {
            return Change::Nothing;
        }
        if (any.xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY || any.xkbType == XCB_XKB_MAP_NOTIFY) {
            change = Change::Keymap;
        } else if (any.xkbType == XCB_XKB_STATE_NOTIFY) {
            const auto &state = reinterpret_cast<const xcb_xkb_state_notify_event_t &>(event);
            change = (state.changed & XCB_XKB_STATE_PART_GROUP_STATE) != 0 && state.group != _group ? Change::Group : Change::Nothing;
            _group = change == Change::Group ? state.group : _group;
        }
    }
    _isStale = _isStale || change == Change::Keymap;
    _generation += change == Change::Nothing ? 0 : 1;
    return change;
}

void X11Keyboard::_fetch() {
    _isStale = false;
    _keymap.reset(xkb_x11_keymap_new_from_device(_context.get(), _connection, _device, XKB_KEYMAP_COMPILE_NO_FLAGS),
                  [](xkb_keymap *keymap) { xkb_keymap_unref(keymap); });
    if (!_keymap) {
        return;
    }
    xkb_state *const state = xkb_x11_state_new_from_device(_keymap.get(), _connection, _device);
    if (state != nullptr) {
        _group = xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE);
        xkb_state_unref(state);
    }
    _modifiers = X11ModifiersOfServer(_connection, _keymap.get());
}

const std::shared_ptr<xkb_keymap> &X11Keyboard::keymap() {
    if (_isStale) {
        _fetch();
    }
    return _keymap;
}

std::uint32_t X11Keyboard::group() {
    return keymap() ? _group : 0;
}

const X11Modifiers &X11Keyboard::modifiers() {
    (void)keymap();
    return _modifiers;
}

std::optional<std::chrono::milliseconds> X11Keyboard::repeatDelay(std::uint8_t keyCode) {
    const X11Reply<xcb_xkb_get_controls_reply_t> controls(
        xcb_xkb_get_controls_reply(_connection, xcb_xkb_get_controls(_connection, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!controls || (controls->enabledControls & XCB_XKB_BOOL_CTRL_REPEAT_KEYS) == 0 ||
        (controls->perKeyRepeat[keyCode / 8] >> (keyCode % 8) & 1) == 0) {
        return std::nullopt;
    }
    return std::chrono::milliseconds(controls->repeatDelay > controls->repeatInterval ? controls->repeatDelay : controls->repeatInterval);
}

} // namespace orvane
