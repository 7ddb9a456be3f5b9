#include "platform/qtdbus/DBusMenuTypes.h"

#include <QDBusMetaType>

namespace orvane {

namespace {

template <typename... Members> QDBusArgument &write(QDBusArgument &argument, const Members &...members) {
    argument.beginStructure();
    (argument << ... << members);
    argument.endStructure();
    return argument;
}

template <typename... Members> const QDBusArgument &read(const QDBusArgument &argument, Members &...members) {
    argument.beginStructure();
    (argument >> ... >> members);
    argument.endStructure();
    return argument;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayout &value) {
    return write(argument, value.id, value.properties, value.children);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayout &value) {
    return read(argument, value.id, value.properties, value.children);
}

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuProperties &value) {
    return write(argument, value.id, value.properties);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuProperties &value) {
    return read(argument, value.id, value.properties);
}

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuRemovedProperties &value) {
    return write(argument, value.id, value.names);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuRemovedProperties &value) {
    return read(argument, value.id, value.names);
}

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &value) {
    return write(argument, value.id, value.type, value.data, value.timestamp);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &value) {
    return read(argument, value.id, value.type, value.data, value.timestamp);
}

void registerDBusMenuTypes() {
    qDBusRegisterMetaType<DBusMenuLayout>();
    qDBusRegisterMetaType<DBusMenuProperties>();
    qDBusRegisterMetaType<QList<DBusMenuProperties>>();
    qDBusRegisterMetaType<DBusMenuRemovedProperties>();
    qDBusRegisterMetaType<QList<DBusMenuRemovedProperties>>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<QList<DBusMenuEvent>>();
}

} // namespace orvane
