#include "platform/wayland/LayerShell.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/wayland/WlrLayerShellProtocol.h"

#include <algorithm>
#include <cstring>

#include <sys/mman.h>

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>
#include <wayland-client.h>

namespace orvane {

namespace {

/// The compositor answers a commit with the surface's size within this many exchanges, or it will not.
constexpr int MostExchanges = 20;

/// Makes answers to requests sent through it arrive in a queue of our own. Qt's own queue is left alone.
class QueuedProxy {
public:
    QueuedProxy(void *proxy, wl_event_queue *queue) : _wrapper(wl_proxy_create_wrapper(proxy)) {
        wl_proxy_set_queue(static_cast<wl_proxy *>(_wrapper), queue);
    }
    QueuedProxy(const QueuedProxy &) = delete;
    QueuedProxy &operator=(const QueuedProxy &) = delete;
    ~QueuedProxy() { wl_proxy_wrapper_destroy(_wrapper); }
    [[nodiscard]] void *get() const { return _wrapper; }

private:
    void *_wrapper;
};

QPlatformNativeInterface &native() {
    return *QGuiApplication::platformNativeInterface();
}

template <typename... Arguments> void request(wl_proxy *proxy, std::uint32_t opcode, Arguments... arguments) {
    wl_proxy_marshal_flags(proxy, opcode, nullptr, wl_proxy_get_version(proxy), 0, arguments...);
}

void destroy(wl_proxy *proxy, std::uint32_t opcode) {
    wl_proxy_marshal_flags(proxy, opcode, nullptr, wl_proxy_get_version(proxy), WL_MARSHAL_FLAG_DESTROY);
}

/// libwayland takes a listener as an array of functions.
int addListener(wl_proxy *proxy, const layershell::SurfaceListener &listener, void *data) {
    auto *const functions = reinterpret_cast<void (**)()>(const_cast<layershell::SurfaceListener *>(&listener));
    return wl_proxy_add_listener(proxy, functions, data);
}

/// A picture of one pixel that nothing is seen of; null when there is no memory for it.
wl_buffer *clearPixel(wl_shm *memory) {
    constexpr int Bytes = 4;
    const FileDescriptor file(memfd_create("orvane-pixel", MFD_CLOEXEC));
    if (!file || ::ftruncate(file.get(), Bytes) != 0) {
        return nullptr;
    }
    wl_shm_pool *const pool = wl_shm_create_pool(memory, file.get(), Bytes);
    wl_buffer *const pixel = wl_shm_pool_create_buffer(pool, 0, 1, 1, Bytes, WL_SHM_FORMAT_ARGB8888);
    wl_shm_pool_destroy(pool);
    return pixel;
}

/// A surface of one pixel that neither pointer nor keyboard can be in.
class ClearSurface {
public:
    ClearSurface(wl_compositor *compositor, wl_proxy *shell) : _content(wl_compositor_create_surface(compositor)) {
        wl_region *const nothing = wl_compositor_create_region(compositor);
        wl_surface_set_input_region(_content, nothing);
        wl_region_destroy(nothing);
        wl_output *const anyOutput = nullptr;
        _layer = wl_proxy_marshal_flags(shell, layershell::GetLayerSurface, &layershell::Surface, wl_proxy_get_version(shell), 0, nullptr,
                                        _content, anyOutput, layershell::LayerOverlay, "orvane-pointer");
        static const layershell::SurfaceListener listener{_configure, [](void * /*data*/, wl_proxy * /*surface*/) {}};
        addListener(_layer, listener, this);
        request(_layer, layershell::SetSize, 1U, 1U);
        request(_layer, layershell::SetExclusiveZone, layershell::ZoneOfItsOwn);
        wl_surface_commit(_content);
    }
    ClearSurface(const ClearSurface &) = delete;
    ClearSurface &operator=(const ClearSurface &) = delete;
    ~ClearSurface() {
        destroy(_layer, layershell::DestroySurface);
        wl_surface_destroy(_content);
    }
    [[nodiscard]] bool isConfigured() const { return _isConfigured; }
    void show(wl_buffer *pixel) {
        wl_surface_attach(_content, pixel, 0, 0);
        wl_surface_damage(_content, 0, 0, 1, 1);
        wl_surface_commit(_content);
    }

private:
    static void _configure(void *data, wl_proxy *surface, std::uint32_t serial, std::uint32_t /*width*/, std::uint32_t /*height*/) {
        request(surface, layershell::AckConfigure, serial);
        static_cast<ClearSurface *>(data)->_isConfigured = true;
    }

    wl_surface *_content;
    wl_proxy *_layer = nullptr;
    bool _isConfigured = false;
};

} // namespace

LayerSurface::~LayerSurface() {
    if (_surface != nullptr) {
        destroy(_surface, layershell::DestroySurface);
    }
}

void LayerSurface::takeKeyboard() {
    // KWin 6 hears a wish for the keyboard only where there was none before.
    request(_surface, layershell::SetKeyboardInteractivity, layershell::KeyboardNone);
    wl_surface_commit(_content);
    request(_surface, layershell::SetKeyboardInteractivity, layershell::KeyboardExclusive);
    wl_surface_commit(_content);
}

void LayerSurface::_configure(void *data, wl_proxy *surface, std::uint32_t serial, std::uint32_t width, std::uint32_t height) {
    auto *const self = static_cast<LayerSurface *>(data);
    request(surface, layershell::AckConfigure, serial);
    self->_isConfigured = true;
    if (width > 0 && height > 0) {
        self->_window.setGeometry(0, 0, static_cast<int>(width), static_cast<int>(height));
    }
}

void LayerSurface::_close(void *data, wl_proxy * /*surface*/) {
    auto *const self = static_cast<LayerSurface *>(data);
    const std::function<void()> closed = self->closed;
    if (closed) {
        closed();
    }
}

void LayerShell::prepareEnvironment() {
    qputenv(environmentVariable(), "1");
}

const char *LayerShell::environmentVariable() {
    return "QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT";
}

std::unique_ptr<LayerShell> LayerShell::connect() {
    if (!QGuiApplication::platformName().startsWith(QLatin1String("wayland")) || !qEnvironmentVariableIsSet(environmentVariable())) {
        return nullptr;
    }
    auto *const display = static_cast<wl_display *>(native().nativeResourceForIntegration("wl_display"));
    std::unique_ptr<LayerShell> shell(new LayerShell);
    if (display == nullptr || !shell->_bind(display)) {
        return nullptr;
    }
    if (shell->_hasDecorations) {
        _keepOpenGLAway();
    }
    return shell;
}

void LayerShell::_keepOpenGLAway() {
    // Before it shows its first window Qt finds out whether it could draw title bars, and loads the machine's OpenGL for that: tens of
    // megabytes and of milliseconds. Where the compositor draws them it need not know; it reads the answer once, from this variable,
    // which is gone again before other programs could be given it.
    constexpr const char *Variable = "QT_WAYLAND_DISABLE_WINDOWDECORATION";
    if (qEnvironmentVariableIsSet(Variable)) {
        return; // the user's own wish
    }
    qputenv(Variable, "1");
    {
        QWindow window; // without a role: it never comes up
        window.setFlags(Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
        window.setVisible(true);
    }
    qunsetenv(Variable);
}

LayerShell::~LayerShell() {
    if (_shell != nullptr) {
        if (wl_proxy_get_version(_shell) >= layershell::ShellDestroyedSince) {
            destroy(_shell, layershell::DestroyShell);
        } else {
            wl_proxy_destroy(_shell);
        }
    }
    if (_compositor != nullptr) {
        wl_compositor_destroy(_compositor);
    }
    if (_memory != nullptr) {
        wl_shm_destroy(_memory);
    }
    if (_queue != nullptr) {
        wl_event_queue_destroy(_queue);
    }
}

bool LayerShell::_bind(wl_display *display) {
    _display = display;
    _queue = wl_display_create_queue(display);
    const QueuedProxy queued(display, _queue);
    wl_registry *const registry = wl_display_get_registry(static_cast<wl_display *>(queued.get()));
    static const wl_registry_listener listener{_global, _globalRemove};
    wl_registry_add_listener(registry, &listener, this);
    wl_display_roundtrip_queue(display, _queue);
    wl_registry_destroy(registry);
    return _shell != nullptr;
}

void LayerShell::_global(void *data, wl_registry *registry, std::uint32_t name, const char *interface, std::uint32_t version) {
    auto *const self = static_cast<LayerShell *>(data);
    self->_hasDecorations = self->_hasDecorations || std::strcmp(interface, "zxdg_decoration_manager_v1") == 0;
    if (self->_shell == nullptr && std::strcmp(interface, layershell::ShellName) == 0) {
        const std::uint32_t understood = std::min(version, layershell::NewestVersion);
        self->_shell = static_cast<wl_proxy *>(wl_registry_bind(registry, name, &layershell::Shell, understood));
    } else if (self->_compositor == nullptr && std::strcmp(interface, wl_compositor_interface.name) == 0) {
        self->_compositor = static_cast<wl_compositor *>(wl_registry_bind(registry, name, &wl_compositor_interface, 1));
    } else if (self->_memory == nullptr && std::strcmp(interface, wl_shm_interface.name) == 0) {
        self->_memory = static_cast<wl_shm *>(wl_registry_bind(registry, name, &wl_shm_interface, 1));
    }
}

void LayerShell::_globalRemove(void * /*data*/, wl_registry * /*registry*/, std::uint32_t /*name*/) {}

std::unique_ptr<LayerSurface> LayerShell::cover(QWidget &window, QScreen &screen) {
    window.setScreen(&screen);
    window.winId(); // makes its surface
    QWindow *const handle = window.windowHandle();
    handle->setScreen(&screen);
    auto *const surface = static_cast<wl_surface *>(native().nativeResourceForWindow("surface", handle));
    void *const output = native().nativeResourceForScreen("output", &screen);
    if (surface == nullptr) {
        return nullptr;
    }
    std::unique_ptr<LayerSurface> layer(new LayerSurface(window));
    layer->_content = surface;
    const QueuedProxy queued(_shell, _queue);
    auto *const shell = static_cast<wl_proxy *>(queued.get());
    layer->_surface = wl_proxy_marshal_flags(shell, layershell::GetLayerSurface, &layershell::Surface, wl_proxy_get_version(shell), 0,
                                             nullptr, surface, output, layershell::LayerOverlay, "orvane-menu");
    static const layershell::SurfaceListener listener{LayerSurface::_configure, LayerSurface::_close};
    if (layer->_surface == nullptr || addListener(layer->_surface, listener, layer.get()) != 0) {
        return nullptr;
    }
    request(layer->_surface, layershell::SetSize, 0U, 0U);
    request(layer->_surface, layershell::SetAnchor, layershell::AnchorAllEdges);
    request(layer->_surface, layershell::SetExclusiveZone, layershell::ZoneOfItsOwn);
    request(layer->_surface, layershell::SetKeyboardInteractivity, layershell::KeyboardExclusive);
    wl_surface_commit(surface);
    for (int i = 0; i < MostExchanges && !layer->_isConfigured; ++i) {
        if (wl_display_roundtrip_queue(_display, _queue) < 0) {
            return nullptr;
        }
    }
    // From here on Qt's own handling of events serves it.
    wl_proxy_set_queue(layer->_surface, nullptr);
    return layer->_isConfigured ? std::move(layer) : nullptr;
}

void LayerShell::lookForPointer() {
    // Compositors look when a surface comes or goes.
    wl_buffer *const pixel = _compositor == nullptr || _memory == nullptr ? nullptr : clearPixel(_memory);
    if (pixel == nullptr) {
        return;
    }
    {
        ClearSurface surface(_compositor, _shell);
        for (int i = 0; i < MostExchanges && !surface.isConfigured(); ++i) {
            if (wl_display_roundtrip_queue(_display, _queue) < 0) {
                break;
            }
        }
        if (surface.isConfigured()) {
            surface.show(pixel);
        }
    }
    wl_buffer_destroy(pixel);
    wl_display_flush(_display);
}

void LayerShell::finishRequests() {
    wl_display_roundtrip_queue(_display, _queue);
}

} // namespace orvane
