#include "platform/posix/PosixThreadLauncher.h"

#include <new>
#include <system_error>
#include <thread>
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

} // namespace orvane
