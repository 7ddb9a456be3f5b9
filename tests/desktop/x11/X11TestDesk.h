#pragma once

#include "fakes/FakeSystemLog.h"
#include "platform/x11/X11HotKeyEvents.h"
#include "platform/x11/X11Keyboard.h"

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// Hands on the keyboard of the X server that DISPLAY names, and programs that listen to it.

namespace orvane::test {

// Keys by the Mac's virtual key codes, and what X calls them (evdev's codes).
inline constexpr std::uint8_t XKeyShift = 50;
inline constexpr std::uint8_t XKeyControl = 37;
inline constexpr std::uint8_t XKeyAlt = 64;
inline constexpr std::uint8_t XKeySuper = 133;
inline constexpr std::uint8_t XKeyCapsLock = 66;
inline constexpr std::uint8_t XKeyNumLock = 77;
inline constexpr std::uint8_t XKeyScrollLock = 78;
inline constexpr std::uint8_t XKeyK = 45;
inline constexpr std::uint32_t MacK = 0x28;

inline constexpr std::uint32_t Command = 0x0100;
inline constexpr std::uint32_t Shift = 0x0200;
inline constexpr std::uint32_t Option = 0x0800;
inline constexpr std::uint32_t Control = 0x1000;

/// A client of the X server.
class X11Client {
public:
    X11Client();
    X11Client(const X11Client &) = delete;
    X11Client &operator=(const X11Client &) = delete;
    ~X11Client();

    [[nodiscard]] xcb_connection_t *connection() const { return _connection; }
    [[nodiscard]] xcb_window_t root() const;
    /// Returns when the server has done everything asked before; all events up to then have arrived.
    void sync() const;
    /// Grabs one key with exactly these modifiers; false when the server refuses.
    [[nodiscard]] bool grab(std::uint8_t key, std::uint16_t state) const;
    void ungrab(std::uint8_t key, std::uint16_t state) const;
    /// Whether this client could grab the key with every one of the 256 combinations of modifiers: nobody holds any.
    [[nodiscard]] bool isFree(std::uint8_t key) const;

private:
    xcb_connection_t *_connection;
};

/// The user. Keys that are left down are released at the end, locks are switched off, the layout is that of the US.
class X11User {
public:
    X11User();
    X11User(const X11User &) = delete;
    X11User &operator=(const X11User &) = delete;
    ~X11User();

    void press(std::uint8_t key);
    void release(std::uint8_t key);
    void tap(std::uint8_t key);
    /// Presses the keys of a Carbon mask.
    void pressModifiers(std::uint32_t modifiers);
    void releaseModifiers(std::uint32_t modifiers);
    /// Holds the modifiers, presses and releases the key.
    void strike(std::uint8_t key, std::uint32_t modifiers);
    /// Runs setxkbmap with those arguments.
    void setLayout(const std::string &arguments);
    void xmodmap(const std::vector<std::string> &expressions);
    /// Runs a program of the X utilities; fails the test when it fails.
    void run(const std::string &command);
    /// Switches to the group for good.
    void lockGroup(std::uint8_t group);
    /// Locks exactly these modifiers, as a lock key does.
    void lockModifiers(std::uint16_t modifiers);
    /// Modifiers that are set now, locks included.
    [[nodiscard]] std::uint16_t state() const;

private:
    void _fake(std::uint8_t type, std::uint8_t key);

    X11Client _client;
    std::vector<std::uint8_t> _down;
};

/// A program with hot keys on a connection of its own.
class X11Program {
public:
    X11Program();
    /// What the keyboard has told: "press 7" or "release 7" for each event, by the hot key's id.
    [[nodiscard]] std::vector<std::string> told();
    /// Handles what has arrived; with `deadline` waits until `done`.
    void pump();
    [[nodiscard]] bool pumpUntil(const std::function<bool()> &done, std::chrono::milliseconds limit = std::chrono::seconds(10));
    /// Core key presses that arrived, repetitions included.
    [[nodiscard]] int rawPresses() const { return _rawPresses; }
    /// Events that the adapter took for itself.
    [[nodiscard]] int swallowed() const { return _swallowed; }
    [[nodiscard]] EventStatus add(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id, EventHotKeyRef *ref = nullptr) const;

    X11Client client;
    FakeSystemLog log;
    std::unique_ptr<X11Keyboard> keyboard;
    std::unique_ptr<X11HotKeyEvents> hotKeys;
    std::function<void(std::uint32_t kind, std::uint32_t id)> onEvent;
    std::vector<std::string> journal;

private:
    static EventStatus _handle(const void *nextHandler, const Event &event, void *userData);

    int _rawPresses = 0;
    int _swallowed = 0;
};

/// Runs `child` in a process of its own with a connection of its own; tells when it is ready; kills it at the end.
class X11OtherProcess {
public:
    /// `child` returns whether it has what it wants; it then waits to be killed.
    explicit X11OtherProcess(const std::function<bool()> &child);
    X11OtherProcess(const X11OtherProcess &) = delete;
    X11OtherProcess &operator=(const X11OtherProcess &) = delete;
    ~X11OtherProcess() { kill(); }
    [[nodiscard]] bool isReady() const { return _isReady; }
    /// As a crash does: nothing is given back by the process itself.
    void kill();

private:
    int _pid = -1;
    bool _isReady = false;
};

} // namespace orvane::test
