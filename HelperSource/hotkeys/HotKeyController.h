#pragma once

#include "hotkeys/SGHotKeyCenter.h"
#include "ports/DistributedNotifications.h"
#include "ports/Menu.h"
#include "ports/PopUpMenus.h"
#include "ports/PreferencesStore.h"

#include <memory>
#include <string_view>

namespace orvane {

// Keys of the preferences domain.
inline constexpr std::string_view ORVHotKeyCodeKey = "ORVHotKeyCode";
inline constexpr std::string_view ORVHotKeyFlagsKey = "ORVHotKeyFlags";
/// Identifier of the one hot key; no key of the preferences.
inline constexpr const char *ORVHotKeyIdentifier = "ORVHotkey";

/// What the hot-key controller works with. All are borrowed and must outlive it.
struct HotKeyControllerPorts {
    DistributedNotifications &notifications;
    PopUpMenus &popUpMenus;
    PreferencesStore &preferences;
    SGHotKeyCenter &hotKeyCenter;
};

/// Registers the hot key of the preferences, registers it anew whenever they change, and pops the preset menu up at the mouse
/// pointer when it is pressed. Main thread only.
class HotKeyController {
public:
    explicit HotKeyController(const HotKeyControllerPorts &ports) : _ports(ports) {}
    HotKeyController(const HotKeyController &) = delete;
    HotKeyController &operator=(const HotKeyController &) = delete;
    /// Gives the hot key back and stops observing.
    ~HotKeyController();

    /// To be called once, when the outlets are set: registers the hot key and observes changes of the configuration.
    void awakeFromNib();
    /// What a change of the configuration calls.
    void reloadPrefs();
    /// Unregisters the hot key that there is, and registers a new one made from the preferences' file as it stands.
    void registerHotKey();
    /// Pops the menu up at the mouse pointer and returns when it has closed. `sender` is not used. Without the outlets
    /// nothing happens.
    void launch(const SGHotKey *sender);

    /// Null before the first registration.
    [[nodiscard]] const std::shared_ptr<SGHotKey> &hotkey() const { return _hotkey; }
    void setHotkey(std::shared_ptr<SGHotKey> hotkey) { _hotkey = std::move(hotkey); }

    // Outlets, borrowed.
    void setWindow(ReferenceWindow *window) { _ui_window = window; }
    void setPopupMenu(Menu *popupMenu) { _ui_popupMenu = popupMenu; }

    /// The message that the hot key sends to this controller.
    [[nodiscard]] static SGSelector launchAction() { return SGSelector::of<HotKeyController, &HotKeyController::launch>("launch:"); }

private:
    HotKeyControllerPorts _ports;
    std::shared_ptr<SGHotKey> _hotkey;
    ReferenceWindow *_ui_window = nullptr;
    Menu *_ui_popupMenu = nullptr;
};

} // namespace orvane
