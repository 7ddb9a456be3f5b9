#pragma once

#include "ports/Application.h"

#include <memory>
#include <string>
#include <utility>

class QApplication;
class QIcon;
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
    /// Where the program's picture is looked for, when the first window is shown; see QtProgramIcon.
    void setResourceFolder(std::string folder) { _resourceFolder = std::move(folder); }
    /// Brings the window that the user has to answer to the front; without one, the last of our windows that is shown and was not
    /// shown quietly.
    void activateIgnoringOtherApps(bool ignoring) override;

    /// Runs the event loop until `quit`; the exit status.
    [[nodiscard]] int run();
    /// Ends the event loop: every open window, menu and panel is closed as if the user gave up.
    void quit();
    /// From the moment on in which ending was asked for, whoever asked. Nothing new may be shown then.
    [[nodiscard]] bool isQuitting() const;
    /// Shows the window in front of all others, with the keyboard, though the user may be working in another program.
    void bringToFront(QWidget &window);
    /// Shows the window without taking the keyboard away from what the user is at; the desktop marks it where it lists windows. Nothing
    /// but the user brings it to the front afterwards.
    void showQuietly(QWidget &window);
    /// The window without whose answer none of our other windows goes on; null for none.
    [[nodiscard]] static QWidget *modalWindow();

private:
    class QuitFilter;
    void _setWindowIcon();

    int &_argc;
    char **_argv;
    std::unique_ptr<QApplication> _application;
    std::unique_ptr<QuitFilter> _quitFilter;
    std::string _resourceFolder; ///< empty when it is not known, or when the picture has been read
};

/// What stands for our windows in lists of windows: from the resource folder's "icons" where that is, else from the icon theme, in
/// which it is once Orvane is installed. Desktops that find the icon by the desktop file's name do not need it.
[[nodiscard]] QIcon QtProgramIcon(const std::string &resourceFolder);

} // namespace orvane
