#include "platform/qt/QtTermination.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>

#include <sys/eventfd.h>
#include <unistd.h>

#include <QGuiApplication>
#include <QSessionManager>
#include <QSocketNotifier>

namespace orvane {

namespace {

constexpr std::array<int, 3> Signals = {SIGTERM, SIGINT, SIGHUP};

/// What the handler writes to, for a handler may touch nothing else.
std::atomic<int> wakeDescriptor = -1;
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void orvaneNoteSignal(int /*signal*/) {
    const int saved = errno;
    const std::uint64_t one = 1;
    if (::write(wakeDescriptor.load(), &one, sizeof one) < 0) {
        // The counter is full: the main thread has been told already.
    }
    errno = saved;
}

} // namespace

/// The members in the order of their making; they go in the opposite one.
struct QtTermination::Parts {
    Parts() {
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
    QSocketNotifier notifier{openDescriptor(), QSocketNotifier::Read};
    QObject context;
};

QtTermination::QtTermination(QtApplication &application) : _application(application), _parts(std::make_unique<Parts>()) {
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
