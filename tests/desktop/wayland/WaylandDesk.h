#pragma once

#include "desktop/wayland/WaylandInput.h"
#include "platform/qt/QtApplication.h"
#include "ports/PopUpMenus.h"
#include "ports/SystemLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QListView>
#include <QProcess>
#include <QTimer>

namespace orvane::wayland {

/// The application of this test program; loaded before the first test.
inline QtApplication *application = nullptr;

/// The log, for looking at.
class Log final : public SystemLog {
public:
    void log(std::string_view text) override { entries.emplace_back(text); }
    [[nodiscard]] bool has(std::string_view part) const {
        return std::ranges::any_of(entries, [part](const std::string &entry) { return entry.find(part) != std::string::npos; });
    }
    std::vector<std::string> entries;
};

class NoWindow final : public ReferenceWindow {
public:
    [[nodiscard]] std::int64_t windowNumber() override { return 0; }
};

/// The first visible widget of that name.
template <typename Widget> Widget *shown(const char *name) {
    for (QWidget *const widget : QApplication::allWidgets()) {
        if (widget->objectName() == QLatin1String(name) && widget->isVisible()) {
            return qobject_cast<Widget *>(widget);
        }
    }
    return nullptr;
}

inline QWidget *shownPanel() {
    return shown<QWidget>("menuPanel");
}
inline QListView *shownItems() {
    return shown<QListView>("menuItems");
}
/// Whether a window covers anything: those that have left the screen are not painted any more, and stay with Qt for a moment.
inline bool isOnScreen(const QWidget &window) {
    return window.isVisible() && window.updatesEnabled();
}
/// The panel's upper left corner in its window.
inline QPoint panelCorner() {
    return shownPanel()->mapTo(shownPanel()->window(), QPoint());
}
/// Title of the item that is highlighted; empty for none.
inline std::string highlighted() {
    const QListView *const items = shownItems();
    const QModelIndexList selected = items == nullptr ? QModelIndexList() : items->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? std::string() : selected.first().data().toString().toStdString();
}

/// Things to do one after the other while a menu blocks: each as soon as its condition holds. Whatever hangs is ended by the deadline,
/// with a failure.
class Steps {
public:
    using Condition = std::function<bool()>;
    using Action = std::function<void()>;

    Steps() {
        QObject::connect(&_timer, &QTimer::timeout, &_timer, [this] { _go(); });
    }
    ~Steps() { EXPECT_TRUE(_steps.empty()) << _steps.size() << " steps were not reached"; }
    Steps &when(Condition condition, Action action) {
        _steps.emplace_back(std::move(condition), std::move(action));
        return *this;
    }
    void start(std::chrono::milliseconds limit = std::chrono::seconds(20)) {
        _since.start();
        _limit = limit.count();
        _timer.start(3);
    }
    /// Handles events until every step is done.
    void run() {
        start();
        while (_timer.isActive()) {
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

private:
    void _go() {
        if (_steps.empty()) {
            _timer.stop();
            return;
        }
        if (_since.elapsed() > _limit) {
            ADD_FAILURE() << "the condition of a step did not come true; " << _steps.size() << " steps are left";
            _timer.stop();
            _steps.clear();
            for (QWidget *const window : QApplication::topLevelWidgets()) {
                window->close();
            }
            return;
        }
        if (_steps.front().first()) {
            const Action action = _steps.front().second;
            _steps.erase(_steps.begin());
            action();
        }
    }

    std::vector<std::pair<Condition, Action>> _steps;
    QTimer _timer;
    QElapsedTimer _since;
    qint64 _limit = 0;
};

/// What a program prints.
inline std::string outputOf(const QString &program, const QStringList &arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(5000);
    return process.readAllStandardOutput().toStdString();
}

/// A picture of the screen in the folder for pictures, if one is named.
inline void takePicture(const char *name) {
    if (const char *const folder = std::getenv("ORVANE_TEST_SCREENSHOTS")) {
        // What was painted last needs to be on the screen.
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 200) {
            QApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 20);
        }
        QProcess::execute(QStringLiteral("grim"), {QString::fromLocal8Bit(folder) + QLatin1Char('/') + QLatin1String(name)});
    }
}

/// A menu with that many presets behind each other and two items of its own; remembers what was done.
struct Presets {
    explicit Presets(int number) {
        for (int i = 0; i < number; ++i) {
            add("Preset " + std::to_string(i));
        }
        MenuItem line;
        line.isSeparator = true;
        menu.insertItemAtIndex(line, menu.numberOfItems());
        add("Preferences\u2026");
        add("Quit Orvane");
    }
    void add(const std::string &title) {
        MenuItem item;
        item.title = title;
        item.action = [this](const MenuItem &chosen) {
            done.push_back(chosen.title);
            wasShownWhenDone = shownPanel() != nullptr;
        };
        menu.insertItemAtIndex(item, menu.numberOfItems());
    }
    Menu menu;
    std::vector<std::string> done;
    bool wasShownWhenDone = false;
};

/// Pops the menu up as the hot key does: 10 left of and below the pointer.
inline void popUp(PopUpMenus &menus, Menu &menu) {
    NoWindow window;
    const ScreenPoint mouse = menus.mouseLocation();
    SyntheticEvent event;
    event.location = {mouse.x - 10, mouse.y - 10};
    menus.popUpContextMenu(menu, event, window);
}

/// Waits until the windows that a menu covered the screen with are gone for Qt, too.
inline void waitUntilWindowsAreGone() {
    Steps steps;
    steps.when(
        [] {
            const QWidgetList windows = QApplication::topLevelWidgets();
            return std::none_of(windows.begin(), windows.end(), [](const QWidget *window) { return window->isVisible(); });
        },
        [] {});
    steps.run();
}

} // namespace orvane::wayland
