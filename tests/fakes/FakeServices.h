#pragma once

#include "ports/Services.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Another program that uses this one's services.
class FakeServices final : public Services {
public:
    void setServicesProvider(ServicesProvider *newProvider) override {
        provider = newProvider;
        journal.emplace_back(newProvider != nullptr ? "setServicesProvider" : "setServicesProvider none");
    }

    /// Sends the request; gives the error that came back. False when nobody provides services.
    bool makePreset(std::string_view pasteboard, std::string_view userData = {}) {
        if (provider == nullptr) {
            return false;
        }
        error.reset();
        provider->makePresetFromServiceUserDataError(pasteboard, userData, error);
        return true;
    }

    ServicesProvider *provider = nullptr;
    std::optional<std::string> error; ///< of the last request
    std::vector<std::string> journal;
};

} // namespace orvane
