#include "platform/qt/QtTermination.h"

#include "platform/posix/PosixBlockedSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <QGuiApplication>
#include <QSessionManager>
#include <QSocketNotifier>

namespace orvane {

namespace {

constexpr std::array<int, 3> Signals = {SIGTERM, SIGINT, SIGHUP};

/// What the handler touches, for it may touch nothing else: the two that are woken, and the signal that came first.
std::atomic<int> wakeDescriptor = -1;
std::atomic<int> watchDescriptor = -1;
std::atomic<int> firstSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free);

void wake(int descriptor) {
    const std::uint64_t one = 1;
    if (::write(descriptor, &one, sizeof one) < 0) {
        // The counter is full: who is to be woken has been told already.
    }
}

extern "C" void orvaneNoteSignal(int signal) {
    const int saved = errno;
    int none = 0;
    firstSignal.compare_exchange_strong(none, signal);
    wake(wakeDescriptor.load());
    wake(watchDescriptor.load());
    errno = saved;
}

/// Waits on a thread of its own for a signal, and then for the main thread to end the event loop; ends the process when that takes
/// too long. No signal is ever handled on that thread.
class Watch {
public:
    Watch(QtTermination::Progress progress, std::chrono::milliseconds patience) : _progress(std::move(progress)), _patience(patience) {
        watchDescriptor = _signalled;
        const PosixBlockedSignals blocked; // the thread begins with that
        _thread = std::thread([this] { _watch(); });
    }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;
    /// The handlers must have been taken away before.
    ~Watch() {
        wake(_over);
        _thread.join();
        watchDescriptor = -1;
        ::close(_signalled);
        ::close(_over);
    }

private:
    void _watch() {
        std::array<pollfd, 2> either = {pollfd{_signalled, POLLIN, 0}, pollfd{_over, POLLIN, 0}};
        while (::poll(either.data(), either.size(), -1) < 0) {
            if (errno != EINTR) { // no memory for the moment
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            }
        }
        std::uint64_t seen = 0;
        do {
            seen = _progress ? _progress() : 0;
            if (either[1].revents != 0 || _isOverWithin(_patience)) {
                return;
            }
        } while (_progress && _progress() != seen);
        ::_exit(128 + firstSignal.load());
    }

    [[nodiscard]] bool _isOverWithin(std::chrono::milliseconds time) const {
        pollfd over{_over, POLLIN, 0};
        return ::poll(&over, 1, static_cast<int>(time.count())) != 0;
    }

    const QtTermination::Progress _progress;
    const std::chrono::milliseconds _patience;
    const int _signalled = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    const int _over = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    std::thread _thread;
};

} // namespace

/// The members in the order of their making; they go in the opposite one.
struct QtTermination::Parts {
    Parts(Progress progress, std::chrono::milliseconds patience) : watch(std::move(progress), patience) {
        firstSignal = 0;
        for (std::size_t i = 0; i < Signals.size(); ++i) {
            struct sigaction action {};
            action.sa_handler = orvaneNoteSignal;
            action.sa_flags = SA_RESTART;
            ::sigaction(Signals[i], &action, &previous[i]);
            if (previous[i].sa_handler == SIG_IGN) { // as under nohup: whoever started us wants it ignored
                ::sigaction(Signals[i], &previous[i], nullptr);
            }
        }
    }
    Parts(const Parts &) = delete;
    Parts &operator=(const Parts &) = delete;
    ~Parts() {
        for (std::size_t i = 0; i < Signals.size(); ++i) {
            ::sigaction(Signals[i], &previous[i], nullptr);
        }
        const int descriptor = wakeDescriptor.exchange(-1);
        notifier.setEnabled(false);
        ::close(descriptor);
    }

    void endsNextTime() {
        for (std::size_t i = 0; i < Signals.size(); ++i) {
            if (previous[i].sa_handler != SIG_IGN) {
                std::signal(Signals[i], SIG_DFL);
            }
        }
    }

    static int openDescriptor() {
        wakeDescriptor = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
        return wakeDescriptor;
    }

    std::array<struct sigaction, Signals.size()> previous{};
    Watch watch;
    QSocketNotifier notifier{openDescriptor(), QSocketNotifier::Read};
    QObject context;
};

QtTermination::QtTermination(QtApplication &application, Progress progress, std::chrono::milliseconds patience)
    : _application(application), _parts(std::make_unique<Parts>(std::move(progress), patience)) {
    QObject::connect(&_parts->notifier, &QSocketNotifier::activated, &_parts->context, [this] { _signalled(); });
    const auto dontAsk = [](QSessionManager &session) { session.setRestartHint(QSessionManager::RestartNever); };
    QObject::connect(qGuiApp, &QGuiApplication::commitDataRequest, &_parts->context, dontAsk, Qt::DirectConnection);
    QObject::connect(qGuiApp, &QGuiApplication::saveStateRequest, &_parts->context, dontAsk, Qt::DirectConnection);
}

QtTermination::~QtTermination() = default;

void QtTermination::_signalled() {
    std::uint64_t count = 0;
    if (::read(wakeDescriptor.load(), &count, sizeof count) < 0) {
        return; // somebody else has read it
    }
    _parts->endsNextTime(); // a user who asks again means it
    _application.quit();
}

} // namespace orvane
