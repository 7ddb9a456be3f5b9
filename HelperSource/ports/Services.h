#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// Serves requests that other programs send. Called on the main thread.
class ServicesProvider {
public:
    virtual ~ServicesProvider() = default;
    /// A text in `error` is handed back to the caller as the request's failure.
    virtual void makePresetFromServiceUserDataError(std::string_view pasteboard, std::string_view userData,
                                                    std::optional<std::string> &error) = 0;
};

/// The desktop's way to reach this program's services.
class Services {
public:
    virtual ~Services() = default;
    /// Sends requests to `provider` from now on; borrowed, null for none. Main thread only.
    virtual void setServicesProvider(ServicesProvider *provider) = 0;
};

} // namespace orvane
