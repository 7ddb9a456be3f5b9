#pragma once

#include "platform/TrialCreation.h"

#include <QElapsedTimer>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <sys/types.h>

class QThread;

namespace orvane {

/// One run of a preset's script after another, each on a new folder made from the preset for it alone, in the environment that the
/// helper gives. The window goes on meanwhile. What is still running when this object goes is stopped. Main thread only.
class ScriptTrial final : public QObject {
public:
    enum class State { Idle, Making, Running };
    enum class End {
        Exited,    ///< `status` is its exit status
        Signalled, ///< `status` is the signal
        Stopped,   ///< by `stop()`
        Failed     ///< it was never started; see `problem`
    };
    struct Result {
        End end = End::Failed;
        int status = 0;
        std::chrono::milliseconds duration{};
        QString problem;
        qint64 mostBytes = 0; ///< of standard output or standard error, whichever is more
    };

    explicit ScriptTrial(QObject *parent);
    ScriptTrial(const ScriptTrial &) = delete;
    ScriptTrial &operator=(const ScriptTrial &) = delete;
    ~ScriptTrial() override;

    /// Does nothing unless idle. The request's parent folder is chosen here; the one of the run before is removed.
    void start(TrialRequest request);
    /// Asks the script to end, and all that it has started in its process group. Two seconds later they have no choice, nor has what is
    /// left of them when the next run begins or this object goes. What a script leaves behind that ends unasked is not touched.
    void stop();
    [[nodiscard]] State state() const { return _state; }
    /// How long the script has been running.
    [[nodiscard]] std::chrono::milliseconds elapsed() const;
    /// The folder that the last run was made in; empty when there is none.
    [[nodiscard]] QString folder() const;

    /// A script that writes more is heard no further; the helper's pipes hold less (pipe(7): 64 KiB).
    static constexpr qint64 MostBytesShown = qint64{1024} * 1024;
    static constexpr qint64 BytesOfPipe = qint64{64} * 1024;

    std::function<void()> stateDidChange;
    std::function<void(const QString &text, bool isError)> wrote;
    std::function<void(const Result &result)> finished;

private:
    void _made();
    void _run();
    void _read(QProcess::ProcessChannel channel);
    void _ended(int status, QProcess::ExitStatus how);
    void _signal(int signal) const;
    void _kill();
    void _setState(State state);
    void _finish(const Result &result);

    struct Making;

    State _state = State::Idle;
    std::unique_ptr<QTemporaryDir> _place;
    std::unique_ptr<Making> _making;
    std::unique_ptr<QThread> _maker;
    TrialCreation _trial;
    std::unique_ptr<QProcess> _process;
    QElapsedTimer _clock;
    QTimer _patience;
    pid_t _group = 0; ///< the script's process group, for as long as it may have to be ended
    qint64 _outputBytes = 0;
    qint64 _errorBytes = 0;
    bool _wasStopped = false;
};

} // namespace orvane
