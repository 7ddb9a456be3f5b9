#pragma once

#include "platform/filemanagers/DesktopFrontWindow.h"
#include "platform/filemanagers/X11ActiveApplication.h"

#include "fakes/FakeSystemLog.h"

#include <QProcess>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace orvane::testing {

/// Runs Qt's events until the condition holds; false when it did not within the limit.
bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit = std::chrono::seconds(10));

/// Runs a short program to its end; what it wrote, without the last line feed.
std::string outputOf(const QString &program, const QStringList &arguments);

/// Processes of this test's desktop: those that have its scratch folder in their environment.
std::set<long> processesOfDesktop();

/// How a file manager is started and driven.
struct FileManagerRecipe {
    QString program;
    QStringList before; ///< arguments in front of the folder
    QStringList environment;
};
/// The recipe for one of the names thunar, pcmanfm-qt, pcmanfm, nemo, caja, nautilus, dolphin.
FileManagerRecipe recipeFor(const std::string &name);

/// One file manager with its windows, closed at the end.
class FileManagerProgram {
public:
    explicit FileManagerProgram(FileManagerRecipe recipe) : _recipe(std::move(recipe)) {}
    FileManagerProgram(const FileManagerProgram &) = delete;
    FileManagerProgram &operator=(const FileManagerProgram &) = delete;
    ~FileManagerProgram();

    /// Opens a window and waits until it is active; 0 when that did not happen.
    xcb_window_t open(const std::string &folder);
    /// Goes to a folder in the active window by typing its path; ASCII only.
    void typeLocation(const std::string &folder);
    void key(const char *keys);
    void activate(xcb_window_t window);
    /// The process that a window says it belongs to.
    [[nodiscard]] long pidOf(xcb_window_t window);
    void close();

private:
    FileManagerRecipe _recipe;
    std::vector<std::unique_ptr<QProcess>> _processes;
    std::set<long> _pids;
    X11Windows _windows;
};

/// The adapter under test on the real desktop, and what it must answer.
class AskedFrontWindow {
public:
    AskedFrontWindow() : _front(_active, _log) {}
    [[nodiscard]] FrontWindow &front() { return _front; }
    /// Asks until the folder is what it must be. Empty when that came and no wrong folder before (the one shown before, `previous`,
    /// is right for a moment); else what went wrong.
    [[nodiscard]] std::string becomes(const std::string &folder, const std::string &previous = {});

private:
    FakeSystemLog _log;
    X11ActiveApplication _active;
    DesktopFrontWindow _front;
};

} // namespace orvane::testing
