#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct wl_display;
struct wl_proxy;
struct wl_registry;
struct wl_seat;
struct xkb_state;

namespace orvane {

/// A mouse and a keyboard made of messages to the compositor, on a connection of its own: by the protocols of wlroots (virtual pointer
/// and keyboard) or by KWin's fake input. Requests only; nothing waits for the program under test.
class WaylandInput {
public:
    /// The pointer moves over a desktop of this size, all outputs together, in logical pixels. Null where the compositor takes no input
    /// from programs.
    [[nodiscard]] static std::unique_ptr<WaylandInput> open(std::uint32_t width, std::uint32_t height, const std::string &layout = "us");
    WaylandInput(const WaylandInput &) = delete;
    WaylandInput &operator=(const WaylandInput &) = delete;
    ~WaylandInput();

    void movePointer(std::uint32_t x, std::uint32_t y);
    /// Codes of linux/input-event-codes.h.
    void button(std::uint32_t code, bool isDown);
    void click(std::uint32_t code);
    void key(std::uint32_t code, bool isDown);
    /// Presses the keys in this order, then lets go of them in the other.
    void press(const std::vector<std::uint32_t> &codes);
    /// Goes to a layout of this keyboard, counted from 0. KWin's fake input has no layouts of its own.
    void switchLayout(std::uint32_t layout);
    [[nodiscard]] wl_display *display() const { return _display; }

private:
    WaylandInput() = default;
    static void _global(void *data, wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t version);
    static void _globalRemove(void *data, wl_registry *registry, std::uint32_t name);
    void _makeKeyboard(const std::string &layout);
    void _sendModifiers();
    void _finish();

    wl_display *_display = nullptr;
    wl_seat *_seat = nullptr;
    wl_proxy *_pointerManager = nullptr;
    wl_proxy *_keyboardManager = nullptr;
    wl_proxy *_pointer = nullptr;
    wl_proxy *_keyboard = nullptr;
    wl_proxy *_fake = nullptr;
    xkb_state *_state = nullptr;
    std::uint32_t _width = 0;
    std::uint32_t _height = 0;
};

} // namespace orvane
