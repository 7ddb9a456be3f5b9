#pragma once

#include "platform/filemanagers/ActiveApplication.h"

#include <memory>
#include <optional>

namespace orvane {

/// What a compositor says of the window that has the keyboard.
struct ActiveWindowAnswer {
    enum class Who {
        Nobody,  ///< the user works in no window
        Unknown, ///< no answer, or the keyboard is with something that is no window (an overlay, a panel)
        Window,
    };
    Who who = Who::Unknown;
    ApplicationWindow window;
};

/// The active window where the compositor tells nothing by itself: it is asked each time. While a window of our own has the keyboard, or
/// none that is known, the one counts that was active at the last `noteNow`. Main thread only.
class WaylandActiveApplication : public ActiveApplication {
public:
    [[nodiscard]] std::optional<ApplicationWindow> window() final;
    void noteNow() final;

protected:
    /// Takes 200 ms at most.
    [[nodiscard]] virtual ActiveWindowAnswer _ask() = 0;

private:
    std::optional<ApplicationWindow> _noted;
};

/// By sway's IPC.
class SwayActiveApplication final : public WaylandActiveApplication {
public:
    /// Whether sway answers.
    [[nodiscard]] static bool isUsable();

protected:
    [[nodiscard]] ActiveWindowAnswer _ask() override;
};

/// By a script that KWin runs and that calls back; it is unloaded each time, whatever happens.
class KWinActiveApplication final : public WaylandActiveApplication {
public:
    KWinActiveApplication();
    KWinActiveApplication(const KWinActiveApplication &) = delete;
    KWinActiveApplication &operator=(const KWinActiveApplication &) = delete;
    ~KWinActiveApplication() override;
    /// Whether a KWin with scripting is on the session bus.
    [[nodiscard]] static bool isUsable();

protected:
    [[nodiscard]] ActiveWindowAnswer _ask() override;

private:
    class Connection;
    std::unique_ptr<Connection> _connection; ///< null until it is needed and after it was lost
};

/// The one for this Wayland session, or null where none of these can tell. Writes nothing into the log.
[[nodiscard]] std::unique_ptr<ActiveApplication> makeWaylandActiveApplication();

} // namespace orvane
