#include "platform/qtdbus/QtDBusNotifications.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

const QString Path = u"/org/orvane/DistributedNotifications"_s;
const QString Interface = u"org.orvane.DistributedNotifications"_s;
constexpr int LimitOfExchange = 500; // ms; dbus-daemon itself answers in a fraction of one

} // namespace

QtDBusNotifications::QtDBusNotifications(QtDBusSession &session) : _session(session) {
    connect(&_session, &QtDBusSession::connected, this, [this] {
        _isSubscribed = false;
        if (_gate.hasObservers()) {
            _subscribe();
        }
    });
}

void QtDBusNotifications::addObserver(const void *observer, std::string_view name, Suspension behavior, Handler handler) {
    _gate.addObserver(observer, name, behavior, std::move(handler));
    if (!_isSubscribed && _session.isConnected()) {
        _subscribe();
    }
}

void QtDBusNotifications::removeObserver(const void *observer, std::string_view name) {
    _gate.removeObserver(observer, name);
}

bool QtDBusNotifications::post(std::string_view name) {
    if (!isNotificationName(name) || !_session.isConnected()) {
        return false;
    }
    const QString member = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
    return _session.connection().send(QDBusMessage::createSignal(Path, Interface, member));
}

/// One subscription for all names. QtDBus asks the bus for it without waiting; the bus handles what we ask in order, so that the
/// answer to a question means that the subscription stands.
void QtDBusNotifications::_subscribe() {
    QDBusConnection connection = _session.connection();
    _isSubscribed = connection.connect({}, Path, Interface, {}, this, SLOT(_arrive(QDBusMessage)));
    connection.call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetId"_s),
        QDBus::Block, LimitOfExchange);
}

/// What has come by the time the event loop gets to it is delivered together: somebody who says it a hundred times in a row must not
/// have a hundred menus built.
void QtDBusNotifications::_arrive(const QDBusMessage &signal) {
    _waiting.push_back(signal.member().toStdString());
    if (_waiting.size() == 1) {
        QMetaObject::invokeMethod(this, &QtDBusNotifications::_deliverWaiting, Qt::QueuedConnection);
    }
}

void QtDBusNotifications::_deliverWaiting() {
    const std::vector<std::string> names = std::exchange(_waiting, {});
    for (auto name = names.begin(); name != names.end(); ++name) {
        _gate.arrive(*name, std::find(std::next(name), names.end(), *name) != names.end());
    }
}

} // namespace orvane
