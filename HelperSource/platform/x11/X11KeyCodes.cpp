#include "platform/x11/X11KeyCodes.h"

#include <array>

// From the Mac's virtual key codes to X key codes.
//
// A virtual key code names a place on the keyboard, whatever the layout prints there. Linux has such names too, the key
// codes of its input system, and X servers with the "evdev" key codes (all of today's) number their keys with those
// plus 8 (xkeyboard-config, keycodes/evdev). The two sides and the pairing:
//
//   the Mac's codes and their names: kVK_... of HIToolbox/Events.h in Apple's Carbon framework
//   Linux's codes and their names:   KEY_... of linux/input-event-codes.h
//   which place is which:            the key positions of W3C's "UI Events KeyboardEvent code Values", which both follow
//
// Where keyboards differ: the Mac's ISO key (section sign) is the extra key beside the left Shift; its Clear is Num Lock,
// its Help Insert; Eisu and Kana are the keys that USB calls LANG2 and LANG1 (HID usage tables 1.12, section 10); the
// comma on a JIS keypad is usage 0x85. F13 to F20 are keys of their own, not Print Screen and its neighbours.

namespace orvane {

namespace {

/// Linux's code of each virtual key code, 0 for none.
constexpr std::array<std::uint8_t, 128> LinuxCodes{
    // 0x00: A S D F H G Z X C V, ISO, B Q W E R
    30, 31, 32, 33, 35, 34, 44, 45, 46, 47, 86, 48, 16, 17, 18, 19,
    // 0x10: Y T 1 2 3 4 6 5 = 9 7 - 8 0 ] O
    21, 20, 2, 3, 4, 5, 7, 6, 13, 10, 8, 12, 9, 11, 27, 24,
    // 0x20: U [ I P Return L J ' K ; \ , / N M .
    22, 26, 23, 25, 28, 38, 36, 40, 37, 39, 43, 51, 53, 49, 50, 52,
    // 0x30: Tab, Space, `, Backspace, none, Escape, right Command, Command, Shift, Caps Lock, Option, Control,
    //       right Shift, right Option, right Control, Fn (KEY_FN is 464, beyond X)
    15, 57, 41, 14, 0, 1, 126, 125, 42, 58, 56, 29, 54, 100, 97, 0,
    // 0x40: F17, pad ., none, pad *, none, pad +, none, pad Clear, volume up, volume down, mute, pad /, pad Enter, none,
    //       pad -, F18
    187, 83, 0, 55, 0, 78, 0, 69, 115, 114, 113, 98, 96, 0, 74, 188,
    // 0x50: F19, pad =, pad 0 1 2 3 4 5 6 7, F20, pad 8 9, JIS yen, JIS underscore, JIS pad comma
    189, 117, 82, 79, 80, 81, 75, 76, 77, 71, 190, 72, 73, 124, 89, 121,
    // 0x60: F5 F6 F7 F3 F8 F9, Eisu, F11, Kana, F13 F16 F14, none, F10, menu, F12
    63, 64, 65, 61, 66, 67, 123, 87, 122, 183, 186, 184, 0, 68, 127, 88,
    // 0x70: none, F15, Help, Home, Page Up, forward Delete, F4, End, F2, Page Down, F1, left, right, down, up, none
    0, 185, 110, 102, 104, 111, 62, 107, 60, 109, 59, 105, 106, 108, 103, 0};

} // namespace

std::optional<std::uint8_t> X11KeyCodeOfVirtualKeyCode(std::uint32_t keyCode) {
    constexpr std::uint8_t FirstKeyCode = 8; // X key codes begin there (X11 protocol, section 5)
    if (keyCode >= LinuxCodes.size() || LinuxCodes[keyCode] == 0) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(LinuxCodes[keyCode] + FirstKeyCode);
}

bool X11IsKeypadKey(std::uint32_t keyCode) {
    constexpr std::uint32_t First = 0x41;
    constexpr std::uint32_t Last = 0x5F;
    if (keyCode < First || keyCode > Last) {
        return false;
    }
    switch (keyCode) {
    case 0x48: // volume
    case 0x49:
    case 0x4A:
    case 0x4F: // F18 to F20
    case 0x50:
    case 0x5A:
    case 0x5D: // JIS yen and underscore
    case 0x5E:
        return false;
    default:
        return X11KeyCodeOfVirtualKeyCode(keyCode).has_value();
    }
}

} // namespace orvane
