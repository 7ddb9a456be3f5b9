#include "platform/qtdbus/QtXEmbedStatusItem.h"

#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>

#include <array>
#include <utility>

#ifdef ORVANE_QT_THEME
#include <private/qguiapplication_p.h>
#include <qpa/qplatformtheme.h>
#endif

namespace orvane {

namespace {

constexpr std::array<int, 6> Sizes{16, 22, 24, 32, 44, 48};

/// While one lives, Qt knows the trays of X11 only.
///
/// Qt 6.4 takes StatusNotifierItem where a host is there. Later ones take it where its watcher is, also when no host shows anything (as
/// with KDE's own outside of Plasma), and ask no more. The tray is the affair of the desktop's theme, so another one stands in for it.
#ifdef ORVANE_QT_THEME
class OnlyX11Trays {
public:
    OnlyX11Trays() : _theme(std::exchange(QGuiApplicationPrivate::platform_theme, &_withoutTray)) {}
    OnlyX11Trays(const OnlyX11Trays &) = delete;
    OnlyX11Trays &operator=(const OnlyX11Trays &) = delete;
    ~OnlyX11Trays() { QGuiApplicationPrivate::platform_theme = _theme; }

private:
    QPlatformTheme _withoutTray;
    QPlatformTheme *_theme;
};
#else
class OnlyX11Trays {};
#endif

std::unique_ptr<QSystemTrayIcon> makeIcon() {
    [[maybe_unused]] const OnlyX11Trays only{};
    return std::make_unique<QSystemTrayIcon>();
}

bool isOnX11() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

} // namespace

QtXEmbedStatusItem::QtXEmbedStatusItem(std::string resourceFolder, MakeView makeView)
    : _resourceFolder(std::move(resourceFolder)), _makeView(std::move(makeView)), _icon(makeIcon()), _trayColor([this] { _show(); }) {
    QObject::connect(_icon.get(), &QSystemTrayIcon::activated, _icon.get(), [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::Context) {
            _popUp();
        }
    });
}

QtXEmbedStatusItem::~QtXEmbedStatusItem() = default;

std::unique_ptr<StatusItem> QtXEmbedStatusItem::make(const std::string &resourceFolder, const MakeView &makeView) {
    if (!isOnX11()) {
        return nullptr;
    }
    return std::make_unique<QtXEmbedStatusItem>(resourceFolder, makeView);
}

bool QtXEmbedStatusItem::isAvailable() {
    if (!isOnX11()) {
        return false;
    }
    [[maybe_unused]] const OnlyX11Trays only{};
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void QtXEmbedStatusItem::setTitle(std::string_view title) {
    _icon->setToolTip(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
}

void QtXEmbedStatusItem::setImage(std::string_view name) {
    _image = QtStatusImage(_resourceFolder, name);
    _show();
}

void QtXEmbedStatusItem::setHighlightMode(bool /*highlights*/) {}

void QtXEmbedStatusItem::setMenu(Menu *menu) {
    _view = menu == nullptr || !_makeView ? nullptr : _makeView(*menu);
}

/// In the tray's own colour; a tray that does not tell it gets a picture that any background shows.
void QtXEmbedStatusItem::_show() {
    const std::optional<QColor> color = _trayColor.foreground();
    QIcon icon;
    for (const int size : Sizes) {
        const QImage image =
            color ? _image.image(size, *color) : _image.imageWithRim(size, QColor(0x2e, 0x34, 0x36), QColor(0xff, 0xff, 0xff, 0xb0));
        icon.addPixmap(QPixmap::fromImage(image));
    }
    _icon->setIcon(icon);
    _icon->show();
}

void QtXEmbedStatusItem::_popUp() {
    if (_view && !_view->isVisible()) {
        _view->popup(QCursor::pos());
    }
}

} // namespace orvane
