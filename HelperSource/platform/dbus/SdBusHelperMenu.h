#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace orvane {

/// Asks the helper, over the session bus, to pop its menu up: the action `make-preset`, or `make-preset-in` with a folder, of
/// the helper's `org.freedesktop.Application` (freedesktop.org, Desktop Entries 1.5, "D-Bus Activation"). The bus starts a
/// helper that does not run. What the desktop gave this program to be allowed to show windows (XDG_ACTIVATION_TOKEN,
/// DESKTOP_STARTUP_ID) is handed on.
class SdBusHelperMenu {
public:
    /// `address` as for `SdBusNotifications`.
    explicit SdBusHelperMenu(std::string address = {}) : _address(std::move(address)) {}

    /// Returns when the helper has taken the wish; `folder` is an absolute path. False, with the reason in `why`, when there is
    /// no bus, no helper can be started, it refuses, or it has not answered within `limit`.
    [[nodiscard]] bool show(const std::optional<std::string> &folder, std::string &why,
                            std::chrono::milliseconds limit = std::chrono::seconds(10)) const;

private:
    std::string _address;
};

} // namespace orvane
