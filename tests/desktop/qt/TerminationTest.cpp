// Signals end the program in order, whatever is open.

#include "QtTestSupport.h"

#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtOpenPanel.h"
#include "platform/qt/QtPopUpMenus.h"
#include "platform/qt/QtPromptInterface.h"
#include "platform/qt/QtReferenceWindow.h"
#include "platform/qt/QtTermination.h"
#include "ports/AssertionHandler.h"

#include <chrono>
#include <csignal>
#include <functional>

#include <unistd.h>

#include <gtest/gtest.h>

#include <QApplication>
#include <QEventLoopLocker>

namespace orvane::test {
namespace {

/// Says "ready" once a window or menu of ours is shown.
void sayWhenShown(QTimer &timer) {
    QObject::connect(&timer, &QTimer::timeout, &timer, [&timer] {
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            if (window->isVisible()) {
                timer.stop();
                say("ready");
                return;
            }
        }
    });
    timer.start(10);
}

/// Runs the program with something open until a signal ends it, and says how that something ended.
template <typename Opens> int runWith(QtApplication &application, Opens opens) {
    const QtTermination termination(application);
    QTimer looks;
    sayWhenShown(looks);
    QTimer::singleShot(0, &looks, [&] { say(opens()); });
    const int status = application.run();
    say("left");
    return status;
}

const Program IdleProgram("idle", [](QtApplication &application) {
    const QtTermination termination(application);
    QTimer::singleShot(0, [] { say("ready"); });
    const int status = application.run();
    say("left");
    return status;
});

const Program AlertProgram("alert", [](QtApplication &application) {
    return runWith(application, [&] {
        QtMainThread mainThread;
        QtAlerts alerts(application, mainThread);
        alerts.runAlertPanel("A title", "A message.");
        alerts.runAlertPanel("Another", "that must not come up any more");
        return "dismissed";
    });
});

const Program PanelProgram("panel", [](QtApplication &application) {
    return runWith(application, [&] {
        QtOpenPanel openPanel(application, {});
        const bool chosen =
            openPanel.runModal({.title = "t", .prompt = "p", .canChooseFiles = false, .canChooseDirectories = true}).has_value();
        return chosen ? "chosen" : "cancelled";
    });
});

const Program MenuProgram("menu", [](QtApplication &application) {
    return runWith(application, [&] {
        QtPopUpMenus menus(application);
        QtReferenceWindow window;
        Menu items;
        bool wasChosen = false;
        items.insertItemAtIndex(makeItem("One", 0, [&](const MenuItem &) { wasChosen = true; }), 0);
        menus.popUpContextMenu(items, {.location = {300, 300}}, window);
        return wasChosen ? "chosen" : "closed";
    });
});

/// The least that an owner can be: gives up when the window closes.
class PlainOwner final : public PromptOwner {
public:
    void awakeFromNib(PromptWindow &theWindow, TableView &table) override {
        window = &theWindow;
        table.editColumnRowSelect(table.columnWithIdentifier("ValueColumn"), 0, true);
    }
    std::span<PromptValueRow> promptRows() override { return rows; }
    [[nodiscard]] const std::string &promptDirectoryName() const override { return name; }
    [[nodiscard]] const std::string &promptParentFolder() const override { return name; }
    [[nodiscard]] std::string directoryNameForRows(std::span<const PromptValueRow> /*some*/) const override { return name; }
    [[nodiscard]] PromptProblem problemForRows(std::span<const PromptValueRow> /*some*/) const override { return PromptProblem::None; }
    void finishPrompt() override { wasFinished = true; }
    void abortPrompt() override { window->stopModal(); }
    void windowWillClose(PromptWindow & /*theWindow*/) override { window->stopModal(); }
    void tableTextDidEndEditing(TextMovement /*movement*/) override {}
    void tableKeyDown(int /*keyCode*/) override {}

    std::vector<PromptValueRow> rows = {{"a", ""}};
    std::string name = "{a}";
    PromptWindow *window = nullptr;
    bool wasFinished = false;
};

const Program PromptProgram("prompt", [](QtApplication &application) {
    PlainOwner owner;
    QtPromptInterface interface(application, environment("ORVANE_TEST_RESOURCES"));
    return runWith(application, [&] {
        if (!interface.loadNibNamedOwner("PromptWindow", owner)) {
            return "not loaded";
        }
        owner.window->makeKeyAndOrderFront();
        owner.window->beginModalSession();
        while (owner.window->runModalSession() == RunContinuesResponse) {
        }
        owner.window->endModalSession();
        owner.window->orderOut();
        if (interface.loadNibNamedOwner("PromptWindow", owner)) {
            return "loaded though the program was quitting";
        }
        return owner.wasFinished ? "finished" : "abandoned";
    });
});

struct Ending {
    const char *program;
    const char *outcome;
};
class Termination : public testing::TestWithParam<Ending> {};

TEST_P(Termination, SignalAbandonsWhatIsOpenAndEndsTheProgram) {
    RunningProgram program(GetParam().program);
    ASSERT_EQ(program.line(), "ready");
    program.signal(SIGTERM);
    EXPECT_EQ(program.line(), GetParam().outcome);
    EXPECT_EQ(program.line(), "left");
    EXPECT_EQ(program.status(), 0);
}

INSTANTIATE_TEST_SUITE_P(Open, Termination,
                         testing::Values(Ending{"alert", "dismissed"}, Ending{"panel", "cancelled"}, Ending{"menu", "closed"},
                                         Ending{"prompt", "abandoned"}),
                         [](const auto &instance) { return std::string(instance.param.program); });

TEST(TerminationSignals, EachOfThemEndsAnIdleProgram) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        RunningProgram program("idle");
        ASSERT_EQ(program.line(), "ready");
        program.signal(signal);
        EXPECT_EQ(program.line(), "left") << signal;
        EXPECT_EQ(program.status(), 0) << signal;
    }
}

const Program BrokenProgram("broken", [](QtApplication &application) {
    const QtTermination termination(application);
    QTimer::singleShot(0, [] {
        QTimer::singleShot(0, [] { say("goes on"); });
        say("breaks");
        throw AssertionFailure("an invariant");
    });
    const int status = application.run();
    say("left");
    return status;
});

TEST(EventLoop, GoesOnAfterABrokenInvariant) {
    RunningProgram program("broken");
    ASSERT_EQ(program.line(), "breaks");
    EXPECT_EQ(program.line(), "goes on");
    program.signal(SIGTERM);
    EXPECT_EQ(program.line(), "left");
    EXPECT_EQ(program.status(), 0);
}

/// What a library does while it is at work for a window of the desktop's own, such as the panel in which a folder is chosen.
const Program LockedProgram("locked", [](QtApplication &application) {
    const QtTermination termination(application);
    QTimer::singleShot(0, [] {
        { const QEventLoopLocker work; }
        say("unlocked");
        // Two rounds of events later.
        QTimer::singleShot(0, [] { QTimer::singleShot(0, [] { say("goes on"); }); });
    });
    const int status = application.run();
    say("left");
    return status;
});

TEST(EventLoop, GoesOnWhenALibrarysWorkIsDoneAndNoWindowIsOpen) {
    RunningProgram program("locked");
    ASSERT_EQ(program.line(), "unlocked");
    EXPECT_EQ(program.line(), "goes on");
    program.signal(SIGTERM);
    EXPECT_EQ(program.line(), "left");
    EXPECT_EQ(program.status(), 0);
}

const Program BusyProgram("busy", [](QtApplication &application) {
    const QtTermination termination(application);
    QObject keeper;
    // The first signal is noticed, and then the program hangs.
    QObject::connect(qApp, &QApplication::aboutToQuit, &keeper, [] {
        say("hangs");
        ::pause();
        ::pause();
    });
    QTimer::singleShot(0, [] { say("ready"); });
    return application.run();
});

TEST(TerminationSignals, SecondOneEndsAProgramThatHangs) {
    RunningProgram program("busy");
    ASSERT_EQ(program.line(), "ready");
    program.signal(SIGTERM);
    ASSERT_EQ(program.line(), "hangs");
    program.signal(SIGTERM);
    EXPECT_EQ(program.status(), 128 + SIGTERM);
}

/// Says "hangs" and then keeps the main thread in something that handles no events.
int hang(QtApplication &application, const std::function<void()> &step) {
    QTimer::singleShot(0, [&] {
        say("hangs");
        for (;;) {
            step();
        }
    });
    return application.run();
}

const Program HangingProgram("hanging", [](QtApplication &application) {
    const QtTermination termination(application);
    return hang(application, [] {});
});

TEST(TerminationSignals, EachOfThemEndsAProgramWhoseMainThreadNeverComesBackAfterThreeSeconds) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        RunningProgram program("hanging");
        ASSERT_EQ(program.line(), "hangs");
        const auto begin = std::chrono::steady_clock::now();
        program.signal(signal);
        EXPECT_EQ(program.status(), 128 + signal);
        EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(2900));
    }
}

constexpr std::chrono::milliseconds ShortPatience(50);

const Program WorkingProgram("working", [](QtApplication &application) {
    // A main thread that works for longer than is waited for, twice over, and then not any more: it is looked at before and after each
    // time of patience.
    constexpr std::uint64_t Last = 5;
    std::uint64_t nodes = 0;
    const auto progress = [&] {
        if (nodes < Last && ++nodes == Last) {
            say("worked");
        }
        return nodes;
    };
    const QtTermination termination(application, progress, ShortPatience);
    return hang(application, [] { ::pause(); });
});

TEST(TerminationSignals, MainThreadThatGetsOnWithItsWorkIsWaitedFor) {
    RunningProgram program("working");
    ASSERT_EQ(program.line(), "hangs");
    const auto begin = std::chrono::steady_clock::now();
    program.signal(SIGTERM);
    EXPECT_EQ(program.line(), "worked");
    EXPECT_EQ(program.status(), 128 + SIGTERM);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 3 * ShortPatience);
}

const Program IgnoringProgram("ignoring", [](QtApplication &application) {
    std::signal(SIGHUP, SIG_IGN); // as nohup does
    const QtTermination termination(application);
    QTimer::singleShot(0, [] {
        std::raise(SIGHUP);
        say("ready");
    });
    return application.run();
});

TEST(TerminationSignals, HangUpThatWasIgnoredFromTheStartStaysIgnored) {
    RunningProgram program("ignoring");
    ASSERT_EQ(program.line(), "ready");
    program.signal(SIGTERM);
    EXPECT_EQ(program.status(), 0);
}

TEST(QtApplications, LoadingWithoutADisplayIsFalse) {
    const std::string display = environment("DISPLAY");
    ASSERT_EQ(::setenv("DISPLAY", ":30000", 1), 0);
    RunningProgram program("idle");
    EXPECT_EQ(program.line(), "");
    EXPECT_EQ(program.status(), 1);
    ASSERT_EQ(::setenv("DISPLAY", display.c_str(), 1), 0);
}

} // namespace
} // namespace orvane::test
