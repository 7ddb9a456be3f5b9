#include "platform/SingleThread.h"

#include <utility>

namespace orvane {

bool DeferredThreadLauncher::detachNewThread(std::function<void()> work) {
    _works.push_back(std::move(work));
    return true;
}

void DeferredThreadLauncher::runAll() {
    while (!_works.empty()) {
        for (const auto &work : std::exchange(_works, {})) {
            work();
        }
    }
}

} // namespace orvane
