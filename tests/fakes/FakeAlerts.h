#pragma once

#include "ports/Alerts.h"

#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace orvane {

/// Remembers the alerts; `whileShown` runs while one is up, before it counts as dismissed.
class FakeAlerts final : public Alerts {
public:
    struct Alert {
        std::optional<std::string> title;
        std::optional<std::string> message;
        bool operator==(const Alert &) const = default;
    };

    void runAlertPanel(const std::optional<std::string> &title, const std::optional<std::string> &message) override {
        alerts.push_back({title, message});
        threads.push_back(std::this_thread::get_id());
        if (whileShown) {
            whileShown();
        }
        ++dismissed;
    }

    std::vector<Alert> alerts;            ///< in order of showing
    std::vector<std::thread::id> threads; ///< that showed them
    std::size_t dismissed = 0;
    std::function<void()> whileShown;
};

} // namespace orvane
