#pragma once

#include <optional>
#include <string>

namespace orvane {

/// Shows errors to the user, one at a time.
class Alerts {
public:
    virtual ~Alerts() = default;
    /// Shows a modal alert with one default button and returns when the user has dismissed it.
    /// An absent title or message leaves its place empty. Texts are UTF-8, ready to show (not formats).
    /// Main thread only.
    virtual void runAlertPanel(const std::optional<std::string> &title, const std::optional<std::string> &message) = 0;
};

} // namespace orvane
