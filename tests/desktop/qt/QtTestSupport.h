#pragma once

#include "platform/qt/QtApplication.h"
#include "ports/Menu.h"
#include "ports/PromptInterface.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QString>
#include <QTimer>
#include <QWidget>
#include <QWindow>

namespace orvane::test {

/// The application of the test program, loaded.
QtApplication &application();
/// The value of an environment variable; fails the test when it is not there.
std::string environment(const char *name);

/// Handles events until the condition holds; false when it does not within 20 s.
bool waitUntil(const std::function<bool()> &holds);
/// Handles events until a widget's window has the size that the X server says it has, and the widget has kept its place since the last
/// look; false when that does not come within 20 s. For whoever wants to click it: a window manager may still answer an earlier size.
/// Not for the steps of a `User`, whose next one would begin meanwhile.
bool waitUntilSettled(const QWidget &widget);

/// What a user does while a call blocks: each step waits for its condition and then acts. Begins with the next event. When a condition
/// does not come to hold within 20 s, the test fails and every window is closed, so that the call returns.
class User {
public:
    User();
    User(const User &) = delete;
    User &operator=(const User &) = delete;
    ~User();
    User &when(std::function<bool()> holds, std::function<void()> acts, std::string what);
    /// Once the step before has acted and its events have been handled.
    User &then(std::function<void()> acts);
    [[nodiscard]] bool hasFinished() const { return _next == _steps.size(); }

private:
    struct Step {
        std::function<bool()> holds;
        std::function<void()> acts;
        std::string what;
    };
    void _look();
    void _giveUp(const std::string &what);

    std::vector<Step> _steps;
    std::size_t _next = 0;
    std::chrono::steady_clock::time_point _deadline;
    QTimer _timer;
};

/// Runs xdotool, whose keys and clicks come from the X server like a user's. Returns when they are on their way.
void xdotool(const std::string &arguments);
/// Standard output of a command, without its last line break.
std::string outputOf(const std::string &command);
/// Number of the window that the window manager has made active; 0 for none.
unsigned long activeWindow();

/// The window that is shown under that object name; null for none.
QWidget *shownWindow(const char *objectName);
/// Such a window, and it has the keyboard.
bool isActive(const char *objectName);
/// The first object of that kind and name in a window; null for none. From Qt 6.6 on `findChild` takes no kinds without Q_OBJECT.
template <typename Kind> Kind *childOf(const QWidget &window, const char *name) {
    const QObjectList all = window.findChildren<QObject *>(QString::fromLatin1(name));
    const auto isKind = [](const QObject *each) { return dynamic_cast<const Kind *>(each) != nullptr; };
    const auto found = std::find_if(all.begin(), all.end(), isKind);
    return found == all.end() ? nullptr : dynamic_cast<Kind *>(*found);
}
template <typename Kind> Kind *child(const char *window, const char *name) {
    const QWidget *const shown = shownWindow(window);
    return shown == nullptr ? nullptr : childOf<Kind>(*shown, name);
}

/// Where the window is on the screen with its frame. A window manager that makes a frame of one pixel first and sizes it later can leave
/// Qt (6.4) with that pixel for good; then the window without its frame counts.
QRect frameOf(const QWidget &window);
/// A picture of the window with its frame, as PNG in the folder of pictures. False when it could not be taken or is of one colour.
bool takePicture(const QWidget &window, const std::string &name);

/// A menu item; the rest of it may be set afterwards.
inline MenuItem makeItem(std::string title, int tag = 0, MenuItem::Action action = {}) {
    MenuItem item;
    item.title = std::move(title);
    item.tag = tag;
    item.action = std::move(action);
    return item;
}
inline MenuItem makeSeparator() {
    MenuItem item;
    item.isSeparator = true;
    return item;
}

/// What this test program does instead of testing when it is started with "--program NAME": each is given the application and returns
/// the exit status. Registered before main.
struct Program {
    Program(const char *name, int (*run)(QtApplication &application));
};
/// This program, started anew as one of those; it ends with this object at the latest.
class RunningProgram {
public:
    explicit RunningProgram(const char *name);
    RunningProgram(const RunningProgram &) = delete;
    RunningProgram &operator=(const RunningProgram &) = delete;
    ~RunningProgram();
    /// Its next line of output; empty when it ended or wrote nothing within 20 s.
    std::string line();
    void signal(int number) const;
    /// Exit status; 128 and the signal's number when a signal ended it; -1 when it is still running after 20 s.
    int status();

private:
    int _process = -1;
    int _output = -1;
};
/// Writes a line for `RunningProgram::line`.
void say(const std::string &line);

/// A program that shows a window of its own and has the keyboard, as the user's other work.
class OtherProgram {
public:
    OtherProgram();
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;
    ~OtherProgram();
    [[nodiscard]] bool isActive() const;

private:
    int _process = -1;
    unsigned long _window = 0;
};

} // namespace orvane::test
