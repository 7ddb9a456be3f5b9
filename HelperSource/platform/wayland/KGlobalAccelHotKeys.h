#pragma once

#include "platform/qtdbus/QtDBusSession.h"
#include "platform/wayland/HotKeyService.h"
#include "ports/SystemLog.h"

#include <map>
#include <string>

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace orvane {

/// Hot keys by KDE's KGlobalAccel, which KWin (Plasma 5) or kglobalacceld (Plasma 6) runs on the session bus. The combination of the
/// preferences is set each time: a change in KDE's System Settings holds until then. KDE knows keys by what the layout in use has on them,
/// so what each layout has there is registered. Keys are unregistered when they are given back; a
/// key that is left behind would be swallowed by KDE with nobody to hear it.
class KGlobalAccelHotKeys final : public QObject, public HotKeyService {
    Q_OBJECT

public:
    /// Both are borrowed.
    KGlobalAccelHotKeys(QtDBusSession &session, SystemLog &log);
    KGlobalAccelHotKeys(const KGlobalAccelHotKeys &) = delete;
    KGlobalAccelHotKeys &operator=(const KGlobalAccelHotKeys &) = delete;
    ~KGlobalAccelHotKeys() override;

    [[nodiscard]] std::string name() const override { return "KGlobalAccel"; }
    [[nodiscard]] Answer take(const HotKeyRequest &request) override;
    void giveBack(int slot) override;

private Q_SLOTS:
    void _pressed(const QString &of, const QString &action, qlonglong timestamp);
    void _released(const QString &of, const QString &action, qlonglong timestamp);

private:
    struct Taken {
        QList<int> keys; ///< what the layouts have on the key, the first layout's in front
        bool isDown = false;
    };

    [[nodiscard]] QDBusMessage _call(const QString &method, const QVariantList &arguments) const;
    [[nodiscard]] bool _isThere() const;
    [[nodiscard]] Answer _register(const QList<int> &keys, int slot);
    void _unregister(int slot) const;
    void _subscribe();
    void _registerAgain();
    void _logHolder(int key) const;
    [[nodiscard]] static QStringList _action(int slot);
    [[nodiscard]] int _slotOf(const QString &of, const QString &action) const;

    QtDBusSession &_session;
    SystemLog &_log;
    QDBusServiceWatcher _watcher;
    std::map<int, Taken> _taken;
    bool _tellsOfReleases = false; ///< it does from KDE Frameworks 5.94 on
};

} // namespace orvane
