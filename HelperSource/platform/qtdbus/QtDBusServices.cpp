#include "platform/qtdbus/QtDBusServices.h"

#include "platform/qtdbus/BusName.h"
#include "platform/qtdbus/QtActivationToken.h"

#include <QDBusMessage>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

const QString Name = u"org.orvane.Helper"_s;
constexpr int LimitForOther = 3000; // ms
constexpr int BetweenWindows = 20;  // ms until it is looked again what a request has on the screen

} // namespace

QtDBusServices::QtDBusServices(QtDBusSession &session, SystemLog &log, Hooks hooks)
    : _session(session), _log(log), _hooks(std::move(hooks)), _object(*this) {
    connect(&_session, &QtDBusSession::connected, this, [this] {
        if (!_wantsName) {
            return;
        }
        _export();
        if (requestBusName(_session.connection(), Name) == false) {
            _log.log("Another program has taken the bus name " + Name.toStdString() + " meanwhile.");
        }
    });
}

bool QtDBusServices::claimName() {
    _wantsName = true;
    if (!_session.isConnected()) {
        return true;
    }
    _export(); // before the name: the bus may have a request ready for its owner
    const std::optional<bool> isOurs = requestBusName(_session.connection(), Name);
    if (!isOurs) {
        _log.log("The session bus did not give out the name " + Name.toStdString() + ".");
    }
    _wantsName = isOurs.value_or(true);
    return _wantsName;
}

bool QtDBusServices::activateOther() {
    QDBusMessage call = QDBusMessage::createMethodCall(Name, QLatin1String(QtDBusServicesObject::Path), u"org.freedesktop.Application"_s,
                                                       u"ActivateAction"_s);
    call.setArguments({u"make-preset"_s, QVariantList(), QtActivationToken::platformData()});
    return _session.connection().call(call, QDBus::Block, LimitForOther).type() == QDBusMessage::ReplyMessage;
}

void QtDBusServices::setServicesProvider(ServicesProvider *provider) {
    _provider = provider;
    if (_provider != nullptr) {
        for (Request &request : std::exchange(_waiting, {})) {
            _receive(std::move(request));
        }
    }
}

void QtDBusServices::_export() {
    _session.connection().registerObject(QLatin1String(QtDBusServicesObject::Path), &_object, QDBusConnection::ExportAdaptors);
}

/// Takes a request in; it is served when the event loop is reached again, after its caller has been answered.
void QtDBusServices::_receive(Request request) {
    if (_provider == nullptr) {
        _waiting.push_back(std::move(request));
        return;
    }
    QMetaObject::invokeMethod(
        this, [this, request = std::move(request)] { _serve(request); }, Qt::QueuedConnection);
}

void QtDBusServices::_serve(const Request &request) {
    const bool isBusy = _hooks.isBusy && _hooks.isBusy();
    if (_isServing && !isBusy) { // between two windows of the earlier request, or at its very end
        QTimer::singleShot(BetweenWindows, this, [this, request] { _serve(request); });
        return;
    }
    if (isBusy && _hooks.showWhatIsOpen) {
        const QtActivationToken token(request.token);
        _hooks.showWhatIsOpen();
    }
    if (_provider == nullptr || isBusy) {
        if (request.answer) {
            request.answer(std::nullopt);
        }
        return;
    }
    const QPointer<QtDBusServices> self(this);
    _isServing = true;
    _askProvider(request);
    if (self) {
        _isServing = false;
    }
}

void QtDBusServices::_askProvider(const Request &request) {
    const QtActivationToken token(request.token);
    if (request.folder && _hooks.useFolder) {
        _hooks.useFolder(*request.folder);
    }
    const auto isAnswered = std::make_shared<bool>(false);
    const auto answerOnce = [isAnswered, answer = request.answer](const std::optional<std::string> &error) {
        if (answer && !std::exchange(*isAnswered, true)) {
            answer(error);
        }
    };
    // Comes when the provider handles events itself, that is, shows the menu.
    QTimer::singleShot(0, this, [answerOnce] { answerOnce(std::nullopt); });
    std::optional<std::string> error;
    const QPointer<QtDBusServices> self(this); // the provider may handle the event that ends the program
    _provider->makePresetFromServiceUserDataError(request.pasteboard, request.userData, error);
    answerOnce(error);
    if (self && _hooks.requestDone) {
        _hooks.requestDone();
    }
}

void QtDBusServices::_run(const std::function<void()> &hook, const QString &token) {
    QMetaObject::invokeMethod(
        this,
        [hook, token] {
            const QtActivationToken permission(token);
            if (hook) {
                hook();
            }
        },
        Qt::QueuedConnection);
}

} // namespace orvane
