#include "window/HotKeyRecording.h"

#include "window/Page.h"

#include "hotkeys/HotKeyNames.h"
#include "hotkeys/SGModifiers.h"
#include "hotkeys/SRRecorderControl.h"
#include "platform/qt/QtText.h"
#include "platform/x11/X11KeyCodes.h"

#include <QKeyEvent>
#include <QStringList>

#include <array>

namespace orvane {

namespace {

// In the Cocoa convention; see SGModifiers.
constexpr std::uint32_t CommandFlag = SGModifiers[0].cocoaBit;
constexpr std::uint32_t OptionFlag = SGModifiers[1].cocoaBit;
constexpr std::uint32_t ControlFlag = SGModifiers[2].cocoaBit;
constexpr std::uint32_t ShiftFlag = SGModifiers[3].cocoaBit;

/// Flag of a key that is a modifier itself; 0 for one that has none here (Caps Lock, AltGr), nothing for other keys.
std::optional<std::uint32_t> flagOfModifierKey(int key) {
    switch (key) {
    case Qt::Key_Shift:
        return ShiftFlag;
    case Qt::Key_Control:
        return ControlFlag;
    case Qt::Key_Alt:
        return OptionFlag;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return CommandFlag;
    case Qt::Key_AltGr:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_Mode_switch:
        return 0U;
    default:
        return std::nullopt;
    }
}

std::uint32_t flagsOf(Qt::KeyboardModifiers modifiers) {
    return (modifiers.testFlag(Qt::MetaModifier) ? CommandFlag : 0U) | (modifiers.testFlag(Qt::AltModifier) ? OptionFlag : 0U) |
           (modifiers.testFlag(Qt::ControlModifier) ? ControlFlag : 0U) | (modifiers.testFlag(Qt::ShiftModifier) ? ShiftFlag : 0U);
}

/// The virtual key code whose place has that X key code. Qt gives X key codes on X11 and on Wayland.
std::optional<std::uint32_t> virtualKeyCodeOf(std::uint32_t scanCode) {
    constexpr std::uint32_t KeyCodes = 128;
    for (std::uint32_t keyCode = 0; keyCode < KeyCodes && scanCode != 0; ++keyCode) {
        const auto candidate = X11KeyCodeOfVirtualKeyCode(keyCode);
        if (candidate && *candidate == scanCode) {
            return keyCode;
        }
    }
    return std::nullopt;
}

SGKeyCombo comboOf(const StoredHotKey &hotKey) {
    return {static_cast<std::intptr_t>(hotKey.code), SRRecorderControl().cocoaToCarbonFlags(static_cast<std::uintptr_t>(hotKey.flags))};
}

} // namespace

HotKeyPress hotKeyPressOf(const QKeyEvent &event) {
    HotKeyPress press;
    press.flags = flagsOf(event.modifiers());
    if (const auto flag = flagOfModifierKey(event.key())) {
        // Qt tells the modifiers of before or of after the event, depending on the platform.
        press.isModifier = true;
        press.flags = event.type() == QEvent::KeyPress ? press.flags | *flag : press.flags & ~*flag;
    } else {
        press.keyCode = virtualKeyCodeOf(event.nativeScanCode());
    }
    return press;
}

QString textOfHotKey(const StoredHotKey &hotKey) {
    const SGKeyCombo combo = comboOf(hotKey);
    return combo.isValidHotKeyCombo() ? QtSingleLine(QtTextOf(ORVHotKeyName(combo))) : QString();
}

QString textOfModifiers(std::uint32_t flags) {
    return QtTextOf(SGKeyCombo::_stringForModifiers(SRRecorderControl().cocoaToCarbonFlags(flags)));
}

QString wordsOfHotKey(const StoredHotKey &hotKey) {
    const SGKeyCombo combo = comboOf(hotKey);
    if (!combo.isValidHotKeyCombo()) {
        return {};
    }
    const auto flags = static_cast<std::uint32_t>(combo.modifierMask());
    QStringList words;
    const std::array<std::pair<std::uint32_t, QString>, 4> names{{{CommandFlag, translated("Super")},
                                                                  {OptionFlag, translated("Alt")},
                                                                  {ControlFlag, translated("Ctrl")},
                                                                  {ShiftFlag, translated("Shift")}}};
    for (const auto &[flag, name] : names) {
        if ((flags & flag) != 0) {
            words.append(name);
        }
    }
    words.append(QtSingleLine(QtTextOf(ORVKeyName(combo))));
    return words.join(QLatin1Char('+'));
}

bool hotKeyTypesText(const StoredHotKey &hotKey) {
    const SGKeyCombo combo = comboOf(hotKey);
    if (combo.modifierMask() != ShiftFlag) {
        return false;
    }
    // Keys that type are those whose names come from the layout; the others have names of their own.
    return !ORVKeyHasOwnName(combo);
}

} // namespace orvane
