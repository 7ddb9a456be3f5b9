#pragma once

#include "platform/qtdbus/QtStatusImage.h"
#include "platform/qtdbus/QtXEmbedTrayColor.h"
#include "ports/StatusBar.h"

#include <QMenu>
#include <QSystemTrayIcon>

#include <functional>
#include <memory>
#include <string>

namespace orvane {

/// An item in a tray of the older kind (System Tray Protocol 0.4 and XEmbed), which only X11 has. It appears when such a tray starts and
/// comes back with it. Either button opens the menu, at the pointer.
///
/// One must be made only while no StatusNotifierItem host is there: with Qt 6.4 it would be an item for that host. Main thread only.
class QtXEmbedStatusItem final : public StatusItem {
public:
    /// Makes the view of a menu that a click shows; it follows the menu's changes and performs what is chosen.
    using MakeView = std::function<std::shared_ptr<QMenu>(Menu &)>;

    QtXEmbedStatusItem(std::string resourceFolder, MakeView makeView);
    QtXEmbedStatusItem(const QtXEmbedStatusItem &) = delete;
    QtXEmbedStatusItem &operator=(const QtXEmbedStatusItem &) = delete;
    ~QtXEmbedStatusItem() override;

    /// What to hand to QtDBusStatusBarOptions: an item on X11, null elsewhere.
    [[nodiscard]] static std::unique_ptr<StatusItem> make(const std::string &resourceFolder, const MakeView &makeView);
    /// Whether such a tray is there now.
    [[nodiscard]] static bool isAvailable();

    /// Shown as the tool tip.
    void setTitle(std::string_view title) override;
    void setImage(std::string_view name) override;
    /// Trays of this kind highlight nothing.
    void setHighlightMode(bool highlights) override;
    void setMenu(Menu *menu) override;

private:
    void _show();
    void _popUp();

    const std::string _resourceFolder;
    const MakeView _makeView;
    std::unique_ptr<QSystemTrayIcon> _icon;
    QtXEmbedTrayColor _trayColor;
    QtStatusImage _image;
    std::shared_ptr<QMenu> _view;
};

} // namespace orvane
