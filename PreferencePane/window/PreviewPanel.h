#pragma once

#include "window/SettingsContext.h"

#include <QIdentityProxyModel>
#include <QWidget>

class QTreeView;

namespace orvane {

class PresetTreeModel;

/// The tree with the names that a creation would give. A name is made when it is drawn.
class PreviewModel final : public QIdentityProxyModel {
    Q_OBJECT

public:
    PreviewModel(SettingsContext &context, PresetTreeModel &model, QObject *parent);

    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    SettingsContext &_context;
};

/// What a creation would make, beside the templates. Choosing an item goes to it.
class PreviewPanel final : public QWidget {
    Q_OBJECT

public:
    PreviewPanel(SettingsContext &context, PresetTreeModel &model, QWidget *parent);
    /// Names may have become others.
    void refresh();

Q_SIGNALS:
    void itemChosen(orvane::ItemID item);

private:
    QTreeView *_ui_tree;
};

} // namespace orvane
