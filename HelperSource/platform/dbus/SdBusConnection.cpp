#include "platform/dbus/SdBusConnection.h"

#include <algorithm>
#include <string_view>

namespace orvane {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr const char *ObjectPath = "/org/orvane/DistributedNotifications";
constexpr const char *InterfaceName = "org.orvane.DistributedNotifications";
constexpr const char *MatchRule =
    "type='signal',path='/org/orvane/DistributedNotifications',interface='org.orvane.DistributedNotifications'";

} // namespace

std::uint64_t microsecondsUntil(SdBusConnection::Deadline deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - SteadyClock::now()).count();
    return static_cast<std::uint64_t>(std::max<decltype(left)>(left, 1));
}

std::unique_ptr<SdBusConnection> SdBusConnection::open(const std::string &address, Deadline deadline) {
    std::unique_ptr<SdBusConnection> connection(new SdBusConnection());
    const bool isOpen = connection->_open(address) && connection->_waitUntilReady(deadline);
    return isOpen ? std::move(connection) : nullptr;
}

bool SdBusConnection::receiveInto(std::deque<std::string> &names, Deadline deadline) {
    _names = &names;
    return ::sd_bus_add_filter(_bus, nullptr, _receive, this) >= 0 && _callBus("AddMatch", MatchRule, deadline);
}

bool SdBusConnection::send(const std::string &name, Deadline deadline) {
    sd_bus_message *made = nullptr;
    if (::sd_bus_message_new_signal(_bus, &made, ObjectPath, InterfaceName, name.c_str()) < 0) {
        return false;
    }
    const SdBusMessage signal(made);
    return ::sd_bus_send(_bus, signal.get(), nullptr) >= 0 && _callBus("GetId", nullptr, deadline);
}

bool SdBusConnection::process() {
    for (;;) {
        const int result = ::sd_bus_process(_bus, nullptr);
        if (result <= 0) {
            return result == 0;
        }
    }
}

bool SdBusConnection::_open(const std::string &address) {
    if (address.empty()) {
        return ::sd_bus_open_user(&_bus) >= 0;
    }
    return ::sd_bus_new(&_bus) >= 0 && ::sd_bus_set_address(_bus, address.c_str()) >= 0 && ::sd_bus_set_bus_client(_bus, 1) >= 0 &&
           ::sd_bus_start(_bus) >= 0;
}

/// sd-bus greets the bus while it is being processed; left to itself it would wait for a minute and a half.
bool SdBusConnection::_waitUntilReady(Deadline deadline) {
    for (;;) {
        const int ready = ::sd_bus_is_ready(_bus);
        if (ready != 0) {
            return ready > 0;
        }
        const int processed = ::sd_bus_process(_bus, nullptr);
        if (processed < 0 || SteadyClock::now() >= deadline) {
            return false;
        }
        if (processed == 0 && !wait(microsecondsUntil(deadline))) {
            return false;
        }
    }
}

/// Calls a method of the bus itself and waits for the answer.
bool SdBusConnection::_callBus(const char *method, const char *argument, Deadline deadline) {
    constexpr const char *bus = "org.freedesktop.DBus";
    sd_bus_message *made = nullptr;
    if (::sd_bus_message_new_method_call(_bus, &made, bus, "/org/freedesktop/DBus", bus, method) < 0) {
        return false;
    }
    const SdBusMessage call(made);
    const bool isComplete = argument == nullptr || ::sd_bus_message_append_basic(call.get(), 's', argument) >= 0;
    return isComplete && ::sd_bus_call(_bus, call.get(), microsecondsUntil(deadline), nullptr, nullptr) >= 0;
}

int SdBusConnection::_receive(sd_bus_message *message, void *connection, sd_bus_error * /*error*/) {
    auto &self = *static_cast<SdBusConnection *>(connection);
    const char *const path = ::sd_bus_message_get_path(message);
    const char *const member = ::sd_bus_message_get_member(message);
    const bool isOurs = ::sd_bus_message_is_signal(message, InterfaceName, nullptr) > 0 && path != nullptr && member != nullptr &&
                        std::string_view(path) == ObjectPath;
    if (isOurs) {
        self._names->emplace_back(member);
    }
    return 0; // others may look at it, too
}

} // namespace orvane
