#pragma once

#include "desktop/wayland/WaylandDesk.h"
#include "platform/qtdbus/QtDBusSession.h"
#include "platform/wayland/WaylandHotKeys.h"

#include <array>

namespace orvane::wayland {

/// Hot keys of this session and what came of them.
class HotKeyDesk {
public:
    // Virtual key codes and modifiers of the Mac (HIToolbox/Events.h).
    static constexpr std::uint32_t B = 0x0B;
    static constexpr std::uint32_t H = 0x04;
    static constexpr std::uint32_t ShiftControl = 0x0200 | 0x1000;
    static constexpr const char *Advice = "Bind a key to 'orvane menu'."; ///< where nothing gives the key

    HotKeyDesk() {
        constexpr std::array types{EventTypeSpec{EventClassKeyboard, EventHotKeyPressed},
                                   EventTypeSpec{EventClassKeyboard, EventHotKeyReleased}};
        EXPECT_EQ(keys->installEventHandler(keys->getEventDispatcherTarget(), _handle, types, this), EventNoError);
    }
    EventStatus take(std::uint32_t keyCode, std::uint32_t modifiers = ShiftControl, std::uint32_t id = 1) {
        return keys->registerEventHotKey(keyCode, modifiers, {FourCharacterCode("SGHk"), id}, keys->getEventDispatcherTarget(), 0,
                                         reference);
    }
    /// Handles events until it holds; fails after the limit.
    static bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds limit = std::chrono::seconds(20)) {
        QElapsedTimer clock;
        clock.start();
        while (!condition()) {
            if (clock.elapsed() > limit.count()) {
                return false;
            }
            QApplication::processEvents(QEventLoop::AllEvents, 20);
        }
        return true;
    }
    /// Handles events that long; for what must not happen.
    static void stay(std::chrono::milliseconds time) {
        static_cast<void>(waitFor([] { return false; }, time));
    }

    Log log;
    QtDBusSession session{nullptr};
    std::unique_ptr<WaylandHotKeys> keys = makeWaylandHotKeys(session, Advice, log);
    EventHotKeyRef reference = nullptr;
    std::vector<std::uint32_t> presses;  ///< ids
    std::vector<std::uint32_t> releases; ///< ids

private:
    static EventStatus _handle(const void * /*next*/, const Event &event, void *userData) {
        auto &self = *static_cast<HotKeyDesk *>(userData);
        (event.kind == EventHotKeyPressed ? self.presses : self.releases).push_back(event.parameter->value.id);
        return EventNoError;
    }
};

} // namespace orvane::wayland
