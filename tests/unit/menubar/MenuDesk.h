#pragma once

#include "fakes/FakeFrontWindow.h"
#include "fakes/FakeOpenPanel.h"
#include "fakes/FakeStatusBar.h"
#include "fakes/FakeSystemPreferences.h"
#include "menubar/MenuBarController.h"
#include "unit/core/Desk.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orvane::test {

/// A preset with that label, whose folder is called like it.
inline PropertyList labelled(std::string_view label) {
    return dict({{"label", text(label)}, {"directoryName", text(label)}});
}

/// A menu-bar controller over fakes, not awoken yet, above two fixed items, and a desk with a preset manager.
class MenuDesk {
public:
    MenuDesk() {
        addFixedItem("Preferences…", [this](const MenuItem &item) { controller->showPreferences(item); });
        addFixedItem("Quit Orvane", {});
        restart();
        desk.fileSystem.addFolder("/front");
        desk.fileSystem.addFolder("/chosen");
    }

    void addFixedItem(std::string title, MenuItem::Action action) {
        MenuItem item;
        item.title = std::move(title);
        item.action = std::move(action);
        menu.insertItemAtIndex(std::move(item), menu.numberOfItems());
    }
    /// Makes the controller anew.
    void restart() {
        controller.reset();
        const MenuBarControllerPorts ports{.application = desk.application,
                                           .notifications = desk.notifications,
                                           .frontWindow = frontWindow,
                                           .openPanel = openPanel,
                                           .preferences = desk.preferences,
                                           .statusBar = statusBar,
                                           .log = desk.log,
                                           .systemPreferences = systemPreferences,
                                           .sharedManager = [this] {
                                               ++managersAskedFor;
                                               return desk.manager.get();
                                           }};
        controller = std::make_unique<MenuBarController>(ports, menu);
    }
    /// Puts a file with these presets in the place of the preferences.
    void setFile(const PropertyList &presets, const PropertyList &showMenubar = yes()) {
        desk.preferences.disk = dict({{ORVPresetsKey, presets}, {ORVShowMenubarKey, showMenubar}});
    }
    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> result;
        for (std::size_t i = 0; i < menu.numberOfItems(); ++i) {
            result.push_back(menu.itemAtIndex(i).title);
        }
        return result;
    }
    void click(std::size_t index) { menu.performActionForItemAtIndex(index); }
    /// What there is in the folder.
    [[nodiscard]] std::vector<std::string> in(std::string_view folder) const { return desk.fileSystem.listing(folder); }

    Desk desk;
    Menu menu;
    FakeFrontWindow frontWindow;
    FakeOpenPanel openPanel;
    FakeStatusBar statusBar;
    FakeSystemPreferences systemPreferences;
    int managersAskedFor = 0;
    std::unique_ptr<MenuBarController> controller;
};

} // namespace orvane::test
