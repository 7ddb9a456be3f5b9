#include "ORVHelperAppDelegate.h"

#include "hotkeys/HotKeyController.h"

namespace orvane {

ORVHelperAppDelegate::~ORVHelperAppDelegate() {
    if (_isServicesProvider) {
        _services.setServicesProvider(nullptr);
    }
}

void ORVHelperAppDelegate::applicationDidFinishLaunching() {
    _isServicesProvider = true;
    _services.setServicesProvider(this);
}

void ORVHelperAppDelegate::makePresetFromServiceUserDataError(std::string_view /*pasteboard*/, std::string_view /*userData*/,
                                                              std::optional<std::string> & /*error*/) {
    if (_hotkeyController != nullptr) {
        _hotkeyController->launch(nullptr);
    }
}

} // namespace orvane
