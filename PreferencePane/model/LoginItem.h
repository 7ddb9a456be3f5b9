#pragma once

namespace orvane {

/// Whether the helper starts when the user logs in. Main thread only.
class LoginItem {
public:
    virtual ~LoginItem() = default;
    [[nodiscard]] virtual bool isEnabled() = 0;
    /// False when that could not be stored; it is then as it was.
    [[nodiscard]] virtual bool setEnabled(bool isEnabled) = 0;
};

} // namespace orvane
