#pragma once

#include <QAbstractNativeEventFilter>
#include <QColor>
#include <QObject>

#include <cstdint>
#include <functional>
#include <optional>

namespace orvane {

/// The colour in which the X11 tray of this screen wants one-coloured pictures, which some trays tell in a property of their
/// window (_NET_SYSTEM_TRAY_COLORS, System Tray Protocol 0.4, "Visual hints"). Main thread only, on X11 only.
class QtXEmbedTrayColor final : public QAbstractNativeEventFilter {
public:
    /// `changed` is called when another tray has come.
    explicit QtXEmbedTrayColor(std::function<void()> changed);
    QtXEmbedTrayColor(const QtXEmbedTrayColor &) = delete;
    QtXEmbedTrayColor &operator=(const QtXEmbedTrayColor &) = delete;
    ~QtXEmbedTrayColor() override;

    /// Nothing when there is no tray, or when it does not tell.
    [[nodiscard]] std::optional<QColor> foreground() const;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    std::function<void()> _changed;
    QObject _context;           ///< takes calls that are on their way with it
    std::uint32_t _manager = 0; ///< the atom MANAGER (ICCCM 2.0, 2.8)
};

} // namespace orvane
