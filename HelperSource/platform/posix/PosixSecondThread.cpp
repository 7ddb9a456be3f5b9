#include "platform/posix/PosixSecondThread.h"

#include "platform/posix/PosixBlockedSignals.h"

#include <utility>

namespace orvane {

namespace {

/// The processors that this thread may run on; none when the system does not tell (it has more than the 1,024 that fit).
cpu_set_t allowedProcessors() {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    if (::sched_getaffinity(0, sizeof processors, &processors) != 0) {
        CPU_ZERO(&processors);
    }
    return processors;
}

/// What a new thread begins with.
class Beginning {
public:
    Beginning() { pthread_attr_init(&_attributes); }
    Beginning(const Beginning &) = delete;
    Beginning &operator=(const Beginning &) = delete;
    ~Beginning() { pthread_attr_destroy(&_attributes); }
    /// False when there is none but the current one.
    [[nodiscard]] bool onAnotherOf(cpu_set_t processors) {
        const int current = ::sched_getcpu();
        if (current < 0 || current >= CPU_SETSIZE) {
            return false;
        }
        CPU_CLR(static_cast<unsigned>(current), &processors);
        return CPU_COUNT(&processors) > 0 && pthread_attr_setaffinity_np(&_attributes, sizeof processors, &processors) == 0;
    }
    [[nodiscard]] const pthread_attr_t *attributes() const { return &_attributes; }

private:
    const PosixBlockedSignals _blocked;
    pthread_attr_t _attributes{};
};

} // namespace

bool PosixSecondThread::start(std::function<void()> work, Place place) {
    _work = std::move(work);
    _place = place;
    _processors = allowedProcessors();
    Beginning beginning;
    // A scheduler that keeps to few processors leaves a new thread where its maker is at work, and moves it milliseconds later: a
    // thousand nodes are made by then.
    const bool isPlaced = beginning.onAnotherOf(_processors);
    _isStarted = isPlaced && pthread_create(&_thread, beginning.attributes(), _run, this) == 0;
    if (!_isStarted) { // the process may have been kept from that processor meanwhile, or from choosing one
        CPU_ZERO(&_processors);
        _isStarted = pthread_create(&_thread, nullptr, _run, this) == 0;
    }
    return _isStarted;
}

void PosixSecondThread::setFree() {
    if (_isStarted && CPU_COUNT(&_processors) > 0) {
        pthread_setaffinity_np(_thread, sizeof _processors, &_processors);
    }
}

void PosixSecondThread::join() {
    setFree(); // the other processors may have had no time for it; this one has it now
    if (std::exchange(_isStarted, false)) {
        pthread_join(_thread, nullptr);
    }
}

void *PosixSecondThread::_run(void *self) noexcept {
    auto &thread = *static_cast<PosixSecondThread *>(self);
    if (thread._place == Place::Anywhere && CPU_COUNT(&thread._processors) > 0) {
        ::sched_setaffinity(0, sizeof thread._processors, &thread._processors); // from now on it may go wherever there is room
    }
    thread._work();
    return nullptr;
}

bool hasSecondProcessor() {
    const cpu_set_t processors = allowedProcessors();
    return CPU_COUNT(&processors) != 1;
}

} // namespace orvane
