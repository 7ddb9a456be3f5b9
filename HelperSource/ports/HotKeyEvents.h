#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace orvane {

/// Status of an operation of the event manager: 0 for no error.
using EventStatus = std::int32_t;

// The values are those of Apple's CarbonEventsCore.h and CarbonEvents.h.
inline constexpr EventStatus EventNoError = 0;
inline constexpr EventStatus EventInternalError = -9868;          ///< eventInternalErr
inline constexpr EventStatus EventParameterNotFoundError = -9870; ///< eventParameterNotFoundErr
inline constexpr EventStatus EventHotKeyExistsError = -9878;      ///< eventHotKeyExistsErr: somebody has that combination
inline constexpr EventStatus EventHotKeyInvalidError = -9879;     ///< eventHotKeyInvalidErr: the desktop has no such key or modifier

/// A code made of four ASCII characters.
[[nodiscard]] constexpr std::uint32_t FourCharacterCode(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        code = code << 8U | static_cast<unsigned char>(text[i]);
    }
    return code;
}

// Bits of a mask of modifiers, as in Carbon (Apple's Events.h: cmdKey and so on).
inline constexpr std::uint32_t EventModifierCommand = 0x0100;
inline constexpr std::uint32_t EventModifierShift = 0x0200;
inline constexpr std::uint32_t EventModifierOption = 0x0800;
inline constexpr std::uint32_t EventModifierControl = 0x1000;

inline constexpr std::uint32_t EventClassKeyboard = FourCharacterCode("keyb");
inline constexpr std::uint32_t EventHotKeyPressed = 5;
inline constexpr std::uint32_t EventHotKeyReleased = 6;
inline constexpr std::uint32_t EventParamDirectObject = FourCharacterCode("----");
inline constexpr std::uint32_t TypeEventHotKeyID = FourCharacterCode("hkid");

/// What the owner of a hot key calls it: a signature of its own and a number.
struct EventHotKeyID {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;
    bool operator==(const EventHotKeyID &) const = default;
};

/// A registration. Distinct for registrations that stand at the same time, null for none; never dereferenced by the core.
using EventHotKeyRef = const void *;
/// Where events are sent.
using EventTargetRef = const void *;

/// An event on its way to a handler.
struct Event {
    struct Parameter {
        std::uint32_t name = EventParamDirectObject;
        std::uint32_t type = TypeEventHotKeyID;
        EventHotKeyID value;
    };
    std::uint32_t eventClass = 0;
    std::uint32_t kind = 0;
    std::optional<Parameter> parameter;
};

/// Kinds of events that a handler is for.
struct EventTypeSpec {
    std::uint32_t eventClass = 0;
    std::uint32_t kind = 0;
    bool operator==(const EventTypeSpec &) const = default;
};

/// Called on the main thread. `nextHandler` is not used by anybody, `userData` is what was given with the handler.
using EventHandler = EventStatus (*)(const void *nextHandler, const Event &event, void *userData);

/// Combinations of keys that work whatever program is in front. Main thread only; handlers are called there too, one for
/// each press (auto-repeat presses nothing) and one for each release, never from inside `registerEventHotKey`.
class HotKeyEvents {
public:
    virtual ~HotKeyEvents() = default;
    /// Takes the key for this program. `keyCode` is a virtual key code of the Mac, `modifiers` a mask of
    /// `EventModifier…`. On success a reference is put into
    /// `hotKey`. Otherwise nothing at all stays taken, and the status says why: `EventHotKeyExistsError`,
    /// `EventHotKeyInvalidError` or another that is not 0. `target` must be `getEventDispatcherTarget()`, `options` 0.
    [[nodiscard]] virtual EventStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID hotKeyID,
                                                          EventTargetRef target, std::uint32_t options, EventHotKeyRef &hotKey) = 0;
    /// Gives the key back. A reference that is not registered gives an error and changes nothing.
    virtual EventStatus unregisterEventHotKey(EventHotKeyRef hotKey) = 0;
    [[nodiscard]] virtual EventTargetRef getEventDispatcherTarget() = 0;
    /// From now on calls `handler` for events of the listed types. Handlers are never removed.
    virtual EventStatus installEventHandler(EventTargetRef target, EventHandler handler, std::span<const EventTypeSpec> types,
                                            void *userData) = 0;
    [[nodiscard]] virtual std::uint32_t getEventClass(const Event &event) const { return event.eventClass; }
    [[nodiscard]] virtual std::uint32_t getEventKind(const Event &event) const { return event.kind; }
    /// Puts the parameter of that name and type into `value`; `EventParameterNotFoundError` when there is none such.
    [[nodiscard]] virtual EventStatus getEventParameter(const Event &event, std::uint32_t name, std::uint32_t type,
                                                        EventHotKeyID &value) const {
        if (!event.parameter || event.parameter->name != name || event.parameter->type != type) {
            return EventParameterNotFoundError;
        }
        value = event.parameter->value;
        return EventNoError;
    }
};

} // namespace orvane
