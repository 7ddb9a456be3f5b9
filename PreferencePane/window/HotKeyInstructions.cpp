#include "window/HotKeyInstructions.h"

#include "window/Page.h"
#include "window/Sentences.h"

#include "hotkeys/HotKeyAdvice.h"
#include "platform/qt/QtText.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace orvane {

bool desktopGivesHotKeys() {
    if (!qEnvironmentVariableIsEmpty("SWAYSOCK")) {
        return true;
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const QDBusConnectionInterface *const names = bus.isConnected() ? bus.interface() : nullptr;
    if (names == nullptr) {
        return false;
    }
    if (names->isServiceRegistered(QStringLiteral("org.kde.kglobalaccel")).value()) {
        return true;
    }
    constexpr int Patience = 500; // milliseconds
    QDBusMessage question =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
                                       QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question.setArguments({QStringLiteral("org.freedesktop.portal.GlobalShortcuts"), QStringLiteral("version")});
    question.setAutoStartService(false);
    return bus.call(question, QDBus::Block, Patience).type() == QDBusMessage::ReplyMessage;
}

QString hotKeyInstructions(const QString &desktops) {
    const ORVHotKeyTexts texts = ORVHotKeyTextsOf(QtUtf8Of(desktops));
    const QString command = QString::fromLatin1(HotKeyCommand);
    return translated(texts.why) + u' ' + translated(texts.start).replace(QLatin1String("%1"), command) + u' ' +
           translated(texts.place).replace(QLatin1String("%1"), command);
}

QString hotKeyStatement(const std::string &statement, const QString &desktops) {
    const std::string advice = ORVHotKeyAdvice(QtUtf8Of(desktops), HotKeyCommand);
    if (!statement.ends_with(advice)) {
        return translatedSentence(statement);
    }
    const std::string before = statement.substr(0, statement.size() - advice.size());
    const QString instructions = hotKeyInstructions(desktops);
    return before.empty() ? instructions : translatedSentence(before.substr(0, before.size() - 1)) + u' ' + instructions;
}

} // namespace orvane
