#pragma once

namespace orvane {

/// The surroundings that windows and events need.
class Application {
public:
    virtual ~Application() = default;
    /// Makes them ready when they are not yet; false when that is impossible. Main thread only.
    [[nodiscard]] virtual bool load() = 0;
    /// Brings this program to the front; with `ignoring` also when the user works in another one. Main thread only.
    virtual void activateIgnoringOtherApps(bool ignoring) = 0;
};

} // namespace orvane
