#pragma once

#include "ports/Application.h"
#include "ports/DistributedNotifications.h"
#include "ports/FrontWindow.h"
#include "ports/Menu.h"
#include "ports/OpenPanel.h"
#include "ports/PreferencesStore.h"
#include "ports/PropertyList.h"
#include "ports/StatusBar.h"
#include "ports/SystemLog.h"
#include "ports/SystemPreferences.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {

class ORVPresetManager;

/// Key of the preferences domain: whether the status item is shown.
inline constexpr std::string_view ORVShowMenubarKey = "ORVShowMenubar";
/// Tag of preset items; every other item of the menu has another one.
inline constexpr int ORVPresetItemTag = 9;
/// Image of the status item among the application's resources.
inline constexpr std::string_view ORVMenuBarImage = "ORVMenuBar.png";

/// What the menu-bar controller works with. All are borrowed and must outlive it.
struct MenuBarControllerPorts {
    Application &application;
    DistributedNotifications &notifications;
    FrontWindow &frontWindow;
    OpenPanel &openPanel;
    PreferencesStore &preferences;
    StatusBar &statusBar;
    SystemLog &log;
    SystemPreferences &systemPreferences;
    /// The process's preset manager, asked for whenever a preset is chosen; null when there is none.
    std::function<ORVPresetManager *()> sharedManager;
};

/// Owns the preset items of the preset menu and the status item that shows that menu, keeps both in step with the preferences, and
/// runs the preset whose item was chosen. Main thread only.
class MenuBarController {
public:
    /// `menuBarMenu` is borrowed. It already holds its fixed items, of which preset items stay on top.
    MenuBarController(MenuBarControllerPorts ports, Menu &menuBarMenu) : _ports(std::move(ports)), _menuBarMenu(menuBarMenu) {}
    MenuBarController(const MenuBarController &) = delete;
    MenuBarController &operator=(const MenuBarController &) = delete;
    /// Stops observing; the preset items stay in the menu and must not be chosen any more.
    ~MenuBarController();

    /// To be called once, when everything is connected: fills the menu and observes changes of the configuration.
    void awakeFromNib();
    /// Action of a fixed item: shows the settings.
    void showPreferences(const MenuItem &sender);
    /// True: every item is always enabled.
    [[nodiscard]] static bool validateMenuItem(const MenuItem &item);
    /// Makes the preset items anew from the preferences' file as it stands, and shows or hides the status item.
    void reloadPrefs();
    /// Makes the status item when there is none; one that exists stays as it is.
    void setupStatusItem();
    /// Action of every preset item: finds the parent folder and creates the preset in it. Returns when all is done. While one
    /// creation asks the user for something no second one starts; the program comes to the front instead.
    void activatePreset(const MenuItem &sender);

    /// Null while the status item is hidden.
    [[nodiscard]] const std::shared_ptr<StatusItem> &statusItem() const { return _statusItem; }
    void setStatusItem(std::shared_ptr<StatusItem> statusItem) { _statusItem = std::move(statusItem); }

private:
    void _removePresetItems();
    void _showOrHideStatusItem(const std::optional<PropertyList> &preferences);
    void _insertPresetItem(const PropertyListValue &preset, std::int32_t index);
    void _warnOfEndlessPreset(const PropertyListValue &preset, std::int32_t index, const std::string &title);
    [[nodiscard]] std::optional<std::string> _frontFolder();
    [[nodiscard]] std::optional<std::string> _chosenFolder();

    MenuBarControllerPorts _ports;
    Menu &_menuBarMenu;
    std::shared_ptr<StatusItem> _statusItem;
    std::map<std::int32_t, std::string> _endlessPresets; ///< by index: what the log says about presets that never end
    bool _isActivating = false;                          ///< a preset was chosen and is not done yet
};

} // namespace orvane
