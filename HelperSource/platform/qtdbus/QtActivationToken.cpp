#include "platform/qtdbus/QtActivationToken.h"

#include <QtGlobal>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr const char *Variable = "XDG_ACTIVATION_TOKEN";
constexpr const char *StartupVariable = "DESKTOP_STARTUP_ID";

} // namespace

QtActivationToken::QtActivationToken(const QString &token) : _isSet(!token.isEmpty()) {
    if (_isSet) {
        qputenv(Variable, token.toUtf8());
    }
}

QtActivationToken::~QtActivationToken() {
    if (_isSet) {
        qunsetenv(Variable);
    }
}

QString QtActivationToken::inPlatformData(const QVariantMap &platformData) {
    const QString token = platformData.value(u"activation-token"_s).toString();
    return token.isEmpty() ? platformData.value(u"desktop-startup-id"_s).toString() : token;
}

QVariantMap QtActivationToken::platformData() {
    QVariantMap data;
    const QString token = qEnvironmentVariable(Variable);
    const QString startup = qEnvironmentVariable(StartupVariable);
    if (!token.isEmpty()) {
        data.insert(u"activation-token"_s, token);
    }
    if (!token.isEmpty() || !startup.isEmpty()) {
        data.insert(u"desktop-startup-id"_s, startup.isEmpty() ? token : startup);
    }
    return data;
}

} // namespace orvane
