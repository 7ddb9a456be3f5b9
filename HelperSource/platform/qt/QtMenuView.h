#pragma once

#include "ports/Menu.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

class QAction;
class QMenu;

namespace orvane {

/// Shows a menu of the core as Qt's, and follows its changes, also while it is open. Main thread only.
///
/// Titles are shown in one line, with no mnemonics; what is too long is elided in the middle and whole in the tool tip. Typed letters
/// go to the item that starts with them, the same letter again to the next such item.
class QtMenuView final : public MenuObserver {
public:
    /// The menu is borrowed.
    explicit QtMenuView(Menu &menu);
    QtMenuView(const QtMenuView &) = delete;
    QtMenuView &operator=(const QtMenuView &) = delete;
    ~QtMenuView() override;

    /// For showing it. An item that the user chooses in it is performed once the menu is gone and its event has been handled, unless
    /// `setPerformsChosen(false)` was called.
    [[nodiscard]] QMenu &menu();
    void setPerformsChosen(bool performs) { _performsChosen = performs; }
    /// Asked before a chosen item is performed; false ignores the choice. Without one every choice counts.
    void setMayPerform(std::function<bool(const MenuItem &)> mayPerform) { _mayPerform = std::move(mayPerform); }
    /// Performs what the user chose since the last call, if anything; nothing when the item has gone from the menu meanwhile.
    void performChosen();

    void menuDidChange() override;

private:
    class View;

    void _rebuild();
    void _rebuildIfStale();
    [[nodiscard]] QAction *_actionFor(const MenuItem &item) const;
    [[nodiscard]] bool _stillHolds(const MenuItem &item) const;

    Menu &_menu;
    std::unique_ptr<View> _view;
    std::optional<MenuItem> _chosen;
    std::function<bool(const MenuItem &)> _mayPerform;
    bool _performsChosen = true;
    bool _isStale = false; ///< the menu has changed since `_rebuild`
};

} // namespace orvane
