#pragma once

class QWindow;

namespace orvane {

/// Whether an X server answers at `DISPLAY`.
[[nodiscard]] bool QtX11DisplayAnswers();
/// Asks the window manager for the keyboard for a window that is shown, as of now: the user has just asked for this window, though
/// perhaps through another program (a tray, a menu of the file manager), of which Qt's own idea of the last input knows nothing.
/// Does nothing on other platforms than X11.
void QtX11ActivateWindow(const QWindow &window);

} // namespace orvane
