#include "window/Saving.h"

#include "window/MessageBar.h"
#include "window/Page.h"
#include "window/Sentences.h"

#include "platform/qt/QtText.h"
#include "presets/ORVPresetManager.h"

#include <QFileInfo>

#include <algorithm>

namespace orvane {

namespace {

/// Several notices in a row are one, in ms.
constexpr int NoticeDelay = 100;

QString titleOfKey(const std::string &key) {
    if (key == "label") {
        return translated("the label");
    }
    if (key == "directoryName") {
        return translated("the top folder's name");
    }
    if (key == "fileHierarchy") {
        return translated("the folders and files");
    }
    if (key == "scriptFile") {
        return translated("the script");
    }
    return QtTextOf(key);
}

QString shortText(const PropertyList &value) {
    return value.root().isString() ? QtIsolated(QtSingleLine(QtTextOf(value.root().string())).left(60)) : QString();
}

} // namespace

Saving::Saving(SettingsContext &context, const Bars &bars, QObject *parent) : QObject(parent), _context(context), _bars(bars) {
    _pause.setSingleShot(true);
    _notice.setSingleShot(true);
    _notice.setInterval(NoticeDelay);
    _unsaved.setSingleShot(true);
    _unsaved.setInterval(UnsavedDelay);
    _again.setSingleShot(true);
    _again.setInterval(Again);
    for (QTimer *timer : {&_pause, &_again}) {
        connect(timer, &QTimer::timeout, this, [this] { static_cast<void>(saveNow()); });
    }
    connect(&_unsaved, &QTimer::timeout, this, [this] { _keepUnsaved(); });
    connect(&_notice, &QTimer::timeout, this, [this] { lookAgain(); });
    connect(&_watcher, &QFileSystemWatcher::fileChanged, &_notice, qOverload<>(&QTimer::start));
    connect(&_watcher, &QFileSystemWatcher::directoryChanged, &_notice, qOverload<>(&QTimer::start));
    _context.notifications.addObserver(this, ORVPresetConfigurationChangedNotification,
                                       DistributedNotifications::Suspension::DeliverImmediately, [this] { _notice.start(); });
    _context.history.addObserver(*this);
}

Saving::~Saving() {
    _context.history.removeObserver(*this);
    _context.notifications.removeObserver(this, ORVPresetConfigurationChangedNotification);
}

/// A file that was replaced as a whole is another one, so that it has to be watched anew each time; its folder tells of that.
void Saving::_watch() {
    const QString file = QtTextOf(_context.paths.preferencesFile);
    const QString folder = QFileInfo(file).path();
    const QStringList watched = _watcher.files() + _watcher.directories();
    for (const QString &path : {file, folder}) {
        if (!watched.contains(path) && QFileInfo::exists(path)) {
            _watcher.addPath(path);
        }
    }
}

void Saving::start() {
    _isBusy = true;
    const SettingsStore::Outcome outcome = _context.store.load();
    _isBusy = false;
    _show(Task::Reload, outcome);
    _offerRecovery();
    _watch();
}

void Saving::lookAgain() {
    _watch();
    _show(Task::Reload, _run(Task::Reload));
}

bool Saving::saveNow() {
    _pause.stop();
    _sinceFirstEdit.invalidate();
    if (!isReadable() || !_context.store.isModified()) {
        _again.stop();
        _unsaved.stop();
        return !isReadable() || _context.store.updateRecovery(); // what was undone is unsaved no more
    }
    const SettingsStore::Outcome outcome = _run(Task::Save);
    _show(Task::Save, outcome);
    _watch();
    _unsaved.stop(); // either way it stands in a file now
    const bool isSaved = outcome == SettingsStore::Outcome::Done || outcome == SettingsStore::Outcome::Unchanged;
    return isSaved || _context.store.updateRecovery();
}

SettingsStore::Outcome Saving::_run(Task task) {
    _isBusy = true;
    SettingsStore::Outcome outcome = SettingsStore::Outcome::Unchanged;
    switch (task) {
    case Task::Save:
        outcome = _context.store.save();
        break;
    case Task::Reload:
        outcome = _context.store.reload();
        break;
    case Task::Recover:
        outcome = _context.store.recover();
        break;
    }
    _isBusy = false;
    return outcome;
}

void Saving::historyDidChange() {
    Q_EMIT modifiedChanged();
    if (_isBusy) {
        return;
    }
    if (!_unsaved.isActive()) {
        _unsaved.start();
    }
    if (!_context.store.isModified()) {
        return;
    }
    if (!_sinceFirstEdit.isValid()) {
        _sinceFirstEdit.start();
    }
    const auto left = static_cast<int>(std::max<qint64>(0, Longest - _sinceFirstEdit.elapsed()));
    _pause.start(std::min(Delay, left));
}

/// What a crash must not take away. Never more than a tenth of the time goes into it, however much there is to write.
void Saving::_keepUnsaved() {
    QElapsedTimer clock;
    clock.start();
    static_cast<void>(_context.store.updateRecovery()); // where it cannot be written, saving says what is wrong
    _unsaved.setInterval(std::max(UnsavedDelay, static_cast<int>(clock.elapsed()) * 10));
}

/// Other programs hold the preferences for some milliseconds as a rule, which nobody needs to hear of.
void Saving::_waitForOthers() {
    if (!_heldUp.isValid()) {
        _heldUp.start();
    }
    _again.start();
    const QString text = translated("Another program holds the preferences. Your changes are saved as soon as it lets go.");
    if (_heldUp.elapsed() >= Unnoticed && _bars.file.text() != text) {
        _bars.file.say(MessageBar::Kind::Warning, text, {}, false);
    }
}

void Saving::_show(Task task, SettingsStore::Outcome outcome) {
    using Outcome = SettingsStore::Outcome;
    if (task == Task::Save && outcome != Outcome::InUse && _heldUp.isValid()) {
        _heldUp.invalidate();
        _again.stop();
        if (outcome == Outcome::Done || outcome == Outcome::Unchanged) {
            QMetaObject::invokeMethod(this, &Saving::heldUpEnded, Qt::QueuedConnection);
        }
    }
    switch (outcome) {
    case Outcome::Done:
    case Outcome::Unchanged:
        if (!_heldUp.isValid()) {
            _bars.file.clear();
        }
        _bars.conflict.clear();
        if (_context.store.isModified() && task != Task::Save && !_pause.isActive()) {
            _pause.start(Delay);
        }
        break;
    case Outcome::Conflicts:
        _asking = task;
        _askConflict(0);
        break;
    case Outcome::Unreadable:
        _showUnreadable();
        break;
    case Outcome::InUse:
        _waitForOthers();
        break;
    case Outcome::Failed:
        _bars.file.say(MessageBar::Kind::Error,
                       translated("Your changes are not saved. %1").arg(translatedSentence(_context.store.problem())),
                       {{translated("Try Aga&in"), [this] { static_cast<void>(saveNow()); }, "trySavingAgain"}}, false);
        break;
    }
    if (isReadable() != _wasReadable) {
        _wasReadable = isReadable();
        Q_EMIT readabilityChanged(_wasReadable);
        if (_wasReadable) {
            _offerRecovery();
        }
    }
}

void Saving::_showUnreadable() {
    const QString path = QtTextOf(_context.paths.preferencesFile);
    const QString text = translatedSentence(_context.store.problem()) + u'\n' + path;
    if (_bars.file.text() == text) {
        return; // a button of it may have the keyboard
    }
    const auto openFolder = [this, path] {
        if (!_context.workspace.openFile(QtUtf8Of(QFileInfo(path).path()))) {
            _context.showMessage(translated("%1 cannot be opened.").arg(QFileInfo(path).path()), true);
        }
    };
    _bars.file.say(
        MessageBar::Kind::Error, text,
        {{translated("Show in &Folder"), openFolder, "showUnreadable"}, {translated("Read A&gain"), [this] { lookAgain(); }, "readAgain"}},
        false);
}

// Conflicts ----------------------------------------------------------------------------------------------------------------

QString Saving::_question(const MergeConflict &conflict) const {
    const QString label = QtIsolated(QtSingleLine(QtTextOf(conflict.label)));
    switch (conflict.kind) {
    case MergeConflict::Kind::PresetDeletedHere:
        return translated("“%1” was deleted here and changed by another program.").arg(label);
    case MergeConflict::Kind::PresetDeletedThere:
        return translated("“%1” was changed here and deleted by another program.").arg(label);
    case MergeConflict::Kind::PresetOrder:
        return translated("The presets were put into another order here and by another program.");
    case MergeConflict::Kind::Setting:
        return translated("A setting was changed here and by another program: %1.").arg(QtTextOf(conflict.key));
    case MergeConflict::Kind::PresetValue:
        break;
    }
    const QString question = translated("In “%1”, %2 was changed here and by another program.").arg(label, titleOfKey(conflict.key));
    const QString mine = shortText(conflict.mine);
    const QString theirs = shortText(conflict.theirs);
    return mine.isEmpty() && theirs.isEmpty() ? question : question + u'\n' + translated("Here: “%1”. There: “%2”.").arg(mine, theirs);
}

void Saving::_askConflict(std::size_t number) {
    const auto &conflicts = _context.store.conflicts();
    if (number >= conflicts.size()) {
        const Task task = _asking;
        const SettingsStore::Outcome outcome = _run(task);
        _show(task, outcome);
        if (task == Task::Recover && outcome == SettingsStore::Outcome::Done) {
            _offerRecovery();
        }
        return;
    }
    std::vector<MessageBar::Choice> choices{
        {translated("Keep Mi&ne"), [this, number] { _decide(number, MergeSide::Mine, false); }, "keepMine"},
        {translated("Take T&heirs"), [this, number] { _decide(number, MergeSide::Theirs, false); }, "takeTheirs"}};
    if (conflicts.size() - number > 1) {
        choices.push_back({translated("Keep All Mine"), [this, number] { _decide(number, MergeSide::Mine, true); }, "keepAllMine"});
    }
    QString text = _question(conflicts[number]);
    if (conflicts.size() > 1) {
        text += u'\n' + translated("%1 of %2").arg(number + 1).arg(conflicts.size());
    }
    _bars.conflict.say(MessageBar::Kind::Warning, text, std::move(choices), false);
}

void Saving::_decide(std::size_t number, MergeSide side, bool forAll) {
    const std::size_t count = _context.store.conflicts().size();
    for (std::size_t i = number; i < (forAll ? count : number + 1); ++i) {
        _context.store.decide(i, side);
    }
    _askConflict(forAll ? count : number + 1);
}

// Unsaved edits of an earlier run --------------------------------------------------------------------------------------------

void Saving::_offerRecovery() {
    if (!_context.store.offersRecovery() || !isReadable()) {
        return _bars.recovery.clear();
    }
    const auto restore = [this] {
        const SettingsStore::Outcome outcome = _run(Task::Recover);
        _show(Task::Recover, outcome);
        if (outcome != SettingsStore::Outcome::Conflicts) {
            _offerRecovery();
        }
    };
    const auto discard = [this] {
        _context.store.discardRecovery();
        _offerRecovery();
    };
    _bars.recovery.say(MessageBar::Kind::Note, translated("The program ended before it could save your last changes."),
                       {{translated("Restore Chan&ges"), restore, "restoreEdits"}, {translated("&Discard Them"), discard, "discardEdits"}},
                       false);
}

} // namespace orvane
