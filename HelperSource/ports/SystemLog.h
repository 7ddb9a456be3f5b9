#pragma once

#include <string_view>

namespace orvane {

/// The log that the user can read after the fact. Any thread; never fails visibly.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    /// One entry, UTF-8; line feeds inside it are kept.
    virtual void log(std::string_view text) = 0;
};

} // namespace orvane
