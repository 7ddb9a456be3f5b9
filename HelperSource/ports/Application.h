#pragma once

namespace orvane {

/// The surroundings that windows and events need.
class Application {
public:
    virtual ~Application() = default;
    /// Makes them ready when they are not yet; false when that is impossible. Main thread only.
    [[nodiscard]] virtual bool load() = 0;
};

} // namespace orvane
