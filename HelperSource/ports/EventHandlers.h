#pragma once

#include "ports/HotKeyEvents.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace orvane {

/// The handlers that were installed on one event target; a part of whatever implements `HotKeyEvents`.
class EventHandlers {
public:
    void install(EventHandler handler, std::span<const EventTypeSpec> types, void *userData) {
        _installed.push_back({handler, {types.begin(), types.end()}, userData});
    }
    /// Calls every handler that is for this event, the newest first, until one of them reports no error. Handlers may
    /// install others and register or unregister hot keys meanwhile.
    void dispatch(const Event &event) const {
        for (std::size_t i = _installed.size(); i-- > 0;) {
            const Installed installed = _installed[i];
            if (_isFor(installed, event) && installed.handler(nullptr, event, installed.userData) == EventNoError) {
                return;
            }
        }
    }
    /// Tells of a hot key that was pressed (`EventHotKeyPressed`) or released.
    void dispatchHotKey(std::uint32_t kind, EventHotKeyID hotKeyID) const {
        dispatch({EventClassKeyboard, kind, Event::Parameter{EventParamDirectObject, TypeEventHotKeyID, hotKeyID}});
    }

private:
    struct Installed {
        EventHandler handler;
        std::vector<EventTypeSpec> types;
        void *userData;
    };
    [[nodiscard]] static bool _isFor(const Installed &installed, const Event &event) {
        return std::ranges::find(installed.types, EventTypeSpec{event.eventClass, event.kind}) != installed.types.end();
    }

    std::vector<Installed> _installed;
};

} // namespace orvane
