#include "platform/dbus/SystemdLibrary.h"

#include <dlfcn.h>

namespace orvane {

namespace {

template <typename Function> bool find(void *handle, const char *name, Function &function) {
    function = reinterpret_cast<Function>(::dlsym(handle, name));
    return function != nullptr;
}

} // namespace

const SystemdLibrary *SystemdLibrary::load() {
    static SystemdLibrary library{};
    static const bool isLoaded = [] {
        void *const handle = ::dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);
        return handle != nullptr && library._find(handle);
    }();
    return isLoaded ? &library : nullptr;
}

bool SystemdLibrary::_find(void *handle) {
    return find(handle, "sd_bus_new", busNew) && find(handle, "sd_bus_set_address", busSetAddress) &&
           find(handle, "sd_bus_set_bus_client", busSetBusClient) && find(handle, "sd_bus_start", busStart) &&
           find(handle, "sd_bus_open_user", busOpenUser) && find(handle, "sd_bus_is_ready", busIsReady) &&
           find(handle, "sd_bus_process", busProcess) && find(handle, "sd_bus_wait", busWait) &&
           find(handle, "sd_bus_get_fd", busGetDescriptor) && find(handle, "sd_bus_close_unref", busCloseUnref) &&
           find(handle, "sd_bus_add_filter", busAddFilter) && find(handle, "sd_bus_call", busCall) &&
           find(handle, "sd_bus_send", busSend) && find(handle, "sd_bus_message_new_signal", messageNewSignal) &&
           find(handle, "sd_bus_message_new_method_call", messageNewMethodCall) &&
           find(handle, "sd_bus_message_append_basic", messageAppendBasic) && find(handle, "sd_bus_message_is_signal", messageIsSignal) &&
           find(handle, "sd_bus_message_get_path", messageGetPath) && find(handle, "sd_bus_message_get_member", messageGetMember) &&
           find(handle, "sd_bus_message_unref", messageUnref);
}

} // namespace orvane
