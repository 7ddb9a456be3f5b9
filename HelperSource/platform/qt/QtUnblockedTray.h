#pragma once

#include <QObject>

namespace orvane {

/// Keeps Qt's own icon in an XEmbed tray usable while a modal window is open: ending the program must be possible then, too. As long as
/// it lives; made once the application is loaded. Main thread only.
class QtUnblockedTray final : public QObject {
public:
    QtUnblockedTray();
    QtUnblockedTray(const QtUnblockedTray &) = delete;
    QtUnblockedTray &operator=(const QtUnblockedTray &) = delete;
    ~QtUnblockedTray() override = default;

    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace orvane
