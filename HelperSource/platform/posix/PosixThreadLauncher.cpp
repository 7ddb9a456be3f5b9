#include "platform/posix/PosixThreadLauncher.h"

#include <new>
#include <system_error>
#include <utility>

namespace orvane {

bool PosixThreadLauncher::detachNewThread(std::function<void()> work) {
    try {
        std::thread(std::move(work)).detach();
        return true;
    } catch (const std::system_error &) {
        return false;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

bool JoiningThreadLauncher::detachNewThread(std::function<void()> work) {
    const std::lock_guard lock(_mutex);
    try {
        _threads.reserve(_threads.size() + 1);
        _threads.emplace_back([this, task = std::move(work)] { _run(task); });
        ++_running; // the new thread cannot count itself down before: that takes the lock
        return true;
    } catch (const std::system_error &) {
        return false;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

bool JoiningThreadLauncher::isBusy() const {
    const std::lock_guard lock(_mutex);
    return _running > 0;
}

void JoiningThreadLauncher::joinAll() {
    for (;;) {
        std::vector<std::thread> threads;
        {
            const std::lock_guard lock(_mutex);
            threads.swap(_threads);
        }
        if (threads.empty()) {
            return;
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
    }
}

void JoiningThreadLauncher::_run(const std::function<void()> &work) {
    work();
    {
        const std::lock_guard lock(_mutex);
        --_running;
    }
    if (_onFinished) {
        _onFinished();
    }
}

} // namespace orvane
