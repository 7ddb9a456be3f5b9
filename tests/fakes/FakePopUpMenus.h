#pragma once

#include "ports/PopUpMenus.h"

#include <functional>
#include <vector>

namespace orvane {

/// A window that is never shown.
class FakeReferenceWindow final : public ReferenceWindow {
public:
    std::int64_t number = 1;
    std::function<void()> whenAskedForItsNumber;
    [[nodiscard]] std::int64_t windowNumber() override {
        if (whenAskedForItsNumber) {
            whenAskedForItsNumber();
        }
        return number;
    }
};

/// Keeps what was popped up. `whileOpen` does what the user does with the menu.
class FakePopUpMenus final : public PopUpMenus {
public:
    struct PopUp {
        Menu *menu;
        SyntheticEvent event;
        ReferenceWindow *window;
    };
    ScreenPoint mouse;
    std::vector<PopUp> popUps;
    std::function<void(Menu &)> whileOpen;
    std::function<void()> whenAskedForTheMouse;

    [[nodiscard]] ScreenPoint mouseLocation() override {
        if (whenAskedForTheMouse) {
            whenAskedForTheMouse();
        }
        return mouse;
    }
    void popUpContextMenu(Menu &menu, const SyntheticEvent &event, ReferenceWindow &window) override {
        popUps.push_back({&menu, event, &window});
        if (whileOpen) {
            whileOpen(menu);
        }
    }
};

} // namespace orvane
