#pragma once

#include "ports/Menu.h"

#include <cstddef>
#include <optional>
#include <vector>

#include <QAbstractListModel>
#include <QString>
#include <QTimer>

namespace orvane {

/// A menu of the core as rows of a list, which follow its changes, also while it is shown. Main thread only.
class MenuRows final : public QAbstractListModel, public MenuObserver {
public:
    /// Whether a row is a line between items.
    static constexpr int IsSeparatorRole = Qt::UserRole;
    static constexpr int KeyEquivalentRole = Qt::UserRole + 1;

    /// The menu is borrowed.
    explicit MenuRows(Menu &menu, QObject *parent = nullptr);
    MenuRows(const MenuRows &) = delete;
    MenuRows &operator=(const MenuRows &) = delete;
    ~MenuRows() override;

    /// Leaves only the items that hold the text, whatever its case, and no lines between items; all of them for an empty text.
    void setFilter(const QString &text);
    [[nodiscard]] const QString &filter() const { return _filter; }
    /// Row of the first item whose title starts with the text, else of the first that can be chosen; nothing without such.
    [[nodiscard]] std::optional<int> bestRow(const QString &text) const;
    /// The first row from `row` on that can be chosen, going on by `step` (1 or -1) and around the end; nothing when there is none.
    [[nodiscard]] std::optional<int> selectableRow(int row, int step) const;

    /// What the row shows. The row must be there.
    [[nodiscard]] const MenuItem &item(int row) const { return _items[_rows[static_cast<std::size_t>(row)]]; }
    /// Runs the item's action as a click on it does, if the menu still holds it.
    static void perform(const MenuItem &item, const Menu &menu);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

    void menuDidChange() override;

private:
    void _read();
    void _choose();

    Menu &_menu;
    std::vector<MenuItem> _items;    ///< as they were when they were read last
    std::vector<QString> _titles;    ///< of `_items`, for showing
    std::vector<bool> _isSelectable; ///< of `_items`
    std::vector<std::size_t> _rows;  ///< the items that are left by the filter
    QString _filter;
    QTimer _again;
};

} // namespace orvane
