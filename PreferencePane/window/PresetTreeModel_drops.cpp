#include "window/PresetTreeModel.h"

#include "window/DraggedItems.h"
#include "window/DraggedPresets.h"
#include "window/LocalFiles.h"
#include "window/Page.h"
#include "window/Sentences.h"

#include "model/NodeText.h"
#include "platform/qt/QtText.h"
#include "presets/ORVNameTemplate.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>

#include <algorithm>
#include <array>
#include <cstdint>

// Items on their way: in the clipboard and under the pointer. Within one window they are told by their ids and can be moved; elsewhere
// by their text. Files of a file manager become content files.

namespace orvane {

namespace {

const QString ItemsMediaType = QStringLiteral("application/x-orvane-items");
const QString NodesMediaType = QString::fromLatin1(NodeTextMediaType);
constexpr std::size_t Last = SIZE_MAX;

/// Items of this very program; none for anything else.
std::vector<ItemID> itemsOfMimeData(const QMimeData &data, const PresetDocument &document) {
    return itemsOfBytes(data.data(ItemsMediaType), document, &PresetDocument::isNode);
}

std::optional<PropertyList> nodesOfMimeData(const QMimeData &data, PropertyListTextForm &form) {
    if (data.hasFormat(NodesMediaType)) {
        return nodesOfText(data.data(NodesMediaType).toStdString(), form);
    }
    return data.hasText() && !data.hasUrls() ? nodesOfText(QtUtf8Of(data.text()), form) : std::nullopt;
}

} // namespace

QMimeData *PresetTreeModel::mimeDataOfItems(const std::vector<ItemID> &items, bool isDrag) const {
    const auto text = textOfNodes(_document, items, _context.form);
    if (!text) {
        return nullptr;
    }
    auto *const data = new QMimeData;
    data->setData(NodesMediaType, QByteArray::fromStdString(*text));
    if (isDrag) {
        data->setData(ItemsMediaType, bytesOfItems(items));
    } else {
        data->setText(QtTextOf(*text));
    }
    return data;
}

QStringList PresetTreeModel::mimeTypes() const {
    return {ItemsMediaType, NodesMediaType, QStringLiteral("text/uri-list")};
}

QMimeData *PresetTreeModel::mimeData(const QModelIndexList &indexes) const {
    std::vector<ItemID> items;
    for (const QModelIndex &index : indexes) {
        if (const ItemID item = itemOfIndex(index); index.column() == Name && _document.isNode(item)) {
            items.push_back(item);
        }
    }
    return items.empty() ? nullptr : mimeDataOfItems(items, true);
}

bool PresetTreeModel::canInsertMimeData(const QMimeData &data, ItemID parent, bool move) const {
    if (parent == NoItem || !_document.canInsert(parent) || data.hasFormat(QLatin1String(PresetsMediaType))) {
        return false; // a preset of the list beside it is no content file
    }
    if (const auto items = itemsOfMimeData(data, _document); move && !items.empty()) {
        return _document.canMove(items, parent);
    }
    if (data.hasFormat(NodesMediaType)) {
        return true;
    }
    return !localPaths(data).isEmpty() || nodesOfMimeData(data, _context.form).has_value();
}

bool PresetTreeModel::holdsFiles(const QMimeData &data, PropertyListTextForm &form) {
    return !localPaths(data).isEmpty() && !nodesOfMimeData(data, form);
}

std::vector<ItemID> PresetTreeModel::insertMimeData(const QMimeData &data, ItemID parent, int row, bool move) {
    const std::size_t at = row < 0 ? Last : static_cast<std::size_t>(row);
    if (!canInsertMimeData(data, parent, move)) {
        return {};
    }
    if (auto items = itemsOfMimeData(data, _document); move && !items.empty()) {
        _document.moveNodes(items, parent, at);
        return items;
    }
    const auto nodes = nodesOfMimeData(data, _context.form);
    return nodes ? _document.insertNodes(*nodes, parent, at, "Paste") : std::vector<ItemID>();
}

bool PresetTreeModel::canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int /*column*/,
                                      const QModelIndex &parent) const {
    // Beside the top-level folder there is no place; a view asks for it below the last row.
    const ItemID folder = parent.isValid() ? itemOfIndex(parent) : _preset == NoItem ? NoItem : _document.treeOf(_preset);
    static_cast<void>(row);
    return data != nullptr && canInsertMimeData(*data, folder, action == Qt::MoveAction);
}

bool PresetTreeModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int /*column*/, const QModelIndex &parent) {
    if (data == nullptr || _preset == NoItem || action == Qt::IgnoreAction) {
        return false;
    }
    const ItemID folder = parent.isValid() ? itemOfIndex(parent) : _document.treeOf(_preset);
    const int at = parent.isValid() ? row : -1;
    if (itemsOfMimeData(*data, _document).empty() && holdsFiles(*data, _context.form)) {
        Q_EMIT filesDropped(localPaths(*data), folder, at);
        return true;
    }
    const auto items = insertMimeData(*data, folder, at, action == Qt::MoveAction);
    if (!items.empty()) {
        Q_EMIT itemsDropped(items);
    }
    return !items.empty();
}

void PresetTreeModel::_sayWhyNot(const std::string &path, const Sentence &problem) const {
    _context.showMessage(translated("%1 cannot be added: %2").arg(QtTextOf(path), translatedSentence(problem)), true);
}

/// An array of one node for a folder on disk with all that is in it; nothing, after a message, when that is impossible.
std::optional<PropertyList> PresetTreeModel::_nodeOfFolder(const std::string &path, bool withContent) {
    Sentence problem;
    FolderImportRequest request;
    request.folder = path;
    request.withContent = withContent;
    const auto imported = _context.contents.importFolder(request, problem);
    if (!imported) {
        _sayWhyNot(path, problem);
        return std::nullopt;
    }
    if (!imported->warnings.empty()) {
        _context.showMessage(translatedSentence(imported->warnings.front()), true);
    }
    const PropertyListValue *name = imported->preset.root().find("directoryName");
    const PropertyListValue *tree = imported->preset.root().find("fileHierarchy");
    PropertyListBuilder builder;
    static_cast<void>(builder.adopt(imported->preset));
    std::vector<PropertyListEntry> entries{{"filename", name == nullptr ? builder.string({}) : *name},
                                           {"isFolder", PropertyListValue::ofBoolean(true)}};
    if (tree != nullptr) {
        for (const PropertyListEntry &entry : tree->dictionary()) {
            if (entry.key != "filename" && entry.key != "isFolder") {
                entries.push_back(entry);
            }
        }
    }
    const std::array<PropertyListValue, 1> node{builder.dictionary(entries)};
    return builder.finish(builder.array(node));
}

/// The same for a file, which becomes a content file.
std::optional<PropertyList> PresetTreeModel::_nodeOfFile(const std::string &path) {
    Sentence problem;
    const auto stored = _context.contents.addContent(path, problem);
    if (!stored) {
        _sayWhyNot(path, problem);
        return std::nullopt;
    }
    PropertyListBuilder builder;
    // A file's own braces are no variables.
    const std::string name = ORVEscapeBraces(path.substr(path.rfind('/') + 1));
    const std::array<PropertyListEntry, 3> entries{{{"filename", builder.string(name)},
                                                    {"isFolder", PropertyListValue::ofBoolean(false)},
                                                    {"contentFilename", builder.string(*stored)}}};
    const std::array<PropertyListValue, 1> node{builder.dictionary(entries)};
    return builder.finish(builder.array(node));
}

std::vector<ItemID> PresetTreeModel::insertFiles(const std::vector<FileToInsert> &files, ItemID parent, int row) {
    if (!_document.contains(parent) || !_document.canInsert(parent)) {
        if (!files.empty()) {
            _context.showMessage(translated("Nothing was added: the folder for it is no longer there."), true);
        }
        return {};
    }
    std::vector<PropertyList> nodes;
    for (const FileToInsert &file : files) {
        const std::string path = QFile::encodeName(file.path).toStdString();
        if (auto node = QFileInfo(file.path).isDir() ? _nodeOfFolder(path, file.withContent) : _nodeOfFile(path)) {
            nodes.push_back(std::move(*node));
        }
    }
    std::vector<ItemID> made;
    if (nodes.empty()) {
        return made;
    }
    const EditHistory::Step step(_context.history, "Add Files");
    const std::size_t end = _document.numberOfChildren(parent);
    std::size_t at = row < 0 ? end : std::min(static_cast<std::size_t>(row), end);
    for (const PropertyList &node : nodes) {
        for (const ItemID item : _document.insertNodes(node, parent, at, "Add Files")) {
            made.push_back(item);
            ++at;
        }
    }
    _context.resourcesDidChange();
    return made;
}

} // namespace orvane
