#pragma once

#include "platform/wayland/ChooserPopUpMenus.h"
#include "platform/wayland/LayerShell.h"

#include <deque>
#include <memory>
#include <vector>

#include <QTimer>

namespace orvane {

/// Pop-up menus at the pointer, where the compositor has the layer shell: on sway and its kin and on KWin.
///
/// A window that nothing is seen of covers each output. The one that the pointer enters learns so where the pointer is and shows the
/// menu there; the others go. Where the pointer does not show itself in time, the menu comes up in the middle of the output that has
/// the keyboard. A press beside the menu closes it.
class LayerShellPopUpMenus final : public WaylandPopUpMenus {
public:
    LayerShellPopUpMenus(std::unique_ptr<LayerShell> shell, QtApplication &application, std::function<void()> beforeShowing);
    ~LayerShellPopUpMenus() override;

protected:
    void _open(Menu &menu, const QPoint &offset) override;
    void _close() override;

private:
    class Overlay;

    void _cover(QScreen &screen);
    void _show(Overlay &overlay, std::optional<QPoint> pointer);
    void _painted();
    void _lookForPointer();
    void _showWithoutPointer();
    void _lost(const Overlay &overlay);
    void _retire(std::unique_ptr<Overlay> overlay);

    std::unique_ptr<LayerShell> _shell;
    std::vector<std::unique_ptr<Overlay>> _overlays;
    std::deque<std::unique_ptr<Overlay>> _retired; ///< off the screen already, the one to go first in front
    std::unique_ptr<MenuChooser> _chooser;         ///< where the compositor refuses the overlays
    QTimer _patience;
    QTimer _look;
    Menu *_menu = nullptr;
    QPoint _offset;
    const Overlay *_shown = nullptr; ///< the one with the menu
    bool _isPainted = false;         ///< an overlay is, so that the pointer can enter it
    int _rounds = 0;                 ///< how often the compositor may still be given more time
};

} // namespace orvane
