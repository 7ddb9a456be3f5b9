#pragma once

#include "platform/qtdbus/QtDBusSession.h"
#include "ports/SystemLog.h"

#include <QObject>
#include <QString>

#include <functional>

namespace orvane {

/// Messages that the desktop shows for a while and that want no answer (freedesktop.org, Desktop Notifications 1.2, method Notify).
/// Main thread only.
class DesktopNotice final : public QObject {
    Q_OBJECT

public:
    /// The references must outlive it.
    DesktopNotice(QtDBusSession &session, SystemLog &log);
    DesktopNotice(const DesktopNotice &) = delete;
    DesktopNotice &operator=(const DesktopNotice &) = delete;
    ~DesktopNotice() override = default;

    /// Returns at once. `shown` is called later when the desktop has taken the message; when it has not, the log says why. `body` is
    /// plain text, whatever the desktop takes for markup in it.
    void show(const QString &summary, const QString &body, const std::function<void()> &shown);

private:
    QtDBusSession &_session;
    SystemLog &_log;
};

} // namespace orvane
