#include "window/CounterTableModel.h"

#include "window/Page.h"

#include "platform/qt/QtText.h"

#include <QStringList>

#include <algorithm>

namespace orvane {

namespace {

/// As people sort names, with equal ones that differ in case kept apart.
bool isBefore(const std::string &one, const std::string &other) {
    const int order = QString::compare(QtTextOf(one), QtTextOf(other), Qt::CaseInsensitive);
    return order < 0 || (order == 0 && one < other);
}

} // namespace

CounterTableModel::CounterTableModel(SettingsContext &context, QObject *parent) : QAbstractTableModel(parent), _context(context) {
    _names = _namesInOrder();
    _variables = _context.variables.allVariables();
    _context.counters.addObserver(*this);
}

CounterTableModel::~CounterTableModel() {
    _context.counters.removeObserver(*this);
}

std::vector<std::string> CounterTableModel::_namesInOrder() const {
    std::vector<std::string> names = _context.counters.names();
    std::sort(names.begin(), names.end(), isBefore);
    return names;
}

void CounterTableModel::countersDidChange() {
    _takeOver(_namesInOrder());
    if (!_names.empty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    }
}

void CounterTableModel::_takeOver(const std::vector<std::string> &names) {
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (!std::binary_search(names.begin(), names.end(), nameAt(row), isBefore)) {
            beginRemoveRows({}, row, row);
            _names.erase(_names.begin() + row);
            endRemoveRows();
        }
    }
    for (std::size_t at = 0; at < names.size(); ++at) {
        if (at == _names.size() || _names[at] != names[at]) {
            const int row = static_cast<int>(at);
            beginInsertRows({}, row, row);
            _names.insert(_names.begin() + row, names[at]);
            endInsertRows();
        }
    }
}

void CounterTableModel::refreshUsers() {
    _variables = _context.variables.allVariables();
    if (!_names.empty()) {
        Q_EMIT dataChanged(index(0, Users), index(rowCount() - 1, Users));
    }
}

int CounterTableModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_names.size());
}

int CounterTableModel::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QString CounterTableModel::_usersOf(const std::string &name) const {
    const auto found = std::find_if(_variables.begin(), _variables.end(), [&](const Variable &each) { return each.name == name; });
    QStringList labels;
    if (found != _variables.end()) {
        for (const VariableUse &use : found->uses) {
            if (_context.presets.contains(use.item)) {
                const QString label = QtSingleLine(QtTextOf(_context.presets.title(_context.presets.presetOf(use.item))));
                labels.append(label.isEmpty() ? translated("(no label)") : QtIsolated(label));
            }
        }
        labels.removeDuplicates();
    }
    return labels.join(QStringLiteral(", "));
}

QString CounterTableModel::_text(int row, int column) const {
    const std::string &name = nameAt(row);
    switch (column) {
    case Name:
        return QtSingleLine(QtTextOf(name));
    case Value:
        return QtTextOf(_context.counters.value(name));
    case Next:
        return QtSingleLine(QtTextOf(_context.counters.nextValue(name)));
    default: {
        const QString users = _usersOf(name);
        return users.isEmpty() ? translated("none") : users;
    }
    }
}

QVariant CounterTableModel::data(const QModelIndex &index, int role) const {
    const QString text = _text(index.row(), index.column());
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == Value ? QtSingleLine(text) : text;
    case Qt::EditRole:
    case Qt::ToolTipRole:
        return text;
    case Qt::AccessibleTextRole:
        return text.isEmpty() ? translated("empty") : text;
    default:
        return {};
    }
}

QVariant CounterTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical) {
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(Qt::AlignLeading | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Name:
        return translated("Counter");
    case Value:
        return translated("Last value");
    case Next:
        return translated("Offered next");
    default:
        return translated("Used by");
    }
}

Qt::ItemFlags CounterTableModel::flags(const QModelIndex &index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.column() == Value ? flags | Qt::ItemIsEditable : flags;
}

bool CounterTableModel::accepts(const QString &text) const {
    return _context.store.canStoreText(QtUtf8Of(text));
}

bool CounterTableModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    if (role != Qt::EditRole || index.column() != Value) {
        return false;
    }
    const std::string name = nameAt(index.row());
    const QString text = value.toString();
    if (!accepts(text)) {
        refused(QtTextOf(name), text);
        return false;
    }
    if (QtUtf8Of(text) != _context.counters.value(name)) {
        _context.counters.setValue(name, QtUtf8Of(text));
        _context.history.endMerging(); // the next typing is a step of its own
    }
    return true;
}

} // namespace orvane
