#pragma once

#include "ports/Services.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

class HotKeyController;
class MenuBarController;
class ReferenceWindow;

/// The application's delegate: offers the preset menu to other programs. Main thread only.
class ORVHelperAppDelegate final : public ServicesProvider {
public:
    /// `services` is borrowed and must outlive the delegate.
    explicit ORVHelperAppDelegate(Services &services) : _services(services) {}
    ORVHelperAppDelegate(const ORVHelperAppDelegate &) = delete;
    ORVHelperAppDelegate &operator=(const ORVHelperAppDelegate &) = delete;
    /// Stops being the services provider.
    ~ORVHelperAppDelegate() override;

    /// To be called once, right before the event loop runs: makes the delegate the services provider.
    void applicationDidFinishLaunching();
    /// Pops the preset menu up at the mouse pointer. What the caller hands over is not looked at, and `error` is never set:
    /// whatever happens afterwards is told to the user, not to the caller.
    void makePresetFromServiceUserDataError(std::string_view pasteboard, std::string_view userData,
                                            std::optional<std::string> &error) override;

    /// A window that the delegate knows and does not use; borrowed.
    [[nodiscard]] ReferenceWindow *window() const { return _window; }
    void setWindow(ReferenceWindow *window) { _window = window; }

    // Outlets, borrowed.
    [[nodiscard]] MenuBarController *menubarController() const { return _menubarController; }
    void setMenubarController(MenuBarController *controller) { _menubarController = controller; }
    [[nodiscard]] HotKeyController *hotkeyController() const { return _hotkeyController; }
    void setHotkeyController(HotKeyController *controller) { _hotkeyController = controller; }

private:
    Services &_services;
    ReferenceWindow *_window = nullptr;
    MenuBarController *_menubarController = nullptr;
    HotKeyController *_hotkeyController = nullptr;
    bool _isServicesProvider = false;
};

} // namespace orvane
