#pragma once

#include "platform/qtdbus/DBusMenuTypes.h"
#include "ports/Menu.h"

#include <QDBusContext>
#include <QObject>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// A menu as the D-Bus interface com.canonical.dbusmenu (version 3): the tray's host asks for it, draws it, and tells what was
/// chosen. To be exported with all its contents.
///
/// Items keep their numbers as long as they keep title and tag, wherever they move to: a host that still shows an older layout chooses
/// what the user saw. All changes made before the event loop is reached again are one announcement, with one more revision; none
/// is made when nothing is different in the end.
///
/// A chosen item's action runs from the event loop after the host has its answer, so that a host never waits for a prompt. Main
/// thread only.
class QtDBusMenu final : public QObject, protected QDBusContext, public MenuObserver {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    using Filter = std::function<bool(const MenuItem &)>;

    /// `mayRun` is asked before a chosen item's action runs; false ignores the choice. Without one a choice is ignored while the
    /// action of an earlier one has not returned.
    explicit QtDBusMenu(Filter mayRun = {});
    QtDBusMenu(const QtDBusMenu &) = delete;
    QtDBusMenu &operator=(const QtDBusMenu &) = delete;
    ~QtDBusMenu() override;

    /// The menu to show; borrowed. Null for an empty one.
    void setMenu(Menu *menu);
    /// Permission to come to the front that the next chosen item's action gets.
    void setActivationToken(const QString &token) { _token = token; }

    /// A title as dbusmenu wants labels: underscores doubled (a single one would mark a mnemonic), control characters as blanks
    /// (no label has columns or lines), and the middle of very long ones left out, since no host breaks or shortens them.
    [[nodiscard]] static QString labelOfTitle(const std::string &title);

    void menuDidChange() override;

    [[nodiscard]] uint version() const { return 3; }
    [[nodiscard]] QString textDirection() const;
    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }
    [[nodiscard]] QStringList iconThemePath() const { return {}; }

public Q_SLOTS: // the interface's own names
    uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames, orvane::DBusMenuLayout &layout);
    QList<orvane::DBusMenuProperties> GetGroupProperties(const QList<int> &ids, const QStringList &propertyNames);
    QDBusVariant GetProperty(int id, const QString &name);
    void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    QList<int> EventGroup(const QList<orvane::DBusMenuEvent> &events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

Q_SIGNALS:
    void LayoutUpdated(uint revision, int parent);
    void ItemsPropertiesUpdated(const QList<orvane::DBusMenuProperties> &updatedProps,
                                const QList<orvane::DBusMenuRemovedProperties> &removedProps);
    void ItemActivationRequested(int id, uint timestamp);

private:
    struct Entry {
        int id = 0;
        std::string title;
        int tag = 0;
        bool isSeparator = false;
        bool isEnabled = true;
        bool operator==(const Entry &) const = default;
    };

    bool _refresh();
    void _giveNumbers(std::vector<Entry> &entries);
    void _announce();
    [[nodiscard]] std::optional<std::size_t> _indexOf(int id) const;
    [[nodiscard]] static QVariantMap _propertiesOf(const Entry &entry, const QStringList &names);
    bool _handle(int id, const QString &eventId);
    void _run(int id);
    void _refuse(int id);

    const Filter _mayRun;
    Menu *_menu = nullptr;
    std::vector<Entry> _entries; ///< what hosts know or may ask for
    int _lastId = 0;             ///< 0 is the menu itself
    uint _revision = 1;
    uint _announced = 1;
    bool _willAnnounce = false;
    bool _isRunning = false;
    QString _token;
};

} // namespace orvane
