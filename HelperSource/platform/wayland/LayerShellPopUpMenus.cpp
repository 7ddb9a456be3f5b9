#include "platform/wayland/LayerShellPopUpMenus.h"

#include "platform/wayland/MenuPanel.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEnterEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QThread>

namespace orvane {

namespace {

/// Time in which the compositor says where the pointer is, from when there is something to enter: five times what sway and KWin took on
/// a slow machine.
constexpr int PatienceInMilliseconds = 350;
/// Time after which a compositor that has not said it is made to look where the pointer is; milliseconds. See `_lookForPointer`.
constexpr int TimeToLook = 10;
/// An answer that takes longer comes from a compositor that has much else to do; milliseconds.
constexpr int BusyAnswer = 40;
/// How often it is given more time then.
constexpr int MostRounds = 5;
/// Time in which there is something to enter; what a machine that has much else to do may take.
constexpr int PatienceWithPainting = 2000;
/// Time after which the window of an overlay that has left the screen goes; milliseconds. See `_retire`.
constexpr int Retirement = 200;
/// Distance that the menu keeps from the screen's edges.
constexpr int EdgeGap = 4;
/// Of the soft shadow around the menu, in pixels.
constexpr int ShadowWidth = 8;
constexpr int ShadowStrength = 7;

} // namespace

/// One output's cover, with the menu once the pointer is known to be here.
class LayerShellPopUpMenus::Overlay final : public QWidget {
public:
    explicit Overlay(LayerShellPopUpMenus &owner) : QWidget(nullptr, Qt::FramelessWindowHint | Qt::BypassWindowManagerHint), _owner(owner) {
        setAttribute(Qt::WA_TranslucentBackground);
        setMouseTracking(true);
        setFocusPolicy(Qt::StrongFocus);
        setWindowTitle(QCoreApplication::translate("Orvane", "Orvane presets"));
    }

    [[nodiscard]] bool cover(LayerShell &shell, QScreen &screen) {
        _place = screen.geometry().topLeft();
        _surface = shell.cover(*this, screen);
        if (_surface != nullptr) {
            _surface->closed = [this] { _owner._lost(*this); };
        }
        return _surface != nullptr;
    }
    void takeKeyboard() {
        if (!_hasLeft()) {
            _surface->takeKeyboard();
        }
    }
    /// Takes it from the screen for good. Qt's window is not hidden by this: see `_retire`.
    void leave() {
        setUpdatesEnabled(false);
        _surface.reset();
        _panel.reset();
    }
    [[nodiscard]] QPoint onDesktop(const QPoint &point) const { return _place + point; }

    void showMenu(Menu &menu, std::optional<QPoint> pointer, const QPoint &offset) {
        _panel = std::make_unique<MenuPanel>(menu, MenuPanel::Search::Letters, this);
        _panel->chosen = [this](const MenuItem &item) { _owner._end(item); };
        _panel->cancelled = [this] { _owner._end(std::nullopt); };
        _panel->contentChanged = [this, pointer, offset] { _placePanel(pointer, offset); };
        _placePanel(pointer, offset);
        _panel->show();
        _panel->takeFocus();
        repaint(); // at once: an update would wait until the compositor has shown the empty overlay, which takes a frame
    }

protected:
    void enterEvent(QEnterEvent *event) override { _pointerAt(event->position().toPoint()); }
    void mouseMoveEvent(QMouseEvent *event) override { _pointerAt(event->position().toPoint()); }
    void mousePressEvent(QMouseEvent *event) override {
        if (_hasLeft()) {
            return;
        }
        // What the menu does not take arrives here too.
        if (_panel == nullptr || !_panel->geometry().contains(event->position().toPoint())) {
            _owner._end(std::nullopt);
        }
    }
    void keyPressEvent(QKeyEvent *event) override {
        if (event->key() == Qt::Key_Escape && !_hasLeft()) {
            _owner._end(std::nullopt);
        }
    }
    void closeEvent(QCloseEvent *event) override {
        if (!_hasLeft()) {
            _owner._end(std::nullopt);
            setUpdatesEnabled(false);
            _surface.reset();
            _owner._shell->finishRequests();
        }
        // Qt hides it next, as it does with every window when the program is to end; see `_retire`.
        QThread::msleep(Retirement);
        QWidget::closeEvent(event);
    }
    void paintEvent(QPaintEvent * /*event*/) override {
        if (_hasLeft()) {
            return;
        }
        if (_panel == nullptr) {
            if (!std::exchange(_isPainted, true)) {
                _owner._painted();
            }
            return;
        }
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, ShadowStrength));
        for (int i = ShadowWidth; i > 0; --i) {
            painter.drawRoundedRect(_panel->geometry().adjusted(-i, -i + 2, i, i + 2), i, i);
        }
    }

private:
    /// What was on its way to it still arrives then.
    [[nodiscard]] bool _hasLeft() const { return _surface == nullptr; }
    void _pointerAt(const QPoint &point) {
        if (_hasLeft()) {
            return;
        }
        _owner._notePointer(onDesktop(point));
        if (_owner._shown == nullptr) {
            _owner._show(*this, point);
        }
    }
    void _placePanel(std::optional<QPoint> pointer, const QPoint &offset) {
        const QRect room = rect().adjusted(EdgeGap, EdgeGap, -EdgeGap, -EdgeGap);
        const QSize size = _panel->fittingSize(room.size());
        QPoint corner = room.center() - QPoint(size.width() / 2, size.height() / 2);
        if (pointer) {
            corner = *pointer + offset;
            // Where there is room only above the pointer, the menu opens upwards.
            const int upwards = pointer->y() - offset.y() - size.height();
            if (corner.y() + size.height() > room.bottom() + 1 && upwards >= room.top()) {
                corner.setY(upwards);
            }
        }
        corner.setX(std::max(room.left(), std::min(corner.x(), room.right() + 1 - size.width())));
        corner.setY(std::max(room.top(), std::min(corner.y(), room.bottom() + 1 - size.height())));
        _panel->setGeometry(QRect(corner, size));
        update();
    }

    LayerShellPopUpMenus &_owner;
    QPoint _place; ///< of the output's corner on the desktop
    std::unique_ptr<LayerSurface> _surface;
    std::unique_ptr<MenuPanel> _panel;
    bool _isPainted = false;
};

LayerShellPopUpMenus::LayerShellPopUpMenus(std::unique_ptr<LayerShell> shell, QtApplication &application,
                                           std::function<void()> beforeShowing)
    : WaylandPopUpMenus(application, std::move(beforeShowing)), _shell(std::move(shell)) {
    _patience.setSingleShot(true);
    QObject::connect(&_patience, &QTimer::timeout, &_patience, [this] { _showWithoutPointer(); });
    _look.setSingleShot(true);
    QObject::connect(&_look, &QTimer::timeout, &_look, [this] { _lookForPointer(); });
}

LayerShellPopUpMenus::~LayerShellPopUpMenus() = default;

void LayerShellPopUpMenus::_open(Menu &menu, const QPoint &offset) {
    _menu = &menu;
    _offset = offset;
    _shown = nullptr;
    _isPainted = false;
    _rounds = MostRounds;
    for (QScreen *const screen : QGuiApplication::screens()) {
        _cover(*screen);
    }
    if (_overlays.empty()) {
        _chooser = std::make_unique<MenuChooser>(menu, [this](std::optional<MenuItem> chosen) { _end(std::move(chosen)); });
        return;
    }
    _patience.start(PatienceWithPainting);
}

void LayerShellPopUpMenus::_cover(QScreen &screen) {
    auto overlay = std::make_unique<Overlay>(*this);
    if (overlay->cover(*_shell, screen)) {
        overlay->show();
        _overlays.push_back(std::move(overlay));
    }
}

void LayerShellPopUpMenus::_show(Overlay &overlay, std::optional<QPoint> pointer) {
    _shown = &overlay;
    _patience.stop();
    _look.stop();
    overlay.showMenu(*_menu, pointer, _offset);
    // Not from inside an event that may be on its way to one of them.
    QTimer::singleShot(0, &overlay, [this, &overlay] {
        if (_shown != &overlay) {
            return; // it has gone meanwhile
        }
        const auto others = std::stable_partition(_overlays.begin(), _overlays.end(),
                                                  [&overlay](const std::unique_ptr<Overlay> &other) { return other.get() == &overlay; });
        const bool hadOthers = others != _overlays.end();
        std::for_each(others, _overlays.end(), [this](std::unique_ptr<Overlay> &other) { _retire(std::move(other)); });
        _overlays.erase(others, _overlays.end());
        // The keyboard was with one of them perhaps, and sway does not hand it on.
        if (hadOthers) {
            overlay.takeKeyboard();
        }
    });
}

void LayerShellPopUpMenus::_painted() {
    if (_shown != nullptr) {
        return;
    }
    if (!_isPainted) {
        _isPainted = true;
        _patience.start(PatienceInMilliseconds);
    }
    _look.start(TimeToLook); // once more after each overlay: the last one counts
}

void LayerShellPopUpMenus::_lookForPointer() {
    // sway 1.10 looks which surface the pointer is over when an overlay comes up, but an instant before the overlay has its size, and
    // not again until the pointer moves.
    if (_shown == nullptr && !_overlays.empty()) {
        _shell->lookForPointer();
    }
}

void LayerShellPopUpMenus::_showWithoutPointer() {
    if (_shown != nullptr || _overlays.empty()) {
        return;
    }
    // A compositor that has much to do may not have got to the overlays yet. What it says of the pointer comes before its answer here,
    // and is handled when the timer runs out once more.
    if (_rounds > 0) {
        QElapsedTimer clock;
        clock.start();
        _shell->finishRequests();
        const bool isBusy = clock.elapsed() > BusyAnswer;
        _rounds = isBusy ? _rounds - 1 : 0;
        _patience.start(isBusy ? PatienceInMilliseconds : BusyAnswer);
        return;
    }
    const auto active = std::find_if(_overlays.begin(), _overlays.end(), [](const auto &overlay) { return overlay->isActiveWindow(); });
    _show(active == _overlays.end() ? *_overlays.front() : **active, std::nullopt);
}

void LayerShellPopUpMenus::_lost(const Overlay &overlay) {
    // The overlay itself goes when the menu is closed: it is in the middle of an event.
    const bool isOnly = std::all_of(_overlays.begin(), _overlays.end(), [&overlay](const auto &other) { return other.get() == &overlay; });
    if (_shown == nullptr ? isOnly : _shown == &overlay) {
        _end(std::nullopt);
    }
}

void LayerShellPopUpMenus::_retire(std::unique_ptr<Overlay> overlay) {
    // Qt 6.4 hears on a thread of its own that a frame was shown, and destroys that answer's object there. Hiding or deleting the window
    // destroys it too, without asking whether the thread is about to (mended in later versions of Qt:
    // https://codereview.qt-project.org/c/qt/qtwayland/+/445585), and libwayland ends the program. Without its role the surface is off
    // the screen as well and is not told of frames any more, so that the window can be hidden once the thread has done its work.
    overlay->leave();
    _retired.push_back(std::move(overlay));
    QTimer::singleShot(Retirement, &_patience, [this] { _retired.pop_front(); });
}

void LayerShellPopUpMenus::_close() {
    _patience.stop();
    _look.stop();
    _chooser.reset();
    for (std::unique_ptr<Overlay> &overlay : std::exchange(_overlays, {})) {
        _retire(std::move(overlay));
    }
    _shown = nullptr;
    _menu = nullptr;
    _shell->finishRequests();
}

} // namespace orvane
