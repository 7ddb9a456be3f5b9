#pragma once

#include "platform/qtdbus/QtDBusStatusItem.h"
#include "ports/StatusBar.h"

#include <QTimer>

#include <memory>
#include <vector>

namespace orvane {

/// The tray by StatusNotifierItem and dbusmenu, with another technology in its place while no host for those is there.
///
/// Items appear by themselves in a host that comes up later, or comes back. Nothing here waits for anybody. The length of items is the
/// host's business. Main thread only.
class QtDBusStatusBar final : public StatusBar {
public:
    explicit QtDBusStatusBar(QtDBusStatusBarOptions options);
    QtDBusStatusBar(const QtDBusStatusBar &) = delete;
    QtDBusStatusBar &operator=(const QtDBusStatusBar &) = delete;
    /// Takes away the items that are still there.
    ~QtDBusStatusBar() override;

    [[nodiscard]] std::shared_ptr<StatusItem> statusItemWithLength(double length) override;
    void removeStatusItem(const std::shared_ptr<StatusItem> &item) override;

    /// Tells `statusBarIsMissing` where no item has a place, once. Done by itself `untilMissing` after an item was made; public for tests.
    void lookForPlace();

private:
    const QtDBusStatusBarOptions _options;
    std::vector<std::weak_ptr<QtDBusStatusItem>> _items;
    unsigned _lastNumber = 0;
    bool _hasToldMissing = false;
    QTimer _missingTimer;
};

} // namespace orvane
