#pragma once

#include "platform/qt/QtApplication.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace orvane {

/// Ends the program in order on SIGTERM, SIGINT and SIGHUP: windows that are open count as given up, and the event loop ends. A
/// second signal ends the process at once. A main thread that does not end the event loop within three seconds, because it hangs in
/// something, is not waited for: the process then ends as it is, with the status 128 and the signal's number. At the end of a
/// session nothing is asked, and the session manager is told not to start the helper again (its autostart entry does).
///
/// One at a time, made on the main thread once the application is loaded; its end gives the signals back.
class QtTermination {
public:
    /// A number that changes as long as the main thread is at something that should not be cut off: the three seconds then begin
    /// anew. Asked on another thread.
    using Progress = std::function<std::uint64_t()>;

    /// `patience` is how long an end in order may take.
    explicit QtTermination(QtApplication &application, Progress progress = {},
                           std::chrono::milliseconds patience = std::chrono::seconds(3));
    QtTermination(const QtTermination &) = delete;
    QtTermination &operator=(const QtTermination &) = delete;
    ~QtTermination();

private:
    struct Parts;
    void _signalled();

    QtApplication &_application;
    std::unique_ptr<Parts> _parts;
};

} // namespace orvane
