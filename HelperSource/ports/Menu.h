#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orvane {

/// One line of a menu.
struct MenuItem {
    using Action = std::function<void(const MenuItem &)>;
    using Validation = std::function<bool(const MenuItem &)>;

    std::string title;                             ///< UTF-8, shown as it is: no character in it marks a mnemonic
    std::string keyEquivalent;                     ///< empty for none
    int tag = 0;                                   ///< the owner's mark
    std::optional<std::int32_t> representedObject; ///< the owner's value
    Action action;                                 ///< called when the user chose the item, with a copy of it; may be empty
    Validation validate;                           ///< asked whenever the item is shown; empty means enabled
    bool isSeparator = false;                      ///< a line between items; everything else is then ignored

    [[nodiscard]] bool isEnabled() const { return !validate || validate(*this); }
};

/// Told that a menu's items are others now. Called right after every single change: an observer that does something dear
/// gathers several of them.
class MenuObserver {
public:
    virtual ~MenuObserver() = default;
    virtual void menuDidChange() = 0;
};

/// A menu's content, whoever shows it: the tray, a pop-up, a test. Main thread only.
class Menu {
public:
    Menu() = default;
    Menu(const Menu &) = delete;
    Menu &operator=(const Menu &) = delete;

    [[nodiscard]] std::size_t numberOfItems() const { return _items.size(); }
    /// `index` must be below `numberOfItems()`. Valid until the next change.
    [[nodiscard]] const MenuItem &itemAtIndex(std::size_t index) const { return _items[index]; }
    /// `index` may be `numberOfItems()`.
    void insertItemAtIndex(MenuItem item, std::size_t index) {
        _items.insert(_items.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
        _tell();
    }
    void removeItemAtIndex(std::size_t index) {
        _items.erase(_items.begin() + static_cast<std::ptrdiff_t>(index));
        _tell();
    }
    /// Runs the item's action as a click on it does; nothing for a separator, a disabled item, one without action, or no item.
    void performActionForItemAtIndex(std::size_t index) {
        if (index >= _items.size()) {
            return;
        }
        const MenuItem chosen = _items[index]; // the action may rebuild the menu
        if (!chosen.isSeparator && chosen.action && chosen.isEnabled()) {
            chosen.action(chosen);
        }
    }
    /// Observers are borrowed; one must be removed before it is destroyed.
    void addObserver(MenuObserver &observer) { _observers.push_back(&observer); }
    void removeObserver(MenuObserver &observer) { std::erase(_observers, &observer); }

private:
    void _tell() {
        const std::vector<MenuObserver *> observers = _observers;
        for (MenuObserver *observer : observers) {
            observer->menuDidChange();
        }
    }

    std::vector<MenuItem> _items;
    std::vector<MenuObserver *> _observers;
};

} // namespace orvane
