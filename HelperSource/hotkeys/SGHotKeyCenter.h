#pragma once

#include "hotkeys/SGHotKey.h"
#include "ports/AssertionHandler.h"
#include "ports/HotKeyEvents.h"

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace orvane {

/// What the registry asks of the desktop. All are borrowed.
struct SGHotKeyCenterPorts {
    AssertionHandler &assertionHandler;
    HotKeyEvents &events;
};

/// The registry of hot keys: owns what is registered with the desktop and tells the record whose key was pressed.
///
/// One instance serves the whole process, `sharedCenter()`, and only that one gets the desktop's events (through
/// `hotKeyEventHandler`); tests build private ones and hand events to them. Main thread only.
class SGHotKeyCenter {
public:
    /// Signature of the ids that the registry gives out.
    static constexpr std::uint32_t HotKeySignature = FourCharacterCode("SGHk");

    /// Says over which ports the shared center will be built. To be called before the first `sharedCenter()`; a null pointer
    /// forgets them, and the shared center with them (for tests).
    static void setSharedPorts(const SGHotKeyCenterPorts *ports);
    /// The shared center, made on first use. Null when no ports are set.
    [[nodiscard]] static SGHotKeyCenter *sharedCenter();
    /// Gives the shared center too: there is no second one.
    [[nodiscard]] static SGHotKeyCenter *alloc() { return sharedCenter(); }

    /// A center of one's own.
    [[nodiscard]] static std::unique_ptr<SGHotKeyCenter> create(const SGHotKeyCenterPorts &ports);
    SGHotKeyCenter(const SGHotKeyCenter &) = delete;
    SGHotKeyCenter &operator=(const SGHotKeyCenter &) = delete;
    /// Gives back to the desktop what is still registered.
    ~SGHotKeyCenter();
    /// Makes the center ready; does nothing, and gives the receiver, when that was done.
    SGHotKeyCenter *init();

    /// Registers the record's combination; a record that is registered already is unregistered first. True also for an
    /// invalid combination, for which nothing is done (kept deliberately: that is no error). False when the desktop
    /// refuses; the record then has a new id all the same.
    bool registerHotKey(const std::shared_ptr<SGHotKey> &hotKey);
    /// Does nothing for a record that is not registered.
    void unregisterHotKey(const std::shared_ptr<SGHotKey> &hotKey);
    /// The registered records, in no particular order.
    [[nodiscard]] std::vector<std::shared_ptr<SGHotKey>> allHotKeys() const;
    /// A registered record of that identifier; null when there is none, and for no identifier.
    [[nodiscard]] std::shared_ptr<SGHotKey> hotKeyWithIdentifier(const SGHotKey::Identifier &identifier) const;
    /// Tells the record whose hot key the event is about. 0, also for a key that is not registered, or the status with
    /// which the event's hot-key id could not be read. Events that no desktop should send are assertion failures.
    EventStatus sendCarbonEvent(const Event &event);

    [[nodiscard]] bool eventHandlerInstalled() const { return _eventHandlerInstalled; }

private:
    friend class SGHotKeyCenterInside; ///< lets tests ask for what cannot happen otherwise

    explicit SGHotKeyCenter(const SGHotKeyCenterPorts &ports) : _ports(ports) {}
    void _updateEventHandler();
    void _hotKeyDown(const SGHotKey *hotKey);
    void _hotKeyUp(const SGHotKey *hotKey);
    [[nodiscard]] bool _isRegistered(const SGHotKey *hotKey) const;
    [[nodiscard]] EventHotKeyRef _carbonHotKeyForHotKey(const SGHotKey *hotKey);
    [[nodiscard]] std::shared_ptr<SGHotKey> _hotKeyForCarbonHotKey(EventHotKeyRef carbonHotKey) const;
    [[nodiscard]] std::shared_ptr<SGHotKey> _hotKeyForHotKeyID(EventHotKeyID hotKeyID) const;
    void _fail(const char *method, int line, const char *description);

    SGHotKeyCenterPorts _ports;
    std::map<EventHotKeyRef, std::shared_ptr<SGHotKey>> _hotKeys;
    bool _eventHandlerInstalled = false;
    bool _hasInited = false;
    std::uint32_t _lastHotKeyID = 0; ///< counts up, also for registrations that are refused
};

/// The desktop's way to the shared center. Gives the status of `sendCarbonEvent`; `EventInternalError` when that ended in an
/// assertion failure or there is no shared center.
EventStatus hotKeyEventHandler(const void *nextHandler, const Event &event, void *userData);

} // namespace orvane
