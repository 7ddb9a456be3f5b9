#include "platform/qtdbus/QtDBusServicesObject.h"

#include "platform/qtdbus/QtActivationToken.h"
#include "platform/qtdbus/QtDBusServices.h"

#include <QByteArray>
#include <QDBusError>
#include <QUrl>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

void refuse(const QtDBusSession &session, const QDBusMessage &message, const QString &text) {
    message.setDelayedReply(true);
    session.connection().send(message.createErrorReply(QDBusError::InvalidArgs, text));
}

} // namespace

QtDBusServicesObject::QtDBusServicesObject(QtDBusServices &services) {
    new QtDBusApplicationAdaptor(services, *this); // owned by this object
    new QtDBusServicesAdaptor(services, *this);
}

std::optional<std::string> QtDBusServicesObject::folderOf(const QVariant &value) {
    QByteArray bytes = value.typeId() == QMetaType::QByteArray ? value.toByteArray() : value.toString().toUtf8();
    if (bytes.endsWith('\0')) {
        bytes.chop(1);
    }
    if (bytes.startsWith("file:")) {
        const QUrl url(QString::fromUtf8(bytes));
        const bool isHere = url.host().isEmpty() || url.host() == "localhost"_L1;
        // Decoded byte by byte: a path need not be UTF-8.
        bytes = isHere ? QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()) : QByteArray();
    }
    if (!bytes.startsWith('/') || bytes.contains('\0')) {
        return std::nullopt;
    }
    return bytes.toStdString();
}

QtDBusApplicationAdaptor::QtDBusApplicationAdaptor(QtDBusServices &services, QObject &object)
    : QDBusAbstractAdaptor(&object), _services(services) {}

void QtDBusApplicationAdaptor::Activate(const QVariantMap &platformData) {
    _services._receive({{}, {}, {}, QtActivationToken::inPlatformData(platformData), {}});
}

void QtDBusApplicationAdaptor::Open(const QStringList &uris, const QVariantMap &platformData) {
    std::optional<std::string> folder;
    for (const QString &uri : uris) {
        if (!folder) {
            folder = QtDBusServicesObject::folderOf(uri);
        }
    }
    _services._receive({{}, {}, folder, QtActivationToken::inPlatformData(platformData), {}});
}

void QtDBusApplicationAdaptor::ActivateAction(const QString &actionName, const QVariantList &parameter, const QVariantMap &platformData,
                                              const QDBusMessage &message) {
    const QString token = QtActivationToken::inPlatformData(platformData);
    if (actionName == "make-preset"_L1) {
        _services._receive({{}, {}, {}, token, {}});
    } else if (actionName == "make-preset-in"_L1) {
        const auto folder = parameter.isEmpty() ? std::nullopt : QtDBusServicesObject::folderOf(parameter.front());
        if (!folder) {
            return refuse(_services._session, message, u"The action wants the absolute path of a folder."_s);
        }
        _services._receive({{}, {}, folder, token, {}});
    } else if (actionName == "preferences"_L1) {
        _services._run(_services._hooks.showPreferences, token);
    } else if (actionName == "quit"_L1) {
        _services._run(_services._hooks.quit, token);
    } else {
        refuse(_services._session, message, u"There is no action %1."_s.arg(actionName));
    }
}

QtDBusServicesAdaptor::QtDBusServicesAdaptor(QtDBusServices &services, QObject &object)
    : QDBusAbstractAdaptor(&object), _services(services) {}

void QtDBusServicesAdaptor::makePresetFromService(const QString &pasteboard, const QString &userData, const QDBusMessage &message) {
    message.setDelayedReply(true);
    const auto answer = [connection = _services._session.connection(), message](const std::optional<std::string> &error) {
        const QString failed = u"org.orvane.Services.Error.Failed"_s;
        connection.send(error ? message.createErrorReply(failed, QString::fromStdString(*error)) : message.createReply());
    };
    _services._receive({pasteboard.toStdString(), userData.toStdString(), {}, {}, answer});
}

} // namespace orvane
