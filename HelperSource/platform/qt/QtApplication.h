#pragma once

#include "ports/Application.h"

#include <memory>

class QApplication;
class QWidget;

namespace orvane {

/// Qt's application object and what every window of the helper needs of it. Main thread only.
class QtApplication final : public Application {
public:
    /// The arguments are borrowed for the life of the process; Qt takes its own out of them. Qt starts with `load`.
    QtApplication(int &argc, char **argv);
    QtApplication(const QtApplication &) = delete;
    QtApplication &operator=(const QtApplication &) = delete;
    ~QtApplication() override;

    /// False when there is no display to open, which Qt itself would answer by ending the program.
    [[nodiscard]] bool load() override;
    /// Brings the window that the user has to answer to the front; without one, the last of our windows that is shown.
    void activateIgnoringOtherApps(bool ignoring) override;

    /// Runs the event loop until `quit`; the exit status.
    [[nodiscard]] int run();
    /// Ends the event loop: every open window, menu and panel is closed as if the user gave up.
    void quit();
    /// From the moment on in which ending was asked for, whoever asked. Nothing new may be shown then.
    [[nodiscard]] bool isQuitting() const;
    /// Shows the window in front of all others, with the keyboard, though the user may be working in another program.
    void bringToFront(QWidget &window);
    /// The window without whose answer none of our other windows goes on; null for none.
    [[nodiscard]] static QWidget *modalWindow();

private:
    class QuitFilter;

    int &_argc;
    char **_argv;
    std::unique_ptr<QApplication> _application;
    std::unique_ptr<QuitFilter> _quitFilter;
};

} // namespace orvane
