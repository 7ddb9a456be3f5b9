#include "platform/qtdbus/QtDBusSystemPreferences.h"

#include "platform/qtdbus/DetachedProgram.h"
#include "platform/qtdbus/QtActivationToken.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int LimitForBus = 300;       // ms; dbus-daemon itself answers in a fraction of one
constexpr int LimitForProgram = 25000; // ms; it may have to be started, and nobody waits

const QString ApplicationInterface = u"org.freedesktop.Application"_s;

/// As the freedesktop.org, Desktop Entry 1.5 has it under "D-Bus Activation".
QString pathOf(const QString &applicationId) {
    QString path = u'/' + applicationId;
    return path.replace(u'.', u'/').replace(u'-', u'_');
}

QDBusMessage questionToBus(const QString &member) {
    const QString bus = u"org.freedesktop.DBus"_s;
    return QDBusMessage::createMethodCall(bus, u"/org/freedesktop/DBus"_s, bus, member);
}

} // namespace

QtDBusSystemPreferences::QtDBusSystemPreferences(QtDBusSession &session, SystemLog &log, QString program, QString applicationId)
    : _session(session), _log(log), _program(std::move(program)), _applicationId(std::move(applicationId)), _path(pathOf(_applicationId)) {}

bool QtDBusSystemPreferences::showPane(std::string_view identifier) {
    if (!_session.isConnected() || !_isServed()) {
        return _start();
    }
    QDBusMessage call = QDBusMessage::createMethodCall(_applicationId, _path, ApplicationInterface, u"ActivateAction"_s);
    const QVariantList parameters{QString::fromUtf8(identifier.data(), static_cast<qsizetype>(identifier.size()))};
    call.setArguments({u"show-pane"_s, parameters, QtActivationToken::platformData()});
    auto *const answer = new QDBusPendingCallWatcher(_session.connection().asyncCall(call, LimitForProgram), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        if (answer->isError()) {
            _activate();
        }
    });
    return true;
}

/// Runs, or can be started.
bool QtDBusSystemPreferences::_isServed() const {
    const QDBusConnection connection = _session.connection();
    QDBusMessage hasOwner = questionToBus(u"NameHasOwner"_s);
    hasOwner.setArguments({_applicationId});
    if (const QDBusReply<bool> reply = connection.call(hasOwner, QDBus::Block, LimitForBus); reply.isValid() && reply.value()) {
        return true;
    }
    const QDBusReply<QStringList> names = connection.call(questionToBus(u"ListActivatableNames"_s), QDBus::Block, LimitForBus);
    return names.isValid() && names.value().contains(_applicationId);
}

bool QtDBusSystemPreferences::_start() const {
    if (!_program.isEmpty() && startDetached(_program, {})) {
        return true;
    }
    _log.log("There is no settings program: the session bus does not know '" + _applicationId.toStdString() +
             "', and 'orvane-settings' is not beside the helper");
    return false;
}

void QtDBusSystemPreferences::_activate() {
    QDBusMessage call = QDBusMessage::createMethodCall(_applicationId, _path, ApplicationInterface, u"Activate"_s);
    call.setArguments({QtActivationToken::platformData()});
    auto *const answer = new QDBusPendingCallWatcher(_session.connection().asyncCall(call, LimitForProgram), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        if (answer->isError()) {
            _log.log("The settings program does not answer: " + answer->error().message().toStdString());
        }
    });
}

} // namespace orvane
