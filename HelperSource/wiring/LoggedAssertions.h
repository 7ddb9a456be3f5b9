#pragma once

#include "ports/AssertionHandler.h"
#include "ports/SystemLog.h"

#include <string>
#include <string_view>

namespace orvane {

/// Notes a broken invariant in the log and gives up what was being done.
class LoggedAssertions final : public AssertionHandler {
public:
    /// The log is borrowed.
    explicit LoggedAssertions(SystemLog &log) : _log(log) {}

    void handleFailureInMethod(std::string_view method, const void * /*object*/, std::string_view file, int lineNumber,
                               std::string_view description) override {
        std::string text = "*** Assertion failure in ";
        text.append(method).append(", ").append(file).append(":").append(std::to_string(lineNumber)).append(" ").append(description);
        _log.log(text);
        throw AssertionFailure(text);
    }

private:
    SystemLog &_log;
};

} // namespace orvane
