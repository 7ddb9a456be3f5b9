#include "window/PreviewPanel.h"

#include "window/Icons.h"
#include "window/Page.h"
#include "window/PresetTreeModel.h"

#include "platform/qt/QtText.h"

#include <QApplication>
#include <QTreeView>
#include <QVBoxLayout>

namespace orvane {

PreviewModel::PreviewModel(SettingsContext &context, PresetTreeModel &model, QObject *parent)
    : QIdentityProxyModel(parent), _context(context) {
    setSourceModel(&model);
}

int PreviewModel::columnCount(const QModelIndex & /*parent*/) const {
    return 1;
}

QVariant PreviewModel::data(const QModelIndex &index, int role) const {
    const ItemID item = PresetTreeModel::itemOfIndex(mapToSource(index));
    if (item == NoItem) {
        return {};
    }
    NamePreview &preview = _context.preview;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        switch (preview.outcomeOf(item)) {
        case NamePreview::Outcome::Made:
            return QtSingleLine(QtTextOf(preview.nameOf(item)));
        case NamePreview::Outcome::Empty:
            return translated("(nothing is left of the name)");
        case NamePreview::Outcome::Refused:
            return translated("%1 (cannot be made)").arg(QtSingleLine(QtTextOf(preview.nameOf(item))).left(60));
        case NamePreview::Outcome::Unknown:
            return translated("(never comes to an end)");
        }
        return {};
    case Qt::ForegroundRole:
        return preview.outcomeOf(item) == NamePreview::Outcome::Made ? QVariant() : QVariant(errorColor(QApplication::palette()));
    case Qt::DecorationRole: {
        const std::string color = _context.presets.text(item, "color");
        return color.empty() ? QIdentityProxyModel::data(index, role) : QVariant(labelIcon(color));
    }
    default:
        return {};
    }
}

Qt::ItemFlags PreviewModel::flags(const QModelIndex &index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

PreviewPanel::PreviewPanel(SettingsContext &context, PresetTreeModel &model, QWidget *parent)
    : QWidget(parent), _ui_tree(new QTreeView(this)) {
    setObjectName(QStringLiteral("previewPanel"));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    auto *const names = new PreviewModel(context, model, this);
    _ui_tree->setObjectName(QStringLiteral("previewTree"));
    _ui_tree->setAccessibleName(translated("Preview of the names"));
    _ui_tree->setModel(names);
    _ui_tree->setUniformRowHeights(true);
    _ui_tree->setHeaderHidden(true);
    _ui_tree->setFrameShape(QFrame::NoFrame);
    _ui_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    column->addWidget(_ui_tree);
    connect(names, &QAbstractItemModel::modelReset, this, [this] { _ui_tree->expandToDepth(3); });
    connect(names, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &folder) { _ui_tree->expand(folder); });
    const auto choose = [this, names](const QModelIndex &index) {
        Q_EMIT itemChosen(PresetTreeModel::itemOfIndex(names->mapToSource(index)));
    };
    connect(_ui_tree, &QTreeView::clicked, this, choose);
    connect(_ui_tree, &QTreeView::activated, this, choose);
}

void PreviewPanel::refresh() {
    _ui_tree->viewport()->update();
}

} // namespace orvane
