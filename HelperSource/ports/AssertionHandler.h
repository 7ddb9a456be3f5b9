#pragma once

#include <stdexcept>
#include <string_view>

namespace orvane {

/// A broken invariant, on its way to whoever can give up what was being done.
class AssertionFailure : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

/// Where broken invariants go. Any thread.
class AssertionHandler {
public:
    virtual ~AssertionHandler() = default;
    /// `method` as in "-[SGHotKeyCenter sendCarbonEvent:]", `object` identifies the receiver and is never dereferenced, `file` is
    /// the source's name. May throw `AssertionFailure`, and then nothing else; when it returns, the operation goes on.
    virtual void handleFailureInMethod(std::string_view method, const void *object, std::string_view file, int lineNumber,
                                       std::string_view description) = 0;
};

} // namespace orvane
