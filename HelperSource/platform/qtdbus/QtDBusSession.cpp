#include "platform/qtdbus/QtDBusSession.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Seconds between attempts to reach a bus that went away; the last one repeats. A failing attempt is one connect(2).
constexpr std::array<int, 6> Waits{1, 2, 5, 10, 30, 60};

QString nextConnectionName() {
    static std::atomic<unsigned> last{0};
    return u"orvane-session-%1"_s.arg(++last);
}

/// A bus that is started anew at the same place has another GUID: the address is asked for without it.
QString withoutGuid(const QString &address) {
    QStringList servers = address.split(u';', Qt::SkipEmptyParts);
    for (QString &server : servers) {
        const qsizetype colon = server.indexOf(u':') + 1;
        QStringList entries = server.mid(colon).split(u',', Qt::SkipEmptyParts);
        entries.removeIf([](const QString &entry) { return entry.startsWith("guid="_L1); });
        server = server.left(colon) + entries.join(u',');
    }
    return servers.join(u';');
}

} // namespace

std::optional<QString> QtDBusSession::address() {
    const QString told = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!told.isEmpty()) {
        return told.startsWith("autolaunch:"_L1) ? std::nullopt : std::optional(withoutGuid(told));
    }
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString socket = folder + "/bus"_L1;
    if (!folder.startsWith(u'/') || !QFile::exists(socket)) {
        return std::nullopt;
    }
    return "unix:path="_L1 + socket;
}

QtDBusSession::QtDBusSession(SystemLog *log) : _log(log) {
    _again.setSingleShot(true);
    connect(&_again, &QTimer::timeout, this, &QtDBusSession::_tryAgain);
    if (!_connect() && _log != nullptr) {
        _log->log("There is no session bus: no services, no notifications, no StatusNotifierItem.");
    }
}

QtDBusSession::~QtDBusSession() {
    close();
}

void QtDBusSession::close() {
    _again.stop();
    _drop();
}

bool QtDBusSession::_connect() {
    const std::optional<QString> server = address();
    if (!server) {
        return false;
    }
    _name = nextConnectionName();
    QDBusConnection connection = QDBusConnection::connectToBus(*server, _name);
    if (!connection.isConnected()) {
        QDBusConnection::disconnectFromBus(_name);
        return false;
    }
    // Not sent by the bus: libdbus makes this message up when the connection ends (dbus_connection_dispatch()).
    connection.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this, SLOT(_lose()));
    _isConnected = true;
    return true;
}

void QtDBusSession::_drop() {
    if (!_isConnected) {
        return;
    }
    _isConnected = false;
    QDBusConnection::disconnectFromBus(_name);
}

void QtDBusSession::_lose() {
    if (!_isConnected || connection().isConnected()) {
        return;
    }
    _drop();
    if (_log != nullptr) {
        _log->log("The session bus has gone. Orvane goes on without it and looks for it now and then.");
    }
    _attempts = 0;
    _again.start(std::chrono::seconds(Waits.front()));
    Q_EMIT disconnected();
}

void QtDBusSession::_tryAgain() {
    if (_connect()) {
        if (_log != nullptr) {
            _log->log("The session bus is back.");
        }
        Q_EMIT connected();
        return;
    }
    _attempts = std::min(_attempts + 1, Waits.size() - 1);
    _again.start(std::chrono::seconds(Waits[_attempts]));
}

} // namespace orvane
