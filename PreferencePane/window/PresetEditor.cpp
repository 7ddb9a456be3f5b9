#include "window/PresetEditor.h"

#include "window/Icons.h"
#include "window/ItemPanel.h"
#include "window/Page.h"
#include "window/PresetTreeView.h"
#include "window/PreviewPanel.h"
#include "window/ProblemText.h"
#include "window/ProblemsPanel.h"
#include "window/ScriptPanel.h"
#include "window/TemplateEdit.h"
#include "window/VariablesPanel.h"

#include "platform/qt/QtHintColor.h"
#include "platform/qt/QtText.h"

#include <QAction>
#include <QApplication>
#include <QDataStream>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIODevice>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace orvane {

namespace {

/// How long nothing must change before the preset is checked, in ms.
constexpr int Pause = 250;

QScrollArea *scrolled(QWidget *widget, QWidget *parent) {
    auto *const area = new QScrollArea(parent);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area->setWidget(widget);
    area->setFocusPolicy(Qt::NoFocus);
    return area;
}

} // namespace

PresetEditor::PresetEditor(SettingsContext &context, QWidget *parent) : QWidget(parent), _context(context), _trial(context) {
    setObjectName(QStringLiteral("presetEditor"));
    _pause.setSingleShot(true);
    _pause.setInterval(Pause);
    connect(&_pause, &QTimer::timeout, this, [this] { _refresh(); });

    QWidget *const head = _makeHead();
    _ui_rows = new QSplitter(Qt::Vertical, this);
    _ui_rows->setChildrenCollapsible(false);
    _ui_columns = new QSplitter(Qt::Horizontal, _ui_rows);
    _ui_columns->setChildrenCollapsible(false);
    auto *const left = new QWidget(_ui_columns);
    auto *const leftColumn = new QVBoxLayout(left);
    leftColumn->setContentsMargins(0, 0, 0, 0);
    leftColumn->setSpacing(4);
    _ui_tree = new PresetTreeView(_context, left);
    QWidget *const toolBar = _makeToolBar();
    leftColumn->addWidget(toolBar);
    leftColumn->addWidget(_ui_tree, 1);
    _ui_columns->addWidget(left);
    _ui_columns->addWidget(_makeTabs());
    _ui_columns->setStretchFactor(0, 1);
    _ui_columns->setStretchFactor(1, 0);
    _ui_problems = new ProblemsPanel(_context, _ui_rows);
    _ui_rows->addWidget(_ui_columns);
    _ui_rows->addWidget(_ui_problems);
    _ui_rows->setStretchFactor(0, 1);
    _ui_rows->setStretchFactor(1, 0);
    _ui_rows->setSizes({600, 110});
    _ui_columns->setSizes({2 * _ui_tabs->sizeHint().width(), std::max(270, _ui_tabs->sizeHint().width())});

    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    column->setSpacing(PageSpacing);
    column->addWidget(head);
    column->addWidget(_ui_rows, 1);
    _orderForTabKey(*toolBar);

    connect(_ui_tree, &PresetTreeView::nodesSelected, this,
            [this] { _ui_item->setItems(_preset == NoItem ? std::vector<ItemID>() : _ui_tree->selectedNodes()); });
    connect(&_ui_tree->presetModel(), &PresetTreeModel::presetVanished, this, [this] { showPreset(NoItem); });
    connect(_ui_problems, &ProblemsPanel::problemChosen, this, [this](ItemID item, const QString &key) { _goTo(item, key); });
    connect(_ui_preview, &PreviewPanel::itemChosen, this, [this](ItemID item) { _ui_tree->selectItems({item}); });
    connect(_ui_variables, &VariablesPanel::useChosen, this, [this](ItemID item) { _goTo(item, QString()); });
    connect(_ui_variables, &VariablesPanel::samplesChanged, this, [this] { _ui_preview->refresh(); });
    _context.history.addObserver(*this);
    showPreset(NoItem);
}

PresetEditor::~PresetEditor() {
    _context.history.removeObserver(*this);
}

QWidget *PresetEditor::_makeHead() {
    auto *const head = new QWidget(this);
    auto *const row = new QHBoxLayout(head);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(PageSpacing);
    auto *const form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form->setContentsMargins(0, 0, 0, 0);
    _ui_label = new QLineEdit(head);
    _ui_label->setObjectName(QStringLiteral("presetLabel"));
    _ui_label->setAccessibleName(translated("Label of the preset"));
    _ui_directoryName = new TemplateEdit(true, head);
    _ui_directoryName->setObjectName(QStringLiteral("directoryName"));
    _ui_directoryName->setAccessibleName(translated("Name of the top folder"));
    _ui_directoryName->setToolTip(
        translated("What stands in braces, as in {Title}, is asked for each time; names that begin with Auto count on by themselves"));
    letDocumentUndo(*_ui_label);
    letDocumentUndo(*_ui_directoryName);
    form->addRow(translated("&Label:"), _ui_label);
    form->addRow(translated("&Top folder:"), _ui_directoryName);
    _ui_nameHint = new QLabel(head);
    _ui_nameHint->setObjectName(QStringLiteral("nameHint"));
    _ui_nameHint->setTextFormat(Qt::PlainText);
    form->addRow(QString(), _ui_nameHint);
    row->addLayout(form, 1);
    _ui_try = new QPushButton(iconFor(Icon::Play), translated("Tr&y It"), head);
    _ui_try->setObjectName(QStringLiteral("tryIt"));
    _ui_try->setToolTip(translated(
        "Makes the preset in a temporary folder with the sample values and opens it. The script is not run and no counter counts on; "
        "the folder goes when this program ends."));
    row->addWidget(_ui_try, 0, Qt::AlignTop);
    connect(_ui_label, &QLineEdit::textEdited, this, [this](const QString &text) {
        if (_context.store.canStoreText(QtUtf8Of(text))) {
            _context.presets.renamePreset(_preset, QtUtf8Of(text));
        }
    });
    connect(_ui_directoryName, &QLineEdit::textEdited, this, [this](const QString &text) { _directoryNameEdited(text); });
    for (QLineEdit *field : {_ui_label, static_cast<QLineEdit *>(_ui_directoryName)}) {
        connect(field, &QLineEdit::editingFinished, this, [this] {
            _context.history.endMerging();
            _refreshFields();
        });
    }
    connect(_ui_try, &QPushButton::clicked, this, [this] { tryPreset(); });
    return head;
}

QWidget *PresetEditor::_makeToolBar() {
    auto *const bar = new QWidget(this);
    auto *const row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    const PresetTreeView::Actions &actions = _ui_tree->actions();
    for (QAction *action : {actions.newFolder, actions.newFile, actions.addFiles, actions.duplicate, actions.remove}) {
        auto *const button = new QToolButton(bar);
        button->setDefaultAction(action);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        const bool isLabelled = action == actions.newFolder || action == actions.newFile;
        button->setToolButtonStyle(isLabelled ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
        QString name = action->text();
        button->setAccessibleName(name.remove(u'&'));
        row->addWidget(button);
    }
    row->addStretch(1);
    return bar;
}

/// As they were made, from the top to the bottom, but the tree's buttons before the tree.
void PresetEditor::_orderForTabKey(const QWidget &toolBar) {
    std::vector<QWidget *> order{_ui_try};
    for (QToolButton *const button : toolBar.findChildren<QToolButton *>()) {
        order.push_back(button);
    }
    order.insert(order.end(), {_ui_tree, _ui_tabs});
    for (std::size_t i = 1; i < order.size(); ++i) {
        QWidget::setTabOrder(order[i - 1], order[i]);
    }
}

QWidget *PresetEditor::_makeTabs() {
    _ui_tabs = new QTabWidget(_ui_columns);
    _ui_tabs->setObjectName(QStringLiteral("presetTabs"));
    _ui_tabs->setAccessibleName(translated("About the preset"));
    _ui_tabs->setDocumentMode(true);
    _ui_tabs->setMinimumWidth(200);
    _ui_tabs->setUsesScrollButtons(true);
    _ui_item = new ItemPanel(_context, _ui_tabs);
    _ui_preview = new PreviewPanel(_context, _ui_tree->presetModel(), _ui_tabs);
    _ui_variables = new VariablesPanel(_context, _ui_tabs);
    _ui_script = new ScriptPanel(_context, _ui_tabs);
    _ui_tabs->addTab(scrolled(_ui_item, _ui_tabs), translated("Item"));
    _ui_tabs->addTab(_ui_preview, translated("Preview"));
    _ui_tabs->addTab(_ui_variables, translated("Variables"));
    auto *const script = new QWidget(_ui_tabs);
    auto *const scriptMargin = new QVBoxLayout(script);
    scriptMargin->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    scriptMargin->addWidget(_ui_script);
    _ui_tabs->addTab(scrolled(script, _ui_tabs), translated("Script"));
    connect(_ui_tabs, &QTabWidget::currentChanged, this, [this] { _pause.start(0); });
    return _ui_tabs;
}

void PresetEditor::showPreset(ItemID preset) {
    if (preset != _preset) {
        _context.history.endMerging();
    }
    _preset = preset;
    const bool isShown = preset != NoItem;
    setEnabled(isShown);
    _ui_tree->showPreset(preset);
    _ui_script->setPreset(preset);
    _ui_item->setItems(isShown ? _ui_tree->selectedNodes() : std::vector<ItemID>());
    _refreshFields();
    _refresh();
}

void PresetEditor::editLabel() {
    _ui_label->setFocus(Qt::OtherFocusReason);
    _ui_label->selectAll();
}

void PresetEditor::_setField(QLineEdit &field, const std::string &text) {
    const QString shown = QtTextOf(text);
    if (field.text() != shown) {
        field.setText(shown); // programmatic changes are no edits
    }
}

void PresetEditor::_refreshFields() {
    const bool isShown = _preset != NoItem && _context.presets.contains(_preset);
    _setField(*_ui_label, isShown ? _context.presets.label(_preset) : std::string());
    _setField(*_ui_directoryName, isShown ? _context.presets.text(_preset, "directoryName") : std::string());
    const auto problems = isShown ? _context.problems.problemsOfTemplate(_preset, _context.presets.text(_preset, "directoryName"))
                                  : std::vector<ORVNameProblem>();
    const auto worst = std::max_element(problems.begin(), problems.end(),
                                        [](const auto &left, const auto &right) { return left.severity < right.severity; });
    QPalette hintPalette = palette();
    QString hint;
    if (worst != problems.end()) {
        const bool isError = worst->severity == ORVProblemSeverity::Error;
        hintPalette.setColor(QPalette::WindowText, isError ? errorColor(hintPalette) : warningColor(hintPalette));
        hint = textOfProblem(*worst);
    } else {
        hintPalette.setColor(QPalette::WindowText, QtHintColor(hintPalette));
        const QString name = isShown ? QtSingleLine(QtTextOf(_context.preview.nameOf(_preset))) : QString();
        hint = name.isEmpty() ? QString() : translated("Gives: %1").arg(QtIsolated(name));
    }
    _ui_nameHint->setText(_ui_nameHint->fontMetrics().elidedText(hint, Qt::ElideRight, qMax(120, _ui_directoryName->width() - 8)));
    _ui_nameHint->setToolTip(hint);
    _ui_nameHint->setAccessibleName(hint);
    _ui_nameHint->setPalette(hintPalette);
}

void PresetEditor::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && _ui_nameHint != nullptr) {
        _refreshFields();
    }
}

void PresetEditor::_directoryNameEdited(const QString &text) {
    if (_context.store.canStoreText(QtUtf8Of(text))) {
        _context.presets.setDirectoryName(_preset, QtUtf8Of(text));
    }
}

void PresetEditor::historyDidChange() {
    if (_preset == NoItem || !_context.presets.contains(_preset)) {
        return;
    }
    _refreshFields();
    _ui_item->refresh();
    _pause.start(Pause);
}

void PresetEditor::_refresh() {
    const ItemID shown = _preset != NoItem && _context.presets.contains(_preset) ? _preset : NoItem;
    _ui_problems->showPreset(shown);
    _ui_variables->showPreset(shown);
    _ui_preview->refresh();
    _ui_tree->viewport()->update();
    _refreshFields();
}

void PresetEditor::checkAgain() {
    _context.problems.resourcesDidChange();
    _pause.start(Pause);
}

void PresetEditor::_goTo(ItemID item, const QString &key) {
    if (!_context.presets.contains(item)) {
        return;
    }
    if (_context.presets.isNode(item)) {
        _ui_tree->selectItems({item});
        _ui_tree->setFocus(Qt::OtherFocusReason);
        const bool isInPanel = !key.isEmpty() && key != u"filename";
        if (isInPanel) {
            _ui_tabs->setCurrentIndex(0);
        }
    } else if (key == u"scriptFile") {
        _ui_tabs->setCurrentIndex(3);
    } else if (key == u"label") {
        editLabel();
    } else if (_context.presets.isPreset(item)) {
        _ui_directoryName->setFocus(Qt::OtherFocusReason);
    } else {
        _ui_tree->selectItems({item});
        _ui_tree->setFocus(Qt::OtherFocusReason);
    }
}

void PresetEditor::tryPreset() {
    if (_preset == NoItem) {
        return;
    }
    QString problem;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const auto path = _trial.tryPreset(_preset, problem);
    QApplication::restoreOverrideCursor();
    if (path) {
        _context.showMessage(translated("Made for a look: %1").arg(*path), false);
    } else {
        _context.showMessage(translated("The preset cannot be made: %1").arg(problem), true);
    }
}

QByteArray PresetEditor::state() const {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << _ui_columns->saveState() << _ui_rows->saveState() << _ui_tabs->currentIndex();
    return bytes;
}

void PresetEditor::restoreState(const QByteArray &state) {
    QDataStream stream(state);
    QByteArray columns;
    QByteArray rows;
    int tab = 0;
    stream >> columns >> rows >> tab;
    if (stream.status() == QDataStream::Ok) {
        _ui_columns->restoreState(columns);
        _ui_rows->restoreState(rows);
        _ui_tabs->setCurrentIndex(tab);
    }
}

} // namespace orvane
