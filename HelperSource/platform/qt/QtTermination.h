#pragma once

#include "platform/qt/QtApplication.h"

#include <memory>

namespace orvane {

/// Ends the program in order on SIGTERM, SIGINT and SIGHUP: windows that are open count as given up, and the event loop ends. A
/// second signal ends the process at once. At the end of a session nothing is asked, and the session manager is told not to start
/// the helper again (its autostart entry does). One at a time, made on the main thread once the application is loaded; its
/// end gives the signals back.
class QtTermination {
public:
    explicit QtTermination(QtApplication &application);
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
