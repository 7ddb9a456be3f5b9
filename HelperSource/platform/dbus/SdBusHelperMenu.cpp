#include "platform/dbus/SdBusHelperMenu.h"

#include "platform/dbus/SdBusConnection.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace orvane {

namespace {

constexpr const char *HelperName = "org.orvane.Helper";
constexpr const char *HelperPath = "/org/orvane/Helper";
constexpr const char *ApplicationInterface = "org.freedesktop.Application";

/// Keys of the platform data, and where this program has got the values.
constexpr std::array<std::pair<const char *, const char *>, 2> Tokens = {
    {{"activation-token", "XDG_ACTIVATION_TOKEN"}, {"desktop-startup-id", "DESKTOP_STARTUP_ID"}}};

class OwnedError {
public:
    OwnedError() = default;
    OwnedError(const OwnedError &) = delete;
    OwnedError &operator=(const OwnedError &) = delete;
    ~OwnedError() { ::sd_bus_error_free(&_error); }
    [[nodiscard]] sd_bus_error *get() { return &_error; }

private:
    sd_bus_error _error = SD_BUS_ERROR_NULL;
};

bool appendParameter(sd_bus_message *call, const std::optional<std::string> &folder) {
    return ::sd_bus_message_open_container(call, 'a', "v") >= 0 &&
           (!folder || ::sd_bus_message_append(call, "v", "s", folder->c_str()) >= 0) && ::sd_bus_message_close_container(call) >= 0;
}

bool appendPlatformData(sd_bus_message *call) {
    if (::sd_bus_message_open_container(call, 'a', "{sv}") < 0) {
        return false;
    }
    for (const auto &[key, variable] : Tokens) {
        const char *const token = std::getenv(variable);
        if (token != nullptr && *token != '\0' && ::sd_bus_message_append(call, "{sv}", key, "s", token) < 0) {
            return false;
        }
    }
    return ::sd_bus_message_close_container(call) >= 0;
}

std::string reasonOf(sd_bus_error *error, int status) {
    if (::sd_bus_error_has_name(error, SD_BUS_ERROR_SERVICE_UNKNOWN) > 0 ||
        ::sd_bus_error_has_name(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) > 0) {
        return "the helper does not run and cannot be started";
    }
    if (status == -ETIMEDOUT || ::sd_bus_error_has_name(error, SD_BUS_ERROR_NO_REPLY) > 0) {
        return "the helper does not answer";
    }
    return error->message != nullptr ? error->message : std::strerror(-status);
}

} // namespace

bool SdBusHelperMenu::show(const std::optional<std::string> &folder, std::string &why, std::chrono::milliseconds limit) const {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    const auto connection = SdBusConnection::open(_address, deadline);
    if (!connection) {
        why = "the session bus cannot be reached";
        return false;
    }
    sd_bus_message *made = nullptr;
    int status = ::sd_bus_message_new_method_call(connection->bus(), &made, HelperName, HelperPath, ApplicationInterface, "ActivateAction");
    const SdBusMessage call(made);
    if (status < 0 || ::sd_bus_message_append(made, "s", folder ? "make-preset-in" : "make-preset") < 0 || !appendParameter(made, folder) ||
        !appendPlatformData(made)) {
        why = "the message cannot be written: texts on the bus are UTF-8";
        return false;
    }
    OwnedError error;
    status = ::sd_bus_call(connection->bus(), made, microsecondsUntil(deadline), error.get(), nullptr);
    if (status < 0) {
        why = reasonOf(error.get(), status);
    }
    return status >= 0;
}

} // namespace orvane
