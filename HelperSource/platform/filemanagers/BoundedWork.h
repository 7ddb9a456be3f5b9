#pragma once

#include "platform/filemanagers/Deadline.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace orvane {

/// Does work that may hang (a question to another program, a look at a network folder) on a thread of its own and waits for
/// it no longer than told. Work that hangs goes on by itself; until it ends, nothing new is begun.
class BoundedWork {
public:
    using Work = std::function<std::optional<std::string>()>;

    BoundedWork();
    BoundedWork(const BoundedWork &) = delete;
    BoundedWork &operator=(const BoundedWork &) = delete;
    /// Waits half a second for work that is still going on, then leaves it alone.
    ~BoundedWork();

    /// What the work gives; nothing when it gives nothing, throws, takes longer, or when earlier work still hangs. The work
    /// must own what it uses.
    [[nodiscard]] std::optional<std::string> run(const Deadline &deadline, Work work);
    /// Whether earlier work still goes on.
    [[nodiscard]] bool isBusy() const;

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        std::optional<std::string> result;
        bool busy = false;
    };
    std::shared_ptr<State> _state;
};

} // namespace orvane
