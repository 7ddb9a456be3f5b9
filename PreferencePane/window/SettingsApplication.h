#pragma once

#include "platform/qtdbus/QtDBusSession.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

namespace orvane {

/// The settings program on the session bus: name `org.orvane.Settings`, object `/org/orvane/Settings`, interface
/// org.freedesktop.Application (freedesktop.org, Desktop Entry 1.5, "D-Bus Activation"). A second start hands over to the first.
/// Main thread only.
class SettingsApplication final : public QObject {
    Q_OBJECT

public:
    struct Hooks {
        std::function<void()> activate;
        std::function<void(const QStringList &paths)> open;
        std::function<void()> quit;
    };

    /// The session must outlive it.
    SettingsApplication(QtDBusSession &session, Hooks hooks);

    /// Makes this the program that has the name. False only when another one has it; true without a bus, too.
    [[nodiscard]] bool claimName();
    /// Has the program with the name come to the front and open the paths. False when it does not answer within five seconds.
    [[nodiscard]] bool handOver(const QStringList &paths);

private:
    friend class SettingsApplicationAdaptor;
    void _run(const std::function<void()> &hook, const QVariantMap &platformData);

    QtDBusSession &_session;
    const Hooks _hooks;
    QObject _object;
    bool _wantsName = false;
};

/// The exported interface. Its methods carry the interface's own names.
class SettingsApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    SettingsApplicationAdaptor(SettingsApplication &application, QObject &object);

public Q_SLOTS:
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &uris, const QVariantMap &platformData);
    /// Actions: show-pane (with the pane's identifier, of which there is one); quit.
    void ActivateAction(const QString &actionName, const QVariantList &parameter, const QVariantMap &platformData,
                        const QDBusMessage &message);

private:
    SettingsApplication &_application;
};

} // namespace orvane
