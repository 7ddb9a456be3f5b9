#include "window/HotKeyInstructions.h"

#include "window/Page.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QStringList>

namespace orvane {

namespace {

/// Where people find the keys for commands, for the desktops that name themselves so.
QString placeOn(const QStringList &desktops) {
    const auto isOn = [&](const char *name) { return desktops.contains(QLatin1String(name), Qt::CaseInsensitive); };
    if (isOn("GNOME") || isOn("Unity")) {
        return translated("In Settings: Keyboard, View and Customize Shortcuts, Custom Shortcuts.");
    }
    if (isOn("KDE")) {
        return translated("In System Settings: Shortcuts, Add Command.");
    }
    if (isOn("sway")) {
        return translated("In ~/.config/sway/config, a line such as: %1").arg(QLatin1String("bindsym Ctrl+Shift+h exec orvane menu"));
    }
    if (isOn("Hyprland")) {
        return translated("In ~/.config/hypr/hyprland.conf, a line such as: %1")
            .arg(QLatin1String("bind = CTRL SHIFT, H, exec, orvane menu"));
    }
    if (isOn("niri")) {
        return translated("In ~/.config/niri/config.kdl, in the section “binds”, a line such as: %1")
            .arg(QLatin1String("Ctrl+Shift+H { spawn-sh \"orvane menu\"; }"));
    }
    if (isOn("weston")) {
        return translated(
            "Weston has no keys for commands; a launcher in its panel can start it (~/.config/weston.ini, section “launcher”).");
    }
    return translated("In the settings of your desktop, where keys are given to commands.");
}

} // namespace

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
    return translated("This desktop gives programs no hot keys of their own. Bind a key to the command below.") + QLatin1Char('\n') +
           placeOn(desktops.split(QLatin1Char(':'), Qt::SkipEmptyParts));
}

} // namespace orvane
