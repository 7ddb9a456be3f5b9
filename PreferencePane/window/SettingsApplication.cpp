#include "window/SettingsApplication.h"

#include "platform/qtdbus/BusName.h"
#include "platform/qtdbus/QtActivationToken.h"
#include "platform/qtdbus/QtDBusServicesObject.h"

#include <QDBusError>
#include <QFile>
#include <QUrl>

#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

const QString Name = u"org.orvane.Settings"_s;
const QString Path = u"/org/orvane/Settings"_s;
constexpr int LimitForOther = 5000; // ms

} // namespace

SettingsApplication::SettingsApplication(QtDBusSession &session, Hooks hooks) : _session(session), _hooks(std::move(hooks)) {
    new SettingsApplicationAdaptor(*this, _object); // owned by the object
    connect(&_session, &QtDBusSession::connected, this, [this] {
        if (_wantsName) {
            static_cast<void>(claimName());
        }
    });
}

bool SettingsApplication::claimName() {
    _wantsName = true;
    if (!_session.isConnected()) {
        return true;
    }
    // Before the name: the bus may have a request ready for its owner.
    _session.connection().registerObject(Path, &_object, QDBusConnection::ExportAdaptors);
    _wantsName = requestBusName(_session.connection(), Name).value_or(true);
    return _wantsName;
}

bool SettingsApplication::handOver(const QStringList &paths) {
    QStringList uris;
    for (const QString &each : paths) {
        uris.append(QUrl::fromLocalFile(each).toString(QUrl::FullyEncoded));
    }
    const QString member = uris.isEmpty() ? u"Activate"_s : u"Open"_s;
    QDBusMessage call = QDBusMessage::createMethodCall(Name, Path, u"org.freedesktop.Application"_s, member);
    const QVariantMap platformData = QtActivationToken::platformData();
    call.setArguments(uris.isEmpty() ? QVariantList{platformData} : QVariantList{uris, platformData});
    return _session.connection().call(call, QDBus::Block, LimitForOther).type() == QDBusMessage::ReplyMessage;
}

/// Once the caller has its answer.
void SettingsApplication::_run(const std::function<void()> &hook, const QVariantMap &platformData) {
    QMetaObject::invokeMethod(
        this,
        [hook, token = QtActivationToken::inPlatformData(platformData)] {
            const QtActivationToken permission(token);
            hook();
        },
        Qt::QueuedConnection);
}

SettingsApplicationAdaptor::SettingsApplicationAdaptor(SettingsApplication &application, QObject &object)
    : QDBusAbstractAdaptor(&object), _application(application) {}

void SettingsApplicationAdaptor::Activate(const QVariantMap &platformData) {
    _application._run(_application._hooks.activate, platformData);
}

void SettingsApplicationAdaptor::Open(const QStringList &uris, const QVariantMap &platformData) {
    QStringList paths;
    for (const QString &uri : uris) {
        if (const auto local = QtDBusServicesObject::folderOf(uri)) {
            paths.append(QFile::decodeName(local->c_str()));
        }
    }
    _application._run(
        [hooks = _application._hooks, paths] {
            hooks.activate();
            hooks.open(paths);
        },
        platformData);
}

void SettingsApplicationAdaptor::ActivateAction(const QString &actionName, const QVariantList & /*parameter*/,
                                                const QVariantMap &platformData, const QDBusMessage &message) {
    if (actionName == "show-pane"_L1) {
        _application._run(_application._hooks.activate, platformData);
    } else if (actionName == "quit"_L1) {
        _application._run(_application._hooks.quit, platformData);
    } else {
        message.setDelayedReply(true);
        _application._session.connection().send(
            message.createErrorReply(QDBusError::InvalidArgs, u"There is no action %1."_s.arg(actionName)));
    }
}

} // namespace orvane
