#include "window/PresetTreeModel.h"

#include "window/Icons.h"
#include "window/Page.h"
#include "window/ProblemText.h"

#include "platform/qt/QtText.h"

#include <array>
#include <cstdint>

namespace orvane {

PresetTreeModel::PresetTreeModel(SettingsContext &context, QObject *parent)
    : QAbstractItemModel(parent), _context(context), _document(context.presets) {
    _document.addObserver(*this);
}

PresetTreeModel::~PresetTreeModel() {
    _document.removeObserver(*this);
}

void PresetTreeModel::setPreset(ItemID preset) {
    if (preset == _preset) {
        return;
    }
    beginResetModel();
    _preset = preset;
    endResetModel();
}

QModelIndex PresetTreeModel::indexOfItem(ItemID item, int column) const {
    if (_preset == NoItem || item == NoItem || !_document.contains(item) || item == PresetList || _document.presetOf(item) != _preset) {
        return {};
    }
    const ItemID shown = item == _preset ? _document.treeOf(_preset) : item;
    const int row = _document.isTree(shown) ? 0 : static_cast<int>(_document.indexOf(shown));
    return createIndex(row, column, static_cast<quintptr>(shown));
}

ItemID PresetTreeModel::itemOfIndex(const QModelIndex &index) {
    return index.isValid() ? static_cast<ItemID>(static_cast<std::uint32_t>(index.internalId())) : NoItem;
}

QModelIndex PresetTreeModel::index(int row, int column, const QModelIndex &parent) const {
    if (_preset == NoItem || row < 0 || column < 0 || column >= NumberOfColumns || row >= rowCount(parent)) {
        return {};
    }
    const ItemID item =
        parent.isValid() ? _document.childAt(itemOfIndex(parent), static_cast<std::size_t>(row)) : _document.treeOf(_preset);
    return createIndex(row, column, static_cast<quintptr>(item));
}

QModelIndex PresetTreeModel::parent(const QModelIndex &index) const {
    const ItemID item = itemOfIndex(index);
    return item == NoItem || _document.isTree(item) ? QModelIndex() : indexOfItem(_document.parentOf(item));
}

int PresetTreeModel::rowCount(const QModelIndex &parent) const {
    if (_preset == NoItem || parent.column() > 0) {
        return 0;
    }
    return parent.isValid() ? static_cast<int>(_document.numberOfChildren(itemOfIndex(parent))) : 1;
}

int PresetTreeModel::columnCount(const QModelIndex & /*parent*/) const {
    return NumberOfColumns;
}

QVariant PresetTreeModel::_text(ItemID item, int column) const {
    switch (column) {
    case Name:
        return QtTextOf(_document.isTree(item) ? _document.text(_preset, "directoryName") : _document.filename(item));
    case Label: {
        const std::string color = _document.text(item, "color");
        return color.empty() ? QVariant() : labelTitle(color);
    }
    case Permissions:
        return QtTextOf(_document.text(item, "permissions"));
    case Content:
        return QtTextOf(_document.text(item, "contentFilename"));
    default:
        return {};
    }
}

QVariant PresetTreeModel::_toolTip(ItemID item) const {
    QStringList lines;
    const ItemID shown = _document.isTree(item) ? _preset : item;
    if (_context.problems.severityOf(item) || _context.problems.severityOf(shown)) {
        for (const DocumentProblem &each : _context.problems.problemsOfPreset(_preset)) {
            if (each.item == item || (each.item == shown && each.key == "directoryName")) {
                lines.append(textOfProblem(each.problem));
            }
        }
    }
    return lines.isEmpty() ? QVariant() : QVariant(lines.join(u'\n'));
}

/// The top-level folder bears the problems of its name, too, which are the preset's.
QVariant PresetTreeModel::_severity(ItemID item) const {
    auto severity = _context.problems.severityOf(item);
    if (_document.isTree(item) && _context.problems.isCurrent(_preset)) {
        for (const DocumentProblem &each : _context.problems.problemsOfPreset(_preset)) {
            if (each.item == _preset && each.key == "directoryName" && (!severity || *severity < each.problem.severity)) {
                severity = each.problem.severity;
            }
        }
    }
    return severity ? QVariant(static_cast<int>(*severity)) : QVariant();
}

/// What a screen reader says of a cell.
QString PresetTreeModel::_description(ItemID item, int column) const {
    QString text = _text(item, column).toString();
    switch (column) {
    case Name: {
        text += QStringLiteral(", ") + (_document.isFolder(item) ? translated("Folder") : translated("File"));
        const auto severity = _context.problems.severityOf(item);
        return severity ? text + QStringLiteral(", ") + titleOfSeverity(*severity) : text;
    }
    case Label:
        return text.isEmpty() ? labelTitle({}) : text;
    case Permissions:
        return text.isEmpty() ? translated("Permissions as usual") : text;
    default:
        return text;
    }
}

QVariant PresetTreeModel::data(const QModelIndex &index, int role) const {
    const ItemID item = itemOfIndex(index);
    if (item == NoItem) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return _text(item, index.column());
    case Qt::DecorationRole:
        if (index.column() == Name) {
            static const QIcon folder = iconFor(Icon::Folder);
            static const QIcon file = iconFor(Icon::File);
            return _document.isFolder(item) ? folder : file;
        }
        return {};
    case Qt::ToolTipRole:
        return _toolTip(item);
    case Qt::AccessibleTextRole:
        return _description(item, index.column());
    case ColorRole:
        return QtTextOf(_document.text(item, "color"));
    case SeverityRole:
        return _severity(item);
    case IsDirectoryNameRole:
        return _document.isTree(item);
    default:
        return {};
    }
}

QVariant PresetTreeModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Name:
        return translated("Name");
    case Label:
        return translated("Label");
    case Permissions:
        return translated("Permissions");
    case Content:
        return translated("Content");
    default:
        return {};
    }
}

Qt::ItemFlags PresetTreeModel::flags(const QModelIndex &index) const {
    const ItemID item = itemOfIndex(index);
    if (item == NoItem) {
        return Qt::NoItemFlags;
    }
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const bool isTree = _document.isTree(item);
    if (isTree ? index.column() == Name && _document.isEditable(_preset)
               : _document.isEditable(item) && (index.column() == Name || index.column() == Permissions)) {
        flags |= Qt::ItemIsEditable;
    }
    if (!isTree) {
        flags |= Qt::ItemIsDragEnabled;
    }
    if (_document.canInsert(item)) {
        flags |= Qt::ItemIsDropEnabled;
    }
    return flags;
}

bool PresetTreeModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    const ItemID item = itemOfIndex(index);
    if (item == NoItem || role != Qt::EditRole) {
        return false;
    }
    const std::string text = QtUtf8Of(value.toString());
    if (!_context.store.canStoreText(text)) {
        _context.showMessage(translated("The preferences cannot hold this text."), true);
        return false;
    }
    if (index.column() == Permissions) {
        return _document.setPermissions(std::array{item}, text);
    }
    if (index.column() != Name) {
        return false;
    }
    if (_document.isTree(item)) {
        _document.setDirectoryName(_preset, text);
    } else {
        _document.renameNode(item, text);
    }
    _context.history.endMerging();
    return true;
}

// What the document tells --------------------------------------------------------------------------------------------------

bool PresetTreeModel::_shows(ItemID parent) const {
    return _preset != NoItem && parent != PresetList && _document.presetOf(parent) == _preset;
}

void PresetTreeModel::documentWillBeReplaced() {
    beginResetModel();
    _preset = NoItem;
}

void PresetTreeModel::documentWasReplaced() {
    endResetModel();
    Q_EMIT presetVanished();
}

void PresetTreeModel::_begin(Change change, ItemID parent, std::size_t first, std::size_t count) {
    const int from = static_cast<int>(first);
    const int to = static_cast<int>(first + count) - 1;
    _change = change;
    if (change == Change::Insert) {
        beginInsertRows(indexOfItem(parent), from, to);
    } else {
        beginRemoveRows(indexOfItem(parent), from, to);
    }
}

void PresetTreeModel::_end() {
    switch (std::exchange(_change, Change::None)) {
    case Change::None:
        break;
    case Change::Reset:
        endResetModel();
        Q_EMIT presetVanished();
        break;
    case Change::Insert:
        endInsertRows();
        break;
    case Change::Remove:
        endRemoveRows();
        break;
    case Change::Move:
        endMoveRows();
        break;
    }
}

void PresetTreeModel::itemsWillBeInserted(ItemID parent, std::size_t first, std::size_t count) {
    // A preset's tree comes with the preset.
    if (_shows(parent) && parent != _preset) {
        _begin(Change::Insert, parent, first, count);
    }
}

void PresetTreeModel::itemsWereInserted(ItemID /*parent*/, std::size_t /*first*/, std::size_t /*count*/) {
    _end();
}

void PresetTreeModel::itemsWillBeRemoved(ItemID parent, std::size_t first, std::size_t count) {
    if (parent == PresetList && _preset != NoItem) {
        const std::size_t index = _document.indexOf(_preset);
        if (index >= first && index < first + count) {
            beginResetModel();
            _change = Change::Reset;
            _preset = NoItem;
        }
    } else if (_shows(parent) && parent != _preset) {
        _begin(Change::Remove, parent, first, count);
    }
}

void PresetTreeModel::itemsWereRemoved(ItemID /*parent*/, std::size_t /*first*/, std::size_t /*count*/) {
    _end();
}

void PresetTreeModel::itemWillMove(ItemID oldParent, std::size_t from, ItemID newParent, std::size_t to) {
    const bool leaves = _shows(oldParent);
    const bool arrives = _shows(newParent);
    if (leaves && arrives) {
        const int row = static_cast<int>(from);
        if (beginMoveRows(indexOfItem(oldParent), row, row, indexOfItem(newParent), static_cast<int>(to))) {
            _change = Change::Move;
        }
    } else if (leaves) {
        _begin(Change::Remove, oldParent, from, 1);
    } else if (arrives) {
        _begin(Change::Insert, newParent, to, 1);
    }
}

void PresetTreeModel::itemDidMove(ItemID /*oldParent*/, std::size_t /*from*/, ItemID /*newParent*/, std::size_t /*to*/) {
    _end();
}

void PresetTreeModel::itemDidChange(ItemID item, std::string_view /*key*/) {
    if (const QModelIndex first = indexOfItem(item, Name); first.isValid()) {
        Q_EMIT dataChanged(first, indexOfItem(item, NumberOfColumns - 1));
    }
}

} // namespace orvane
