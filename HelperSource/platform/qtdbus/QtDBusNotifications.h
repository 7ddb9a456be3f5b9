#pragma once

#include "platform/dbus/NotificationGate.h"
#include "platform/qtdbus/QtDBusSession.h"
#include "ports/DistributedNotifications.h"

#include <QDBusMessage>
#include <QObject>

#include <string>
#include <vector>

namespace orvane {

/// Notifications as D-Bus signals on the session bus, by QtDBus and the program's event loop: path
/// `/org/orvane/DistributedNotifications`, interface `org.orvane.DistributedNotifications`, the notification's name as member, no
/// arguments, any sender. After the bus has gone and come back they arrive again; what was sent meanwhile did not exist. Of those
/// that wait together, an observer who wants them coalesced gets the last. Main thread only.
class QtDBusNotifications final : public QObject, public DistributedNotifications {
    Q_OBJECT

public:
    /// `session` must outlive it.
    explicit QtDBusNotifications(QtDBusSession &session);
    QtDBusNotifications(const QtDBusNotifications &) = delete;
    QtDBusNotifications &operator=(const QtDBusNotifications &) = delete;
    ~QtDBusNotifications() override = default;

    /// What others send after the return arrives; without a bus, as soon as there is one.
    void addObserver(const void *observer, std::string_view name, Suspension behavior, Handler handler) override;
    void removeObserver(const void *observer, std::string_view name) override;
    /// Does not wait. False also for a name that is no member name of D-Bus.
    bool post(std::string_view name) override;

    /// While suspended, observers get what their suspension behaviour says.
    void suspend() { _gate.suspend(); }
    void resume() { _gate.resume(); }

private Q_SLOTS:
    void _arrive(const QDBusMessage &signal);

private:
    void _subscribe();
    void _deliverWaiting();

    QtDBusSession &_session;
    NotificationGate _gate;
    std::vector<std::string> _waiting; ///< names, in order of arrival
    bool _isSubscribed = false;
};

} // namespace orvane
