#include "desktop/wayland/WaylandInput.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>

#include <sys/mman.h>
#include <unistd.h>

#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

namespace orvane {

namespace {

// The messages of three protocols by their signatures (struct wl_message of wayland-util.h), in the protocols' order:
// wlr-virtual-pointer-unstable-v1, virtual-keyboard-unstable-v1, org_kde_kwin_fake_input.
extern const wl_interface VirtualPointer;
extern const wl_interface VirtualKeyboard;

std::array<const wl_interface *, 5> plain{};
std::array<const wl_interface *, 2> newPointer{&wl_seat_interface, &VirtualPointer};
std::array<const wl_interface *, 2> newKeyboard{&wl_seat_interface, &VirtualKeyboard};

const std::array<wl_message, 1> PointerManagerRequests{{{"create_virtual_pointer", "?on", newPointer.data()}}};
const std::array<wl_message, 5> PointerRequests{{
    {"motion", "uff", plain.data()},
    {"motion_absolute", "uuuuu", plain.data()},
    {"button", "uuu", plain.data()},
    {"axis", "uuf", plain.data()},
    {"frame", "", plain.data()},
}};
const std::array<wl_message, 1> KeyboardManagerRequests{{{"create_virtual_keyboard", "on", newKeyboard.data()}}};
const std::array<wl_message, 3> KeyboardRequests{{
    {"keymap", "uhu", plain.data()},
    {"key", "uuu", plain.data()},
    {"modifiers", "uuuu", plain.data()},
}};
const std::array<wl_message, 11> FakeRequests{{
    {"authenticate", "ss", plain.data()},
    {"pointer_motion", "ff", plain.data()},
    {"button", "uu", plain.data()},
    {"axis", "uf", plain.data()},
    {"touch_down", "2uff", plain.data()},
    {"touch_motion", "2uff", plain.data()},
    {"touch_up", "2u", plain.data()},
    {"touch_cancel", "2", plain.data()},
    {"touch_frame", "2", plain.data()},
    {"pointer_motion_absolute", "3ff", plain.data()},
    {"keyboard_key", "4uu", plain.data()},
}};

const wl_interface PointerManager{"zwlr_virtual_pointer_manager_v1", 1, 1, PointerManagerRequests.data(), 0, nullptr};
const wl_interface VirtualPointer{"zwlr_virtual_pointer_v1", 1, 5, PointerRequests.data(), 0, nullptr};
const wl_interface KeyboardManager{"zwp_virtual_keyboard_manager_v1", 1, 1, KeyboardManagerRequests.data(), 0, nullptr};
const wl_interface VirtualKeyboard{"zwp_virtual_keyboard_v1", 1, 3, KeyboardRequests.data(), 0, nullptr};
const wl_interface FakeInput{"org_kde_kwin_fake_input", 4, 11, FakeRequests.data(), 0, nullptr};

template <typename... Arguments> void request(wl_proxy *proxy, std::uint32_t opcode, Arguments... arguments) {
    wl_proxy_marshal_flags(proxy, opcode, nullptr, wl_proxy_get_version(proxy), 0, arguments...);
}

std::uint32_t now() {
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

} // namespace

std::unique_ptr<WaylandInput> WaylandInput::open(std::uint32_t width, std::uint32_t height, const std::string &layout) {
    std::unique_ptr<WaylandInput> input(new WaylandInput);
    input->_width = width;
    input->_height = height;
    input->_display = wl_display_connect(nullptr);
    if (input->_display == nullptr) {
        return nullptr;
    }
    wl_registry *const registry = wl_display_get_registry(input->_display);
    static const wl_registry_listener listener{_global, _globalRemove};
    wl_registry_add_listener(registry, &listener, input.get());
    wl_display_roundtrip(input->_display);
    wl_registry_destroy(registry);
    if (input->_pointerManager != nullptr && input->_keyboardManager != nullptr && input->_seat != nullptr) {
        wl_proxy *const pointers = input->_pointerManager;
        input->_pointer = wl_proxy_marshal_flags(pointers, 0, &VirtualPointer, wl_proxy_get_version(pointers), 0, input->_seat, nullptr);
        input->_makeKeyboard(layout);
    } else if (input->_fake != nullptr) {
        request(input->_fake, 0, "Orvane", "tests");
    } else {
        return nullptr;
    }
    input->_finish();
    return input;
}

WaylandInput::~WaylandInput() {
    for (wl_proxy *const proxy : {_pointer, _keyboard, _pointerManager, _keyboardManager, _fake}) {
        if (proxy != nullptr) {
            wl_proxy_destroy(proxy);
        }
    }
    if (_seat != nullptr) {
        wl_seat_destroy(_seat);
    }
    if (_display != nullptr) {
        wl_display_disconnect(_display);
    }
    xkb_state_unref(_state);
}

void WaylandInput::_global(void *data, wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t version) {
    auto *const self = static_cast<WaylandInput *>(data);
    const auto bind = [&](const wl_interface &wanted) {
        const auto understood = std::min(version, static_cast<std::uint32_t>(wanted.version));
        return static_cast<wl_proxy *>(wl_registry_bind(registry, name, &wanted, understood));
    };
    if (std::strcmp(interface, "wl_seat") == 0 && self->_seat == nullptr) {
        self->_seat = static_cast<wl_seat *>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
    } else if (std::strcmp(interface, PointerManager.name) == 0) {
        self->_pointerManager = bind(PointerManager);
    } else if (std::strcmp(interface, KeyboardManager.name) == 0) {
        self->_keyboardManager = bind(KeyboardManager);
    } else if (std::strcmp(interface, FakeInput.name) == 0) {
        self->_fake = bind(FakeInput);
    }
}

void WaylandInput::_globalRemove(void * /*data*/, wl_registry * /*registry*/, std::uint32_t /*name*/) {}

void WaylandInput::_makeKeyboard(const std::string &layout) {
    wl_proxy *const keyboards = _keyboardManager;
    _keyboard = wl_proxy_marshal_flags(keyboards, 0, &VirtualKeyboard, wl_proxy_get_version(keyboards), 0, _seat, nullptr);
    xkb_context *const context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    xkb_rule_names names{};
    names.layout = layout.c_str();
    xkb_keymap *const keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    _state = xkb_state_new(keymap);
    char *const text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
    const std::size_t size = std::strlen(text) + 1;
    const int file = memfd_create("keymap", MFD_CLOEXEC);
    if (write(file, text, size) == static_cast<ssize_t>(size)) {
        request(_keyboard, 0, static_cast<std::uint32_t>(WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1), file, static_cast<std::uint32_t>(size));
        wl_display_roundtrip(_display);
    }
    close(file);
    std::free(text);
    xkb_keymap_unref(keymap);
    xkb_context_unref(context);
}

void WaylandInput::_finish() {
    wl_display_roundtrip(_display);
}

void WaylandInput::movePointer(std::uint32_t x, std::uint32_t y) {
    if (_pointer != nullptr) {
        request(_pointer, 1, now(), x, y, _width, _height);
        request(_pointer, 4);
    } else {
        request(_fake, 9, wl_fixed_from_int(static_cast<int>(x)), wl_fixed_from_int(static_cast<int>(y)));
    }
    _finish();
}

void WaylandInput::button(std::uint32_t code, bool isDown) {
    const std::uint32_t state = isDown ? 1 : 0;
    if (_pointer != nullptr) {
        request(_pointer, 2, now(), code, state);
        request(_pointer, 4);
    } else {
        request(_fake, 2, code, state);
    }
    _finish();
}

void WaylandInput::click(std::uint32_t code) {
    button(code, true);
    button(code, false);
}

void WaylandInput::key(std::uint32_t code, bool isDown) {
    const std::uint32_t state = isDown ? 1 : 0;
    if (_keyboard == nullptr) {
        request(_fake, 10, code, state);
        _finish();
        return;
    }
    request(_keyboard, 1, now(), code, state);
    // X key codes, which xkbcommon uses, are those of evdev plus 8 (XKB's evdev rules).
    xkb_state_update_key(_state, code + 8, isDown ? XKB_KEY_DOWN : XKB_KEY_UP);
    _sendModifiers();
}

void WaylandInput::_sendModifiers() {
    request(_keyboard, 2, xkb_state_serialize_mods(_state, XKB_STATE_MODS_DEPRESSED),
            xkb_state_serialize_mods(_state, XKB_STATE_MODS_LATCHED), xkb_state_serialize_mods(_state, XKB_STATE_MODS_LOCKED),
            xkb_state_serialize_layout(_state, XKB_STATE_LAYOUT_EFFECTIVE));
    _finish();
}

void WaylandInput::switchLayout(std::uint32_t layout) {
    if (_keyboard != nullptr) {
        xkb_state_update_mask(_state, 0, 0, 0, 0, 0, layout);
        _sendModifiers();
    }
}

void WaylandInput::press(const std::vector<std::uint32_t> &codes) {
    for (const std::uint32_t code : codes) {
        key(code, true);
    }
    for (auto code = codes.rbegin(); code != codes.rend(); ++code) {
        key(*code, false);
    }
}

} // namespace orvane
