#include "platform/posix/PosixProcessLauncher.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixChildReaper.h"
#include "platform/posix/PosixSpawning.h"
#include "platform/posix/PosixStopSignals.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace orvane {

namespace {

constexpr std::size_t MostBytesKept = 16UL * 1024 * 1024;
constexpr int StatusUnknown = 255; // somebody else took the status away: no success
constexpr int FirstOrdinaryDescriptor = 3;

// Reading ------------------------------------------------------------------------------------------------------------

constexpr std::size_t MostBytesDropped = std::size_t{1} << 30U;

/// Waits until the first of the two can be read, and drops what is in the second; that one is closed when it is at its end, or has
/// given so much that it has no end.
void dropUntilReadable(const FileDescriptor &wanted, FileDescriptor &unwanted) {
    std::array<char, std::size_t{16} * 1024> buffer{};
    std::size_t dropped = 0;
    while (unwanted) {
        std::array<pollfd, 2> both{{{wanted.get(), POLLIN, 0}, {unwanted.get(), POLLIN, 0}}};
        if (::poll(both.data(), both.size(), -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            return;
        }
        if (both[1].revents != 0) {
            const ssize_t count = ::read(unwanted.get(), buffer.data(), buffer.size());
            dropped += count > 0 ? static_cast<std::size_t>(count) : 0;
            if (count == 0 || (count < 0 && errno != EINTR) || dropped > MostBytesDropped) {
                unwanted = FileDescriptor();
            }
        }
        if (both[0].revents != 0) {
            return;
        }
    }
}

/// Whoever fills the second meanwhile is not kept waiting.
std::string readToEnd(FileDescriptor descriptor, FileDescriptor unwanted = FileDescriptor()) {
    std::string kept;
    std::size_t dropped = 0;
    std::array<char, std::size_t{16} * 1024> buffer{};
    while (descriptor) {
        dropUntilReadable(descriptor, unwanted);
        const ssize_t count = ::read(descriptor.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        const auto bytes = static_cast<std::size_t>(count);
        const std::size_t room = std::min(bytes, MostBytesKept - kept.size());
        kept.append(buffer.data(), room);
        dropped += bytes - room;
    }
    if (dropped > 0) {
        kept += "\n[" + std::to_string(dropped) + " more bytes were not kept.]\n";
    }
    return kept;
}

class PosixChildProcess final : public ChildProcess {
public:
    /// `stopSignals` may be null, or are passed to the child already.
    PosixChildProcess(pid_t child, FileDescriptor output, FileDescriptor error, std::unique_ptr<PosixStopSignals> stopSignals)
        : _child(child), _output(std::move(output)), _error(std::move(error)), _stopSignals(std::move(stopSignals)) {}
    PosixChildProcess(const PosixChildProcess &) = delete;
    PosixChildProcess &operator=(const PosixChildProcess &) = delete;
    ~PosixChildProcess() override {
        _stopSignals.reset(); // before anybody can reap it
        if (!_status) {
            PosixReapWhenEnded(_child);
        }
    }

    [[nodiscard]] bool isRunning() override {
        if (_status) {
            return false;
        }
        if (_stopSignals) {
            if (!_hasEnded()) {
                return true;
            }
            _stopSignals.reset();
        }
        int status = 0;
        const pid_t result = ::waitpid(_child, &status, WNOHANG);
        if (result == 0 || (result < 0 && errno == EINTR)) {
            return true;
        }
        _status = result == _child ? _exitStatusOf(status) : StatusUnknown;
        return false;
    }

    [[nodiscard]] int terminationStatus() const override { return _status.value_or(StatusUnknown); }
    [[nodiscard]] std::string readStandardErrorToEnd() override { return readToEnd(std::move(_error)); }
    [[nodiscard]] std::string readStandardErrorToEndDroppingOutput() override { return readToEnd(std::move(_error), std::move(_output)); }
    [[nodiscard]] std::string readStandardOutputToEnd() override { return readToEnd(std::move(_output)); }

private:
    /// Without reaping it.
    [[nodiscard]] bool _hasEnded() const {
        siginfo_t information{};
        const int result = ::waitid(P_PID, static_cast<id_t>(_child), &information, WEXITED | WNOHANG | WNOWAIT);
        return result == 0 ? information.si_pid == _child : errno != EINTR; // or it is no child of ours any more
    }
    [[nodiscard]] static int _exitStatusOf(int status) { return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status); }

    const pid_t _child;
    std::optional<int> _status; ///< once ended
    FileDescriptor _output;
    FileDescriptor _error;
    std::unique_ptr<PosixStopSignals> _stopSignals; ///< null also when it has ended
};

// Starting -----------------------------------------------------------------------------------------------------------

struct Pipe {
    FileDescriptor readingEnd;
    FileDescriptor writingEnd;
};

/// In a program whose own 0, 1 or 2 is closed a pipe may get those numbers, which the child's redirections would overwrite.
bool moveToOrdinary(FileDescriptor &descriptor) {
    if (descriptor.get() < FirstOrdinaryDescriptor) {
        descriptor = FileDescriptor(::fcntl(descriptor.get(), F_DUPFD_CLOEXEC, FirstOrdinaryDescriptor));
    }
    return static_cast<bool>(descriptor);
}

std::optional<Pipe> makePipe() {
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    Pipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    if (!moveToOrdinary(pipe.readingEnd) || !moveToOrdinary(pipe.writingEnd)) {
        return std::nullopt;
    }
    return pipe;
}

/// What the child does to its descriptors before the program starts.
class FileActions {
public:
    FileActions(const Pipe &output, const Pipe &error) : _isInitialised(::posix_spawn_file_actions_init(&_actions) == 0) {
        _isComplete = _isInitialised && ::posix_spawn_file_actions_addopen(&_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0 &&
                      ::posix_spawn_file_actions_adddup2(&_actions, output.writingEnd.get(), STDOUT_FILENO) == 0 &&
                      ::posix_spawn_file_actions_adddup2(&_actions, error.writingEnd.get(), STDERR_FILENO) == 0 &&
                      // Descriptors of libraries may lack the close-on-exec flag.
                      ::posix_spawn_file_actions_addclosefrom_np(&_actions, FirstOrdinaryDescriptor) == 0;
    }
    FileActions(const FileActions &) = delete;
    FileActions &operator=(const FileActions &) = delete;
    ~FileActions() {
        if (_isInitialised) {
            ::posix_spawn_file_actions_destroy(&_actions);
        }
    }
    [[nodiscard]] const posix_spawn_file_actions_t *get() const { return _isComplete ? &_actions : nullptr; }

private:
    posix_spawn_file_actions_t _actions{};
    bool _isInitialised;
    bool _isComplete = false;
};

/// "NAME=value" for each entry; each part ends at its first NUL, as C text does.
std::vector<std::string> linesOfEnvironment(const std::map<std::string, std::string> &environment) {
    std::vector<std::string> lines;
    lines.reserve(environment.size());
    for (const auto &[name, value] : environment) {
        lines.push_back(std::string(name.c_str()) + '=' + value.c_str()); // NOLINT(readability-redundant-string-cstr): it cuts
    }
    return lines;
}

std::optional<pid_t> spawn(const std::string &path, const std::map<std::string, std::string> &environment, const Pipe &output,
                           const Pipe &error) {
    const FileActions actions(output, error);
    const PosixSpawnAttributes attributes;
    if (actions.get() == nullptr || attributes.get() == nullptr) {
        return std::nullopt;
    }
    std::vector<std::string> arguments{path};
    std::vector<std::string> lines = linesOfEnvironment(environment);
    pid_t child = -1;
    const int result = ::posix_spawn(&child, path.c_str(), actions.get(), attributes.get(), PosixPointersTo(arguments).data(),
                                     PosixPointersTo(lines).data());
    return result == 0 ? std::optional(child) : std::nullopt;
}

} // namespace

PosixProcessLauncher::PosixProcessLauncher(StopSignals stopSignals) : _stopSignals(stopSignals) {
    struct sigaction action {};
    if (::sigaction(SIGCHLD, nullptr, &action) == 0 && (action.sa_handler == SIG_IGN || (action.sa_flags & SA_NOCLDWAIT) != 0)) {
        struct sigaction standard {};
        standard.sa_handler = SIG_DFL;
        ::sigaction(SIGCHLD, &standard, nullptr);
    }
}

std::unique_ptr<ChildProcess> PosixProcessLauncher::launch(const std::string &path, const std::map<std::string, std::string> &environment) {
    PosixReapEnded();
    if (path.find('\0') != std::string::npos) {
        return nullptr; // the system would start another file, the one whose path ends there
    }
    auto output = makePipe();
    auto error = makePipe();
    if (!output || !error) {
        return nullptr;
    }
    auto stopSignals = _stopSignals == StopSignals::ArePassedOn ? std::make_unique<PosixStopSignals>() : nullptr;
    const auto child = spawn(path, environment, *output, *error);
    if (!child) {
        return nullptr;
    }
    if (stopSignals) {
        stopSignals->passTo(*child);
    }
    return std::make_unique<PosixChildProcess>(*child, std::move(output->readingEnd), std::move(error->readingEnd), std::move(stopSignals));
}

} // namespace orvane
