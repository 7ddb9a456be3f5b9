#include "platform/qtdbus/StatusNotifierRegistration.h"

#include "platform/qtdbus/BusName.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QStringList>

#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

const QString WatcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString WatcherPath = u"/StatusNotifierWatcher"_s;
const QString BusName = u"org.freedesktop.DBus"_s;
const QString BusPath = u"/org/freedesktop/DBus"_s;

} // namespace

StatusNotifierRegistration::StatusNotifierRegistration(QDBusConnection connection, QString serviceName, Times checks)
    : _connection(std::move(connection)), _serviceName(std::move(serviceName)), _checks(std::move(checks)) {
    _checkTimer.setSingleShot(true);
    connect(&_checkTimer, &QTimer::timeout, this, &StatusNotifierRegistration::_check);

    _connection.asyncCall(busNameRequest(_serviceName));

    for (const char *signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        _connection.connect({}, WatcherPath, WatcherName, QLatin1String(signal), this, SLOT(_askForHost()));
    }
    connect(&_serviceWatcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString & /*name*/, const QString & /*old*/, const QString &owner) {
                _watcherWent();
                if (!owner.isEmpty()) {
                    _watcherCame();
                }
            });
    _serviceWatcher.setConnection(_connection);
    _serviceWatcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    _serviceWatcher.addWatchedService(WatcherName);

    QDBusMessage question = QDBusMessage::createMethodCall(BusName, BusPath, BusName, u"NameHasOwner"_s);
    question.setArguments({WatcherName});
    auto *const answer = new QDBusPendingCallWatcher(_connection.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<bool> reply = *answer;
        if (!reply.isError() && reply.value() && !_watcherIsThere) {
            _watcherCame();
        }
    });
}

StatusNotifierRegistration::~StatusNotifierRegistration() {
    QDBusMessage release = QDBusMessage::createMethodCall(BusName, BusPath, BusName, u"ReleaseName"_s);
    release.setArguments({_serviceName});
    _connection.send(release);
}

void StatusNotifierRegistration::_watcherCame() {
    _watcherIsThere = true;
    ++_watcherNumber;
    _registerItem();
    _askForHost();
    _nextCheck = 0;
    _startCheck();
}

void StatusNotifierRegistration::_watcherWent() {
    _watcherIsThere = false;
    ++_watcherNumber;
    _checkTimer.stop();
    _setHost(false);
}

void StatusNotifierRegistration::_registerItem() {
    QDBusMessage call = QDBusMessage::createMethodCall(WatcherName, WatcherPath, WatcherName, u"RegisterStatusNotifierItem"_s);
    call.setAutoStartService(false);
    call.setArguments({_serviceName});
    _connection.asyncCall(call);
}

QDBusMessage StatusNotifierRegistration::_question(const QString &property) const {
    QDBusMessage question = QDBusMessage::createMethodCall(WatcherName, WatcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question.setAutoStartService(false);
    question.setArguments({WatcherName, property});
    return question;
}

void StatusNotifierRegistration::_askForHost() {
    auto *const answer = new QDBusPendingCallWatcher(_connection.asyncCall(_question(u"IsStatusNotifierHostRegistered"_s)), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, number = _watcherNumber] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (number == _watcherNumber && !reply.isError()) {
            _setHost(_watcherIsThere && reply.value().variant().toBool());
        }
    });
}

void StatusNotifierRegistration::_startCheck() {
    if (_nextCheck >= _checks.size()) {
        return;
    }
    const auto before = _nextCheck == 0 ? std::chrono::milliseconds(0) : _checks[_nextCheck - 1];
    _checkTimer.start(_checks[_nextCheck] - before);
    ++_nextCheck;
}

void StatusNotifierRegistration::_check() {
    auto *const answer = new QDBusPendingCallWatcher(_connection.asyncCall(_question(u"RegisteredStatusNotifierItems"_s)), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, number = _watcherNumber] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (number != _watcherNumber || reply.isError()) {
            return;
        }
        bool isListed = false;
        for (const QString &item : reply.value().variant().toStringList()) {
            isListed = isListed || _isOurs(item);
        }
        if (!isListed) {
            _registerItem();
        }
    });
    _askForHost(); // a watcher that is late with its host need not tell
    _startCheck();
}

/// Watchers list an item by its bus name or its owner's, most of them followed by the object's path.
bool StatusNotifierRegistration::_isOurs(const QString &item) const {
    const auto isItemOf = [&item](const QString &name) {
        return item.startsWith(name) && (item.size() == name.size() || item.at(name.size()) == u'/' || item.at(name.size()) == u'@');
    };
    return isItemOf(_serviceName) || isItemOf(_connection.baseService());
}

void StatusNotifierRegistration::_setHost(bool isThere) {
    if (std::exchange(_hostIsThere, isThere) != isThere) {
        Q_EMIT hostChanged();
    }
}

} // namespace orvane
