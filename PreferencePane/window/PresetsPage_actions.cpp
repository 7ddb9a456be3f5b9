#include "window/PresetsPage.h"

#include "window/DraggedPresets.h"
#include "window/FolderContents.h"
#include "window/Icons.h"
#include "window/LastFolder.h"
#include "window/Page.h"
#include "window/PresetEditor.h"
#include "window/PresetListModel.h"
#include "window/Sentences.h"

#include "platform/qt/QtText.h"
#include "presets/ORVPresetFile.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QListView>
#include <QMenu>

#include <algorithm>

namespace orvane {

namespace {

constexpr std::size_t Last = SIZE_MAX;
/// Larger files are no ready-made presets of ours.
constexpr qint64 MostBytes = 16 << 20;

std::string pathOf(const QString &path) {
    return QFile::encodeName(path).toStdString();
}

/// The label in a preset file; empty when it is none.
QString labelOfFile(const QString &path, PropertyListTextForm &form) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > MostBytes) {
        return {};
    }
    Sentence why;
    const auto document = form.read(file.readAll().toStdString());
    const auto packed = document ? ORVUnpackPreset(*document, why) : std::nullopt;
    const PropertyListValue *label = packed ? packed->preset.root().find("label") : nullptr;
    return label == nullptr ? QString() : QtTextOf(label->string());
}

} // namespace

QAction *PresetsPage::_makeAction(const char *text, const QKeySequence &shortcut, const char *name, bool isForWindow,
                                  void (PresetsPage::*run)()) {
    auto *const action = new QAction(translated(text), this);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(shortcut);
    action->setShortcutContext(isForWindow ? Qt::WindowShortcut : Qt::WidgetShortcut);
    connect(action, &QAction::triggered, this, run);
    if (isForWindow) {
        addAction(action);
    }
    _ui_list->addAction(action);
    return action;
}

void PresetsPage::_makeActions() {
    _actions.add = _makeAction(QT_TRANSLATE_NOOP("Orvane", "&New Preset"), QKeySequence::New, "newPreset", true, &PresetsPage::_addPreset);
    _actions.rename =
        _makeAction(QT_TRANSLATE_NOOP("Orvane", "&Rename"), QKeySequence(Qt::Key_F2), "renamePreset", false, &PresetsPage::_renamePreset);
    _actions.duplicate = _makeAction(QT_TRANSLATE_NOOP("Orvane", "&Duplicate"), QKeySequence(Qt::CTRL | Qt::Key_D), "duplicatePreset",
                                     false, &PresetsPage::_duplicate);
    _actions.remove =
        _makeAction(QT_TRANSLATE_NOOP("Orvane", "De&lete"), QKeySequence(Qt::Key_Delete), "deletePreset", false, &PresetsPage::_remove);
    _actions.moveUp = _makeAction(QT_TRANSLATE_NOOP("Orvane", "Move &Up"), QKeySequence(Qt::ALT | Qt::Key_Up), "movePresetUp", false,
                                  &PresetsPage::_moveUp);
    _actions.moveDown = _makeAction(QT_TRANSLATE_NOOP("Orvane", "Move Do&wn"), QKeySequence(Qt::ALT | Qt::Key_Down), "movePresetDown",
                                    false, &PresetsPage::_moveDown);
    _actions.importFolder =
        _makeAction(QT_TRANSLATE_NOOP("Orvane", "&Import Folder…"), {}, "importFolder", true, &PresetsPage::_importFolder);
    _actions.addFile =
        _makeAction(QT_TRANSLATE_NOOP("Orvane", "Add Preset &File…"), QKeySequence::Open, "addPresetFile", true, &PresetsPage::_addFile);
    _actions.exportFile = _makeAction(QT_TRANSLATE_NOOP("Orvane", "&Export…"), QKeySequence(Qt::CTRL | Qt::Key_E), "exportPreset", true,
                                      &PresetsPage::_exportFile);
    _actions.tryIt =
        _makeAction(QT_TRANSLATE_NOOP("Orvane", "&Try It"), QKeySequence(Qt::CTRL | Qt::Key_T), "tryPreset", true, &PresetsPage::_tryIt);
    _actions.add->setIcon(iconFor(Icon::Add));
    _actions.duplicate->setIcon(iconFor(Icon::Duplicate));
    _actions.remove->setIcon(iconFor(Icon::Delete));
    _actions.tryIt->setIcon(iconFor(Icon::Play));
}

void PresetsPage::_fillReadyMadeMenu() {
    _readyMadeMenu->clear();
    const QString folder = QtTextOf(_context.paths.resourceFolder) + QStringLiteral("/presets");
    for (const QFileInfo &preset : QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString path = preset.filePath() + u'/' + preset.fileName() + QStringLiteral(".orvpreset");
        const QString label = labelOfFile(path, _context.form);
        if (!label.isEmpty()) {
            QAction *const action = _readyMadeMenu->addAction(iconFor(Icon::Folder), QString(label).replace(u'&', QStringLiteral("&&")));
            connect(action, &QAction::triggered, this, [this, path] { addPaths({path}); });
        }
    }
    if (!_readyMadeMenu->isEmpty()) {
        _readyMadeMenu->addSeparator();
    }
    _readyMadeMenu->addActions({_actions.importFolder, _actions.addFile});
}

void PresetsPage::_addPreset() {
    const ItemID current = currentPreset();
    const std::size_t at = current == NoItem ? Last : _context.presets.indexOf(current) + 1;
    const std::string label = _context.presets.freeLabel(QtUtf8Of(translated("New Preset")));
    const ItemID made = _context.presets.addPreset(at, label, QtUtf8Of(translated("{Name}")));
    selectPreset(made);
    _ui_editor->editLabel();
}

void PresetsPage::_importFolder() {
    const QString path = QFileDialog::getExistingDirectory(this, translated("Import Folder"), LastFolder::path());
    LastFolder::note(path);
    if (!path.isEmpty()) {
        addPaths({path});
    }
}

void PresetsPage::_addFile() {
    const QStringList paths = QFileDialog::getOpenFileNames(this, translated("Add Preset File"), LastFolder::path(),
                                                            translated("Orvane presets (*.orvpreset);;All files (*)"));
    if (!paths.isEmpty()) {
        LastFolder::note(paths.front());
        addPaths(paths);
    }
}

void PresetsPage::_addPath(const QString &path, std::size_t index) {
    Sentence problem;
    std::optional<IncomingPreset> incoming;
    const bool isFolder = QFileInfo(path).isDir();
    if (isFolder) {
        const FolderTaking taking = takingOfFolder(path, this);
        if (taking == FolderTaking::Nothing) {
            return;
        }
        FolderImportRequest request;
        request.folder = pathOf(path);
        request.withContent = taking == FolderTaking::WithContents;
        incoming = _context.contents.importFolder(request, problem);
    } else {
        incoming = _context.contents.readPresetFile(pathOf(path), problem);
    }
    if (!incoming) {
        return _context.showMessage(translated("%1 cannot be added: %2").arg(path, translatedSentence(problem)), true);
    }
    const ItemID made = _context.presets.insertPreset(incoming->preset, index, isFolder ? "Import Folder" : "Add Preset File");
    _context.resourcesDidChange();
    selectPreset(made);
    QStringList notes;
    for (const Sentence &warning : incoming->warnings) {
        notes.append(QtSingleLine(translatedSentence(warning)));
    }
    if (!incoming->script.empty()) {
        const QString title = QtTextOf(_context.presets.title(made));
        notes.append(translated("“%1” brings a script along, “%2”, which will run after each creation.")
                         .arg(QtIsolated(QtSingleLine(title)), QtIsolated(QtSingleLine(QtTextOf(incoming->script)))));
    }
    if (!notes.isEmpty()) {
        _context.showMessage(notes.mid(0, 4).join(u'\n'), !incoming->warnings.empty());
    }
}

void PresetsPage::addPaths(const QStringList &paths, int row) {
    std::size_t at = row < 0 ? Last : static_cast<std::size_t>(row);
    for (const QString &path : paths) {
        const std::size_t before = _context.presets.numberOfPresets();
        _addPath(path, at);
        at = at == Last ? Last : at + (_context.presets.numberOfPresets() - before);
    }
}

void PresetsPage::_exportFile() {
    const ItemID preset = currentPreset();
    if (preset == NoItem) {
        return;
    }
    QString path = QFileDialog::getSaveFileName(this, translated("Export Preset"),
                                                LastFolder::path() + u'/' + fileNameOfPreset(QtTextOf(_context.presets.title(preset))),
                                                translated("Orvane presets (*.orvpreset)"));
    LastFolder::note(path);
    if (path.isEmpty()) {
        return;
    }
    if (QFileInfo(path).suffix().isEmpty()) {
        path += QStringLiteral(".orvpreset");
    }
    Sentence problem;
    std::vector<Sentence> warnings;
    // The file dialogue has asked whether an existing file is to be replaced.
    if (!_context.contents.writePresetFile(_context.presets.record(preset), pathOf(path), true, warnings, problem)) {
        return _context.showMessage(translated("The preset cannot be exported: %1").arg(translatedSentence(problem)), true);
    }
    const QString done = translated("Exported to %1").arg(path);
    _context.showMessage(warnings.empty() ? done : done + u'\n' + QtSingleLine(translatedSentence(warnings.front())), !warnings.empty());
}

void PresetsPage::_renamePreset() {
    if (_ui_list->currentIndex().isValid()) {
        _ui_list->edit(_ui_list->currentIndex());
    }
}

void PresetsPage::_duplicate() {
    _select(_context.presets.duplicatePresets(_selected()));
}

void PresetsPage::_remove() {
    const std::vector<ItemID> presets = _selected();
    if (presets.empty()) {
        return;
    }
    const std::size_t first = _context.presets.indexOf(presets.front());
    _context.presets.removePresets(presets);
    const std::size_t left = _context.presets.numberOfPresets();
    if (left > 0) {
        selectPreset(_context.presets.presetAt(std::min(first, left - 1)));
    } else {
        _showCurrent();
    }
}

void PresetsPage::_move(int direction) {
    const std::vector<ItemID> presets = _selected();
    if (presets.empty()) {
        return;
    }
    const std::size_t at = _context.presets.indexOf(direction < 0 ? presets.front() : presets.back());
    if (direction < 0 ? at > 0 : at + 1 < _context.presets.numberOfPresets()) {
        _context.presets.movePresets(presets, direction < 0 ? at - 1 : at + 2);
        _select(presets);
    }
}

void PresetsPage::_tryIt() {
    _ui_editor->tryPreset();
}

} // namespace orvane
