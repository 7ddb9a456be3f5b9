#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <cstddef>
#include <vector>

class QDBusMessage;

namespace orvane {

/// Holds an item's bus name and keeps the item known to the StatusNotifierWatcher, whenever that comes up; watches whether a host
/// (something that shows items) is there.
///
/// After each registration it looks whether the watcher lists the item, and registers again where it does not: GNOME's AppIndicator
/// extension 46 loses what arrives in the instant in which it appears. An item that is listed is never registered again. Nothing
/// here waits for an answer. Main thread only.
class StatusNotifierRegistration final : public QObject {
    Q_OBJECT

public:
    using Times = std::vector<std::chrono::milliseconds>;

    /// The object must have been exported on `connection` before. `checks` counts from the watcher's appearance.
    StatusNotifierRegistration(QDBusConnection connection, QString serviceName, Times checks);
    StatusNotifierRegistration(const StatusNotifierRegistration &) = delete;
    StatusNotifierRegistration &operator=(const StatusNotifierRegistration &) = delete;
    /// Gives the name back, upon which hosts take the item away.
    ~StatusNotifierRegistration() override;

    [[nodiscard]] bool hostIsThere() const { return _hostIsThere; }

Q_SIGNALS:
    void hostChanged();

private Q_SLOTS:
    void _askForHost();

private:
    void _watcherCame();
    void _watcherWent();
    void _registerItem();
    void _startCheck();
    void _check();
    void _setHost(bool isThere);
    [[nodiscard]] QDBusMessage _question(const QString &property) const;
    [[nodiscard]] bool _isOurs(const QString &item) const;

    QDBusConnection _connection;
    const QString _serviceName;
    const Times _checks;
    std::size_t _nextCheck = 0;
    unsigned _watcherNumber = 0; ///< answers of an earlier watcher are not this one's
    QTimer _checkTimer;
    QDBusServiceWatcher _serviceWatcher;
    bool _watcherIsThere = false;
    bool _hostIsThere = false;
};

} // namespace orvane
