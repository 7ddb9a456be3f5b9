#include "window/ScriptPanel.h"

#include "window/ElidedLabel.h"
#include "window/Hints.h"
#include "window/Icons.h"
#include "window/Page.h"
#include "window/ProblemText.h"
#include "window/Sentences.h"

#include "platform/qt/QtText.h"
#include "presets/ORVPresetManager.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QUrl>
#include <QVBoxLayout>

#include <chrono>

namespace orvane {

namespace {

using namespace std::chrono_literals;

/// The one local file that is dragged; empty for anything else.
QString draggedFile(const QMimeData &data) {
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 && urls.front().isLocalFile() && QFileInfo(urls.front().toLocalFile()).isFile() ? urls.front().toLocalFile()
                                                                                                            : QString();
}

} // namespace

ScriptPanel::ScriptPanel(SettingsContext &context, QWidget *parent)
    : QWidget(parent), _context(context), _trial(this), _ui_name(new ElidedLabel(this)),
      _ui_choose(new QPushButton(translated("&Choose…"), this)), _ui_open(new QPushButton(translated("&Open"), this)),
      _ui_remove(new QPushButton(translated("Re&move from Preset"), this)),
      _ui_problem(new InlineMessage(QStringLiteral("scriptProblem"), this)),
      _ui_makeExecutable(new QPushButton(translated("Make E&xecutable"), this)), _ui_test(new QPushButton(this)),
      _ui_showFolder(new QPushButton(translated("Show &Folder"), this)),
      _ui_result(new InlineMessage(QStringLiteral("scriptResult"), this)), _ui_output(new QPlainTextEdit(this)) {
    setObjectName(QStringLiteral("scriptPanel"));
    setAcceptDrops(true);
    _layOut();
    _connect();
    _context.presets.addObserver(*this);
    _refresh();
}

ScriptPanel::~ScriptPanel() {
    _context.presets.removeObserver(*this);
}

void ScriptPanel::_layOut() {
    _ui_name->setObjectName(QStringLiteral("scriptName"));
    _ui_name->setTextInteractionFlags(Qt::TextSelectableByMouse);
    _ui_choose->setObjectName(QStringLiteral("chooseScriptButton"));
    _ui_open->setObjectName(QStringLiteral("openScript"));
    _ui_open->setToolTip(translated("Open the script in your editor"));
    _ui_remove->setObjectName(QStringLiteral("removeScript"));
    _ui_remove->setToolTip(translated("New folders run no script; the file stays in the scripts folder"));
    _ui_makeExecutable->setObjectName(QStringLiteral("makeScriptExecutable"));
    _ui_test->setObjectName(QStringLiteral("testScript"));
    _ui_test->setToolTip(translated("Make a folder with sample values in a temporary place and run the script on it"));
    _ui_showFolder->setObjectName(QStringLiteral("showTestFolder"));
    _ui_output->setObjectName(QStringLiteral("scriptOutput"));
    _ui_output->setAccessibleName(translated("Output of the script"));
    _ui_output->setReadOnly(true);
    _ui_output->setTabChangesFocus(true);
    _ui_output->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    _ui_output->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    _ui_output->setMinimumHeight(5 * _ui_output->fontMetrics().lineSpacing());
    _ui_output->hide();

    // Two in a row, so that they stand beside each other in a narrow panel, too.
    auto *const buttons = new QGridLayout;
    buttons->addWidget(_ui_choose, 0, 0);
    buttons->addWidget(_ui_open, 0, 1);
    buttons->addWidget(_ui_remove, 1, 0, 1, 2, Qt::AlignLeft);
    buttons->addWidget(_ui_makeExecutable, 2, 0, 1, 2, Qt::AlignLeft);
    buttons->setColumnStretch(2, 1);
    auto *const test = new QHBoxLayout;
    test->addWidget(_ui_test);
    test->addWidget(_ui_showFolder);
    test->addStretch();
    // At the top, whatever comes up below: the button that starts the test is the one to stop it, and stays under the pointer.
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    auto *const form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    column->addLayout(form);
    column->addWidget(_ui_output, 1000); // nearly all of the room once it is shown
    column->addStretch(1);
    auto *const label = new QLabel(translated("Script:"), this);
    label->setBuddy(_ui_choose);
    form->addRow(label, _ui_name);
    form->addRow(QString(), _ui_problem);
    form->addRow(QString(), buttons);
    auto *const testLabel = new QLabel(translated("Test:"), this);
    testLabel->setBuddy(_ui_test);
    form->addRow(testLabel, test);
    form->addRow(QString(), _ui_result);
}

void ScriptPanel::_connect() {
    connect(_ui_choose, &QPushButton::clicked, this, [this] { _choose(); });
    connect(_ui_open, &QPushButton::clicked, this, [this] { _open(); });
    connect(_ui_remove, &QPushButton::clicked, this, [this] { _remove(); });
    connect(_ui_makeExecutable, &QPushButton::clicked, this, [this] { _makeExecutable(); });
    connect(_ui_test, &QPushButton::clicked, this, [this] { isTesting() ? _trial.stop() : _startTest(); });
    connect(_ui_showFolder, &QPushButton::clicked, this, [this] { (void)_context.workspace.openFile(QtUtf8Of(_trial.folder())); });
    _seconds.setInterval(1s);
    connect(&_seconds, &QTimer::timeout, this, [this] { _refreshTest(); });
    _trial.stateDidChange = [this] { _refreshTest(); };
    _trial.wrote = [this](const QString &text, bool isError) { _append(text, isError); };
    _trial.finished = [this](const ScriptTrial::Result &result) { _testEnded(result); };
}

// The script ----------------------------------------------------------------------------------------------------------

bool ScriptPanel::_isEditable() const {
    return _preset != NoItem && _context.presets.isEditable(_preset);
}

std::string ScriptPanel::_script() const {
    return _isEditable() ? _context.presets.text(_preset, "scriptFile") : std::string();
}

QString ScriptPanel::_path() const {
    return QtTextOf(_context.contents.pathOfScript(_script()));
}

void ScriptPanel::setPreset(ItemID preset) {
    if (preset == _preset) {
        return;
    }
    _trial.stop();
    _preset = preset;
    _ui_result->clear();
    _ui_output->clear();
    _ui_output->hide();
    _refresh();
}

void ScriptPanel::takeScript(const QString &path) {
    if (!_isEditable()) {
        return;
    }
    Sentence problem;
    const auto name = _context.contents.addScript(QtUtf8Of(path), problem);
    if (!name) {
        _ui_problem->say(InlineMessage::Kind::Error, translated("“%1” cannot be taken: %2").arg(path, translatedSentence(problem)));
        return;
    }
    _context.resourcesDidChange();
    _context.presets.setScript(_preset, *name);
    _refresh();
}

void ScriptPanel::_choose() {
    auto *const dialog = new QFileDialog(this, translated("Choose a Script"));
    dialog->setObjectName(QStringLiteral("chooseScript"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    const QString folder = QFileInfo(_path()).path();
    dialog->setDirectory(QDir(folder).exists() ? folder : QDir::homePath());
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) { takeScript(path); });
    dialog->open();
}

void ScriptPanel::_open() {
    if (!_context.workspace.openFile(QtUtf8Of(_path()))) {
        _ui_problem->say(InlineMessage::Kind::Error, translated("No program was found that opens “%1”.").arg(_ui_name->text()));
    }
}

void ScriptPanel::_remove() {
    _context.presets.setScript(_preset, "");
    _ui_choose->setFocus();
}

void ScriptPanel::_makeExecutable() {
    takeScript(_path()); // one that is there already is made executable, nothing else
}

void ScriptPanel::_refresh() {
    const std::string script = _script();
    const QFileInfo file(_path());
    const bool hasScript = !script.empty();
    const bool isThere = hasScript && file.isFile();
    const bool isExecutable = isThere && file.isExecutable();
    _ui_name->setText(hasScript ? QtSingleLine(QtTextOf(script)) : translated("None"));
    showAsHint(*_ui_name, !hasScript);
    _ui_name->setToolTip(hasScript ? file.filePath() : QString());
    _ui_choose->setEnabled(_isEditable());
    _ui_open->setEnabled(isThere);
    _ui_remove->setEnabled(hasScript);
    _ui_makeExecutable->setVisible(isThere && !isExecutable);
    QString problem;
    if (hasScript && !isThere) {
        problem = translated("There is no such file in the scripts folder. Choose it again, or remove it from the preset.");
    } else if (isThere && !isExecutable) {
        problem = translated("The script is not executable, so it would not run.");
    }
    _ui_problem->say(InlineMessage::Kind::Error, problem);
    if (isExecutable) {
        _sayWhatTheCheckerSays();
    }
    _refreshTest();
}

void ScriptPanel::_sayWhatTheCheckerSays() {
    for (const DocumentProblem &each : _context.problems.problemsOfPreset(_preset)) {
        if (each.item == _preset && each.key == "scriptFile") {
            _ui_problem->say(each.problem.severity == ORVProblemSeverity::Error ? InlineMessage::Kind::Error : InlineMessage::Kind::Warning,
                             textOfProblem(each.problem));
            return;
        }
    }
}

void ScriptPanel::itemsWereRemoved(ItemID, std::size_t, std::size_t) {
    if (_preset != NoItem && !_context.presets.contains(_preset)) {
        setPreset(NoItem);
    }
}

void ScriptPanel::itemDidChange(ItemID item, std::string_view key) {
    if (item == _preset && key == "scriptFile") {
        _refresh();
    }
}

void ScriptPanel::showEvent(QShowEvent *event) {
    _refresh();
    QWidget::showEvent(event);
}

void ScriptPanel::changeEvent(QEvent *event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        _refresh(); // the file may have been changed in another program
    }
    QWidget::changeEvent(event);
}

void ScriptPanel::dragEnterEvent(QDragEnterEvent *event) {
    if (event->source() == nullptr && _isEditable() && !draggedFile(*event->mimeData()).isEmpty()) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }
}

void ScriptPanel::dropEvent(QDropEvent *event) {
    takeScript(draggedFile(*event->mimeData()));
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

// The test run --------------------------------------------------------------------------------------------------------

void ScriptPanel::_startTest() {
    for (const DocumentProblem &problem : _context.problems.problemsOfPreset(_preset)) {
        if (problem.problem.neverEnds) {
            _ui_result->say(InlineMessage::Kind::Error,
                            translated("A name in this preset keeps every creation from ever ending, this test too."));
            return;
        }
    }
    _ui_output->clear();
    _ui_result->clear();
    _tested = _preset;
    TrialRequest request;
    request.preset = _context.presets.record(_preset);
    request.rows = _context.preview.rowsOfPreset(_preset);
    request.supportFolder = _context.paths.supportFolder;
    _trial.start(std::move(request));
}

void ScriptPanel::_append(const QString &text, bool isError) {
    if (_tested != _preset) {
        return; // another preset's last words
    }
    _ui_output->show();
    QTextCursor end(_ui_output->document());
    end.movePosition(QTextCursor::End);
    QTextCharFormat format;
    if (isError) {
        format.setForeground(errorColor(_ui_output->palette()));
    }
    end.insertText(text, format);
    _ui_output->ensureCursorVisible();
}

void ScriptPanel::_testEnded(const ScriptTrial::Result &result) {
    if (_tested != _preset) {
        return;
    }
    const QString seconds = QLocale().toString(static_cast<double>(result.duration.count()) / 1000.0, 'f', 2);
    using Kind = InlineMessage::Kind;
    switch (result.end) {
    case ScriptTrial::End::Failed:
        _ui_result->say(Kind::Error, result.problem);
        return;
    case ScriptTrial::End::Stopped:
        _ui_result->say(Kind::Note, translated("Stopped after %1 s.").arg(seconds));
        return;
    case ScriptTrial::End::Signalled:
        _ui_result->say(Kind::Error, translated("Ended by signal %1 after %2 s.").arg(result.status).arg(seconds));
        return;
    case ScriptTrial::End::Exited:
        break;
    }
    if (result.status != 0) {
        _ui_result->say(Kind::Error,
                        translated("Exit status %1 after %2 s: the helper would report an error.").arg(result.status).arg(seconds));
    } else if (result.duration > std::chrono::seconds(ORVPostflightTimeout)) {
        _ui_result->say(Kind::Warning,
                        translated("Exit status 0 after %1 s, but the helper only waits for %2 s.").arg(seconds).arg(ORVPostflightTimeout));
    } else if (result.mostBytes > ScriptTrial::BytesOfPipe) {
        _ui_result->say(
            Kind::Warning,
            translated("Exit status 0 after %1 s, but it writes more than %2 KiB: under the helper it would not come to its end.")
                .arg(seconds)
                .arg(ScriptTrial::BytesOfPipe / 1024));
    } else {
        _ui_result->say(Kind::Note, translated("Exit status 0 after %1 s.").arg(seconds));
    }
}

void ScriptPanel::_refreshTest() {
    const bool tests = isTesting();
    const QFileInfo file(_path());
    _ui_test->setText(tests ? translated("&Stop") : translated("Te&st Run"));
    _ui_test->setEnabled(tests || (!_script().empty() && file.isFile() && file.isExecutable()));
    _ui_showFolder->setVisible(!tests && _tested == _preset && !_trial.folder().isEmpty());
    if (_tested != _preset) {
        // nothing to say of another preset's
    } else if (_trial.state() == ScriptTrial::State::Making) {
        _ui_result->say(InlineMessage::Kind::Hint, translated("Making a folder for the test…"));
    } else if (tests) {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(_trial.elapsed()).count();
        _ui_result->say(InlineMessage::Kind::Hint, translated("Running for %1 s…").arg(seconds));
    }
    tests ? _seconds.start() : _seconds.stop();
}

} // namespace orvane
