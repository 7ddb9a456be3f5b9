#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace orvane {

/// A key to be taken: a virtual key code of the Mac, a mask in the Carbon convention, and a small number that tells the hot keys of this
/// program apart as long as they are taken.
struct HotKeyRequest {
    std::uint32_t keyCode = 0;
    std::uint32_t modifiers = 0;
    int slot = 0;
};

/// One way in which a desktop gives hot keys to programs. What is taken is given back at the latest with the object. Main thread only.
class HotKeyService {
public:
    enum class Answer {
        Taken,       ///< the key is ours
        Pending,     ///< the desktop has yet to say; `decided` is called
        Refused,     ///< somebody else has it
        Invalid,     ///< there is no such key or modifier
        Unavailable, ///< this desktop gives no hot keys this way
    };

    virtual ~HotKeyService() = default;
    /// For the log: "KGlobalAccel".
    [[nodiscard]] virtual std::string name() const = 0;
    /// `request.slot` must be free. Except for `Taken` and `Pending` nothing stays taken.
    [[nodiscard]] virtual Answer take(const HotKeyRequest &request) = 0;
    virtual void giveBack(int slot) = 0;

    /// Called from the event loop, once for each press and each release; auto-repeat is no press.
    std::function<void(int slot)> pressed;
    std::function<void(int slot)> released;
    /// The late answer. A key that was taken may also be lost later: then it is called with false. `what` says more, for the log.
    std::function<void(int slot, bool isTaken, const std::string &what)> decided;
};

} // namespace orvane
