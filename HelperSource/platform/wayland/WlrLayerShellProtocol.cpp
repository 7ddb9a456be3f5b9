#include "platform/wayland/WlrLayerShellProtocol.h"

#include <array>

#include <wayland-client-protocol.h>

namespace orvane::layershell {

namespace {

// Signatures are written as wayland-util.h says (struct wl_message): u unsigned, i signed, s text, o object, n new object, ? may be
// null, a number is the version that the message came with.

/// Types of arguments that are no objects, or objects of which nothing is known here.
std::array<const wl_interface *, 4> plain{};

std::array<const wl_interface *, 5> layerSurfaceArguments{&Surface, &wl_surface_interface, &wl_output_interface, nullptr, nullptr};

const std::array<wl_message, 2> ShellRequests{{
    {"get_layer_surface", "no?ous", layerSurfaceArguments.data()},
    {"destroy", "3", plain.data()},
}};

const std::array<wl_message, 9> SurfaceRequests{{
    {"set_size", "uu", plain.data()},
    {"set_anchor", "u", plain.data()},
    {"set_exclusive_zone", "i", plain.data()},
    {"set_margin", "iiii", plain.data()},
    {"set_keyboard_interactivity", "u", plain.data()},
    {"get_popup", "o", plain.data()},
    {"ack_configure", "u", plain.data()},
    {"destroy", "", plain.data()},
    {"set_layer", "2u", plain.data()},
}};

const std::array<wl_message, 2> SurfaceEvents{{
    {"configure", "uuu", plain.data()},
    {"closed", "", plain.data()},
}};

} // namespace

const wl_interface Shell{ShellName, 4, 2, ShellRequests.data(), 0, nullptr};
const wl_interface Surface{"zwlr_layer_surface_v1", 4, 9, SurfaceRequests.data(), 2, SurfaceEvents.data()};

} // namespace orvane::layershell
