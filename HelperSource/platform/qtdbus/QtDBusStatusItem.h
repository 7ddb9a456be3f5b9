#pragma once

#include "platform/qtdbus/QtDBusMenu.h"
#include "platform/qtdbus/QtDBusSession.h"
#include "platform/qtdbus/StatusNotifierObject.h"
#include "platform/qtdbus/StatusNotifierRegistration.h"
#include "ports/StatusBar.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace orvane {

/// What status items share: where their pictures are, how they call themselves, and what else there is to show them.
struct QtDBusStatusBarOptions {
    std::string resourceFolder;                   ///< holds the named images, and the folder "icons" of an icon theme
    QString id = QStringLiteral("orvane-helper"); ///< the same in every session: hosts remember places by it
    QString title = QStringLiteral("Orvane");     ///< of an item whose own title is empty
    QString toolTip;                              ///< translated
    QString iconName = QStringLiteral("org.orvane.Helper-symbolic");

    /// Makes an item of another technology, shown while there is no StatusNotifierItem host; may be empty, or return null.
    std::function<std::unique_ptr<StatusItem>()> makeFallbackItem;
    /// Whether that technology has somewhere to show an item now. Only asked while there is no StatusNotifierItem host.
    std::function<bool()> fallbackIsAvailable;
    /// Called once in the bar's life when an item has found no place of either kind for `untilMissing`.
    std::function<void()> statusBarIsMissing;
    /// See QtDBusMenu.
    QtDBusMenu::Filter mayRun;

    /// How long there must be no host before the fallback appears: one that comes up together with us needs a moment.
    std::chrono::milliseconds untilFallback{3000};
    std::chrono::milliseconds untilMissing{40000};
    StatusNotifierRegistration::Times checks{std::chrono::seconds(1), std::chrono::seconds(3), std::chrono::seconds(10)};
};

/// One item, on a connection to the bus of its own, so that hosts see it go in whatever way it ends.
class QtDBusStatusItem final : public QObject, public StatusItem {
    Q_OBJECT

public:
    /// `number` tells apart the items of a process. `options` must outlive it.
    QtDBusStatusItem(const QtDBusStatusBarOptions &options, unsigned number);
    QtDBusStatusItem(const QtDBusStatusItem &) = delete;
    QtDBusStatusItem &operator=(const QtDBusStatusItem &) = delete;
    ~QtDBusStatusItem() override;

    void setTitle(std::string_view title) override;
    void setImage(std::string_view name) override;
    /// Kept for the fallback; a host decides for itself.
    void setHighlightMode(bool highlights) override;
    void setMenu(Menu *menu) override;

    /// Takes it away for good; also from inside its own menu's action.
    void remove();
    /// Whether a host or the fallback has a place for it.
    [[nodiscard]] bool hasPlace() const;
    [[nodiscard]] bool isRemoved() const { return _isRemoved; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _export();
    void _withdraw();
    void _hostChanged();
    void _showFallback();
    void _tellAppearance();

    const QtDBusStatusBarOptions &_options;
    const unsigned _number;
    bool _isRemoved = false;
    QString _title;
    std::string _image;
    bool _highlights = false;
    Menu *_menu = nullptr;
    QtDBusSession _session;
    StatusNotifierObject _object;
    std::unique_ptr<QtDBusMenu> _busMenu;
    std::unique_ptr<StatusNotifierRegistration> _registration; ///< null without a bus
    std::unique_ptr<StatusItem> _fallback;                     ///< null while there is a host
    QTimer _fallbackTimer;
};

} // namespace orvane
