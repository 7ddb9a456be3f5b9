#include "window/VariablesPanel.h"

#include "window/Hints.h"
#include "window/Icons.h"
#include "window/Page.h"

#include "VariableMaking.h"
#include "platform/qt/QtText.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <cstdint>
#include <unordered_set>

namespace orvane {

namespace {

enum Column { NameColumn, SampleColumn, UsesColumn };
enum Role { NameRole = Qt::UserRole, ItemRole };

bool isSameList(const std::vector<Variable> &left, const std::vector<Variable> &right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](const Variable &a, const Variable &b) {
        return a.name == b.name && a.isAutomatic == b.isAutomatic && a.uses == b.uses;
    });
}

} // namespace

VariablesPanel::VariablesPanel(SettingsContext &context, QWidget *parent)
    : QWidget(parent), _context(context), _ui_tree(new QTreeWidget(this)),
      _ui_all(new QCheckBox(translated("Variables of &all presets"), this)), _ui_text(new QLineEdit(this)), _ui_name(new QLineEdit(this)),
      _ui_make(new QPushButton(translated("&Make Variable"), this)) {
    setObjectName(QStringLiteral("variablesPanel"));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    _ui_tree->setObjectName(QStringLiteral("variableTree"));
    _ui_tree->setAccessibleName(translated("Variables"));
    _ui_tree->setHeaderLabels({translated("Variable"), translated("Sample"), translated("Uses")});
    _ui_tree->setFrameShape(QFrame::NoFrame);
    _ui_tree->setUniformRowHeights(true);
    _ui_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    _ui_tree->header()->setStretchLastSection(false);
    _ui_tree->header()->setMinimumSectionSize(36);
    _ui_tree->header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    _ui_tree->header()->setSectionResizeMode(SampleColumn, QHeaderView::Stretch);
    _ui_tree->header()->setSectionResizeMode(UsesColumn, QHeaderView::ResizeToContents);
    _ui_tree->installEventFilter(this);
    _ui_all->setObjectName(QStringLiteral("allVariables"));
    auto *const options = new QVBoxLayout;
    options->setContentsMargins(PageMargin, 4, PageMargin, 8);
    options->addWidget(_ui_all);
    auto *const hint = new QLabel(translated("F2 or a double click renames a variable wherever it is used."), this);
    hint->setObjectName(QStringLiteral("renamingHint"));
    hint->setWordWrap(true);
    showAsHint(*hint);
    options->addWidget(hint);
    column->addWidget(_ui_tree, 1);
    options->addLayout(_makeFieldsForNewOne());
    column->addLayout(options);
    connect(_ui_all, &QCheckBox::toggled, this, [this] { _list(); });
    connect(_ui_tree, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem *row, int changed) { _rowChanged(row, changed); });
    connect(_ui_tree, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem *row, int clicked) {
        if (row->parent() == nullptr && clicked != UsesColumn) {
            _ui_tree->editItem(row, clicked);
        }
    });
    const auto choose = [this](QTreeWidgetItem *row) {
        if (row->parent() != nullptr) {
            Q_EMIT useChosen(static_cast<ItemID>(row->data(0, ItemRole).toUInt()));
        }
    };
    connect(_ui_tree, &QTreeWidget::itemClicked, this, choose);
    connect(_ui_tree, &QTreeWidget::itemActivated, this, choose);
}

QLayout *VariablesPanel::_makeFieldsForNewOne() {
    auto *const form = new QFormLayout;
    form->setContentsMargins(0, 8, 0, 0);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    _ui_text->setObjectName(QStringLiteral("textForVariable"));
    _ui_text->setToolTip(translated("A text that stands in names, such as the client's name in a folder that was imported"));
    _ui_name->setObjectName(QStringLiteral("nameOfVariable"));
    _ui_make->setObjectName(QStringLiteral("makeVariable"));
    form->addRow(translated("Te&xt in names:"), _ui_text);
    form->addRow(translated("&Becomes:"), _ui_name);
    form->addRow(_ui_make);
    for (QLineEdit *const field : {_ui_text, _ui_name}) {
        connect(field, &QLineEdit::textChanged, this, &VariablesPanel::_enableMaking);
        connect(field, &QLineEdit::returnPressed, _ui_make, &QPushButton::click);
    }
    connect(_ui_make, &QPushButton::clicked, this, &VariablesPanel::_make);
    _enableMaking();
    return form;
}

void VariablesPanel::_enableMaking() {
    _ui_text->setEnabled(_preset != NoItem);
    _ui_name->setEnabled(_preset != NoItem);
    _ui_make->setEnabled(_preset != NoItem && !_ui_text->text().isEmpty() && !_ui_name->text().isEmpty());
}

void VariablesPanel::_make() {
    const QString text = _ui_text->text();
    const QString name = _ui_name->text();
    const VariableMade made = makeVariable(_context.presets, _preset, QtUtf8Of(text), QtUtf8Of(name));
    switch (made.outcome) {
    case VariableMaking::Done:
        _ui_text->clear();
        _ui_name->clear();
        _ui_text->setFocus();
        _context.showMessage(
            translated("“%1” is the variable “%2” now. Names that changed: %3").arg(text, name, QString::number(made.names)), false);
        break;
    case VariableMaking::BadName:
        _context.showMessage(translated("A variable cannot be called “%1”.").arg(name), true);
        break;
    case VariableMaking::BadText:
        _context.showMessage(translated("A text with a brace or a backslash cannot become a variable."), true);
        break;
    case VariableMaking::NotFound:
        _context.showMessage(translated("No name of this preset has the text “%1”.").arg(text), true);
        break;
    }
    _list();
}

bool VariablesPanel::eventFilter(QObject *watched, QEvent *event) {
    if (watched == _ui_tree && event->type() == QEvent::KeyPress && static_cast<const QKeyEvent &>(*event).key() == Qt::Key_F2) {
        _editCurrent();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void VariablesPanel::_editCurrent() {
    QTreeWidgetItem *const row = _ui_tree->currentItem();
    if (row != nullptr && row->parent() == nullptr) {
        _ui_tree->editItem(row, _ui_tree->currentColumn() == SampleColumn ? SampleColumn : NameColumn);
    }
}

std::vector<Variable> VariablesPanel::_variables() {
    if (_ui_all->isChecked()) {
        return _context.variables.allVariables();
    }
    return _preset == NoItem ? std::vector<Variable>() : _context.variables.variablesOfPreset(_preset);
}

void VariablesPanel::showPreset(ItemID preset) {
    _preset = preset;
    _enableMaking();
    if (!isSameList(_variables(), _listed)) {
        _list();
    }
}

QString VariablesPanel::_nameOfUse(ItemID item) const {
    const PresetDocument &document = _context.presets;
    const QString label = QtSingleLine(QtTextOf(document.title(document.presetOf(item))));
    if (document.isPreset(item)) {
        return _ui_all->isChecked() ? translated("%1: top folder").arg(label) : translated("Top folder");
    }
    const QString name = QtSingleLine(QtTextOf(document.filename(item)));
    return _ui_all->isChecked() ? label + QStringLiteral(": ") + name : name;
}

void VariablesPanel::_addRow(const Variable &variable) {
    auto *const row = new QTreeWidgetItem(_ui_tree);
    const QString name = QtTextOf(variable.name);
    row->setText(NameColumn, name);
    row->setData(NameColumn, NameRole, name);
    row->setText(SampleColumn, QtSingleLine(QtTextOf(_context.preview.sample(variable.name))));
    row->setText(UsesColumn, QString::number(variable.uses.size()));
    row->setTextAlignment(UsesColumn, Qt::AlignRight | Qt::AlignVCenter);
    row->setFlags(row->flags() | Qt::ItemIsEditable);
    if (variable.isAutomatic) {
        QFont font = _ui_tree->font();
        font.setItalic(true);
        row->setFont(NameColumn, font);
        row->setToolTip(NameColumn, translated("Counts on by itself with each creation"));
    }
    std::unordered_set<ItemID> seen;
    for (const VariableUse &use : variable.uses) {
        if (seen.insert(use.item).second && seen.size() <= 100) {
            auto *const place = new QTreeWidgetItem(row, {_nameOfUse(use.item)});
            place->setData(0, ItemRole, static_cast<std::uint32_t>(use.item));
            place->setFirstColumnSpanned(true);
            const bool isFolder = !_context.presets.isNode(use.item) || _context.presets.isFolder(use.item);
            place->setIcon(0, iconFor(isFolder ? Icon::Folder : Icon::File));
        }
    }
}

void VariablesPanel::_list() {
    const QString current = _ui_tree->currentItem() == nullptr ? QString() : _ui_tree->currentItem()->data(0, NameRole).toString();
    _isListing = true;
    _ui_tree->clear();
    _listed = _variables();
    for (const Variable &variable : _listed) {
        _addRow(variable);
        QTreeWidgetItem *const row = _ui_tree->topLevelItem(_ui_tree->topLevelItemCount() - 1);
        if (!current.isEmpty() && row->text(NameColumn) == current) {
            _ui_tree->setCurrentItem(row);
        }
    }
    _isListing = false;
}

void VariablesPanel::_rowChanged(QTreeWidgetItem *row, int column) {
    if (_isListing || row->parent() != nullptr) {
        return;
    }
    const std::string name = QtUtf8Of(row->data(NameColumn, NameRole).toString());
    const std::string text = QtUtf8Of(row->text(column));
    if (column == SampleColumn) {
        if (text.empty()) {
            _context.preview.removeSample(name);
        } else {
            _context.preview.setSample(name, text);
        }
        _isListing = true;
        row->setText(SampleColumn, QtSingleLine(QtTextOf(_context.preview.sample(name))));
        _isListing = false;
        Q_EMIT samplesChanged();
    } else if (column == NameColumn && text != name) {
        // Not before the editor is done with the row, which goes away.
        QMetaObject::invokeMethod(
            this, [this, name, text] { _rename(name, text); }, Qt::QueuedConnection);
    }
}

void VariablesPanel::_rename(const std::string &from, const std::string &to) {
    std::vector<ItemID> presets;
    if (_ui_all->isChecked()) {
        for (std::size_t i = 0; i < _context.presets.numberOfPresets(); ++i) {
            presets.push_back(_context.presets.presetAt(i));
        }
    } else {
        presets.push_back(_preset);
    }
    switch (renameVariable(_context.presets, _context.counters, presets, from, to)) {
    case VariableRenaming::Done:
    case VariableRenaming::NotUsed:
        break;
    case VariableRenaming::BadName:
        _context.showMessage(translated("A variable cannot be called “%1”.").arg(QtTextOf(to)), true);
        break;
    case VariableRenaming::Exists:
        _context.showMessage(translated("There is a variable “%1” already; both would become one.").arg(QtTextOf(to)), true);
        break;
    }
    _list();
}

} // namespace orvane
