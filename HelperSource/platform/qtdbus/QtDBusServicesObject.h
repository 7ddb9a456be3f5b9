#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <optional>
#include <string>

namespace orvane {

class QtDBusServices;

/// The exported object; its interfaces are its children.
class QtDBusServicesObject final : public QObject {
    Q_OBJECT

public:
    static constexpr const char *Path = "/org/orvane/Helper";

    explicit QtDBusServicesObject(QtDBusServices &services);

    /// The folder that a path or file URI names, as an absolute path; nothing for anything else. `ay` values may hold a NUL at the end.
    [[nodiscard]] static std::optional<std::string> folderOf(const QVariant &value);
};

/// org.freedesktop.Application. Its methods carry the interface's own names.
class QtDBusApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    QtDBusApplicationAdaptor(QtDBusServices &services, QObject &object);

public Q_SLOTS:
    void Activate(const QVariantMap &platformData);
    /// The first folder among the URIs stands for the front window's.
    void Open(const QStringList &uris, const QVariantMap &platformData);
    /// Actions: make-preset; make-preset-in with a folder (s or ay); preferences; quit.
    void ActivateAction(const QString &actionName, const QVariantList &parameter, const QVariantMap &platformData,
                        const QDBusMessage &message);

private:
    QtDBusServices &_services;
};

/// org.orvane.Services. Its method carries the service's own name.
class QtDBusServicesAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.orvane.Services")

public:
    QtDBusServicesAdaptor(QtDBusServices &services, QObject &object);

public Q_SLOTS:
    /// Fails with org.orvane.Services.Error.Failed when the provider says so.
    void makePresetFromService(const QString &pasteboard, const QString &userData, const QDBusMessage &message);

private:
    QtDBusServices &_services;
};

} // namespace orvane
