#include "platform/filemanagers/BusCalls.h"

#include <QDBusMessage>
#include <QDBusVariant>

#include <algorithm>

namespace orvane {

namespace {

using namespace Qt::StringLiterals;

std::optional<QVariant> unwrapped(const std::optional<QVariant> &value) {
    if (!value || value->metaType() != QMetaType::fromType<QDBusVariant>()) {
        return std::nullopt;
    }
    return value->value<QDBusVariant>().variant();
}

BusMethod propertyGetter(const BusMethod &method) {
    return {method.service, method.path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s};
}

} // namespace

QDBusPendingCall BusCalls::send(const BusMethod &method, const QVariantList &arguments) const {
    if (_deadline.passed()) {
        return QDBusPendingCall::fromError(QDBusError(QDBusError::Timeout, u"no time left"_s));
    }
    QDBusMessage message = QDBusMessage::createMethodCall(method.service, method.path, method.interface, method.member);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return _connection.asyncCall(message, std::max(1, _deadline.remaining()));
}

QDBusPendingCall BusCalls::sendProperty(const BusMethod &method) const {
    return send(propertyGetter(method), {method.interface, method.member});
}

std::optional<QVariant> BusCalls::answer(QDBusPendingCall &call) {
    call.waitForFinished();
    const QDBusMessage reply = call.reply();
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return std::nullopt;
    }
    return reply.arguments().constFirst();
}

std::optional<QVariant> BusCalls::propertyAnswer(QDBusPendingCall &call) {
    return unwrapped(answer(call));
}

std::optional<QVariant> BusCalls::call(const BusMethod &method, const QVariantList &arguments) const {
    QDBusPendingCall pending = send(method, arguments);
    return answer(pending);
}

std::optional<QVariant> BusCalls::property(const BusMethod &method) const {
    QDBusPendingCall pending = sendProperty(method);
    return propertyAnswer(pending);
}

bool BusCalls::isOwned(const QString &name) const {
    const BusMethod method = {u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameHasOwner"_s};
    return call(method, {name}).value_or(QVariant()).toBool();
}

} // namespace orvane
