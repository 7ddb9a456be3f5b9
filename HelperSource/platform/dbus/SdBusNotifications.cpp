#include "platform/dbus/SdBusNotifications.h"

#include "platform/dbus/SdBusConnection.h"

#include <cstdint>
#include <string_view>
#include <utility>

namespace orvane {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr std::chrono::seconds LimitOfExchange{1};

} // namespace

SdBusNotifications::SdBusNotifications(std::string address) : _address(std::move(address)) {}

SdBusNotifications::~SdBusNotifications() = default;

void SdBusNotifications::addObserver(const void *observer, std::string_view name, Suspension behavior, Handler handler) {
    _gate.addObserver(observer, name, behavior, std::move(handler));
    if (!_connection) {
        _connect();
    }
}

void SdBusNotifications::removeObserver(const void *observer, std::string_view name) {
    _gate.removeObserver(observer, name);
}

bool SdBusNotifications::post(std::string_view name) {
    if (!isNotificationName(name)) {
        return false;
    }
    const auto deadline = SteadyClock::now() + LimitOfExchange;
    const auto connection = SdBusConnection::open(_address, deadline);
    return connection && connection->send(std::string(name), deadline);
}

int SdBusNotifications::descriptor() const {
    return _connection ? _connection->descriptor() : -1;
}

bool SdBusNotifications::process() {
    if (_connection && !_connection->process()) {
        _connection.reset();
    }
    // sd-bus cannot be entered again from its own callbacks, but a handler may run an event loop of its own.
    while (!_arrived.empty()) {
        const std::string name = std::move(_arrived.front());
        _arrived.pop_front();
        _gate.arrive(name);
    }
    return _connection != nullptr;
}

bool SdBusNotifications::wait(std::chrono::microseconds limit) {
    return _connection && _connection->wait(static_cast<std::uint64_t>(std::max<std::chrono::microseconds::rep>(limit.count(), 0)));
}

void SdBusNotifications::_connect() {
    const auto deadline = SteadyClock::now() + LimitOfExchange;
    auto connection = SdBusConnection::open(_address, deadline);
    if (connection && connection->receiveInto(_arrived, deadline)) {
        _connection = std::move(connection);
    }
}

} // namespace orvane
