#pragma once

#include "platform/wayland/MenuRows.h"

#include <functional>
#include <optional>

#include <QWidget>

class QLineEdit;
class QListView;

namespace orvane {

/// A menu that is an ordinary part of a window: a pop-up of its own is something that a Wayland compositor need not place where it
/// is wanted, nor give the keyboard to. Drawn by the style as a menu is; any number of items, what does not fit scrolls.
///
/// Keys: up and down (around the ends, past what cannot be chosen), Home, End, pages, Return and Enter choose, Escape gives up. Letters
/// go to the item that starts with them; with a search line they leave only the items that hold them. Main thread only.
class MenuPanel final : public QWidget {
public:
    enum class Search {
        Letters, ///< as in any menu
        Line     ///< a line above the items shows what was typed
    };

    /// The menu is borrowed.
    MenuPanel(Menu &menu, Search search, QWidget *parent);
    MenuPanel(const MenuPanel &) = delete;
    MenuPanel &operator=(const MenuPanel &) = delete;
    ~MenuPanel() override;

    /// Called once at most, from the event that did it.
    std::function<void(const MenuItem &item)> chosen;
    std::function<void()> cancelled;

    /// The size in which everything is seen, but no more than the most.
    [[nodiscard]] QSize fittingSize(const QSize &most) const;
    /// Called when the items have changed and with them perhaps the fitting size.
    std::function<void()> contentChanged;
    /// Gives the keyboard to the menu.
    void takeFocus();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void _layOut();
    [[nodiscard]] QMargins _margins() const;
    [[nodiscard]] int _lineHeight() const;
    [[nodiscard]] bool _handleKey(int key);
    [[nodiscard]] bool _handleMouse(QEvent &event);
    void _select(std::optional<int> row);
    /// The highlighted row; invalid for none.
    [[nodiscard]] QModelIndex _selected() const;
    void _goToLetters();
    void _chooseCurrent();
    void _finish(const std::function<void()> &how);

    MenuRows _rows;
    QListView *_list;
    QLineEdit *_line = nullptr;
    bool _isFinished = false;
};

} // namespace orvane
