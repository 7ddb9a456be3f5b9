#pragma once

#include "ports/Processes.h"

namespace orvane {

/// Starts programs by posix_spawn.
///
/// The file at the path itself is started: no search in PATH, and a file that the kernel does not take (no interpreter
/// line) is not handed to a shell. Names and values of the environment end at their first NUL. The program starts with an
/// empty signal mask, every signal at its default and no descriptor but 0, 1 and 2.
///
/// An output is kept up to 16 MiB when it is read to its end. The rest is read as well, so that its writer never
/// blocks, but dropped; a last line then tells how many bytes are missing. An output that nobody waits for is dropped, too, and
/// closed after 1 GiB, as it has no end then.
///
/// An end is noticed by waiting for that one child; no signal handler is used. A child that ends by itself is reaped when
/// `isRunning` notices; one whose object is gone before is reaped when it ends.
class PosixProcessLauncher final : public ProcessLauncher {
public:
    /// What becomes of the signals that stop this program while a child runs.
    enum class StopSignals {
        AreOurs,    ///< the child goes on
        ArePassedOn ///< it is stopped, too (see `PosixStopSignals`); for one child at a time, of the thread that gets the signals
    };

    /// Where the program was started with SIGCHLD ignored, this sets it back to its default: the system would throw the
    /// exit statuses of all children away.
    explicit PosixProcessLauncher(StopSignals stopSignals = StopSignals::AreOurs);

    [[nodiscard]] std::unique_ptr<ChildProcess> launch(const std::string &path,
                                                       const std::map<std::string, std::string> &environment) override;

private:
    StopSignals _stopSignals;
};

} // namespace orvane
