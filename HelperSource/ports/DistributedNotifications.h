#pragma once

#include <functional>
#include <string_view>

namespace orvane {

/// Notifications by name between the user's programs.
class DistributedNotifications {
public:
    /// What happens to notifications that arrive while this program is suspended.
    enum class Suspension { Drop = 1, Coalesce = 2, Hold = 3, DeliverImmediately = 4 };
    using Handler = std::function<void()>;

    virtual ~DistributedNotifications() = default;
    /// Calls `handler` on the main thread for every notification of that name from any sender, until removed; with Coalesce,
    /// several that have arrived by then may be one call.
    /// `observer` identifies the registration and is never dereferenced; adding the same pair again adds a second call.
    virtual void addObserver(const void *observer, std::string_view name, Suspension behavior, Handler handler) = 0;
    /// Removes all registrations of that observer for that name; does nothing when there is none.
    virtual void removeObserver(const void *observer, std::string_view name) = 0;
    /// Sends one; false when nobody can be reached (no session bus). Never blocks longer than a second.
    virtual bool post(std::string_view name) = 0;
};

} // namespace orvane
