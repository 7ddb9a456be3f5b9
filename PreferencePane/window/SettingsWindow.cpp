#include "window/SettingsWindow.h"

#include "window/CountersPage.h"
#include "window/GeneralPage.h"
#include "window/Hints.h"
#include "window/Icons.h"
#include "window/LocalFiles.h"
#include "window/MessageBar.h"
#include "window/Page.h"
#include "window/PresetEditor.h"
#include "window/PresetTreeView.h"
#include "window/PresetsPage.h"
#include "window/Saving.h"

#include "platform/posix/PosixPrivateFolder.h"
#include "platform/qt/QtText.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

namespace {

QScrollArea *scrolled(QWidget *page, QWidget *parent) {
    auto *const area = new QScrollArea(parent);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(page);
    return area;
}

/// What the store calls the step in which it takes over what another program has changed.
constexpr std::string_view ByOthers = QT_TRANSLATE_NOOP("Orvane", "Changes by Another Program");

} // namespace

SettingsWindow::SettingsWindow(SettingsContext &context, QWidget *parent)
    : QMainWindow(parent), _context(context), _ui_sections(new QToolBar(this)), _sections(new QActionGroup(this)),
      _ui_pages(new QStackedWidget), _ui_fileBar(new MessageBar(this)), _ui_conflictBar(new MessageBar(this)),
      _ui_recoveryBar(new MessageBar(this)), _ui_messageBar(new MessageBar(this)) {
    new ReadablePlaceholders(this);
    _context.showMessage = [this](const QString &text, bool isProblem) { _say(text, isProblem); };
    _context.resourcesDidChange = [this] { _ui_presets->editor().checkAgain(); };
    setObjectName(QStringLiteral("settingsWindow"));
    setWindowTitle(translated("Orvane Settings"));
    setAcceptDrops(true);
    _ui_presets = new PresetsPage(_context, this);
    _ui_fileBar->setObjectName(QStringLiteral("fileBar"));
    _ui_conflictBar->setObjectName(QStringLiteral("conflictBar"));
    _ui_recoveryBar->setObjectName(QStringLiteral("recoveryBar"));
    _ui_messageBar->setObjectName(QStringLiteral("messageBar"));
    auto *const middle = new QWidget(this);
    auto *const column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (MessageBar *bar : {_ui_fileBar, _ui_conflictBar, _ui_recoveryBar, _ui_messageBar}) {
        column->addWidget(bar);
    }
    column->addWidget(_ui_pages, 1);
    _ui_pages->addWidget(_ui_presets);
    _ui_pages->addWidget(scrolled(new CountersPage(_context, this), this));
    _ui_pages->addWidget(scrolled(new GeneralPage(_context, this), this));
    setCentralWidget(middle);
    _saving = new Saving(_context, {*_ui_fileBar, *_ui_conflictBar, *_ui_recoveryBar}, this);
    connect(_saving, &Saving::readabilityChanged, this, [this](bool isReadable) { _setReadable(isReadable); });
    connect(_saving, &Saving::heldUpEnded, this, [this] {
        if (_closesWhenSaved) {
            close();
        }
    });
    _makeSections();
    _makeActions();
    _makeMenus();
    _context.history.addObserver(*this);
    _saving->start();
    _ui_presets->selectFirst();
    historyDidChange();
    _restoreGeometry();
}

SettingsWindow::~SettingsWindow() {
    _context.history.removeObserver(*this);
    _context.showMessage = [](const QString &, bool) {};
    _context.resourcesDidChange = [] {};
}

void SettingsWindow::_makeSections() {
    _ui_sections->setObjectName(QStringLiteral("sections"));
    _ui_sections->setWindowTitle(translated("Sections"));
    _ui_sections->setAccessibleName(translated("Sections"));
    _ui_sections->setMovable(false);
    _ui_sections->setFloatable(false);
    _ui_sections->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    _ui_sections->setIconSize(QSize(24, 24));
    _ui_sections->setContextMenuPolicy(Qt::PreventContextMenu);
    struct Section {
        Icon icon;
        const char *title;
        const char *name;
    };
    static constexpr std::array<Section, 3> Sections{{{Icon::Presets, QT_TRANSLATE_NOOP("Orvane", "&Presets"), "showPresets"},
                                                      {Icon::Counters, QT_TRANSLATE_NOOP("Orvane", "&Counters"), "showCounters"},
                                                      {Icon::General, QT_TRANSLATE_NOOP("Orvane", "&General"), "showGeneral"}}};
    int width = 72;
    for (std::size_t i = 0; i < Sections.size(); ++i) {
        const Section &section = Sections.at(i);
        QAction *const action = _sections->addAction(iconFor(section.icon), translated(section.title));
        action->setObjectName(QLatin1String(section.name));
        action->setCheckable(true);
        action->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + static_cast<int>(i))));
        // Not when it is triggered: screen readers switch it over instead.
        connect(action, &QAction::toggled, this, [this, i](bool isOn) {
            if (isOn) {
                showPage(static_cast<Page>(i));
            }
        });
        _ui_sections->addAction(action);
        width = qMax(width, fontMetrics().horizontalAdvance(action->text()) + 20);
    }
    for (QAction *action : _sections->actions()) {
        auto *const button = qobject_cast<QToolButton *>(_ui_sections->widgetForAction(action));
        button->setFixedWidth(width);
        button->setFocusPolicy(Qt::TabFocus);
        button->setAccessibleName(action->text().remove(u'&'));
    }
    _sections->actions().constFirst()->setChecked(true);
    addToolBar(Qt::LeftToolBarArea, _ui_sections);
}

void SettingsWindow::_makeActions() {
    _undo = new QAction(iconFor(Icon::Undo), translated("&Undo"), this);
    _undo->setObjectName(QStringLiteral("undo"));
    _undo->setShortcut(QKeySequence::Undo);
    connect(_undo, &QAction::triggered, this, [this] { _undoStep(); });
    _redo = new QAction(iconFor(Icon::Redo), translated("&Redo"), this);
    _redo->setObjectName(QStringLiteral("redo"));
    _redo->setShortcuts({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    connect(_redo, &QAction::triggered, this, [this] { _redoStep(); });
}

void SettingsWindow::_makeMenus() {
    const PresetsPage::Actions &presets = _ui_presets->actions();
    const PresetTreeView::Actions &nodes = _ui_presets->tree().actions();
    QMenu *const preset = menuBar()->addMenu(translated("&Preset"));
    preset->addAction(presets.add);
    preset->addMenu(_ui_presets->readyMadeMenu());
    preset->addActions({presets.importFolder, presets.addFile, presets.exportFile});
    preset->addSeparator();
    preset->addActions({presets.rename, presets.duplicate, presets.remove, presets.moveUp, presets.moveDown});
    preset->addSeparator();
    preset->addAction(presets.tryIt);
    preset->addSeparator();
    QAction *const close = preset->addAction(translated("&Close"), this, &QWidget::close);
    close->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));
    QAction *const quit = preset->addAction(translated("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));

    QMenu *const edit = menuBar()->addMenu(translated("&Edit"));
    edit->addActions({_undo, _redo});
    edit->addSeparator();
    edit->addActions({nodes.cut, nodes.copy, nodes.paste, nodes.duplicate, nodes.remove});
    edit->addSeparator();
    edit->addActions({nodes.newFolder, nodes.newFile, nodes.addFiles, nodes.rename});
    edit->addMenu(_ui_presets->tree().labelMenu());
    edit->addSeparator();
    edit->addActions({nodes.moveUp, nodes.moveDown, nodes.moveOut, nodes.moveIn});

    QMenu *const view = menuBar()->addMenu(translated("&View"));
    view->addActions(_sections->actions());
}

void SettingsWindow::showPage(Page page) {
    if (page != _ui_pages->currentIndex()) {
        _ui_messageBar->clear();
    }
    _ui_pages->setCurrentIndex(page);
    _sections->actions().at(page)->setChecked(true);
}

void SettingsWindow::openPaths(const QStringList &paths) {
    if (!_saving->isReadable() || paths.isEmpty()) {
        return;
    }
    showPage(Presets);
    _ui_presets->addPaths(paths);
}

void SettingsWindow::_say(const QString &text, bool isProblem) {
    if (text.isEmpty()) {
        return _ui_messageBar->clear();
    }
    _ui_messageBar->say(isProblem ? MessageBar::Kind::Warning : MessageBar::Kind::Note, text);
}

void SettingsWindow::_setReadable(bool isReadable) {
    _ui_pages->setEnabled(isReadable);
    for (QAction *action : _ui_presets->findChildren<QAction *>()) {
        if (action->parent() == _ui_presets) {
            action->setEnabled(isReadable);
        }
    }
    _ui_presets->selectFirst();
}

void SettingsWindow::historyDidChange() {
    const auto title = [](const char *verb, const char *name) {
        return *name == '\0' ? translated(verb) : translated(verb) + u' ' + QtIsolated(translated(name));
    };
    _undo->setEnabled(_context.history.canUndo());
    _redo->setEnabled(_context.history.canRedo());
    _undo->setText(title(QT_TRANSLATE_NOOP("Orvane", "&Undo"), _context.history.undoName()));
    _redo->setText(title(QT_TRANSLATE_NOOP("Orvane", "&Redo"), _context.history.redoName()));
    _mayLoseEdits = false;
}

/// What another program has changed is no edit of the user's, and goes from the disk with the next saving: never without a word.
void SettingsWindow::_undoStep() {
    _finishEditing();
    const bool isOfOthers = _context.history.undoName() == ByOthers;
    std::vector<std::pair<ItemID, QString>> presets;
    for (std::size_t i = 0; isOfOthers && i < _context.presets.numberOfPresets(); ++i) {
        const ItemID preset = _context.presets.presetAt(i);
        presets.emplace_back(preset, QtIsolated(QtSingleLine(QtTextOf(_context.presets.title(preset)))));
    }
    _context.history.undo();
    if (!isOfOthers) {
        return;
    }
    std::erase_if(presets, [this](const auto &each) { return _context.presets.contains(each.first); });
    QString text = translated("What another program had changed is undone, too. Redo brings it back.");
    if (presets.size() == 1) {
        text = translated("“%1” was added by another program and is taken away again. Redo brings it back.").arg(presets.front().second);
    } else if (presets.size() > 1) {
        text = translated("%1 presets were added by another program and are taken away again. Redo brings them back.").arg(presets.size());
    }
    _say(text, true);
}

void SettingsWindow::_redoStep() {
    _finishEditing();
    if (_context.history.redoName() == ByOthers) {
        _ui_messageBar->clear(); // which says that this would help
    }
    _context.history.redo();
}

/// What is being typed into a cell counts as typed.
void SettingsWindow::_finishEditing() {
    if (QWidget *const field = QApplication::focusWidget(); field != nullptr && field->objectName() == u"cellEditor") {
        field->clearFocus();
    }
}

// Coming and going ----------------------------------------------------------------------------------------------------------

QString SettingsWindow::_stateFile() const {
    return QtTextOf(_context.paths.stateFolder) + QStringLiteral("/settings-window.ini");
}

void SettingsWindow::_restoreGeometry() {
    const QSize room = screen()->availableSize();
    // In letters, so that larger ones get a larger window.
    const QSize usual(160 * fontMetrics().averageCharWidth(), 42 * fontMetrics().height());
    resize(usual.expandedTo(QSize(1120, 720)).boundedTo(room * 0.92));
    const QSettings state(_stateFile(), QSettings::IniFormat);
    restoreGeometry(state.value(QStringLiteral("geometry")).toByteArray());
    _ui_presets->restoreState(state.value(QStringLiteral("presets")).toByteArray());
}

void SettingsWindow::_storeGeometry() const {
    static_cast<void>(makePrivateFolders(_context.paths.stateFolder));
    QSettings state(_stateFile(), QSettings::IniFormat);
    state.setValue(QStringLiteral("geometry"), saveGeometry());
    state.setValue(QStringLiteral("presets"), _ui_presets->state());
    state.sync(); // by a file that takes the old one's place, and its mode
    QFile::setPermissions(_stateFile(), QFile::ReadOwner | QFile::WriteOwner);
}

void SettingsWindow::closeEvent(QCloseEvent *event) {
    _finishEditing();
    const bool isKept = _saving->saveNow();
    if (_saving->isHeldUp() && !_closesWhenSaved) {
        _closesWhenSaved = true;
        _say(
            translated("Another program holds the preferences. This window closes as soon as your changes are saved. Close it once more to "
                       "be offered them at the next start."),
            true);
        return event->ignore();
    }
    if (!isKept && !_mayLoseEdits) {
        _mayLoseEdits = true;
        _say(translated("Your last changes can be stored nowhere. Close once more to give them up."), true);
        return event->ignore();
    }
    _storeGeometry();
    event->accept();
}

void SettingsWindow::changeEvent(QEvent *event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && isVisible()) {
        QMetaObject::invokeMethod(_saving, &Saving::lookAgain, Qt::QueuedConnection);
    }
}

void SettingsWindow::dragEnterEvent(QDragEnterEvent *event) {
    if (event->source() == nullptr && _saving->isReadable() && !localPaths(*event->mimeData()).isEmpty()) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
}

void SettingsWindow::dropEvent(QDropEvent *event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // Later: a question may come up, and the program that the files come from waits until the drop is done.
    QMetaObject::invokeMethod(
        this, [this, paths = localPaths(*event->mimeData())] { openPaths(paths); }, Qt::QueuedConnection);
}

} // namespace orvane
