#pragma once

#include <wayland-util.h>

#include <cstdint>

struct wl_proxy;

/// The part of the protocol wlr-layer-shell-unstable-v1 (version 4) that serves to cover an output, by its messages' signatures: no
/// common build dependency carries the protocol's description, and what is needed of it is little.
namespace orvane::layershell {

inline constexpr char ShellName[] = "zwlr_layer_shell_v1";
/// Descriptions that libwayland needs to put messages together and to take them apart.
extern const wl_interface Shell;
extern const wl_interface Surface;

/// Numbers of the requests, in the protocol's order.
enum ShellRequest : std::uint32_t { GetLayerSurface = 0, DestroyShell = 1 };
enum SurfaceRequest : std::uint32_t {
    SetSize = 0,
    SetAnchor = 1,
    SetExclusiveZone = 2,
    SetMargin = 3,
    SetKeyboardInteractivity = 4,
    GetPopup = 5,
    AckConfigure = 6,
    DestroySurface = 7,
    SetLayer = 8,
};

/// The newest version that is understood here, and the first that has a request to destroy the shell.
inline constexpr std::uint32_t NewestVersion = 4;
inline constexpr std::uint32_t ShellDestroyedSince = 3;

inline constexpr std::uint32_t LayerOverlay = 3;
inline constexpr std::uint32_t AnchorAllEdges = 1 | 2 | 4 | 8;
/// The surface lies under no panel and moves none away.
inline constexpr std::int32_t ZoneOfItsOwn = -1;
inline constexpr std::uint32_t KeyboardNone = 0;
inline constexpr std::uint32_t KeyboardExclusive = 1;

/// Events of a surface, in the protocol's order.
struct SurfaceListener {
    void (*configure)(void *data, wl_proxy *surface, std::uint32_t serial, std::uint32_t width, std::uint32_t height);
    void (*closed)(void *data, wl_proxy *surface);
};

} // namespace orvane::layershell
