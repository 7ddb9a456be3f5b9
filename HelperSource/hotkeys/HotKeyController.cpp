#include "hotkeys/HotKeyController.h"

#include "hotkeys/SGIntegerValue.h"
#include "hotkeys/SRRecorderControl.h"
#include "presets/ORVPresetManager.h"

#include <cstdint>

namespace orvane {

namespace {

std::int64_t integerForKey(const std::optional<PropertyList> &preferences, std::string_view key) {
    return preferences ? SGIntegerValue(preferences->root().find(key)) : 0;
}

} // namespace

HotKeyController::~HotKeyController() {
    _ports.notifications.removeObserver(this, ORVPresetConfigurationChangedNotification);
    if (_hotkey) {
        _ports.hotKeyCenter.unregisterHotKey(_hotkey);
    }
}

void HotKeyController::awakeFromNib() {
    registerHotKey();
    _ports.notifications.addObserver(this, ORVPresetConfigurationChangedNotification, DistributedNotifications::Suspension::Coalesce,
                                     [this] { reloadPrefs(); });
}

void HotKeyController::reloadPrefs() {
    registerHotKey();
}

void HotKeyController::registerHotKey() {
    if (_hotkey) {
        _ports.hotKeyCenter.unregisterHotKey(_hotkey);
    }
    const std::optional<PropertyList> preferences = _ports.preferences.dictionaryWithContentsOfFile();
    const SRRecorderControl recorder;
    const std::int64_t keyCode = integerForKey(preferences, ORVHotKeyCodeKey);
    const std::int64_t modifierFlags = integerForKey(preferences, ORVHotKeyFlagsKey);
    const auto combination = SGKeyCombo::keyComboWithKeyCodeModifiers(
        static_cast<std::intptr_t>(keyCode), recorder.cocoaToCarbonFlags(static_cast<std::uintptr_t>(modifierFlags)));
    setHotkey(std::make_shared<SGHotKey>(ORVHotKeyIdentifier, combination));
    _hotkey->setTarget(this);
    _hotkey->setAction(launchAction());
    // Whether the combination is one is decided there, and a refusal is not reported.
    _ports.hotKeyCenter.registerHotKey(_hotkey);
}

void HotKeyController::launch(const SGHotKey * /*sender*/) {
    if (_ui_window == nullptr || _ui_popupMenu == nullptr) {
        return;
    }
    // Kept deliberately: the type is that of events that applications define (Apple's NSEvent.h), the modifier flags are a
    // fixed number, and the location is a place on the screen, 10 points to the left of the pointer and 10 below it.
    constexpr std::uint32_t ApplicationDefined = 15;
    constexpr std::uint32_t ModifierFlags = 15;
    constexpr double Distance = 10.0;
    SyntheticEvent event;
    event.type = ApplicationDefined;
    event.windowNumber = static_cast<std::int32_t>(_ui_window->windowNumber());
    const ScreenPoint mouse = _ports.popUpMenus.mouseLocation();
    event.location = {mouse.x - Distance, mouse.y - Distance};
    event.modifierFlags = ModifierFlags;
    _ports.popUpMenus.popUpContextMenu(*_ui_popupMenu, event, *_ui_window);
}

} // namespace orvane
