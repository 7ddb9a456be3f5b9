#include "window/ScriptTrial.h"

#include "window/Page.h"
#include "window/Sentences.h"

#include "platform/posix/PosixSpawning.h"
#include "platform/qt/QtText.h"

#include <QDir>
#include <QProcessEnvironment>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr auto PatienceAfterStop = 2s;

/// Runs in the child before the script does: only system calls here. The script gets what the helper gives.
void prepareChild() {
    PosixPrepareForkedChild();
    // So that what the script starts can be stopped with it. Last, so that no signal for it comes to this program's own handlers.
    ::setpgid(0, 0);
}

} // namespace

/// What the thread that makes the folder works with; nobody else does meanwhile.
struct ScriptTrial::Making {
    TrialRequest request;
    TrialCreation trial;
};

ScriptTrial::ScriptTrial(QObject *parent) : QObject(parent) {
    _patience.setSingleShot(true);
    _patience.setInterval(PatienceAfterStop);
    connect(&_patience, &QTimer::timeout, this, [this] { _kill(); });
}

ScriptTrial::~ScriptTrial() {
    if (_maker != nullptr) {
        // However long that takes: a thread left behind would go on with what is gone. It comes to its end, since a preset whose scan
        // never does is not tried.
        _maker->wait();
    }
    if (_process != nullptr) {
        _process->disconnect(this);
    }
    if (_process != nullptr || _patience.isActive()) {
        _kill();
    }
    if (_process != nullptr) {
        _process->waitForFinished();
    }
}

void ScriptTrial::start(TrialRequest request) {
    if (_state != State::Idle) {
        return;
    }
    if (_patience.isActive()) {
        _patience.stop();
        _kill(); // its folder goes now
    }
    _group = 0;
    _trial = {};
    _wasStopped = false;
    _outputBytes = 0;
    _errorBytes = 0;
    _place = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/orvane-test-XXXXXX"));
    if (!_place->isValid()) {
        _finish({End::Failed, 0, {}, translated("No temporary folder can be made: %1").arg(_place->errorString()), 0});
        return;
    }
    request.parent = QtUtf8Of(_place->path());
    _making = std::make_unique<Making>(Making{std::move(request), {}});
    // A large preset takes its time, and so do large contents.
    _maker.reset(QThread::create([making = _making.get()] { making->trial = makeTrialCreation(making->request); }));
    connect(_maker.get(), &QThread::finished, this, [this] { _made(); });
    _setState(State::Making);
    _maker->start();
    if (!_maker->isRunning() && !_maker->isFinished()) { // no thread was to be had, and none will tell that it has finished
        _maker.reset();
        _making.reset();
        _finish({End::Failed, 0, {}, translated("The test cannot be started: the system allows no further thread."), 0});
    }
}

void ScriptTrial::_made() {
    _maker->wait();
    _maker.release()->deleteLater();
    _trial = std::move(_making->trial);
    _making.reset();
    if (_wasStopped) {
        _finish({End::Stopped, 0, {}, {}, 0});
    } else if (!_trial.problem.isEmpty() || _trial.script.empty()) {
        _finish({End::Failed, 0, {}, translatedSentence(_trial.problem), 0});
    } else {
        _run();
    }
}

void ScriptTrial::_run() {
    _process = std::make_unique<QProcess>();
    QProcessEnvironment environment;
    for (const auto &[name, value] : _trial.environment) {
        environment.insert(QtTextOf(name), QtTextOf(value));
    }
    _process->setProcessEnvironment(environment);
    _process->setProgram(QtTextOf(_trial.script));
    _process->setStandardInputFile(QProcess::nullDevice());
    _process->setChildProcessModifier(prepareChild);
    connect(_process.get(), &QProcess::started, this, [this] {
        if (_wasStopped) {
            _signal(SIGTERM); // before, there was nobody to ask
        }
    });
    connect(_process.get(), &QProcess::readyReadStandardOutput, this, [this] { _read(QProcess::StandardOutput); });
    connect(_process.get(), &QProcess::readyReadStandardError, this, [this] { _read(QProcess::StandardError); });
    connect(_process.get(), &QProcess::finished, this, [this](int status, QProcess::ExitStatus how) { _ended(status, how); });
    connect(_process.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            _finish({End::Failed, 0, {}, translated("The script cannot be started: %1").arg(_process->errorString()), 0});
        }
    });
    _clock.start();
    _setState(State::Running);
    _process->start(QIODevice::ReadOnly);
    if (_process != nullptr) { // else that has failed at once, and everything is said
        _group = static_cast<pid_t>(_process->processId());
    }
}

void ScriptTrial::_read(QProcess::ProcessChannel channel) {
    const bool isError = channel == QProcess::StandardError;
    const QByteArray bytes = isError ? _process->readAllStandardError() : _process->readAllStandardOutput();
    const qint64 room = std::max<qint64>(0, MostBytesShown - _outputBytes - _errorBytes);
    (isError ? _errorBytes : _outputBytes) += bytes.size();
    if (room > 0 && !bytes.isEmpty()) {
        wrote(QString::fromUtf8(bytes.left(room)), isError);
    }
    if (room > 0 && room <= bytes.size()) {
        wrote(QLatin1Char('\n') + translated("The rest of the output is not shown.") + QLatin1Char('\n'), true);
    }
}

void ScriptTrial::_ended(int status, QProcess::ExitStatus how) {
    _read(QProcess::StandardOutput);
    _read(QProcess::StandardError);
    const End end = _wasStopped ? End::Stopped : how == QProcess::CrashExit ? End::Signalled : End::Exited;
    _finish({end, status, elapsed(), {}, std::max(_outputBytes, _errorBytes)});
}

void ScriptTrial::stop() {
    if (_state == State::Idle || _wasStopped) {
        return;
    }
    _wasStopped = true;
    if (_state == State::Running) {
        if (_process->state() == QProcess::Running) {
            _signal(SIGTERM);
        }
        _patience.start();
    }
}

/// To the script and everything in its process group, or to what it has left there.
void ScriptTrial::_signal(int signal) const {
    if (_group <= 0) {
        return;
    }
    // After the script's end its number is nobody's while somebody is in the group. A process that has it is another, and so is the group.
    const bool hasEnded = _process == nullptr || _process->state() == QProcess::NotRunning;
    if (!hasEnded || (::kill(_group, 0) != 0 && errno == ESRCH)) {
        ::kill(-_group, signal);
    }
}

void ScriptTrial::_kill() {
    _signal(SIGKILL);
    if (_process != nullptr) {
        _process->kill(); // it may not have come as far as a group of its own
    }
}

std::chrono::milliseconds ScriptTrial::elapsed() const {
    return std::chrono::milliseconds(_clock.isValid() ? _clock.elapsed() : 0);
}

QString ScriptTrial::folder() const {
    return QtTextOf(_trial.folder);
}

void ScriptTrial::_setState(State state) {
    _state = state;
    stateDidChange();
}

void ScriptTrial::_finish(const Result &result) {
    if (!_wasStopped) {
        _group = 0;
    } // else the script may have left some that do not listen
    if (_process != nullptr) {
        _process->disconnect(this);
        _process.release()->deleteLater(); // it is the one that calls
    }
    _state = State::Idle;
    finished(result);
    stateDidChange();
}

} // namespace orvane
