#include "platform/wayland/PortalHotKeys.h"

#include "platform/qt/QtText.h"
#include "platform/wayland/KeyboardMap.h"

#include <chrono>
#include <utility>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace orvane {

namespace {

constexpr int CallPatienceInMilliseconds = 2000;
/// Time for the user to answer the desktop's question.
constexpr std::chrono::minutes AnswerPatience(5);
/// Of a request: the user said no (org.freedesktop.portal.Request, "Response").
constexpr uint UserRefused = 1;

QString service() {
    return QStringLiteral("org.freedesktop.portal.Desktop");
}
QString desktopPath() {
    return QStringLiteral("/org/freedesktop/portal/desktop");
}
QString shortcutsInterface() {
    return QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
}

QString shortcutName(int slot) {
    return slot == 0 ? QStringLiteral("show-presets") : QStringLiteral("show-presets-%1").arg(slot + 1);
}

/// One shortcut as the portal takes it: (sa{sv}).
struct Shortcut {
    QString name;
    QVariantMap properties;
};
using Shortcuts = QList<Shortcut>;

QDBusArgument &operator<<(QDBusArgument &argument, const Shortcut &shortcut) {
    argument.beginStructure();
    argument << shortcut.name << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Shortcut &shortcut) {
    argument.beginStructure();
    argument >> shortcut.name >> shortcut.properties;
    argument.endStructure();
    return argument;
}

Shortcuts shortcutsOf(const std::map<int, std::string> &wanted) {
    Shortcuts shortcuts;
    for (const auto &[slot, trigger] : wanted) {
        shortcuts.append({shortcutName(slot),
                          {{QStringLiteral("description"), QCoreApplication::translate("Orvane", "Show the presets")},
                           {QStringLiteral("preferred_trigger"), QtTextOf(trigger)}}});
    }
    return shortcuts;
}

} // namespace

PortalHotKeys::PortalHotKeys(QtDBusSession &session, SystemLog &log) : _session(session), _log(log) {
    qDBusRegisterMetaType<Shortcut>();
    qDBusRegisterMetaType<Shortcuts>();
    _soon.setSingleShot(true);
    connect(&_soon, &QTimer::timeout, this, [this] { _begin(); });
    _patience.setSingleShot(true);
    connect(&_patience, &QTimer::timeout, this, [this] { _decideAll(false, "no answer"); });
    connect(&_session, &QtDBusSession::connected, this, [this] {
        _handle.clear();
        _isRegistered = false;
        _soon.start(0);
    });
}

PortalHotKeys::~PortalHotKeys() {
    _end();
}

bool PortalHotKeys::_isThere() const {
    if (!_session.isConnected()) {
        return false;
    }
    QDBusConnectionInterface *const bus = _session.connection().interface();
    return bus->isServiceRegistered(service()).value() || bus->activatableServiceNames().value().contains(service());
}

HotKeyService::Answer PortalHotKeys::take(const HotKeyRequest &request) {
    const std::optional<std::string> trigger = KeyboardMap::ofSession().portalTrigger(request.keyCode, request.modifiers);
    if (!_isThere()) {
        return Answer::Unavailable;
    }
    if (!trigger) {
        return Answer::Invalid;
    }
    _wanted[request.slot] = *trigger;
    _soon.start(0);
    return Answer::Pending;
}

void PortalHotKeys::giveBack(int slot) {
    if (_wanted.erase(slot) != 0) {
        _end();
        _soon.start(0);
    }
}

void PortalHotKeys::_registerApplication() {
    if (std::exchange(_isRegistered, true)) {
        return;
    }
    // Portals from 1.20 on want to know which application a program outside a sandbox is; older ones have no such object.
    QDBusMessage message = QDBusMessage::createMethodCall(service(), desktopPath(), QStringLiteral("org.freedesktop.host.portal.Registry"),
                                                          QStringLiteral("Register"));
    message.setArguments({QStringLiteral("org.orvane.Helper"), QVariantMap()});
    static_cast<void>(_session.connection().call(message, QDBus::Block, CallPatienceInMilliseconds));
}

void PortalHotKeys::_begin() {
    _end();
    if (_wanted.empty() || !_session.isConnected()) {
        return;
    }
    _patience.start(AnswerPatience);
    // Asking may start the portal, which takes its time: nothing here waits for it.
    QDBusMessage message =
        QDBusMessage::createMethodCall(service(), desktopPath(), QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message.setArguments({shortcutsInterface(), QStringLiteral("version")});
    _question = std::make_unique<QDBusPendingCallWatcher>(_session.connection().asyncCall(message));
    connect(_question.get(), &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        const QDBusPendingReply<QDBusVariant> version = *finished;
        if (version.isError() || version.value().variant().toUInt() < 1) {
            _decideAll(false, "it has no global shortcuts here");
        } else {
            _createSession();
        }
    });
}

void PortalHotKeys::_createSession() {
    _registerApplication();
    QVariantMap options{{QStringLiteral("session_handle_token"), QStringLiteral("orvane")}};
    // KDE's portal of Plasma 5.27 binds what it finds here and nothing later; others ignore it.
    options.insert(QStringLiteral("shortcuts"), QVariant::fromValue(shortcutsOf(_wanted)));
    _request(QStringLiteral("CreateSession"), {options}, 0, SLOT(_created(uint, QVariantMap)));
}

void PortalHotKeys::_end() {
    _patience.stop();
    if (_question != nullptr) {
        _question.release()->deleteLater(); // this may be its own signal
    }
    QDBusConnection bus = _session.connection();
    for (const char *const slot : {SLOT(_created(uint, QVariantMap)), SLOT(_bound(uint, QVariantMap))}) {
        if (!_pending.isEmpty()) {
            bus.disconnect(service(), _pending, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"), this, slot);
        }
    }
    _pending.clear();
    if (!_handle.isEmpty()) {
        bus.disconnect(service(), desktopPath(), shortcutsInterface(), QStringLiteral("Activated"), this,
                       SLOT(_activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
        bus.disconnect(service(), desktopPath(), shortcutsInterface(), QStringLiteral("Deactivated"), this,
                       SLOT(_deactivated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
        bus.call(
            QDBusMessage::createMethodCall(service(), _handle, QStringLiteral("org.freedesktop.portal.Session"), QStringLiteral("Close")),
            QDBus::Block, CallPatienceInMilliseconds);
        _handle.clear();
    }
}

void PortalHotKeys::_request(const QString &method, QVariantList arguments, qsizetype optionsAt, const char *slot) {
    QDBusConnection bus = _session.connection();
    const QString token = QStringLiteral("orvane%1").arg(++_token);
    QVariantMap options = arguments.at(optionsAt).toMap();
    options.insert(QStringLiteral("handle_token"), token);
    arguments[optionsAt] = options;
    // The request's object has this path by the portal's rules; its answer may come before that of the call.
    _pending = desktopPath() + QStringLiteral("/request/") + bus.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_')) +
               QLatin1Char('/') + token;
    bus.connect(service(), _pending, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"), this, slot);
    QDBusMessage message = QDBusMessage::createMethodCall(service(), desktopPath(), shortcutsInterface(), method);
    message.setArguments(arguments);
    const QDBusMessage reply = bus.call(message, QDBus::Block, CallPatienceInMilliseconds);
    if (reply.type() == QDBusMessage::ErrorMessage) {
        _decideAll(false, QtUtf8Of(reply.errorMessage()));
    }
}

void PortalHotKeys::_decideAll(bool isTaken, const std::string &what) {
    _patience.stop();
    if (!isTaken) {
        _end();
    }
    const std::map<int, std::string> wanted = _wanted;
    for (const auto &[slot, trigger] : wanted) {
        if (decided) {
            decided(slot, isTaken, what);
        }
    }
}

void PortalHotKeys::_created(uint response, const QVariantMap &results) {
    if (response != 0) {
        _decideAll(false, "the portal answered " + std::to_string(response) + " to CreateSession");
        return;
    }
    _handle = results.value(QStringLiteral("session_handle")).toString();
    QDBusConnection bus = _session.connection();
    bus.connect(service(), desktopPath(), shortcutsInterface(), QStringLiteral("Activated"), this,
                SLOT(_activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    bus.connect(service(), desktopPath(), shortcutsInterface(), QStringLiteral("Deactivated"), this,
                SLOT(_deactivated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
    if (!_noteTriggers(results)) {
        _bind();
    }
}

void PortalHotKeys::_bind() {
    _request(QStringLiteral("BindShortcuts"),
             {QVariant::fromValue(QDBusObjectPath(_handle)), QVariant::fromValue(shortcutsOf(_wanted)), QString(), QVariantMap()}, 3,
             SLOT(_bound(uint, QVariantMap)));
}

void PortalHotKeys::_bound(uint response, const QVariantMap &results) {
    // GNOME's portal of version 48 answers 2 whether the user accepted or refused: then the trigger alone tells.
    if (response != UserRefused && _noteTriggers(results)) {
        return;
    }
    _decideAll(false, response != 0 ? "the portal answered " + std::to_string(response) + " to BindShortcuts" : "the portal gave no key");
}

bool PortalHotKeys::_noteTriggers(const QVariantMap &results) {
    const QVariant value = results.value(QStringLiteral("shortcuts"));
    if (value.userType() != qMetaTypeId<QDBusArgument>() || value.value<QDBusArgument>().currentSignature() != QLatin1String("a(sa{sv})")) {
        return false;
    }
    bool isAny = false;
    for (const Shortcut &shortcut : qdbus_cast<Shortcuts>(value)) {
        const QString trigger = shortcut.properties.value(QStringLiteral("trigger_description")).toString();
        for (const auto &[slot, wanted] : _wanted) {
            if (shortcut.name == shortcutName(slot) && !trigger.isEmpty()) {
                isAny = true;
                _patience.stop();
                if (decided) {
                    decided(slot, true, QtUtf8Of(trigger));
                }
                break;
            }
        }
    }
    return isAny;
}

int PortalHotKeys::_slotOf(const QDBusObjectPath &session, const QString &shortcut) const {
    for (const auto &[slot, trigger] : _wanted) {
        if (session.path() == _handle && shortcut == shortcutName(slot)) {
            return slot;
        }
    }
    return -1;
}

void PortalHotKeys::_activated(const QDBusObjectPath &session, const QString &shortcut, qulonglong /*timestamp*/,
                               const QVariantMap & /*options*/) {
    const int slot = _slotOf(session, shortcut);
    if (slot >= 0 && pressed) {
        pressed(slot);
    }
}

void PortalHotKeys::_deactivated(const QDBusObjectPath &session, const QString &shortcut, qulonglong /*timestamp*/,
                                 const QVariantMap & /*options*/) {
    const int slot = _slotOf(session, shortcut);
    if (slot >= 0 && released) {
        released(slot);
    }
}

} // namespace orvane
