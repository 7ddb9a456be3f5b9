#include "platform/posix/PosixChildReaper.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <new>
#include <pthread.h>
#include <sys/wait.h>
#include <vector>

namespace orvane {

namespace {

constexpr std::size_t WaiterStackSize = 256UL * 1024; // it only calls waitpid

struct Unwatched {
    std::mutex mutex;
    std::vector<pid_t> children;
};

/// Children without a waiting thread. Never destroyed: threads may come here while the program ends.
Unwatched &unwatched() {
    static auto &instance = *new Unwatched; // NOLINT(cppcoreguidelines-owning-memory)
    return instance;
}

bool hasEnded(pid_t child) {
    pid_t result = 0;
    do {
        result = ::waitpid(child, nullptr, WNOHANG);
    } while (result < 0 && errno == EINTR);
    return result != 0; // reaped, or no child of ours any more
}

void *waitFor(void *argument) {
    const auto child = static_cast<pid_t>(reinterpret_cast<std::intptr_t>(argument));
    while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return nullptr;
}

/// Starts a detached thread that leaves every signal to the others.
bool startWaiter(pid_t child) {
    pthread_attr_t attributes;
    if (::pthread_attr_init(&attributes) != 0) {
        return false;
    }
    ::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    ::pthread_attr_setstacksize(&attributes, WaiterStackSize);
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_attr_setsigmask_np(&attributes, &all);
    pthread_t thread{};
    const int error = ::pthread_create(&thread, &attributes, waitFor, reinterpret_cast<void *>(static_cast<std::intptr_t>(child)));
    ::pthread_attr_destroy(&attributes);
    return error == 0;
}

} // namespace

void PosixReapWhenEnded(pid_t child) {
    PosixReapEnded();
    if (hasEnded(child) || startWaiter(child)) {
        return;
    }
    Unwatched &list = unwatched();
    const std::lock_guard lock(list.mutex);
    try {
        list.children.push_back(child);
    } catch (const std::bad_alloc &) {
        return; // a zombie until the program ends is the least harm left
    }
}

void PosixReapEnded() {
    Unwatched &list = unwatched();
    const std::lock_guard lock(list.mutex);
    std::erase_if(list.children, hasEnded);
}

} // namespace orvane
