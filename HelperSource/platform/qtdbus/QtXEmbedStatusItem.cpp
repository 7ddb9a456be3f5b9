#include "platform/qtdbus/QtXEmbedStatusItem.h"

#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>

#include <array>
#include <utility>

namespace orvane {

namespace {

constexpr std::array<int, 6> Sizes{16, 22, 24, 32, 44, 48};

bool isOnX11() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

} // namespace

QtXEmbedStatusItem::QtXEmbedStatusItem(std::string resourceFolder, MakeView makeView)
    : _resourceFolder(std::move(resourceFolder)), _makeView(std::move(makeView)), _trayColor([this] { _show(); }) {
    QObject::connect(&_icon, &QSystemTrayIcon::activated, &_icon, [this](QSystemTrayIcon::ActivationReason reason) {
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
    return isOnX11() && QSystemTrayIcon::isSystemTrayAvailable();
}

void QtXEmbedStatusItem::setTitle(std::string_view title) {
    _icon.setToolTip(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
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
    _icon.setIcon(icon);
    _icon.show();
}

void QtXEmbedStatusItem::_popUp() {
    if (_view && !_view->isVisible()) {
        _view->popup(QCursor::pos());
    }
}

} // namespace orvane
