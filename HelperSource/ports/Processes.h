#pragma once

#include <map>
#include <memory>
#include <string>

namespace orvane {

/// A started program and our ends of its two output pipes. Destroying it closes the pipes; the program goes on, and
/// the launcher sees to it that no zombie remains. One thread at a time, any thread.
class ChildProcess {
public:
    virtual ~ChildProcess() = default;
    /// Never blocks. False once it has ended.
    [[nodiscard]] virtual bool isRunning() = 0;
    /// Exit status 0 to 255 of the ended program; 128 + N when signal N ended it. Only after `isRunning()` was false.
    [[nodiscard]] virtual int terminationStatus() const = 0;
    /// Blocks until every holder of the pipe's other end has closed it; returns what was written, as bytes.
    /// An implementation may bound what it keeps of an endless output; a last line then says so.
    [[nodiscard]] virtual std::string readStandardErrorToEnd() = 0;
    /// The same; but standard output is taken meanwhile and dropped, so that a program that waits for a reader there goes on.
    [[nodiscard]] virtual std::string readStandardErrorToEndDroppingOutput() = 0;
    [[nodiscard]] virtual std::string readStandardOutputToEnd() = 0;
};

/// Starts programs. Any thread, several at a time.
class ProcessLauncher {
public:
    virtual ~ProcessLauncher() = default;
    /// Starts the file at `path` with no arguments, exactly `environment`, the working folder as it is, standard input
    /// from the null device and both outputs into pipes of their own. Nothing else of ours reaches it.
    /// Null when it cannot be started (missing, not a program, no interpreter, no resources).
    [[nodiscard]] virtual std::unique_ptr<ChildProcess> launch(const std::string &path,
                                                               const std::map<std::string, std::string> &environment) = 0;
};

} // namespace orvane
