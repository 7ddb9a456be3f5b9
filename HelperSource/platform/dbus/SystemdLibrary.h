#pragma once

#include <systemd/sd-bus.h>

namespace orvane {

/// The functions of libsystemd that are used, found at run time.
///
/// The library is loaded at the first use and not at the program's start: it brings six more shared libraries along
/// (capabilities, compressors, cryptography), which would cost `orvane` more than all its other work on a small
/// preset, though most runs never notify anybody.
struct SystemdLibrary {
    /// The loaded library, which stays; null when it is not installed. Any thread.
    [[nodiscard]] static const SystemdLibrary *load();

    decltype(&::sd_bus_new) busNew;
    decltype(&::sd_bus_set_address) busSetAddress;
    decltype(&::sd_bus_set_bus_client) busSetBusClient;
    decltype(&::sd_bus_start) busStart;
    decltype(&::sd_bus_open_user) busOpenUser;
    decltype(&::sd_bus_is_ready) busIsReady;
    decltype(&::sd_bus_process) busProcess;
    decltype(&::sd_bus_wait) busWait;
    decltype(&::sd_bus_get_fd) busGetDescriptor;
    decltype(&::sd_bus_close_unref) busCloseUnref;
    decltype(&::sd_bus_add_filter) busAddFilter;
    decltype(&::sd_bus_call) busCall;
    decltype(&::sd_bus_send) busSend;
    decltype(&::sd_bus_message_new_signal) messageNewSignal;
    decltype(&::sd_bus_message_new_method_call) messageNewMethodCall;
    decltype(&::sd_bus_message_append_basic) messageAppendBasic;
    decltype(&::sd_bus_message_is_signal) messageIsSignal;
    decltype(&::sd_bus_message_get_path) messageGetPath;
    decltype(&::sd_bus_message_get_member) messageGetMember;
    decltype(&::sd_bus_message_unref) messageUnref;

private:
    [[nodiscard]] bool _find(void *handle);
};

} // namespace orvane
