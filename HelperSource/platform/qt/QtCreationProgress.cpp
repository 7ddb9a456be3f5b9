#include "platform/qt/QtCreationProgress.h"

#include "platform/posix/PosixSpawning.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QObject>

namespace orvane {

namespace {

using namespace std::chrono_literals;

constexpr auto PatienceBeforeWindow = 500ms;
constexpr auto TimeBetweenNumbers = 100ms;

/// The window's process. It ends with this object.
class WindowProcess {
public:
    explicit WindowProcess(const std::vector<std::string> &command) {
        std::array<int, 2> ends{};
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
            return;
        }
        _ours = ends[0];
        _start(command, ends[1]);
        ::close(ends[1]);
    }
    WindowProcess(const WindowProcess &) = delete;
    WindowProcess &operator=(const WindowProcess &) = delete;
    ~WindowProcess() {
        if (_ours >= 0) {
            ::close(_ours);
        }
        if (_process > 0) {
            ::kill(_process, SIGTERM);
            while (::waitpid(_process, nullptr, 0) < 0 && errno == EINTR) {
            }
        }
    }

    void tell(std::uint64_t nodes) const {
        if (_ours >= 0) { // a window that is gone, or too busy, misses the number
            static_cast<void>(::send(_ours, &nodes, sizeof nodes, MSG_NOSIGNAL | MSG_DONTWAIT));
        }
    }

private:
    void _start(std::vector<std::string> command, int input) {
        const std::vector<char *> arguments = PosixPointersTo(command);
        const PosixSpawnAttributes attributes;
        posix_spawn_file_actions_t files{};
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
        if (::posix_spawn(&_process, arguments.front(), &files, attributes.get(), arguments.data(), environ) != 0) {
            _process = -1;
        }
        ::posix_spawn_file_actions_destroy(&files);
    }

    int _ours = -1;
    pid_t _process = -1;
};

} // namespace

QtCreationProgress::QtCreationProgress(std::vector<std::string> command)
    : _command(std::move(command)), _context(std::make_unique<QObject>()) {}

QtCreationProgress::~QtCreationProgress() {
    {
        const std::lock_guard lock(_mutex);
        _isOver = true;
        _creation = 0;
        _changed.notify_all();
    }
    if (_watcher.joinable()) {
        _watcher.join();
    }
}

void QtCreationProgress::advanced(std::size_t nodes) {
    if (!_isCreating.load(std::memory_order_relaxed) && !_isCreating.exchange(true)) {
        _begin();
    }
    _nodes.fetch_add(nodes, std::memory_order_relaxed);
}

void QtCreationProgress::_begin() {
    QMetaObject::invokeMethod(
        _context.get(), [this] { _end(); }, Qt::QueuedConnection);
    const std::lock_guard lock(_mutex);
    _creation = ++_creations;
    if (!_watcher.joinable()) {
        try {
            _watcher = std::thread([this] { _watch(); });
        } catch (const std::system_error &) { // without a thread there is no window
            return;
        }
    }
    _changed.notify_all();
}

void QtCreationProgress::_end() {
    _nodes = 0;
    _isCreating = false;
    const std::lock_guard lock(_mutex);
    _creation = 0;
    _changed.notify_all();
}

void QtCreationProgress::_watch() {
    std::unique_lock lock(_mutex);
    for (;;) {
        _changed.wait(lock, [&] { return _isOver || _creation != 0; });
        if (_isOver) {
            return;
        }
        const std::uint64_t watched = _creation;
        if (!_changed.wait_for(lock, PatienceBeforeWindow, [&] { return _creation != watched; })) {
            _showUntilEnd(lock);
        }
    }
}

void QtCreationProgress::_showUntilEnd(std::unique_lock<std::mutex> &lock) {
    const std::uint64_t shown = _creation;
    lock.unlock();
    {
        const WindowProcess window(_command);
        lock.lock();
        while (_creation == shown) {
            window.tell(_nodes.load(std::memory_order_relaxed));
            ++_tellings;
            _changed.wait_for(lock, TimeBetweenNumbers, [&] { return _creation != shown; });
        }
        lock.unlock();
    }
    lock.lock();
}

} // namespace orvane
