#include "platform/wayland/KGlobalAccelHotKeys.h"

#include "platform/qt/QtText.h"
#include "platform/wayland/KeyboardMap.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusReply>

namespace orvane {

namespace {

constexpr int PatienceInMilliseconds = 1000;
/// KGlobalAccel's SetShortcutFlag: SetPresent (2) makes the key work now, NoAutoloading (4) makes it this one, whatever was stored.
constexpr uint SetPresentKey = 2 | 4;

QString service() {
    return QStringLiteral("org.kde.kglobalaccel");
}
QString component() {
    return QStringLiteral("org.orvane.Helper");
}
QString componentInterface() {
    return QStringLiteral("org.kde.kglobalaccel.Component");
}

} // namespace

KGlobalAccelHotKeys::KGlobalAccelHotKeys(QtDBusSession &session, SystemLog &log)
    : _session(session), _log(log), _watcher(service(), session.connection(), QDBusServiceWatcher::WatchForRegistration) {
    connect(&_watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { _registerAgain(); });
    connect(&_session, &QtDBusSession::connected, this, [this] {
        _watcher.setConnection(_session.connection());
        _registerAgain();
    });
}

KGlobalAccelHotKeys::~KGlobalAccelHotKeys() {
    for (const auto &[slot, taken] : _taken) {
        _unregister(slot);
    }
}

QDBusMessage KGlobalAccelHotKeys::_call(const QString &method, const QVariantList &arguments) const {
    QDBusMessage message =
        QDBusMessage::createMethodCall(service(), QStringLiteral("/kglobalaccel"), QStringLiteral("org.kde.KGlobalAccel"), method);
    message.setAutoStartService(false);
    message.setArguments(arguments);
    return _session.connection().call(message, QDBus::Block, PatienceInMilliseconds);
}

bool KGlobalAccelHotKeys::_isThere() const {
    const QDBusConnectionInterface *const bus = _session.isConnected() ? _session.connection().interface() : nullptr;
    return bus != nullptr && bus->isServiceRegistered(service()).value();
}

QStringList KGlobalAccelHotKeys::_action(int slot) {
    const QString shown = QCoreApplication::translate("Orvane", "Show the presets");
    const QString number = slot == 0 ? QString() : QString::number(slot + 1);
    // Component and action, then both as System Settings shows them.
    return {component(), QStringLiteral("show-presets") + number, QStringLiteral("Orvane"), (shown + QLatin1Char(' ') + number).trimmed()};
}

HotKeyService::Answer KGlobalAccelHotKeys::take(const HotKeyRequest &request) {
    if (!_isThere()) {
        return Answer::Unavailable;
    }
    const std::vector<int> all = KeyboardMap::ofSession().qtKeys(request.keyCode, request.modifiers);
    const QList<int> keys(all.begin(), all.end());
    if (keys.isEmpty()) {
        return Answer::Invalid;
    }
    for (const auto &[slot, taken] : _taken) {
        if (taken.keys.first() == keys.first()) {
            return Answer::Refused;
        }
    }
    const Answer answer = _register(keys, request.slot);
    if (answer == Answer::Taken) {
        _taken[request.slot] = {keys, false};
    }
    return answer;
}

HotKeyService::Answer KGlobalAccelHotKeys::_register(const QList<int> &keys, int slot) {
    const QStringList action = _action(slot);
    if (_call(QStringLiteral("doRegister"), {action}).type() == QDBusMessage::ErrorMessage) {
        return Answer::Unavailable;
    }
    const QDBusReply<QList<int>> reply =
        _call(QStringLiteral("setShortcut"), {action, QVariant::fromValue(keys), QVariant::fromValue(SetPresentKey)});
    // It answers with 0 in place of a key that is somebody else's. Where that is so in another layout only, it does not matter.
    if (reply.isValid() && reply.value().value(0) == keys.first()) {
        _subscribe();
        return Answer::Taken;
    }
    _unregister(slot);
    if (!reply.isValid()) {
        _log.log("KGlobalAccel: " + QtUtf8Of(reply.error().message()));
        return Answer::Unavailable;
    }
    _logHolder(keys.first());
    return Answer::Refused;
}

void KGlobalAccelHotKeys::_logHolder(int key) const {
    const QDBusMessage reply = _call(QStringLiteral("getGlobalShortcutsByKey"), {key});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a(ssssssaiai)")) {
        return;
    }
    const auto holders = reply.arguments().value(0).value<QDBusArgument>();
    holders.beginArray();
    while (!holders.atEnd()) {
        QStringList names;
        QList<int> keys;
        holders.beginStructure();
        for (int i = 0; i < 6; ++i) {
            QString name;
            holders >> name;
            names << name;
        }
        holders >> keys >> keys;
        holders.endStructure();
        _log.log("KGlobalAccel: that combination belongs to '" + QtUtf8Of(names.join(QLatin1Char(' ')).simplified()) + "'");
    }
    holders.endArray();
}

void KGlobalAccelHotKeys::_unregister(int slot) const {
    const QStringList action = _action(slot);
    // The second in case the first is not known there.
    if (_call(QStringLiteral("unregister"), {action.at(0), action.at(1)}).type() == QDBusMessage::ErrorMessage) {
        static_cast<void>(_call(QStringLiteral("setInactive"), {action}));
    }
}

void KGlobalAccelHotKeys::giveBack(int slot) {
    if (_taken.erase(slot) != 0) {
        _unregister(slot);
    }
}

void KGlobalAccelHotKeys::_subscribe() {
    const QDBusReply<QDBusObjectPath> path = _call(QStringLiteral("getComponent"), {component()});
    if (!path.isValid()) {
        return;
    }
    QDBusConnection bus = _session.connection();
    // The same subscription twice would call twice.
    bus.disconnect(service(), path.value().path(), componentInterface(), QStringLiteral("globalShortcutPressed"), this,
                   SLOT(_pressed(QString, QString, qlonglong)));
    bus.disconnect(service(), path.value().path(), componentInterface(), QStringLiteral("globalShortcutReleased"), this,
                   SLOT(_released(QString, QString, qlonglong)));
    bus.connect(service(), path.value().path(), componentInterface(), QStringLiteral("globalShortcutPressed"), this,
                SLOT(_pressed(QString, QString, qlonglong)));
    bus.connect(service(), path.value().path(), componentInterface(), QStringLiteral("globalShortcutReleased"), this,
                SLOT(_released(QString, QString, qlonglong)));
}

void KGlobalAccelHotKeys::_registerAgain() {
    for (auto &[slot, each] : _taken) {
        each.isDown = false; // its release was the ended one's to tell
    }
    const std::map<int, Taken> taken = _taken;
    for (const auto &[slot, each] : taken) {
        if (_register(each.keys, slot) != Answer::Taken) {
            _taken.erase(slot);
            if (decided) {
                decided(slot, false, "KGlobalAccel was started anew and refuses it");
            }
        }
    }
}

int KGlobalAccelHotKeys::_slotOf(const QString &of, const QString &action) const {
    for (const auto &[slot, taken] : _taken) {
        if (of == component() && action == _action(slot).at(1)) {
            return slot;
        }
    }
    return -1;
}

void KGlobalAccelHotKeys::_pressed(const QString &of, const QString &action, qlonglong /*timestamp*/) {
    const int slot = _slotOf(of, action);
    if (slot < 0) {
        return;
    }
    Taken &taken = _taken.at(slot);
    // A key that is held repeats its press.
    if (_tellsOfReleases && taken.isDown) {
        return;
    }
    taken.isDown = true;
    if (pressed) {
        pressed(slot); // may give the key back
    }
}

void KGlobalAccelHotKeys::_released(const QString &of, const QString &action, qlonglong /*timestamp*/) {
    const int slot = _slotOf(of, action);
    if (slot < 0) {
        return;
    }
    _tellsOfReleases = true;
    _taken.at(slot).isDown = false;
    if (released) {
        released(slot);
    }
}

} // namespace orvane
