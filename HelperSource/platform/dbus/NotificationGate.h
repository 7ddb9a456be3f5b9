#pragma once

#include "ports/DistributedNotifications.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Whether a notification may have that name: a member name as the D-Bus protocol has them (version 0.41, "Valid Names").
[[nodiscard]] bool isNotificationName(std::string_view name);

/// The observers of one program, and what becomes of notifications that arrive while it is suspended: dropped, kept once
/// for each observer (the last one counts for the order), all kept, or delivered all the same.
///
/// Handlers may add and remove observers, suspend and resume. A removed observer gets nothing any more, not even what was
/// kept for it. One thread.
class NotificationGate {
public:
    using Suspension = DistributedNotifications::Suspension;
    using Handler = DistributedNotifications::Handler;

    void addObserver(const void *observer, std::string_view name, Suspension behavior, Handler handler);
    void removeObserver(const void *observer, std::string_view name);
    [[nodiscard]] bool hasObservers() const { return !_registrations.empty(); }

    /// A notification has arrived: calls those who observe that name, in order of registration. When another one of that name is
    /// known to `follow`, this one is not for those who want them coalesced.
    void arrive(std::string_view name, bool follow = false);

    void suspend() { _isSuspended = true; }
    /// Delivers what was kept, in order of arrival, unless a handler suspends again: the rest stays kept then.
    void resume();
    [[nodiscard]] bool isSuspended() const { return _isSuspended; }

private:
    struct Registration {
        std::size_t number; ///< never used twice
        const void *observer;
        std::string name;
        Suspension behavior;
        Handler handler;
    };

    void _handle(const Registration &registration);
    void _deliver(std::size_t number);

    std::vector<Registration> _registrations;
    std::deque<std::size_t> _kept; ///< numbers of those to be called, one for each call
    std::size_t _lastNumber = 0;
    bool _isSuspended = false;
};

} // namespace orvane
