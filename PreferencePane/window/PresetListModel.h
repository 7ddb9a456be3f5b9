#pragma once

#include "window/SettingsContext.h"

#include <QAbstractListModel>
#include <QStringList>
#include <QTemporaryDir>

#include <cstddef>
#include <memory>
#include <vector>

namespace orvane {

/// The presets by their labels, for item views.
class PresetListModel final : public QAbstractListModel, private PresetDocumentObserver {
    Q_OBJECT

public:
    PresetListModel(SettingsContext &context, QObject *parent);
    PresetListModel(const PresetListModel &) = delete;
    PresetListModel &operator=(const PresetListModel &) = delete;
    ~PresetListModel() override;

    [[nodiscard]] ItemID presetOfIndex(const QModelIndex &index) const;
    [[nodiscard]] QModelIndex indexOfPreset(ItemID preset) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    [[nodiscard]] Qt::DropActions supportedDropActions() const override { return Qt::MoveAction | Qt::CopyAction; }
    [[nodiscard]] QStringList mimeTypes() const override;
    [[nodiscard]] QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column, const QModelIndex &parent) override;

Q_SIGNALS:
    /// Presets were moved by dropping them.
    void presetsMoved(const std::vector<orvane::ItemID> &presets);
    /// Files or folders were dropped before the preset at that row.
    void filesDropped(const QStringList &paths, int row);

private:
    void documentWillBeReplaced() override { beginResetModel(); }
    void documentWasReplaced() override { endResetModel(); }
    void itemsWillBeInserted(ItemID parent, std::size_t first, std::size_t count) override;
    void itemsWereInserted(ItemID parent, std::size_t first, std::size_t count) override;
    void itemsWillBeRemoved(ItemID parent, std::size_t first, std::size_t count) override;
    void itemsWereRemoved(ItemID parent, std::size_t first, std::size_t count) override;
    void itemWillMove(ItemID oldParent, std::size_t from, ItemID newParent, std::size_t to) override;
    void itemDidMove(ItemID oldParent, std::size_t from, ItemID newParent, std::size_t to) override;
    void itemDidChange(ItemID item, std::string_view key) override;

    SettingsContext &_context;
    PresetDocument &_document;
    /// Where presets that were dragged out of the window stand as files: whoever got them copies them in its own time.
    mutable std::vector<std::shared_ptr<QTemporaryDir>> _places;
    bool _isMoving = false;
};

} // namespace orvane
