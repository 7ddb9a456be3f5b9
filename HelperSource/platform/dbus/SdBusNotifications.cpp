#include "platform/dbus/SdBusNotifications.h"

#include "platform/dbus/SystemdLibrary.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace orvane {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr const char *objectPath = "/org/orvane/DistributedNotifications";
constexpr const char *interfaceName = "org.orvane.DistributedNotifications";
constexpr const char *matchRule =
    "type='signal',path='/org/orvane/DistributedNotifications',interface='org.orvane.DistributedNotifications'";
constexpr std::chrono::seconds limitOfExchange{1};

/// Microseconds left, at least 1: sd-bus takes 0 for its own, longer limit.
std::uint64_t microsecondsUntil(SteadyClock::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - SteadyClock::now()).count();
    return static_cast<std::uint64_t>(std::max<decltype(left)>(left, 1));
}

/// Member names as the D-Bus protocol has them (version 0.41, "Valid Names").
bool isMemberName(std::string_view name) {
    const auto isLetter = [](char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_'; };
    const auto isAllowed = [&](char byte) { return isLetter(byte) || (byte >= '0' && byte <= '9'); };
    return !name.empty() && name.size() <= 255 && isLetter(name.front()) && std::all_of(name.begin(), name.end(), isAllowed);
}

} // namespace

/// One connection to the bus, closed at the end. Every exchange has a deadline.
class SdBusConnection {
public:
    /// A connection that the bus has accepted, or null.
    [[nodiscard]] static std::unique_ptr<SdBusConnection> open(const std::string &address, SteadyClock::time_point deadline) {
        const SystemdLibrary *const library = SystemdLibrary::load();
        if (library == nullptr)
            return nullptr;
        std::unique_ptr<SdBusConnection> connection(new SdBusConnection(*library));
        const bool isOpen = connection->_open(address) && connection->_waitUntilReady(deadline);
        return isOpen ? std::move(connection) : nullptr;
    }
    SdBusConnection(const SdBusConnection &) = delete;
    SdBusConnection &operator=(const SdBusConnection &) = delete;
    ~SdBusConnection() { _library.busCloseUnref(_bus); }

    [[nodiscard]] int descriptor() const { return _library.busGetDescriptor(_bus); }

    /// The names of our incoming signals are put at the end of `names` from now on, while the connection is processed.
    [[nodiscard]] bool receiveInto(std::deque<std::string> &names, SteadyClock::time_point deadline) {
        _names = &names;
        return _library.busAddFilter(_bus, nullptr, _receive, this) >= 0 && _callBus("AddMatch", matchRule, deadline);
    }

    /// Queues the signal, then waits for the answer to a question: the bus takes messages in order.
    [[nodiscard]] bool send(const std::string &name, SteadyClock::time_point deadline) {
        sd_bus_message *signal = nullptr;
        if (_library.messageNewSignal(_bus, &signal, objectPath, interfaceName, name.c_str()) < 0)
            return false;
        const bool isQueued = _library.busSend(_bus, signal, nullptr) >= 0;
        _library.messageUnref(signal);
        return isQueued && _callBus("GetId", nullptr, deadline);
    }

    /// Handles what has arrived; false when the connection is lost.
    [[nodiscard]] bool process() {
        for (;;) {
            const int result = _library.busProcess(_bus, nullptr);
            if (result <= 0)
                return result == 0;
        }
    }
    [[nodiscard]] bool wait(std::uint64_t microseconds) { return _library.busWait(_bus, microseconds) >= 0; }

private:
    explicit SdBusConnection(const SystemdLibrary &library) : _library(library) {}

    [[nodiscard]] bool _open(const std::string &address) {
        if (address.empty())
            return _library.busOpenUser(&_bus) >= 0;
        return _library.busNew(&_bus) >= 0 && _library.busSetAddress(_bus, address.c_str()) >= 0 &&
               _library.busSetBusClient(_bus, 1) >= 0 && _library.busStart(_bus) >= 0;
    }

    /// sd-bus greets the bus while it is being processed; left to itself it would wait for a minute and a half.
    [[nodiscard]] bool _waitUntilReady(SteadyClock::time_point deadline) {
        for (;;) {
            const int ready = _library.busIsReady(_bus);
            if (ready != 0)
                return ready > 0;
            const int processed = _library.busProcess(_bus, nullptr);
            if (processed < 0 || SteadyClock::now() >= deadline)
                return false;
            if (processed == 0 && !wait(microsecondsUntil(deadline)))
                return false;
        }
    }

    /// Calls a method of the bus itself and waits for the answer.
    [[nodiscard]] bool _callBus(const char *method, const char *argument, SteadyClock::time_point deadline) {
        constexpr const char *bus = "org.freedesktop.DBus";
        sd_bus_message *call = nullptr;
        if (_library.messageNewMethodCall(_bus, &call, bus, "/org/freedesktop/DBus", bus, method) < 0)
            return false;
        const bool isComplete = argument == nullptr || _library.messageAppendBasic(call, 's', argument) >= 0;
        const bool isAnswered = isComplete && _library.busCall(_bus, call, microsecondsUntil(deadline), nullptr, nullptr) >= 0;
        _library.messageUnref(call);
        return isAnswered;
    }

    static int _receive(sd_bus_message *message, void *connection, sd_bus_error * /*error*/) {
        auto &self = *static_cast<SdBusConnection *>(connection);
        const char *const path = self._library.messageGetPath(message);
        const char *const member = self._library.messageGetMember(message);
        const bool isOurs = self._library.messageIsSignal(message, interfaceName, nullptr) > 0 && path != nullptr && member != nullptr &&
                            std::string_view(path) == objectPath;
        if (isOurs)
            self._names->emplace_back(member);
        return 0; // others may look at it, too
    }

    const SystemdLibrary &_library;
    sd_bus *_bus = nullptr;
    std::deque<std::string> *_names = nullptr;
};

SdBusNotifications::SdBusNotifications(std::string address) : _address(std::move(address)) {}

SdBusNotifications::~SdBusNotifications() = default;

void SdBusNotifications::addObserver(const void *observer, std::string_view name, Suspension behavior, Handler handler) {
    _gate.addObserver(observer, name, behavior, std::move(handler));
    if (!_connection)
        _connect();
}

void SdBusNotifications::removeObserver(const void *observer, std::string_view name) {
    _gate.removeObserver(observer, name);
}

bool SdBusNotifications::post(std::string_view name) {
    if (!isMemberName(name))
        return false;
    const auto deadline = SteadyClock::now() + limitOfExchange;
    const auto connection = SdBusConnection::open(_address, deadline);
    return connection && connection->send(std::string(name), deadline);
}

int SdBusNotifications::descriptor() const {
    return _connection ? _connection->descriptor() : -1;
}

bool SdBusNotifications::process() {
    if (_connection && !_connection->process())
        _connection.reset();
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
    const auto deadline = SteadyClock::now() + limitOfExchange;
    auto connection = SdBusConnection::open(_address, deadline);
    if (connection && connection->receiveInto(_arrived, deadline))
        _connection = std::move(connection);
}

} // namespace orvane
