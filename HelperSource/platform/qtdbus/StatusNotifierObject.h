#pragma once

#include <QDBusArgument>
#include <QDBusContext>
#include <QDBusObjectPath>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>

// The interface org.kde.StatusNotifierItem as freedesktop.org (StatusNotifierItem, draft 0.1) and KDE's
// org.kde.StatusNotifierItem.xml (kf5 5.103) have it.
namespace orvane {

/// An image in ARGB, 32 bits a pixel in network byte order, row by row: (iiay).
struct StatusNotifierImage {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};
using StatusNotifierImages = QList<StatusNotifierImage>;

/// (sa(iiay)ss).
struct StatusNotifierToolTip {
    QString iconName;
    StatusNotifierImages images;
    QString title;
    QString text;
};

QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierImage &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierImage &value);
QDBusArgument &operator<<(QDBusArgument &argument, const StatusNotifierToolTip &value);
const QDBusArgument &operator>>(const QDBusArgument &argument, StatusNotifierToolTip &value);

/// What an item tells its host about itself.
struct StatusNotifierAppearance {
    QString id;
    QString title;
    QString toolTip;
    QString iconName;      ///< in the icon theme; empty for none
    QString iconThemePath; ///< folder of more icons; empty for none
    StatusNotifierImages images;
};

/// One item of the tray as an exported object. It has a menu and nothing else: "ItemIsMenu" says so, and whoever calls Activate all
/// the same (Plasma 5.27 does) gets the error UnknownMethod, upon which it opens the menu.
class StatusNotifierObject final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconThemePath READ iconThemePath)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(orvane::StatusNotifierImages IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ noText CONSTANT)
    Q_PROPERTY(orvane::StatusNotifierImages OverlayIconPixmap READ noImages CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ noText CONSTANT)
    Q_PROPERTY(orvane::StatusNotifierImages AttentionIconPixmap READ noImages CONSTANT)
    Q_PROPERTY(QString AttentionMovieName READ noText CONSTANT)
    Q_PROPERTY(orvane::StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)

public:
    static constexpr const char *Path = "/StatusNotifierItem"; ///< where hosts look for it
    static constexpr const char *MenuPath = "/MenuBar";        ///< as in KDE's library

    StatusNotifierObject();

    /// Tells hosts what is different.
    void setAppearance(const StatusNotifierAppearance &appearance);
    /// Called with the permission to come to the front that hosts hand over just before a choice.
    void setTokenHandler(std::function<void(const QString &)> handler) { _tokenHandler = std::move(handler); }

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString id() const { return _appearance.id; }
    [[nodiscard]] QString title() const { return _appearance.title; }
    [[nodiscard]] QString status() const { return QStringLiteral("Active"); }
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] QString iconThemePath() const { return _appearance.iconThemePath; }
    [[nodiscard]] QString iconName() const { return _appearance.iconName; }
    [[nodiscard]] StatusNotifierImages iconPixmap() const { return _appearance.images; }
    [[nodiscard]] QString noText() const { return {}; }
    [[nodiscard]] StatusNotifierImages noImages() const { return {}; }
    [[nodiscard]] StatusNotifierToolTip toolTip() const { return {{}, {}, _appearance.title, _appearance.toolTip}; }
    [[nodiscard]] bool itemIsMenu() const { return true; }
    [[nodiscard]] QDBusObjectPath menu() const { return QDBusObjectPath(QLatin1String(MenuPath)); }

public Q_SLOTS: // the interface's own names
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString &orientation);
    void ProvideXdgActivationToken(const QString &token);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewIconThemePath(const QString &path);
    void NewToolTip();
    void NewStatus(const QString &status);

private:
    StatusNotifierAppearance _appearance;
    std::function<void(const QString &)> _tokenHandler;
};

} // namespace orvane

Q_DECLARE_METATYPE(orvane::StatusNotifierImage)
Q_DECLARE_METATYPE(orvane::StatusNotifierToolTip)
