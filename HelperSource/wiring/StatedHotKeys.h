#pragma once

#include "ports/HotKeyEvents.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace orvane {

/// Hot keys of somebody else, and for each attempt to get one a sentence for the user about what came of it. Main thread only.
class StatedHotKeys final : public HotKeyEvents {
public:
    using State = std::function<void(const std::string &statement)>;

    /// `events` is borrowed. `state` is called with each new statement, and with an empty one when a key is given back.
    StatedHotKeys(HotKeyEvents &events, State state);

    [[nodiscard]] EventStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID hotKeyID,
                                                  EventTargetRef target, std::uint32_t options, EventHotKeyRef &hotKey) override;
    EventStatus unregisterEventHotKey(EventHotKeyRef hotKey) override;
    [[nodiscard]] EventTargetRef getEventDispatcherTarget() override { return _events.getEventDispatcherTarget(); }
    EventStatus installEventHandler(EventTargetRef target, EventHandler handler, std::span<const EventTypeSpec> types,
                                    void *userData) override {
        return _events.installEventHandler(target, handler, types, userData);
    }
    [[nodiscard]] std::uint32_t getEventClass(const Event &event) const override { return _events.getEventClass(event); }
    [[nodiscard]] std::uint32_t getEventKind(const Event &event) const override { return _events.getEventKind(event); }
    [[nodiscard]] EventStatus getEventParameter(const Event &event, std::uint32_t name, std::uint32_t type,
                                                EventHotKeyID &value) const override {
        return _events.getEventParameter(event, name, type, value);
    }

private:
    HotKeyEvents &_events;
    State _state;
};

} // namespace orvane
