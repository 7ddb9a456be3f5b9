#include "platform/wayland/MenuRows.h"

#include "platform/qt/QtText.h"

namespace orvane {

MenuRows::MenuRows(Menu &menu, QObject *parent) : QAbstractListModel(parent), _menu(menu) {
    _menu.addObserver(*this);
    // Many changes come at once: they are shown together.
    _again.setSingleShot(true);
    QObject::connect(&_again, &QTimer::timeout, this, [this] {
        beginResetModel();
        _read();
        endResetModel();
    });
    _read();
}

MenuRows::~MenuRows() {
    _menu.removeObserver(*this);
}

void MenuRows::menuDidChange() {
    if (!_again.isActive()) {
        _again.start(0);
    }
}

void MenuRows::_read() {
    _items.clear();
    _titles.clear();
    _isSelectable.clear();
    for (std::size_t i = 0; i < _menu.numberOfItems(); ++i) {
        const MenuItem &item = _menu.itemAtIndex(i);
        _items.push_back(item);
        _titles.push_back(QtSingleLine(QtTextOf(item.title)));
        _isSelectable.push_back(!item.isSeparator && item.isEnabled());
    }
    _choose();
}

void MenuRows::_choose() {
    _rows.clear();
    for (std::size_t i = 0; i < _items.size(); ++i) {
        if (_filter.isEmpty() || (!_items[i].isSeparator && _titles[i].contains(_filter, Qt::CaseInsensitive))) {
            _rows.push_back(i);
        }
    }
}

void MenuRows::setFilter(const QString &text) {
    beginResetModel();
    _filter = text;
    _choose();
    endResetModel();
}

std::optional<int> MenuRows::bestRow(const QString &text) const {
    for (std::size_t row = 0; row < _rows.size(); ++row) {
        if (_isSelectable[_rows[row]] && _titles[_rows[row]].startsWith(text, Qt::CaseInsensitive)) {
            return static_cast<int>(row);
        }
    }
    return selectableRow(0, 1);
}

std::optional<int> MenuRows::selectableRow(int row, int step) const {
    const int count = rowCount();
    for (int tried = 0; tried < count; ++tried, row += step) {
        const int present = ((row % count) + count) % count;
        if (_isSelectable[_rows[static_cast<std::size_t>(present)]]) {
            return present;
        }
    }
    return std::nullopt;
}

void MenuRows::perform(const MenuItem &item, const Menu &menu) {
    for (std::size_t i = 0; i < menu.numberOfItems(); ++i) {
        const MenuItem &present = menu.itemAtIndex(i);
        if (present.title == item.title && present.tag == item.tag && present.representedObject == item.representedObject) {
            if (item.action && !item.isSeparator && item.isEnabled()) {
                item.action(item);
            }
            return;
        }
    }
}

int MenuRows::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_rows.size());
}

QVariant MenuRows::data(const QModelIndex &index, int role) const {
    const std::size_t at = _rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return _items[at].isSeparator ? QString() : _titles[at];
    case IsSeparatorRole:
        return _items[at].isSeparator;
    case KeyEquivalentRole:
        return QtTextOf(_items[at].keyEquivalent);
    default:
        return {};
    }
}

Qt::ItemFlags MenuRows::flags(const QModelIndex &index) const {
    const bool isSelectable = index.isValid() && _isSelectable[_rows[static_cast<std::size_t>(index.row())]];
    return isSelectable ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren : Qt::ItemFlags(Qt::ItemNeverHasChildren);
}

} // namespace orvane
