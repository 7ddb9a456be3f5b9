#pragma once

#include "platform/qt/QtApplication.h"
#include "platform/qt/QtMainThread.h"
#include "ports/Alerts.h"

class QDialog;

namespace orvane {

/// Alerts as windows. Texts are shown as they are (never as rich text), can be selected, wrap anywhere and scroll when they are very
/// long. While an alert is up, work of other threads waits, and so do their alerts; one that the main thread itself asks for
/// meanwhile is shown once the present one has been dismissed. When the program quits, the alert counts as dismissed.
class QtAlerts final : public Alerts {
public:
    QtAlerts(QtApplication &application, QtMainThread &mainThread) : _application(application), _mainThread(mainThread) {}
    QtAlerts(const QtAlerts &) = delete;
    QtAlerts &operator=(const QtAlerts &) = delete;

    void runAlertPanel(const std::optional<std::string> &title, const std::optional<std::string> &message) override;

private:
    QtApplication &_application;
    QtMainThread &_mainThread;
    QDialog *_present = nullptr; ///< the alert that is up
};

} // namespace orvane
