#include "platform/qtdbus/QtDBusStatusBar.h"

#include <algorithm>
#include <utility>

namespace orvane {

QtDBusStatusBar::QtDBusStatusBar(QtDBusStatusBarOptions options) : _options(std::move(options)) {
    _missingTimer.setSingleShot(true);
    QObject::connect(&_missingTimer, &QTimer::timeout, &_missingTimer, [this] { lookForPlace(); });
}

QtDBusStatusBar::~QtDBusStatusBar() {
    for (const auto &each : _items) {
        if (const auto item = each.lock()) {
            item->remove();
        }
    }
}

std::shared_ptr<StatusItem> QtDBusStatusBar::statusItemWithLength(double /*length*/) {
    // The last owner may be an action of the item's own menu.
    const std::shared_ptr<QtDBusStatusItem> item(new QtDBusStatusItem(_options, ++_lastNumber), [](QtDBusStatusItem *last) {
        last->remove();
        last->deleteLater();
    });
    std::erase_if(_items, [](const auto &each) { return each.expired(); });
    _items.push_back(item);
    if (!_hasToldMissing) {
        _missingTimer.start(_options.untilMissing);
    }
    return item;
}

void QtDBusStatusBar::removeStatusItem(const std::shared_ptr<StatusItem> &item) {
    for (const auto &each : _items) {
        const auto ours = each.lock();
        if (ours && ours == item) {
            ours->remove();
        }
    }
}

void QtDBusStatusBar::lookForPlace() {
    std::size_t present = 0;
    for (const auto &each : _items) {
        if (const auto item = each.lock(); item && !item->isRemoved()) {
            ++present;
            if (item->hasPlace()) {
                return;
            }
        }
    }
    if (present == 0 || std::exchange(_hasToldMissing, true) || !_options.statusBarIsMissing) {
        return;
    }
    _options.statusBarIsMissing();
}

} // namespace orvane
