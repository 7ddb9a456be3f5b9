#pragma once

#include <cstdint>
#include <functional>
#include <memory>

class QScreen;
class QWidget;
struct wl_compositor;
struct wl_display;
struct wl_event_queue;
struct wl_proxy;
struct wl_registry;
struct wl_shm;
struct wl_surface;

namespace orvane {

/// A window of Qt that covers one output wholly, above everything else, and has the keyboard. Gone from the screen with this object.
/// Main thread only.
class LayerSurface {
public:
    LayerSurface(const LayerSurface &) = delete;
    LayerSurface &operator=(const LayerSurface &) = delete;
    ~LayerSurface();

    /// Asks for the keyboard once more, for when another surface had it that is gone.
    void takeKeyboard();

    /// Called when the compositor took the surface away (its output is gone); it may destroy this object.
    std::function<void()> closed;

private:
    friend class LayerShell;
    explicit LayerSurface(QWidget &window) : _window(window) {}
    static void _configure(void *data, wl_proxy *surface, std::uint32_t serial, std::uint32_t width, std::uint32_t height);
    static void _close(void *data, wl_proxy *surface);

    QWidget &_window;
    wl_proxy *_surface = nullptr;
    wl_surface *_content = nullptr; ///< Qt's
    bool _isConfigured = false;
};

/// The compositor's layer shell (wlr-layer-shell): on sway and its kin and on KWin, not on GNOME. Main thread only.
///
/// Qt gives windows with `Qt::BypassWindowManagerHint` a surface without a role only where an environment variable says so, and looks
/// at it once: `prepareEnvironment` must have been called before the first window.
class LayerShell {
public:
    /// Sets that variable for this process. Call it before other threads are started; programs that this one starts need not see it.
    static void prepareEnvironment();
    /// Its name.
    static const char *environmentVariable();

    /// Null when Qt does not run on Wayland, when the compositor has no layer shell, or when the environment was not prepared.
    [[nodiscard]] static std::unique_ptr<LayerShell> connect();
    LayerShell(const LayerShell &) = delete;
    LayerShell &operator=(const LayerShell &) = delete;
    ~LayerShell();

    /// Gives the window, which must not have been shown and has the flag named above, the screen to cover, and sizes it. Show it
    /// afterwards. The window must outlive what is returned. Null when the compositor refuses.
    [[nodiscard]] std::unique_ptr<LayerSurface> cover(QWidget &window, QScreen &screen);
    /// Makes the compositor look anew which window the pointer is over, without anything being seen. Of the windows that `cover` was
    /// asked for, those that have been painted take part.
    void lookForPointer();
    /// Waits until the compositor has seen everything sent so far.
    void finishRequests();

private:
    LayerShell() = default;
    [[nodiscard]] bool _bind(wl_display *display);
    static void _keepOpenGLAway();
    static void _global(void *data, wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t version);
    static void _globalRemove(void *data, wl_registry *registry, std::uint32_t name);

    wl_display *_display = nullptr; ///< Qt's
    wl_event_queue *_queue = nullptr;
    wl_proxy *_shell = nullptr;
    wl_compositor *_compositor = nullptr;
    wl_shm *_memory = nullptr;
    bool _hasDecorations = false; ///< the compositor draws title bars
};

} // namespace orvane
