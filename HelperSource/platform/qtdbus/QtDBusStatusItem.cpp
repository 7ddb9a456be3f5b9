#include "platform/qtdbus/QtDBusStatusItem.h"

#include "platform/qtdbus/QtStatusImage.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QtEndian>

#include <array>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Sizes that panels ask for, at their normal and at twice the resolution.
constexpr std::array<int, 6> Sizes{16, 22, 24, 32, 44, 48};

StatusNotifierImage inNetworkOrder(const QImage &picture) {
    const QImage image = picture.convertToFormat(QImage::Format_ARGB32);
    StatusNotifierImage result{image.width(), image.height(), {}};
    result.pixels.resize(static_cast<qsizetype>(image.width()) * image.height() * static_cast<qsizetype>(sizeof(quint32)));
    for (int y = 0; y < image.height(); ++y) {
        qToBigEndian<quint32>(image.constScanLine(y), image.width(),
                              result.pixels.data() + static_cast<qsizetype>(y) * image.width() * static_cast<qsizetype>(sizeof(quint32)));
    }
    return result;
}

} // namespace

QtDBusStatusItem::QtDBusStatusItem(const QtDBusStatusBarOptions &options, unsigned number)
    : _options(options), _number(number), _session(nullptr), _busMenu(std::make_unique<QtDBusMenu>(options.mayRun)) {
    _object.setTokenHandler([this](const QString &token) { _busMenu->setActivationToken(token); });
    _fallbackTimer.setSingleShot(true);
    connect(&_fallbackTimer, &QTimer::timeout, this, &QtDBusStatusItem::_showFallback);
    connect(&_session, &QtDBusSession::connected, this, &QtDBusStatusItem::_export);
    connect(&_session, &QtDBusSession::disconnected, this, &QtDBusStatusItem::_withdraw);
    _tellAppearance();
    if (_session.isConnected()) {
        _export();
    }
    _fallbackTimer.start(_options.untilFallback);
    QCoreApplication::instance()->installEventFilter(this); // for the palette
}

QtDBusStatusItem::~QtDBusStatusItem() {
    remove();
}

void QtDBusStatusItem::setTitle(std::string_view title) {
    _title = QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()));
    _tellAppearance();
    if (_fallback) {
        _fallback->setTitle(title);
    }
}

void QtDBusStatusItem::setImage(std::string_view name) {
    _image = name;
    _tellAppearance();
    if (_fallback) {
        _fallback->setImage(name);
    }
}

void QtDBusStatusItem::setHighlightMode(bool highlights) {
    _highlights = highlights;
    if (_fallback) {
        _fallback->setHighlightMode(highlights);
    }
}

void QtDBusStatusItem::setMenu(Menu *menu) {
    _menu = menu;
    if (_busMenu) {
        _busMenu->setMenu(menu);
    }
    if (_fallback) {
        _fallback->setMenu(menu);
    }
}

void QtDBusStatusItem::remove() {
    if (std::exchange(_isRemoved, true)) {
        return;
    }
    QCoreApplication::instance()->removeEventFilter(this);
    _fallbackTimer.stop();
    _withdraw();
    _session.close();
    _fallback.reset();
    _busMenu->setMenu(nullptr);
    _busMenu.release()->deleteLater(); // its action may be what removes us
}

bool QtDBusStatusItem::hasPlace() const {
    return (_registration && _registration->hostIsThere()) || (_fallback && _options.fallbackIsAvailable && _options.fallbackIsAvailable());
}

bool QtDBusStatusItem::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance()) {
        _tellAppearance();
    }
    return QObject::eventFilter(watched, event);
}

void QtDBusStatusItem::_export() {
    QDBusConnection connection = _session.connection();
    connection.registerObject(QLatin1String(StatusNotifierObject::Path), &_object, QDBusConnection::ExportAllContents);
    connection.registerObject(QLatin1String(StatusNotifierObject::MenuPath), _busMenu.get(), QDBusConnection::ExportAllContents);
    const QString name = u"org.kde.StatusNotifierItem-%1-%2"_s.arg(QCoreApplication::applicationPid()).arg(_number);
    _registration = std::make_unique<StatusNotifierRegistration>(connection, name, _options.checks);
    connect(_registration.get(), &StatusNotifierRegistration::hostChanged, this, &QtDBusStatusItem::_hostChanged);
}

void QtDBusStatusItem::_withdraw() {
    if (!_registration) {
        return;
    }
    _registration.reset();
    QDBusConnection connection = _session.connection();
    connection.unregisterObject(QLatin1String(StatusNotifierObject::Path));
    connection.unregisterObject(QLatin1String(StatusNotifierObject::MenuPath));
    if (!_isRemoved) {
        _hostChanged();
    }
}

void QtDBusStatusItem::_hostChanged() {
    if (_registration && _registration->hostIsThere()) {
        _fallbackTimer.stop();
        _fallback.reset();
    } else if (!_fallback) {
        _fallbackTimer.start(_options.untilFallback);
    }
}

void QtDBusStatusItem::_showFallback() {
    if ((_registration && _registration->hostIsThere()) || !_options.makeFallbackItem) {
        return;
    }
    _fallback = _options.makeFallbackItem();
    if (!_fallback) {
        return;
    }
    _fallback->setTitle(_title.isEmpty() ? _options.title.toStdString() : _title.toStdString());
    _fallback->setHighlightMode(_highlights);
    _fallback->setMenu(_menu);
    _fallback->setImage(_image);
}

/// The theme's icon by its name, which hosts colour themselves, and pictures for hosts that do not find it.
void QtDBusStatusItem::_tellAppearance() {
    StatusNotifierAppearance appearance;
    appearance.id = _options.id;
    appearance.title = _title.isEmpty() ? _options.title : _title;
    appearance.toolTip = _options.toolTip;
    if (!_image.empty()) {
        appearance.iconName = _options.iconName;
        const QString icons = QString::fromStdString(_options.resourceFolder) + "/icons"_L1;
        if (QFile::exists(icons)) {
            appearance.iconThemePath = icons;
        }
        const QtStatusImage image(_options.resourceFolder, _image);
        if (!image.isEmpty()) {
            for (const int size : Sizes) {
                appearance.images.append(inNetworkOrder(image.image(size, QtStatusImage::likelyColor())));
            }
        }
    }
    _object.setAppearance(appearance);
}

} // namespace orvane
