// The window that appears while a creation lasts.

#include "QtTestSupport.h"

#include "platform/qt/QtCreationProgress.h"
#include "platform/qt/QtProgressWindow.h"

#include <thread>

#include <gtest/gtest.h>

#include <QLabel>
#include <QLocale>

namespace orvane::test {
namespace {

using namespace std::chrono_literals;

const std::vector<std::string> WindowCommand = {"/proc/self/exe", "--progress-window"};

/// Whether another process of ours shows the window.
bool windowIsUp() {
    return !outputOf("xdotool search --onlyvisible --name '^Orvane$' 2>/dev/null").empty();
}

/// Keeps the main thread from handling events, as a creation does, until the condition holds or 10 s are over.
bool createUntil(const std::function<void()> &works, const std::function<bool()> &holds) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (std::chrono::steady_clock::now() < deadline) {
        works();
        if (holds()) {
            return true;
        }
    }
    return false;
}

TEST(CreationProgressWindow, AppearsDuringALongCreationAndGoesWithItsEnd) {
    QtCreationProgress progress(WindowCommand);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(createUntil([&] { progress.advanced(1); }, windowIsUp));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 500ms);
    EXPECT_TRUE(waitUntil([] { return !windowIsUp(); }));
}

TEST(CreationProgressWindow, AppearsThoughOneBigFileIsAllThatHappens) {
    QtCreationProgress progress(WindowCommand);
    progress.advanced(1);
    EXPECT_TRUE(createUntil([] {}, windowIsUp));
    EXPECT_TRUE(waitUntil([] { return !windowIsUp(); }));
}

TEST(CreationProgressWindow, DoesNotTakeTheKeyboard) {
    const OtherProgram other;
    QtCreationProgress progress(WindowCommand);
    progress.advanced(1);
    EXPECT_TRUE(createUntil([] {}, windowIsUp));
    EXPECT_TRUE(other.isActive());
}

TEST(CreationProgressWindow, IsAlwaysReadyToAnswerTheDesktop) {
    QtCreationProgress progress(WindowCommand);
    progress.advanced(1);
    ASSERT_TRUE(createUntil([] {}, windowIsUp));
    // The main thread is busy; that the window is moved and closed is the other process's work.
    const std::string number = outputOf("xdotool search --onlyvisible --name '^Orvane$'");
    xdotool("windowmove --sync " + number + " 50 60");
    xdotool("windowclose " + number);
    EXPECT_TRUE(createUntil([] {}, [] { return !windowIsUp(); }));
    progress.advanced(1); // the creation goes on
}

TEST(CreationProgressWindow, ShortCreationsShowNothing) {
    QtCreationProgress progress({"/bin/sh", "-c", "touch \"$DESKTOP_SCRATCH/started\""});
    for (int i = 0; i < 20; ++i) {
        bool wasHandled = false;
        for (int node = 0; node < 100; ++node) {
            progress.advanced(1);
        }
        QTimer::singleShot(0, [&] { wasHandled = true; });
        ASSERT_TRUE(waitUntil([&] { return wasHandled; }));
    }
    bool isLater = false;
    QTimer::singleShot(800, [&] { isLater = true; });
    ASSERT_TRUE(waitUntil([&] { return isLater; }));
    EXPECT_NE(::access((environment("DESKTOP_SCRATCH") + "/started").c_str(), F_OK), 0);
}

TEST(CreationProgressWindow, ProgramThatCannotBeStartedHindersNothing) {
    QtCreationProgress progress({"/nonexistent/program"});
    progress.advanced(1);
    std::this_thread::sleep_for(700ms); // past the moment in which it is tried
    progress.advanced(1);
    bool wasHandled = false;
    QTimer::singleShot(0, [&] { wasHandled = true; });
    EXPECT_TRUE(waitUntil([&] { return wasHandled; }));
}

TEST(CreationProgressWindow, CountsFromSeveralThreads) {
    QtCreationProgress progress(WindowCommand);
    std::thread other([&] {
        for (int i = 0; i < 100000; ++i) {
            progress.advanced(1);
        }
    });
    for (int i = 0; i < 100000; ++i) {
        progress.advanced(1);
    }
    other.join();
    progress.startedOver();
    EXPECT_TRUE(createUntil([&] { progress.advanced(1); }, windowIsUp));
    EXPECT_TRUE(waitUntil([] { return !windowIsUp(); }));
}

TEST(ProgressWindow, SaysHowManyItemsThereAre) {
    QtProgressWindow window;
    window.setNodes(1234);
    bool isSaid = false;
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        isSaid = isSaid || label->text().contains(QLocale().toString(1234));
    }
    EXPECT_TRUE(isSaid);
}

} // namespace
} // namespace orvane::test
