#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

// Values of the com.canonical.dbusmenu interface, version 3, as its description dbus-menu.xml (libdbusmenu 16.04) has them.
namespace orvane {

/// One item with those below it: (ia{sv}av).
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children; ///< each a DBusMenuLayout
};

/// An item's properties: (ia{sv}).
struct DBusMenuProperties {
    int id = 0;
    QVariantMap properties;
};

/// Names of properties that an item has no longer: (ias).
struct DBusMenuRemovedProperties {
    int id = 0;
    QStringList names;
};

/// What happened to an item: (isvu).
struct DBusMenuEvent {
    int id = 0;
    QString type;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayout &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayout &value);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuProperties &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuProperties &value);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuRemovedProperties &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuRemovedProperties &value);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &value);

/// Makes QtDBus know them; as often as one likes.
void registerDBusMenuTypes();

} // namespace orvane

Q_DECLARE_METATYPE(orvane::DBusMenuLayout)
Q_DECLARE_METATYPE(orvane::DBusMenuProperties)
Q_DECLARE_METATYPE(orvane::DBusMenuRemovedProperties)
Q_DECLARE_METATYPE(orvane::DBusMenuEvent)
