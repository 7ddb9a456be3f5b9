#pragma once

#include "ports/EventHandlers.h"
#include "ports/HotKeyEvents.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace orvane {

/// A keyboard in memory. Keys 0 to 127 and the four modifiers exist. Keeps a journal of calls:
///
///     register 1+0x100 id=1      unregister 1+0x100      installHandler keyb 5, keyb 6
///
/// where a refused registration has " refused" behind it.
class FakeHotKeyEvents final : public HotKeyEvents {
public:
    /// Key code and Carbon modifiers.
    using Combination = std::pair<std::uint32_t, std::uint32_t>;

    std::vector<std::string> journal;
    /// Combinations that other programs hold.
    std::set<Combination> takenElsewhere;
    /// The next registration reports success without a reference.
    bool givesNoReference = false;
    /// What the next registration reports, whatever else would be.
    std::optional<EventStatus> nextStatus;
    /// Told of every line of the journal as it is written.
    std::function<void(const std::string &line)> hook;

    [[nodiscard]] EventStatus registerEventHotKey(std::uint32_t keyCode, std::uint32_t modifiers, EventHotKeyID hotKeyID,
                                                  EventTargetRef target, std::uint32_t options, EventHotKeyRef &hotKey) override {
        const Combination combination(keyCode, modifiers);
        const EventStatus status = std::exchange(nextStatus, std::nullopt).value_or(_statusFor(combination, target, options));
        _note("register " + _text(combination) + " id=" + std::to_string(hotKeyID.id) + (status == 0 ? "" : " refused"));
        if (status != EventNoError || std::exchange(givesNoReference, false)) {
            return status;
        }
        auto registration = std::make_unique<Registration>(Registration{combination, hotKeyID});
        hotKey = registration.get();
        _registrations[hotKey] = std::move(registration);
        return EventNoError;
    }

    EventStatus unregisterEventHotKey(EventHotKeyRef hotKey) override {
        const auto found = _registrations.find(hotKey);
        if (found == _registrations.end()) {
            _note("unregister nothing");
            return EventHotKeyInvalidError;
        }
        _note("unregister " + _text(found->second->combination));
        _registrations.erase(found);
        return EventNoError;
    }

    [[nodiscard]] EventTargetRef getEventDispatcherTarget() override { return this; }

    EventStatus installEventHandler(EventTargetRef target, EventHandler handler, std::span<const EventTypeSpec> types,
                                    void *userData) override {
        if (target != this) {
            return EventInternalError;
        }
        std::string line = "installHandler";
        for (const EventTypeSpec &type : types) {
            line += (line.back() == 'r' ? " " : ", ") + _textOfCode(type.eventClass) + " " + std::to_string(type.kind);
        }
        _note(line);
        _handlers.install(handler, types, userData);
        return EventNoError;
    }

    // What the user does. A press while the key is down is auto-repeat.

    void press(std::uint32_t keyCode, std::uint32_t modifiers) {
        if (!_down.insert(keyCode).second) {
            return;
        }
        if (const auto id = _idOf({keyCode, modifiers})) {
            _pressed[keyCode] = *id;
            _handlers.dispatchHotKey(EventHotKeyPressed, *id);
        }
    }
    void release(std::uint32_t keyCode) {
        const auto pressed = _pressed.find(keyCode);
        if (_down.erase(keyCode) == 0 || pressed == _pressed.end()) {
            return;
        }
        const EventHotKeyID id = pressed->second;
        _pressed.erase(pressed);
        for (const auto &entry : _registrations) {
            if (entry.second->id == id) {
                _handlers.dispatchHotKey(EventHotKeyReleased, id);
                return;
            }
        }
    }
    /// Any event at all, as if the desktop had sent it.
    void send(const Event &event) { _handlers.dispatch(event); }

    [[nodiscard]] std::vector<Combination> registered() const {
        std::vector<Combination> all;
        for (const auto &entry : _registrations) {
            all.push_back(entry.second->combination);
        }
        return all;
    }

private:
    struct Registration {
        Combination combination;
        EventHotKeyID id;
    };

    void _note(const std::string &line) {
        journal.push_back(line);
        if (hook) {
            hook(line);
        }
    }
    [[nodiscard]] EventStatus _statusFor(const Combination &combination, EventTargetRef target, std::uint32_t options) const {
        constexpr std::uint32_t LastKeyCode = 127;
        constexpr std::uint32_t Modifiers = 0x1B00;
        if (target != this || options != 0 || combination.first > LastKeyCode || (combination.second & ~Modifiers) != 0) {
            return EventHotKeyInvalidError;
        }
        return takenElsewhere.contains(combination) || _idOf(combination) ? EventHotKeyExistsError : EventNoError;
    }
    [[nodiscard]] std::optional<EventHotKeyID> _idOf(const Combination &combination) const {
        for (const auto &entry : _registrations) {
            if (entry.second->combination == combination) {
                return entry.second->id;
            }
        }
        return std::nullopt;
    }
    [[nodiscard]] static std::string _text(const Combination &combination) {
        constexpr const char *Digits = "0123456789abcdef";
        std::string hexadecimal;
        for (std::uint32_t rest = combination.second; rest != 0 || hexadecimal.empty(); rest >>= 4U) {
            hexadecimal.insert(hexadecimal.begin(), Digits[rest & 15U]);
        }
        return std::to_string(combination.first) + "+0x" + hexadecimal;
    }
    [[nodiscard]] static std::string _textOfCode(std::uint32_t code) {
        std::string text;
        for (int shift = 24; shift >= 0; shift -= 8) {
            text += static_cast<char>(code >> shift & 0xFFU);
        }
        return text;
    }

    EventHandlers _handlers;
    std::map<EventHotKeyRef, std::unique_ptr<Registration>> _registrations;
    std::set<std::uint32_t> _down;
    std::map<std::uint32_t, EventHotKeyID> _pressed;
};

} // namespace orvane
