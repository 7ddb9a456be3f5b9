#include "window/GeneralPage.h"

#include "window/LogView.h"
#include "window/Page.h"
#include "window/PathLabel.h"

#include "platform/qt/QtText.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvane {

namespace {

/// Room between two groups of rows.
void addGap(QFormLayout &form) {
    auto *const gap = new QWidget;
    gap->setFixedHeight(PageSpacing / 2);
    form.addRow(gap);
}

} // namespace

GeneralPage::GeneralPage(SettingsContext &context, QWidget *parent)
    : GeneralPage(context, HotKeyField::wayOfSession(context.hotKeyEvents != nullptr), parent) {}

GeneralPage::GeneralPage(SettingsContext &context, HotKeyField::Way way, QWidget *parent)
    : QWidget(parent), _context(context), _ui_showInMenuBar(new QCheckBox(translated("Show in the &menu bar"), this)),
      _ui_startAtLogin(new QCheckBox(translated("Start &at login"), this)),
      _ui_menuBarHint(new InlineMessage(QStringLiteral("menuBarHint"), this)),
      _ui_loginProblem(new InlineMessage(QStringLiteral("loginProblem"), this)), _ui_hotKey(new HotKeyField(context, way, this)),
      _ui_placeProblem(new InlineMessage(QStringLiteral("placeProblem"), this)) {
    setObjectName(QStringLiteral("generalPage"));
    auto *const form = new QFormLayout(this);
    form->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    _addSwitches(*form);
    addGap(*form);
    auto *const shortcut = new QLabel(translated("&Shortcut:"), this);
    shortcut->setBuddy(&_ui_hotKey->recorder());
    form->addRow(shortcut, _ui_hotKey);
    addGap(*form);
    _addPlaces(*form);
    addGap(*form);
    _addLog(*form);
    _context.general.addObserver(*this);
    _refresh();
}

GeneralPage::~GeneralPage() {
    _context.general.removeObserver(*this);
}

void GeneralPage::_addSwitches(QFormLayout &form) {
    _ui_showInMenuBar->setObjectName(QStringLiteral("showInMenuBar"));
    _ui_startAtLogin->setObjectName(QStringLiteral("startAtLogin"));
    form.addRow(translated("Preset menu:"), _ui_showInMenuBar);
    form.addRow(QString(), _ui_menuBarHint);
    form.addRow(QString(), _ui_startAtLogin);
    form.addRow(QString(), _ui_loginProblem);
    connect(_ui_showInMenuBar, &QCheckBox::clicked, this, [this](bool shows) { _context.general.setShowsMenubar(shows); });
    connect(_ui_startAtLogin, &QCheckBox::clicked, this, [this](bool starts) { _setStartsAtLogin(starts); });
}

void GeneralPage::_setStartsAtLogin(bool starts) {
    const bool isStored = _context.general.setStartsAtLogin(starts);
    _ui_loginProblem->say(
        InlineMessage::Kind::Error,
        isStored ? QString() : translated("This could not be stored: the folder for programs that start at login cannot be written to."));
    _refresh();
}

void GeneralPage::_addPlaces(QFormLayout &form) {
    const QString support = QtTextOf(_context.paths.supportFolder);
    _addPlace(form, translated("Preferences:"), QtTextOf(_context.paths.preferencesFile), "preferences", true);
    _addPlace(form, translated("Scripts:"), support + QStringLiteral("/Scripts"), "scripts", false);
    _addPlace(form, translated("File contents:"), support + QStringLiteral("/File Content"), "contents", false);
    form.addRow(QString(), _ui_placeProblem);
}

void GeneralPage::_addPlace(QFormLayout &form, const QString &title, const QString &path, const char *name, bool isFile) {
    auto *const row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    auto *const button = new QPushButton(translated("Show"), this);
    button->setObjectName(QLatin1String(name) + QStringLiteral("Show"));
    button->setAccessibleName(translated("Show %1").arg(path));
    button->setToolTip(translated("Open the folder in the file manager"));
    auto *const where = new PathLabel(path, this);
    where->setObjectName(QLatin1String(name) + QStringLiteral("Path"));
    row->addWidget(where, 1);
    row->addWidget(button);
    auto *const label = new QLabel(title, this);
    label->setBuddy(button);
    form.addRow(label, row);
    connect(button, &QPushButton::clicked, this, [this, path, isFile] { _showPlace(path, isFile); });
}

void GeneralPage::_showPlace(const QString &path, bool isFile) {
    const QString folder = isFile ? QFileInfo(path).path() : path;
    // Folders of our own that nothing was put into yet are made: the user may want to.
    const bool opened = QDir().mkpath(folder) && _context.workspace.openFile(QtUtf8Of(folder));
    _ui_placeProblem->say(InlineMessage::Kind::Error, opened ? QString() : translated("The folder “%1” cannot be opened.").arg(folder));
}

void GeneralPage::_addLog(QFormLayout &form) {
    const QString path = QtTextOf(_context.paths.stateFolder) + QStringLiteral("/log");
    auto *const view = new LogView(path, this);
    view->setObjectName(QStringLiteral("log"));
    view->setAccessibleName(translated("Log"));
    auto *const open = new QPushButton(translated("&Open Log"), this);
    open->setObjectName(QStringLiteral("openLog"));
    auto *const column = new QVBoxLayout;
    column->addWidget(view, 1);
    column->addWidget(open, 0, Qt::AlignLeft);
    auto *const label = new QLabel(translated("&Log:"), this);
    label->setBuddy(view);
    form.addRow(label, column);
    connect(open, &QPushButton::clicked, this, [this, path] {
        const bool opened = QFileInfo::exists(path) && _context.workspace.openFile(QtUtf8Of(path));
        _ui_placeProblem->say(InlineMessage::Kind::Error, opened ? QString() : translated("The log “%1” cannot be opened.").arg(path));
    });
}

void GeneralPage::generalSettingsDidChange() {
    _refresh();
}

void GeneralPage::_refresh() {
    const bool shows = _context.general.showsMenubar();
    _ui_showInMenuBar->setChecked(shows);
    _ui_menuBarHint->say(InlineMessage::Kind::Hint,
                         shows ? QString()
                               : translated("The menu still comes up with the shortcut, with “orvane menu”, and in file managers."));
    _ui_startAtLogin->setChecked(_context.general.startsAtLogin());
}

void GeneralPage::showEvent(QShowEvent *event) {
    _refresh(); // whether it starts at login may have been changed in the desktop's own settings
    QWidget::showEvent(event);
}

} // namespace orvane
