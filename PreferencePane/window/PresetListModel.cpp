#include "window/PresetListModel.h"

#include "window/DraggedItems.h"
#include "window/DraggedPresets.h"
#include "window/Icons.h"
#include "window/LocalFiles.h"
#include "window/Page.h"

#include "platform/qt/QtText.h"

#include <QMimeData>

#include <algorithm>

namespace orvane {

PresetListModel::PresetListModel(SettingsContext &context, QObject *parent)
    : QAbstractListModel(parent), _context(context), _document(context.presets) {
    _document.addObserver(*this);
}

PresetListModel::~PresetListModel() {
    _document.removeObserver(*this);
}

ItemID PresetListModel::presetOfIndex(const QModelIndex &index) const {
    return index.isValid() ? _document.presetAt(static_cast<std::size_t>(index.row())) : NoItem;
}

QModelIndex PresetListModel::indexOfPreset(ItemID preset) const {
    return preset != NoItem && _document.contains(preset) && _document.isPreset(preset) ? index(static_cast<int>(_document.indexOf(preset)))
                                                                                        : QModelIndex();
}

int PresetListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_document.numberOfPresets());
}

QVariant PresetListModel::data(const QModelIndex &index, int role) const {
    const ItemID preset = presetOfIndex(index);
    if (preset == NoItem) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole: {
        const QString title = QtTextOf(_document.title(preset));
        return title.isEmpty() ? translated("(no name)") : QtSingleLine(title);
    }
    case Qt::EditRole:
        return QtTextOf(_document.label(preset));
    case Qt::ToolTipRole:
        return QtTextOf(_document.title(preset));
    case Qt::DecorationRole: {
        static const QIcon folder = iconFor(Icon::Folder);
        return folder;
    }
    default:
        return {};
    }
}

Qt::ItemFlags PresetListModel::flags(const QModelIndex &index) const {
    if (!index.isValid()) {
        return Qt::ItemIsDropEnabled; // between the rows
    }
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
    return _document.isEditable(presetOfIndex(index)) ? flags | Qt::ItemIsEditable : flags;
}

bool PresetListModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    const std::string text = QtUtf8Of(value.toString());
    if (!index.isValid() || role != Qt::EditRole) {
        return false;
    }
    if (!_context.store.canStoreText(text)) {
        _context.showMessage(translated("The preferences cannot hold this text."), true);
        return false;
    }
    _document.renamePreset(presetOfIndex(index), text);
    _context.history.endMerging();
    return true;
}

QStringList PresetListModel::mimeTypes() const {
    return {QLatin1String(PresetsMediaType), QStringLiteral("text/uri-list")};
}

QMimeData *PresetListModel::mimeData(const QModelIndexList &indexes) const {
    std::vector<ItemID> presets;
    for (const QModelIndex &index : indexes) {
        presets.push_back(presetOfIndex(index));
    }
    // In their order in the list, whichever of them was chosen first.
    std::sort(presets.begin(), presets.end(),
              [this](ItemID one, ItemID other) { return _document.indexOf(one) < _document.indexOf(other); });
    _places.push_back(std::make_shared<QTemporaryDir>());
    return new DraggedPresets(_context, std::move(presets), _places.back());
}

bool PresetListModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int /*column*/, const QModelIndex &parent) {
    if (data == nullptr || action == Qt::IgnoreAction) {
        return false;
    }
    const int at = row >= 0 ? row : parent.isValid() ? parent.row() : rowCount();
    if (const std::vector<ItemID> presets = itemsOfBytes(data->data(QLatin1String(PresetsMediaType)), _document, &PresetDocument::isPreset);
        !presets.empty()) {
        _document.movePresets(presets, static_cast<std::size_t>(at));
        Q_EMIT presetsMoved(presets);
        return true;
    }
    const QStringList paths = localPaths(*data);
    if (!paths.isEmpty()) {
        Q_EMIT filesDropped(paths, at);
    }
    return !paths.isEmpty();
}

void PresetListModel::itemsWillBeInserted(ItemID parent, std::size_t first, std::size_t count) {
    if (parent == PresetList) {
        beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + count) - 1);
    }
}

void PresetListModel::itemsWereInserted(ItemID parent, std::size_t /*first*/, std::size_t /*count*/) {
    if (parent == PresetList) {
        endInsertRows();
    }
}

void PresetListModel::itemsWillBeRemoved(ItemID parent, std::size_t first, std::size_t count) {
    if (parent == PresetList) {
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(first + count) - 1);
    }
}

void PresetListModel::itemsWereRemoved(ItemID parent, std::size_t /*first*/, std::size_t /*count*/) {
    if (parent == PresetList) {
        endRemoveRows();
    }
}

void PresetListModel::itemWillMove(ItemID oldParent, std::size_t from, ItemID /*newParent*/, std::size_t to) {
    const int row = static_cast<int>(from);
    _isMoving = oldParent == PresetList && beginMoveRows({}, row, row, {}, static_cast<int>(to));
}

void PresetListModel::itemDidMove(ItemID /*oldParent*/, std::size_t /*from*/, ItemID /*newParent*/, std::size_t /*to*/) {
    if (std::exchange(_isMoving, false)) {
        endMoveRows();
    }
}

void PresetListModel::itemDidChange(ItemID item, std::string_view key) {
    if ((key == "label" || key == "directoryName") && _document.isPreset(item)) {
        const QModelIndex changed = indexOfPreset(item);
        Q_EMIT dataChanged(changed, changed);
    }
}

} // namespace orvane
