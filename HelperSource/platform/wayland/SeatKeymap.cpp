#include "platform/wayland/SeatKeymap.h"

#ifdef ORVANE_LAYER_SHELL
#include "platform/posix/FileDescriptor.h"

#include <cstring>

#include <sys/mman.h>

#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>
#include <wayland-client.h>
#endif

namespace orvane {

#ifdef ORVANE_LAYER_SHELL

namespace {

/// What the answers bring, on a queue of its own.
struct Question {
    wl_seat *seat = nullptr;
    bool hasKeyboard = false;
    std::optional<std::string> keymap;
};

void onGlobal(void *data, wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t /*version*/) {
    auto &question = *static_cast<Question *>(data);
    if (question.seat == nullptr && std::strcmp(interface, wl_seat_interface.name) == 0) {
        question.seat = static_cast<wl_seat *>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
    }
}

void onGlobalRemove(void * /*data*/, wl_registry * /*registry*/, std::uint32_t /*name*/) {}

void onCapabilities(void *data, wl_seat * /*seat*/, std::uint32_t capabilities) {
    static_cast<Question *>(data)->hasKeyboard = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
}

void onSeatName(void * /*data*/, wl_seat * /*seat*/, const char * /*name*/) {}

void onKeymap(void *data, wl_keyboard * /*keyboard*/, std::uint32_t format, std::int32_t descriptor, std::uint32_t size) {
    const FileDescriptor file(descriptor);
    if (format != WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 || size == 0) {
        return;
    }
    void *const text = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.get(), 0);
    if (text != MAP_FAILED) {
        static_cast<Question *>(data)->keymap =
            std::string(static_cast<const char *>(text), ::strnlen(static_cast<const char *>(text), size));
        ::munmap(text, size);
    }
}

void onEnter(void * /*data*/, wl_keyboard * /*keyboard*/, std::uint32_t /*serial*/, wl_surface * /*surface*/, wl_array * /*keys*/) {}
void onLeave(void * /*data*/, wl_keyboard * /*keyboard*/, std::uint32_t /*serial*/, wl_surface * /*surface*/) {}
void onKey(void *, wl_keyboard *, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {}
void onModifiers(void *, wl_keyboard *, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {}
void onRepeat(void *, wl_keyboard *, std::int32_t, std::int32_t) {}

} // namespace

std::optional<std::string> WaylandSeatKeymapText() {
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        return std::nullopt;
    }
    auto *const display = static_cast<wl_display *>(QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display"));
    if (display == nullptr) {
        return std::nullopt;
    }
    static const wl_registry_listener registryListener{onGlobal, onGlobalRemove};
    static const wl_seat_listener seatListener{onCapabilities, onSeatName};
    static const wl_keyboard_listener keyboardListener{onKeymap, onEnter, onLeave, onKey, onModifiers, onRepeat};
    Question question;
    wl_event_queue *const queue = wl_display_create_queue(display);
    void *const wrapper = wl_proxy_create_wrapper(display);
    wl_proxy_set_queue(static_cast<wl_proxy *>(wrapper), queue);
    wl_registry *const registry = wl_display_get_registry(static_cast<wl_display *>(wrapper));
    wl_proxy_wrapper_destroy(wrapper);
    wl_registry_add_listener(registry, &registryListener, &question);
    wl_display_roundtrip_queue(display, queue);
    if (question.seat != nullptr) {
        wl_seat_add_listener(question.seat, &seatListener, &question);
        wl_display_roundtrip_queue(display, queue);
    }
    // Asking a seat without a keyboard for one would end the connection.
    if (question.hasKeyboard) {
        wl_keyboard *const keyboard = wl_seat_get_keyboard(question.seat);
        wl_keyboard_add_listener(keyboard, &keyboardListener, &question);
        wl_display_roundtrip_queue(display, queue);
        wl_keyboard_destroy(keyboard);
    }
    if (question.seat != nullptr) {
        wl_seat_destroy(question.seat);
    }
    wl_registry_destroy(registry);
    wl_event_queue_destroy(queue);
    return question.keymap;
}

#else

std::optional<std::string> WaylandSeatKeymapText() {
    return std::nullopt;
}

#endif

} // namespace orvane
