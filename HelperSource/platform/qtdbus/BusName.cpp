#include "platform/qtdbus/BusName.h"

#include <QDBusReply>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int Limit = 500; // ms; dbus-daemon itself answers in a fraction of one

} // namespace

QDBusMessage busNameRequest(const QString &name) {
    const QString bus = u"org.freedesktop.DBus"_s;
    QDBusMessage call = QDBusMessage::createMethodCall(bus, u"/org/freedesktop/DBus"_s, bus, u"RequestName"_s);
    constexpr uint doNotQueue = 4; // DBUS_NAME_FLAG_DO_NOT_QUEUE
    call.setArguments({name, doNotQueue});
    return call;
}

std::optional<bool> requestBusName(const QDBusConnection &connection, const QString &name) {
    constexpr uint taken = 3; // DBUS_REQUEST_NAME_REPLY_EXISTS
    const QDBusReply<uint> reply = connection.call(busNameRequest(name), QDBus::Block, Limit);
    return reply.isValid() ? std::optional(reply.value() != taken) : std::nullopt;
}

} // namespace orvane
