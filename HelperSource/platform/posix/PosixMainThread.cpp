#include "platform/posix/PosixMainThread.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane {

namespace {

/// Waiting threads would hang for ever if work could leave by an exception: it ends the program instead.
void perform(const std::function<void()> &work) noexcept {
    work();
}

} // namespace

PosixMainThread::~PosixMainThread() {
    endEvent();
}

bool PosixMainThread::isCurrent() {
    return std::this_thread::get_id() == _main;
}

void PosixMainThread::performAndWait(const std::function<void()> &work) {
    if (isCurrent()) {
        perform(work);
        return;
    }
    Item item{&work};
    std::unique_lock lock(_mutex);
    _queue.push_back(&item);
    _arrived.notify_one();
    _done.wait(lock, [&] { return item.done; });
}

void PosixMainThread::releaseAfterCurrentEvent(std::shared_ptr<const void> object) {
    const std::lock_guard lock(_mutex);
    _deferred.push_back({_depth, std::move(object)});
    if (!isCurrent()) {
        _woken = true; // an idle main thread lets go of it now, not after some later work
        _arrived.notify_one();
    }
}

bool PosixMainThread::runOnce(std::optional<TimePoint> deadline) {
    _enter();
    std::unique_lock lock(_mutex);
    const auto ready = [&] { return _woken || !_queue.empty(); };
    if (!deadline) {
        _arrived.wait(lock, ready);
    } else if (!_arrived.wait_until(lock, *deadline, ready)) {
        return false;
    }
    _woken = false;
    if (_queue.empty()) {
        return false;
    }
    _serve(lock);
    return true;
}

bool PosixMainThread::runUntil(const std::function<bool()> &done, std::optional<TimePoint> deadline) {
    _enter();
    while (!done()) {
        if (!runOnce(deadline) && deadline && std::chrono::steady_clock::now() >= *deadline) {
            return done();
        }
    }
    return true;
}

void PosixMainThread::wake() {
    const std::lock_guard lock(_mutex);
    _woken = true;
    _arrived.notify_one();
}

void PosixMainThread::endEvent() {
    // Objects are destroyed outside the lock; their destructors may defer others.
    for (;;) {
        std::vector<Deferred> ending;
        {
            const std::lock_guard lock(_mutex);
            const auto first =
                std::stable_partition(_deferred.begin(), _deferred.end(), [&](const Deferred &each) { return each.depth < _depth; });
            if (first == _deferred.end()) {
                return;
            }
            ending.assign(std::make_move_iterator(first), std::make_move_iterator(_deferred.end()));
            _deferred.erase(first, _deferred.end());
        }
    }
}

void PosixMainThread::_serve(std::unique_lock<std::mutex> &lock) {
    Item *const item = _queue.front();
    _queue.pop_front();
    ++_depth;
    lock.unlock();
    perform(*item->work);
    endEvent();
    lock.lock();
    const bool isOutermost = --_depth == 0;
    if (isOutermost) { // what other threads deferred before it began goes, too
        lock.unlock();
        endEvent();
        lock.lock();
    }
    item->done = true;
    _done.notify_all();
}

void PosixMainThread::_enter() {
    const bool outermost = [&] {
        const std::lock_guard lock(_mutex);
        return _depth == 0;
    }();
    if (outermost) {
        endEvent();
    }
}

} // namespace orvane
