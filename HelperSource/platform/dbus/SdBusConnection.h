#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include <systemd/sd-bus.h>

namespace orvane {

/// One connection to a message bus by sd-bus, closed at the end. Every exchange has a deadline. One thread.
class SdBusConnection {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// A connection that the bus has accepted, or null. `address` is a D-Bus server address; empty stands for that of the
    /// session, as the environment tells it.
    [[nodiscard]] static std::unique_ptr<SdBusConnection> open(const std::string &address, Deadline deadline);
    SdBusConnection(const SdBusConnection &) = delete;
    SdBusConnection &operator=(const SdBusConnection &) = delete;
    ~SdBusConnection() { ::sd_bus_close_unref(_bus); }

    /// Borrowed; for messages of one's own.
    [[nodiscard]] sd_bus *bus() const { return _bus; }
    [[nodiscard]] int descriptor() const { return ::sd_bus_get_fd(_bus); }

    /// The names of incoming notifications are put at the end of `names` from now on, while the connection is processed.
    [[nodiscard]] bool receiveInto(std::deque<std::string> &names, Deadline deadline);
    /// Queues the notification's signal, then waits for the answer to a question: the bus takes messages in order.
    [[nodiscard]] bool send(const std::string &name, Deadline deadline);
    /// Handles what has arrived; false when the connection is lost.
    [[nodiscard]] bool process();
    [[nodiscard]] bool wait(std::uint64_t microseconds) { return ::sd_bus_wait(_bus, microseconds) >= 0; }

private:
    SdBusConnection() = default;
    [[nodiscard]] bool _open(const std::string &address);
    [[nodiscard]] bool _waitUntilReady(Deadline deadline);
    [[nodiscard]] bool _callBus(const char *method, const char *argument, Deadline deadline);
    static int _receive(sd_bus_message *message, void *connection, sd_bus_error *error);

    sd_bus *_bus = nullptr;
    std::deque<std::string> *_names = nullptr;
};

/// Microseconds left, at least 1: sd-bus takes 0 for its own, longer limit.
[[nodiscard]] std::uint64_t microsecondsUntil(SdBusConnection::Deadline deadline);

struct SdBusMessageDeleter {
    void operator()(sd_bus_message *message) const { ::sd_bus_message_unref(message); }
};
using SdBusMessage = std::unique_ptr<sd_bus_message, SdBusMessageDeleter>;

} // namespace orvane
