#pragma once

#include "ports/SystemLog.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QTimer>

#include <cstddef>
#include <optional>

namespace orvane {

/// A connection of its own to the session bus that outlives the bus: when the bus goes, everybody is told, and a connection to the
/// one that comes after it is made. Whoever exports or subscribes something does so at the beginning, when there is a connection,
/// and again at every `connected`: a new connection knows nothing of the old one.
///
/// QDBusConnection::sessionBus() cannot do that: Qt keeps the one that it made first. Nor is a bus ever started here, which libdbus
/// would do where the environment names none. Main thread only.
class QtDBusSession final : public QObject {
    Q_OBJECT

public:
    /// Connects at once when there is a bus. `log` must outlive it and is null for connections whose end is no news.
    explicit QtDBusSession(SystemLog *log);
    QtDBusSession(const QtDBusSession &) = delete;
    QtDBusSession &operator=(const QtDBusSession &) = delete;
    ~QtDBusSession() override;

    [[nodiscard]] bool isConnected() const { return _isConnected; }
    /// A handle of the connection of now; everything asked of it fails at once when there is none.
    [[nodiscard]] QDBusConnection connection() const { return QDBusConnection(_name); }

    /// Closes the connection for good.
    void close();

    /// The bus's address: DBUS_SESSION_BUS_ADDRESS, else the socket `bus` in XDG_RUNTIME_DIR if there is one (dbus-daemon(1),
    /// "WELL-KNOWN MESSAGE BUS INSTANCES"). Nothing where there is no bus.
    [[nodiscard]] static std::optional<QString> address();

Q_SIGNALS:
    void connected();
    void disconnected();

private Q_SLOTS:
    void _lose();

private:
    [[nodiscard]] bool _connect();
    void _drop();
    void _tryAgain();

    SystemLog *const _log;
    QTimer _again;
    std::size_t _attempts = 0;
    QString _name; ///< of the connection, in Qt's list of connections
    bool _isConnected = false;
};

} // namespace orvane
