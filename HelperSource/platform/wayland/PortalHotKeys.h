#pragma once

#include "platform/qtdbus/QtDBusSession.h"
#include "platform/wayland/HotKeyService.h"
#include "ports/SystemLog.h"

#include <map>
#include <memory>
#include <string>

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariantMap>

namespace orvane {

/// Hot keys by the desktop portal's interface GlobalShortcuts. The desktop may ask the user first and may choose other keys than were
/// asked for, so every answer is late. That the interface is there means nothing, and neither does an answer without an error: a key
/// counts as taken only when the response names a trigger for it. GNOME's says 2 ("ended in some other way") also of a key that it gives.
///
/// A session's shortcuts cannot be changed, so each change of what is wanted makes a session anew, once for several changes.
class PortalHotKeys final : public QObject, public HotKeyService {
    Q_OBJECT

public:
    /// Both are borrowed.
    PortalHotKeys(QtDBusSession &session, SystemLog &log);
    PortalHotKeys(const PortalHotKeys &) = delete;
    PortalHotKeys &operator=(const PortalHotKeys &) = delete;
    ~PortalHotKeys() override;

    [[nodiscard]] std::string name() const override { return "the desktop portal"; }
    [[nodiscard]] Answer take(const HotKeyRequest &request) override;
    void giveBack(int slot) override;

private Q_SLOTS:
    void _created(uint response, const QVariantMap &results);
    void _bound(uint response, const QVariantMap &results);
    void _activated(const QDBusObjectPath &session, const QString &shortcut, qulonglong timestamp, const QVariantMap &options);
    void _deactivated(const QDBusObjectPath &session, const QString &shortcut, qulonglong timestamp, const QVariantMap &options);

private:
    [[nodiscard]] bool _isThere() const;
    void _registerApplication();
    void _begin();
    void _createSession();
    void _end();
    void _bind();
    void _request(const QString &method, QVariantList arguments, qsizetype optionsAt, const char *slot);
    void _decideAll(bool isTaken, const std::string &what);
    [[nodiscard]] bool _noteTriggers(const QVariantMap &results);
    [[nodiscard]] int _slotOf(const QDBusObjectPath &session, const QString &shortcut) const;

    QtDBusSession &_session;
    SystemLog &_log;
    std::map<int, std::string> _wanted; ///< slot to trigger
    QString _handle;                    ///< of the portal's session; empty for none
    QString _pending;                   ///< path of the request that is under way
    unsigned _token = 0;
    std::unique_ptr<QDBusPendingCallWatcher> _question; ///< whether the portal has the interface
    QTimer _soon;
    QTimer _patience;
    bool _isRegistered = false;
};

} // namespace orvane
