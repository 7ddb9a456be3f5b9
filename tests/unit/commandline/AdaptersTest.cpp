#include "CommandLineAdapters.h"
#include "Interruption.h"
#include "ObservedFileSystem.h"
#include "ProgressBar.h"
#include "Terminal.h"

#include "fakes/FakeFileSystem.h"
#include "fakes/FakePreferencesStore.h"
#include "fakes/FakeProcesses.h"
#include "platform/SingleThread.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace orvane {
namespace {

TEST(DeferredThreadLauncher, RunsWorkInOrderAndOnlyWhenTold) {
    DeferredThreadLauncher launcher;
    std::string order;
    EXPECT_TRUE(launcher.detachNewThread([&] {
        order += "a";
        EXPECT_TRUE(launcher.detachNewThread([&] { order += "c"; }));
    }));
    EXPECT_TRUE(launcher.detachNewThread([&] { order += "b"; }));
    EXPECT_EQ(order, "");
    launcher.runAll();
    EXPECT_EQ(order, "abc");
    launcher.runAll();
    EXPECT_EQ(order, "abc");
}

TEST(CommandLineAlerts, GoToStandardErrorAndAreKept) {
    CommandLineAlerts alerts;
    testing::internal::CaptureStderr();
    alerts.runAlertPanel("Title", "100 %: message");
    alerts.runAlertPanel(std::nullopt, "message");
    alerts.runAlertPanel("Title", std::nullopt);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "orvane: Title: 100 %: message\norvane: message\norvane: Title\n");
    ASSERT_EQ(alerts.shown().size(), 3U);
    EXPECT_EQ(alerts.shown()[1].title, std::nullopt);
}

TEST(CommandLineAlerts, AGateHoldsThemBack) {
    CommandLineAlerts alerts;
    alerts.setGate([] { return false; });
    testing::internal::CaptureStderr();
    alerts.runAlertPanel("Title", "message");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(alerts.shown().empty());
}

TEST(RecordingProcessLauncher, KeepsTheStatusOfTheLastProgramThatEnded) {
    FakeProcessLauncher programs;
    programs.programs["/three"].status = 3;
    programs.anyProgram.reset();
    RecordingProcessLauncher launcher(programs);
    EXPECT_EQ(launcher.lastStatus(), std::nullopt);
    const auto child = launcher.launch("/three", {{"A", "b"}});
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(launcher.lastStatus(), std::nullopt);
    EXPECT_EQ(child->terminationStatus(), 3);
    EXPECT_EQ(launcher.lastStatus(), 3);
    EXPECT_EQ(programs.launches().front().environment, (std::map<std::string, std::string>{{"A", "b"}}));
    EXPECT_EQ(launcher.launch("/missing", {}), nullptr);
    EXPECT_EQ(launcher.lastStatus(), std::nullopt);
}

TEST(ReadOnlyPreferencesStore, ReadsButNeverSetsOrLocks) {
    FakePreferencesStore store;
    PropertyListBuilder builder;
    const PropertyList before = builder.finish(builder.string("before"));
    store.writeToDisk("key", before);
    ReadOnlyPreferencesStore readOnly(store);
    EXPECT_TRUE(readOnly.synchronize());
    const auto lock = readOnly.lock();
    EXPECT_NE(lock, nullptr);
    readOnly.setAppValue("key", builder.finish(builder.string("after")));
    EXPECT_TRUE(readOnly.synchronize());
    EXPECT_EQ(readOnly.copyAppValue("key")->root().string(), "before");
    EXPECT_EQ(store.locksHeld(), 0);
    EXPECT_EQ(std::count(store.journal.begin(), store.journal.end(), "setAppValue key"), 0);
}

bool stopNow = false;
bool isStopped() {
    return stopNow;
}

TEST(ObservedFileSystem, KnowsTheTopFolderAndWhenAHierarchyBegins) {
    FakeFileSystem disk;
    int begun = 0;
    stopNow = false;
    ObservedFileSystem observed(
        disk, [&] { ++begun; }, &isStopped);
    EXPECT_EQ(observed.topPath(), "");
    const auto writer = observed.beginHierarchy("/base/");
    ASSERT_NE(writer, nullptr);
    EXPECT_EQ(begun, 1);
    EXPECT_TRUE(writer->enterFolder("top"));
    EXPECT_TRUE(writer->enterFolder("inner"));
    EXPECT_TRUE(writer->makeEmptyFile("file", {}));
    writer->leaveFolder({});
    writer->leaveFolder({});
    EXPECT_EQ(observed.topPath(), "/base/top");
    EXPECT_TRUE(disk.fileExists("/base/top/inner/file"));
}

TEST(ObservedFileSystem, FailsEveryItemOnceStoppedAndCanStillRemove) {
    FakeFileSystem disk;
    stopNow = false;
    ObservedFileSystem observed(
        disk, [] {}, &isStopped);
    const auto writer = observed.beginHierarchy("/base");
    ASSERT_TRUE(writer->enterFolder("top"));
    stopNow = true;
    EXPECT_FALSE(writer->enterFolder("inner"));
    EXPECT_FALSE(writer->makeEmptyFile("file", {}));
    EXPECT_EQ(writer->lastError(), EINTR);
    writer->removeEverythingMade();
    stopNow = false;
    EXPECT_FALSE(disk.fileExists("/base/top"));
}

TEST(Interruption, TurnsASignalIntoAQuestionAndGivesItBack) {
    struct sigaction before {};
    ::sigaction(SIGTERM, nullptr, &before);
    {
        const Interruption interruption;
        EXPECT_FALSE(Interruption::wasRequested());
        ::raise(SIGTERM);
        EXPECT_TRUE(Interruption::wasRequested());
    }
    struct sigaction after {};
    ::sigaction(SIGTERM, nullptr, &after);
    EXPECT_EQ(before.sa_handler, after.sa_handler);
    const Interruption fresh;
    EXPECT_FALSE(Interruption::wasRequested());
}

TEST(Interruption, EndsAWaitingForInputEvenWhenItCameBefore) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    const Interruption interruption;
    ASSERT_EQ(::write(ends[1], "x", 1), 1);
    EXPECT_TRUE(Interruption::waitForInput(ends[0]));
    char byte = 0;
    ASSERT_EQ(::read(ends[0], &byte, 1), 1);
    ::raise(SIGINT);
    EXPECT_FALSE(Interruption::waitForInput(ends[0])); // nothing to read, and yet it returns
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(Interruption, AnIgnoredSignalStaysIgnored) {
    auto *const before = std::signal(SIGHUP, SIG_IGN);
    {
        const Interruption interruption;
        ::raise(SIGHUP);
        EXPECT_FALSE(Interruption::wasRequested());
    }
    EXPECT_EQ(std::signal(SIGHUP, before), SIG_IGN);
}

TEST(ProgressBar, LineShowsShareAndCount) {
    EXPECT_EQ(ProgressBar::line(50, 200, false, 40), "[#####                 ] 25 %  50 of 200");
    EXPECT_EQ(ProgressBar::line(300, 200, false, 200), "[" + std::string(40, '#') + "] 100 %  200 of 200");
    EXPECT_EQ(ProgressBar::line(0, 0, false, 30), "[##############] 100 %  0 of 0");
}

TEST(ProgressBar, LineKeepsToTheWidth) {
    for (std::size_t columns = 0; columns < 100; ++columns) {
        EXPECT_LE(ProgressBar::line(5, 10, false, columns).size(), columns);
    }
}

/// Sets an environment variable until the end of the test.
class Environment {
public:
    Environment(const char *name, const char *value) : _name(name) {
        const char *before = std::getenv(name);
        _before = before == nullptr ? std::nullopt : std::optional<std::string>(before);
        value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
    }
    Environment(const Environment &) = delete;
    Environment &operator=(const Environment &) = delete;
    ~Environment() { _before ? ::setenv(_name, _before->c_str(), 1) : ::unsetenv(_name); }

private:
    const char *_name;
    std::optional<std::string> _before;
};

TEST(Terminal, UTF8IsReadFromTheLocaleThatCounts) {
    const Environment all("LC_ALL", nullptr);
    const Environment type("LC_CTYPE", nullptr);
    const Environment language("LANG", nullptr);
    EXPECT_FALSE(environmentHasUTF8());
    ::setenv("LANG", "de_DE.UTF-8", 1);
    EXPECT_TRUE(environmentHasUTF8());
    ::setenv("LC_CTYPE", "C", 1);
    EXPECT_FALSE(environmentHasUTF8());
    ::setenv("LC_ALL", "C.utf8", 1);
    EXPECT_TRUE(environmentHasUTF8());
    ::setenv("LC_ALL", "de_DE.UTF-8@euro", 1);
    EXPECT_TRUE(environmentHasUTF8());
    ::setenv("LC_ALL", "de_DE.ISO-8859-1", 1);
    EXPECT_FALSE(environmentHasUTF8());
}

} // namespace
} // namespace orvane
