#pragma once

#include "window/SettingsContext.h"

#include <QAbstractItemModel>

#include <cstddef>
#include <string>
#include <vector>

namespace orvane {

/// One preset's tree for item views: the top-level folder as the only row at the top, everything else below it. It keeps nothing of
/// the document, so that a tree of any size costs what is on the screen.
class PresetTreeModel final : public QAbstractItemModel, private PresetDocumentObserver {
    Q_OBJECT

public:
    enum Column { Name, Label, Permissions, Content, NumberOfColumns };
    enum Role {
        ColorRole = Qt::UserRole, ///< the label's name as text
        SeverityRole,             ///< of the item's gravest problem as a number; not valid for none
        IsDirectoryNameRole       ///< whether the name is the top-level folder's
    };

    PresetTreeModel(SettingsContext &context, QObject *parent);
    PresetTreeModel(const PresetTreeModel &) = delete;
    PresetTreeModel &operator=(const PresetTreeModel &) = delete;
    ~PresetTreeModel() override;

    /// The preset that is shown; `NoItem` for none.
    void setPreset(ItemID preset);
    [[nodiscard]] ItemID preset() const { return _preset; }
    /// Not valid for items that are not in this preset's tree. The preset itself stands at its tree.
    [[nodiscard]] QModelIndex indexOfItem(ItemID item, int column = Name) const;
    /// `NoItem` for an index that is not valid.
    [[nodiscard]] static ItemID itemOfIndex(const QModelIndex &index);

    /// A file or folder on disk that is to become an item.
    struct FileToInsert {
        QString path;
        bool withContent; ///< of a folder: whether what is in its files is copied, too
    };

    /// Copies the nodes that the mime data holds to before the child at `row`; a negative row means behind all. `move`: our own items
    /// are moved. Returns the items that are new or moved.
    std::vector<ItemID> insertMimeData(const QMimeData &data, ItemID parent, int row, bool move);
    /// Copies files to there, contents into the support folder; those that cannot be read are told of and left out. When the parent is
    /// gone that is told instead, and nothing else happens. Returns the new items.
    std::vector<ItemID> insertFiles(const std::vector<FileToInsert> &files, ItemID parent, int row);
    /// Whether what `canInsertMimeData` accepts are files of a file manager rather than nodes.
    [[nodiscard]] static bool holdsFiles(const QMimeData &data, PropertyListTextForm &form);
    [[nodiscard]] bool canInsertMimeData(const QMimeData &data, ItemID parent, bool move) const;
    [[nodiscard]] QMimeData *mimeDataOfItems(const std::vector<ItemID> &items, bool isDrag) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex &index) const override;
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override { return Qt::MoveAction | Qt::CopyAction; }
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData *mimeData(const QModelIndexList &indexes) const override;
    [[nodiscard]] bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                       const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column, const QModelIndex &parent) override;

Q_SIGNALS:
    /// The shown preset is gone.
    void presetVanished();
    /// Something was dropped, and these items are it.
    void itemsDropped(const std::vector<orvane::ItemID> &items);
    /// Files were dropped, for `insertFiles`.
    void filesDropped(const QStringList &paths, orvane::ItemID parent, int row);

private:
    void documentWillBeReplaced() override;
    void documentWasReplaced() override;
    void itemsWillBeInserted(ItemID parent, std::size_t first, std::size_t count) override;
    void itemsWereInserted(ItemID parent, std::size_t first, std::size_t count) override;
    void itemsWillBeRemoved(ItemID parent, std::size_t first, std::size_t count) override;
    void itemsWereRemoved(ItemID parent, std::size_t first, std::size_t count) override;
    void itemWillMove(ItemID oldParent, std::size_t from, ItemID newParent, std::size_t to) override;
    void itemDidMove(ItemID oldParent, std::size_t from, ItemID newParent, std::size_t to) override;
    void itemDidChange(ItemID item, std::string_view key) override;

    enum class Change { None, Reset, Insert, Remove, Move };

    [[nodiscard]] bool _shows(ItemID parent) const;
    void _begin(Change change, ItemID parent, std::size_t first, std::size_t count);
    void _end();
    [[nodiscard]] QVariant _text(ItemID item, int column) const;
    [[nodiscard]] QVariant _toolTip(ItemID item) const;
    [[nodiscard]] QVariant _severity(ItemID item) const;
    [[nodiscard]] QString _description(ItemID item, int column) const;
    [[nodiscard]] std::optional<PropertyList> _nodeOfFolder(const std::string &path, bool withContent);
    [[nodiscard]] std::optional<PropertyList> _nodeOfFile(const std::string &path);
    void _sayWhyNot(const std::string &path, const Sentence &problem) const;

    SettingsContext &_context;
    PresetDocument &_document;
    ItemID _preset = NoItem;
    Change _change = Change::None; ///< begun and not ended
};

} // namespace orvane
