#pragma once

#include "hotkeys/SGHotKeyCenter.h"
#include "hotkeys/SGKeyCombo.h"
#include "platform/posix/PosixHotKeyStatement.h"
#include "ports/SystemLog.h"

#include <memory>
#include <optional>
#include <string>

namespace orvane {

class QtDBusSession;
class QtX11Events;
class X11Keyboard;

/// What hot keys and their names are made over. All are borrowed; `stateDirectory` is Orvane's own folder for the log.
struct DesktopHotKeysPorts {
    QtDBusSession &session;
    SystemLog &log;
    AssertionHandler &assertions;
    Resources &resources;
    TextCase &textCase;
    std::string stateDirectory;
};

/// Hot keys as the window system gives them, and the names of its keys: chosen once, when the application has been loaded. How the hot
/// key stands is written into the log and where `orvane menu --help` and the settings program find it. Main thread only.
class DesktopHotKeys {
public:
    explicit DesktopHotKeys(const DesktopHotKeysPorts &ports);
    DesktopHotKeys(const DesktopHotKeys &) = delete;
    DesktopHotKeys &operator=(const DesktopHotKeys &) = delete;
    ~DesktopHotKeys();

    /// Takes back what was said of the hot key; to be called when the program ends.
    void takeStatementBack() { _statement.say({}); }
    [[nodiscard]] const SGHotKeyCenterPorts &centerPorts() const { return *_centerPorts; }

private:
    [[nodiscard]] bool _useX11(const DesktopHotKeysPorts &ports);
    void _useWayland(const DesktopHotKeysPorts &ports);
    void _useNothing();
    void _state(const std::string &statement);

    SystemLog &_log;
    PosixHotKeyStatement _statement;
    std::string _lastStatement;
    std::unique_ptr<X11Keyboard> _keyboard;
    std::unique_ptr<KeyboardLayouts> _layouts;
    std::unique_ptr<HotKeyEvents> _native;
    std::unique_ptr<HotKeyEvents> _events; ///< what the core uses; may borrow `_native`
    std::unique_ptr<QtX11Events> _filter;
    std::optional<SGKeyComboPorts> _keyPorts;
    std::optional<SGHotKeyCenterPorts> _centerPorts;
};

} // namespace orvane
