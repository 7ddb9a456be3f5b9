#pragma once

#include "hotkeys/SGKeyCombo.h"
#include "ports/HotKeyEvents.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

class SGHotKey;

/// A message that a hot key can send: a name such as "launch:" and the method that it stands for.
class SGSelector {
public:
    /// No message.
    constexpr SGSelector() = default;
    /// The message `name` (a text that lives for ever) to objects of class `Target`, answered by `Method`.
    template <typename Target, void (Target::*Method)(const SGHotKey *)> [[nodiscard]] static constexpr SGSelector of(const char *name) {
        return SGSelector(name, [](void *target, const SGHotKey *sender) { (static_cast<Target *>(target)->*Method)(sender); });
    }
    [[nodiscard]] constexpr std::string_view name() const { return _name; }
    /// Does nothing without a target or without a message. `target` must be of the class that the message is for.
    void perform(void *target, const SGHotKey *sender) const {
        if (target != nullptr && _send != nullptr) {
            _send(target, sender);
        }
    }
    friend constexpr bool operator==(const SGSelector &one, const SGSelector &other) { return one.name() == other.name(); }

private:
    using Sender = void (*)(void *target, const SGHotKey *sender);
    constexpr SGSelector(const char *name, Sender send) : _name(name), _send(send) {}

    const char *_name = "";
    Sender _send = nullptr;
};

/// The record of one hot key: its name, its combination, and whom it tells. Main thread only.
class SGHotKey {
public:
    using Identifier = std::optional<std::string>;

    /// Without identifier, with the clear combination.
    SGHotKey() = default;
    SGHotKey(Identifier identifier, std::optional<SGKeyCombo> keyCombo);
    SGHotKey(Identifier identifier, std::optional<SGKeyCombo> keyCombo, void *target, SGSelector action);
    SGHotKey(const SGHotKey &) = delete;
    SGHotKey &operator=(const SGHotKey &) = delete;
    ~SGHotKey() = default;

    [[nodiscard]] bool matchesHotKeyID(EventHotKeyID hotKeyID) const { return hotKeyID == _hotKeyID; }
    /// Sends the action to the target, with this record as its sender.
    void invoke() const { _action.perform(_target, this); }
    /// "<SGHotKey: IDENTIFIER, COMBINATION>"; an absent identifier is "(null)".
    [[nodiscard]] std::string description() const;

    [[nodiscard]] const Identifier &identifier() const { return _identifier; }
    void setIdentifier(Identifier identifier) { _identifier = std::move(identifier); }
    /// For display; nobody shows it.
    [[nodiscard]] const std::optional<std::string> &name() const { return _name; }
    void setName(std::optional<std::string> name) { _name = std::move(name); }
    [[nodiscard]] const SGKeyCombo &keyCombo() const { return _keyCombo; }
    /// Nothing stands for the clear combination.
    void setKeyCombo(std::optional<SGKeyCombo> keyCombo) { _keyCombo = keyCombo.value_or(SGKeyCombo::clearKeyCombo()); }
    /// Borrowed, and never told that this record is gone; null for nobody.
    [[nodiscard]] void *target() const { return _target; }
    void setTarget(void *target) { _target = target; }
    [[nodiscard]] SGSelector action() const { return _action; }
    void setAction(SGSelector action) { _action = action; }
    /// All zero until the record was registered; kept when it is unregistered.
    [[nodiscard]] EventHotKeyID hotKeyID() const { return _hotKeyID; }
    void setHotKeyID(EventHotKeyID hotKeyID) { _hotKeyID = hotKeyID; }

private:
    Identifier _identifier;
    std::optional<std::string> _name;
    SGKeyCombo _keyCombo = SGKeyCombo::clearKeyCombo();
    void *_target = nullptr;
    SGSelector _action;
    EventHotKeyID _hotKeyID;
};

} // namespace orvane
