#pragma once

#include "ports/SystemPreferences.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Remembers which panes were asked for.
class FakeSystemPreferences final : public SystemPreferences {
public:
    bool showPane(std::string_view identifier) override {
        panes.emplace_back(identifier);
        return isServed;
    }

    bool isServed = true;
    std::vector<std::string> panes; ///< identifiers, also those that nobody served
};

} // namespace orvane
