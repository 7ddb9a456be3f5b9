#pragma once

#include "ports/Clock.h"
#include "ports/Error.h"
#include "ports/Processes.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// Runs one script as a child process with a fixed environment and a time limit. One run, on any thread.
class ORVScriptRunner {
public:
    using Dictionary = std::map<std::string, std::string>;

    /// A runner for the file at `path`; the ports are borrowed for its life.
    ORVScriptRunner(std::string path, ProcessLauncher &processes, Clock &clock);

    /// The path given at initialisation.
    [[nodiscard]] const std::string &scriptPath() const noexcept { return _scriptPath; }

    /// Starts the script with `environment` as its entire environment and waits for it.
    ///
    /// Returns the "key=value" lines of its standard output when it ended with status 0 in time. Otherwise returns nothing
    /// and stores an error (domain "ORVScriptRunner", code 0) where `error` points, if it points anywhere: "Unable to execute
    /// script.", "Script timed out." or "Script returned error code N.", the last two with its whole standard error as
    /// failure reason. `timeout` is in whole seconds, 0 stands for 30; the script is declared timed out once more than that
    /// many whole seconds have passed. It is not stopped then, and its standard error is still read to the end.
    /// The pipes are not drained while it runs: a script that overfills one ends as timed out, deliberately.
    std::optional<Dictionary> runWithArgumentsTimeoutError(const Dictionary &environment, unsigned timeout, ORVError *error);

    /// The pairs in `output`: lines end at line feeds only, a line is split at its first "=", spaces and tabs around both
    /// parts are dropped, a line with nothing on one side (before that trimming) is skipped, a later key wins.
    [[nodiscard]] static Dictionary parseOutput(std::string_view output);

private:
    [[nodiscard]] bool _waitForEnd(ChildProcess &child, unsigned timeout);

    std::string _scriptPath;
    ProcessLauncher &_processes;
    Clock &_clock;
};

/// UTF-8 text of what a script wrote: every byte that is no UTF-8, and every half of a
/// surrogate pair, becomes one U+FFFD.
[[nodiscard]] std::string ORVTextOfBytes(std::string_view bytes);

} // namespace orvane
