#pragma once

#include <string_view>

namespace orvane {

/// The program in which the user changes settings.
class SystemPreferences {
public:
    virtual ~SystemPreferences() = default;
    /// Brings it to the front, starting it when needed, with the pane of that identifier current. Does not wait for it.
    /// False when nobody serves it. Main thread only.
    virtual bool showPane(std::string_view identifier) = 0;
};

} // namespace orvane
