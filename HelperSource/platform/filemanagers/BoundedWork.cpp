#include "platform/filemanagers/BoundedWork.h"

#include <chrono>
#include <exception>
#include <thread>
#include <utility>

namespace orvane {

BoundedWork::BoundedWork() : _state(std::make_shared<State>()) {}

BoundedWork::~BoundedWork() {
    std::unique_lock lock(_state->mutex);
    _state->changed.wait_for(lock, std::chrono::milliseconds(500), [this] { return !_state->busy; });
}

std::optional<std::string> BoundedWork::run(const Deadline &deadline, Work work) {
    std::unique_lock lock(_state->mutex);
    if (_state->busy) {
        return std::nullopt;
    }
    _state->busy = true;
    _state->result.reset();
    auto whole = [state = _state, work = std::move(work)]() mutable {
        std::optional<std::string> result;
        try {
            result = work();
        } catch (const std::exception &) {
            result.reset();
        }
        work = nullptr; // what it owns goes away on this thread, before anybody is told
        const std::lock_guard guard(state->mutex);
        state->result = std::move(result);
        state->busy = false;
        state->changed.notify_all();
    };
    try {
        std::thread(std::move(whole)).detach(); // so that nobody else has what it owns
    } catch (const std::exception &) {          // no thread, or no memory for one
        _state->busy = false;
        return std::nullopt;
    }
    if (!_state->changed.wait_until(lock, deadline.end(), [this] { return !_state->busy; })) {
        return std::nullopt;
    }
    return std::exchange(_state->result, std::nullopt);
}

bool BoundedWork::isBusy() const {
    const std::lock_guard guard(_state->mutex);
    return _state->busy;
}

} // namespace orvane
