#pragma once

#include "platform/dbus/NotificationGate.h"
#include "ports/DistributedNotifications.h"

#include <chrono>
#include <deque>
#include <memory>
#include <string>

namespace orvane {

class SdBusConnection;

/// Notifications as D-Bus signals on the session bus, by sd-bus: path `/org/orvane/DistributedNotifications`, interface
/// `org.orvane.DistributedNotifications`, the notification's name as member, no arguments, any sender.
///
/// Nothing runs by itself: the program's event loop waits on `descriptor()` and calls
/// `process()`, or the program calls `wait()`. Main thread only, but for `post`.
class SdBusNotifications final : public DistributedNotifications {
public:
    /// `address` is a D-Bus server address; empty stands for that of the session, as the environment tells it.
    explicit SdBusNotifications(std::string address = {});
    SdBusNotifications(const SdBusNotifications &) = delete;
    SdBusNotifications &operator=(const SdBusNotifications &) = delete;
    ~SdBusNotifications() override;

    /// Waits at most a second for the bus. What others send after the return arrives. Without a bus the observer is kept
    /// all the same, and the connection is tried again when the next one is added.
    void addObserver(const void *observer, std::string_view name, Suspension behavior, Handler handler) override;
    void removeObserver(const void *observer, std::string_view name) override;
    /// Returns when the bus has taken the signal. Uses a connection of its own, so that no handler runs meanwhile. Any
    /// thread. False also for a name that is no member name of D-Bus ([A-Za-z_][A-Za-z0-9_]*, up to 255 bytes).
    bool post(std::string_view name) override;

    /// Becomes readable when notifications have arrived; -1 without a connection. It can change with every call of
    /// `addObserver` and `process`.
    [[nodiscard]] int descriptor() const;
    /// Delivers everything that has arrived, without blocking. To be called when the descriptor is readable and once after each
    /// `addObserver`; a handler may call it, too. False without a connection, also when it has just been lost.
    bool process();
    /// Sleeps until something has arrived or the time is over; false without a connection. Delivers nothing yet.
    bool wait(std::chrono::microseconds limit);

    /// While suspended, observers get what their suspension behaviour says.
    void suspend() { _gate.suspend(); }
    void resume() { _gate.resume(); }

private:
    void _connect();

    const std::string _address;
    NotificationGate _gate;
    std::deque<std::string> _arrived;             ///< names still to be handed to the gate
    std::unique_ptr<SdBusConnection> _connection; ///< of the observers; null while there is none
};

} // namespace orvane
