#pragma once

#include "desktop/qt/QtTestSupport.h"
#include "fakes/FakeAssertionHandler.h"
#include "fakes/FakeFinderInformation.h"
#include "fakes/FakeSystemLog.h"
#include "fakes/FakeWorkspace.h"
#include "unit/settings/SettingsDesk.h"

#include "hotkeys/SGKeyCombo.h"
#include "platform/PosixSupportFolder.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "platform/posix/UnistringTextCase.h"
#include "platform/qt/QtResources.h"
#include "platform/qt/QtX11Events.h"
#include "platform/x11/X11HotKeyEvents.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11KeyboardLayouts.h"
#include "presets/ORVPresetResources.h"
#include "window/SettingsContext.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>

// The settings window's pages in a window of their own, over real models, a real keyboard and folders of their own.

namespace orvane::test {

inline constexpr const char *PageWindow = "pageWindow";

/// Every content and script is fine, but for one.
class PageResources final : public ORVPresetResources {
public:
    [[nodiscard]] ORVContentState stateOfContent(std::string_view) override { return ORVContentState::Usable; }
    [[nodiscard]] ORVScriptState stateOfScript(std::string_view name) override {
        return name == "no interpreter.sh" ? ORVScriptState::InterpreterMissing : ORVScriptState::Usable;
    }
};

/// Everything that a page works with.
class SettingsPagesTest : public SettingsTest {
protected:
    SettingsPagesTest() {
        paths = {folder("/Library/Preferences/org.orvane.ORVPrefPane.plist"), folder("/share/Orvane"), folder("/state/orvane"),
                 environment("ORVANE_TEST_RESOURCES")};
        QDir().mkpath(QString::fromStdString(paths.stateFolder));
        SGKeyCombo::setSharedPorts(&keyPorts);
    }
    ~SettingsPagesTest() override {
        window.reset();
        SGKeyCombo::setSharedPorts(nullptr);
    }

    [[nodiscard]] std::string folder(const std::string &below) const { return home.path().toStdString() + below; }
    void writeFile(const std::string &path, const std::string &text, bool isExecutable = false) {
        QDir().mkpath(QFileInfo(QString::fromStdString(path)).path());
        std::ofstream(path) << text;
        if (isExecutable) {
            QFile::setPermissions(QString::fromStdString(path), QFile::permissions(QString::fromStdString(path)) | QFile::ExeOwner);
        }
    }

    /// Reads the preferences as they are and puts a page into a window, which the user has in front.
    template <typename Page, typename... More> Page *show(More... more) {
        start();
        makeContext();
        window = std::make_unique<QWidget>();
        window->setObjectName(QString::fromLatin1(PageWindow));
        window->setWindowTitle(QStringLiteral("Orvane Settings"));
        auto *const page = new Page(*context, more..., window.get());
        auto *const layout = new QVBoxLayout(window.get());
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(page);
        application().bringToFront(*window);
        EXPECT_TRUE(waitUntil([] { return isActive(PageWindow) && shownWindow(PageWindow)->windowHandle()->isExposed(); }));
        return page;
    }
    void makeContext() {
        variables = std::make_unique<VariableIndex>(run->presets);
        preview = std::make_unique<NamePreview>(run->presets, *variables, run->counters);
        problems = std::make_unique<ProblemList>(run->presets, textCase, [] { return std::make_unique<PageResources>(); });
        context = std::make_unique<SettingsContext>(
            SettingsContext{run->history, run->presets, run->counters, run->general, run->store, *variables, *preview, *problems, contents,
                            run->form, notifications, processes, workspace, log, paths, &hotKeys, &layouts, [this] { ++resourceChanges; },
                            [this](const QString &text, bool) { messages.push_back(text.toStdString()); }});
    }
    template <typename Kind> [[nodiscard]] Kind *child(const char *name) const {
        auto *const found = childOf<Kind>(*window, name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    /// Clicks a widget with the mouse, near its left end: a check box may be wider than what can be clicked. Where its window is on the
    /// screen is left to the X server: a window manager may have moved it, which the program hears of later.
    static void click(const QWidget &widget) {
        constexpr int FromTheLeft = 12;
        ASSERT_TRUE(waitUntilSettled(widget));
        const QPoint place(std::min(FromTheLeft, widget.width() / 2), widget.height() / 2);
        const QPoint inWindow = widget.mapTo(widget.window(), place) * widget.devicePixelRatio();
        xdotool("mousemove --window " + std::to_string(widget.window()->winId()) + " " + std::to_string(inWindow.x()) + " " +
                std::to_string(inWindow.y()) + " click 1");
    }

    QTemporaryDir home{QStringLiteral("/dev/shm/orvane-pages-XXXXXX")};
    SettingsPaths paths;
    FakeSystemLog log;
    FakeAssertionHandler assertions;
    FakeFinderInformation finderInformation;
    FakeWorkspace workspace;
    UnistringTextCase textCase;
    PosixProcessLauncher processes;
    QtResources resources{environment("ORVANE_TEST_RESOURCES")};
    std::unique_ptr<X11Keyboard> keyboard = X11Keyboard::create(QtX11Events::connection());
    X11HotKeyEvents hotKeys{*keyboard, log};
    X11KeyboardLayouts layouts{*keyboard};
    QtX11Events filter{[this](const xcb_generic_event_t &event) { return hotKeys.handleEvent(event); }};
    SGKeyComboPorts keyPorts{assertions, layouts, resources, textCase};
    PosixSupportFolder contents{folder("/share/Orvane"), finderInformation};
    std::unique_ptr<VariableIndex> variables;
    std::unique_ptr<NamePreview> preview;
    std::unique_ptr<ProblemList> problems;
    std::unique_ptr<SettingsContext> context;
    std::unique_ptr<QWidget> window;
    std::vector<std::string> messages;
    int resourceChanges = 0;
};

} // namespace orvane::test
