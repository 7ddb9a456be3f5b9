// What only the real launcher can show: scripts of every kind, descriptors, signals, zombies.

#include "ProcessTestTools.h"

#include "fakes/FakeClock.h"
#include "platform/posix/PosixProcessLauncher.h"
#include "presets/ORVScriptRunner.h"

#include <algorithm>
#include <csignal>
#include <future>
#include <memory>
#include <sstream>
#include <sys/ioctl.h>
#include <vector>

namespace orvane {
namespace {

using namespace std::string_literals;
using test::eventually;
using Environment = std::map<std::string, std::string>;

class PosixProcessLauncherTest : public testing::Test {
protected:
    std::unique_ptr<ChildProcess> launch(const std::string &lines, const Environment &environment = {}) {
        return launcher.launch(folder.write("script", "#!/bin/sh\n" + lines + "\n"), environment);
    }
    /// Standard output of a script that succeeds.
    std::string outputOf(const std::string &lines, const Environment &environment = {}) {
        const auto child = launch(lines, environment);
        if (!child || !eventually([&] { return !child->isRunning(); })) {
            return "(not run)";
        }
        EXPECT_EQ(child->terminationStatus(), 0) << child->readStandardErrorToEnd();
        return child->readStandardOutputToEnd();
    }
    /// The process that wrote its number into the file "pid".
    pid_t awaitPid() {
        const bool isWritten = eventually([&] { return test::contentsOf(folder.path("pid")).ends_with('\n'); });
        return isWritten ? std::stoi(test::contentsOf(folder.path("pid"))) : -1;
    }

    test::TestFolder folder;
    PosixProcessLauncher launcher;
};

char stateOf(pid_t process) {
    const std::string status = test::contentsOf("/proc/" + std::to_string(process) + "/stat");
    const std::size_t end = status.rfind(") ");
    return end == std::string::npos ? '?' : status[end + 2];
}

/// Whether something stands in the pipe on that process's standard output and it waits, which it does for a reader then.
bool waitsForReader(pid_t process) {
    const int output = ::open(("/proc/" + std::to_string(process) + "/fd/1").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    int unread = 0;
    const bool isPipe = output >= 0 && ::ioctl(output, FIONREAD, &unread) == 0;
    if (output >= 0) {
        ::close(output);
    }
    return isPipe && unread > 0 && stateOf(process) == 'S';
}

// What cannot be started --------------------------------------------------------------------------------------------

TEST_F(PosixProcessLauncherTest, FileThatIsNotExecutableIsNotStarted) {
    EXPECT_EQ(launcher.launch(folder.write("plain", "#!/bin/sh\nexit 0\n", 0644), {}), nullptr);
}

TEST_F(PosixProcessLauncherTest, ScriptWithoutInterpreterLineIsNotStarted) {
    EXPECT_EQ(launcher.launch(folder.write("bare", "exit 0\n"), {}), nullptr);
}

TEST_F(PosixProcessLauncherTest, EmptyFileIsNotStarted) {
    EXPECT_EQ(launcher.launch(folder.write("empty", ""), {}), nullptr);
}

TEST_F(PosixProcessLauncherTest, ScriptWithMissingInterpreterIsNotStarted) {
    EXPECT_EQ(launcher.launch(folder.write("bad", "#!/no/such/interpreter\n"), {}), nullptr);
    EXPECT_EQ(launcher.launch(folder.write("windows", "#!/bin/sh\r\nexit 0\r\n"), {}), nullptr);
}

TEST_F(PosixProcessLauncherTest, FolderIsNotStarted) {
    EXPECT_EQ(launcher.launch(folder.path(), {}), nullptr);
}

TEST_F(PosixProcessLauncherTest, NameWithoutFolderIsNotSearchedInPath) {
    EXPECT_EQ(launcher.launch("true", {{"PATH", "/bin:/usr/bin"}}), nullptr);
    EXPECT_EQ(launcher.launch("", {}), nullptr);
}

TEST_F(PosixProcessLauncherTest, PathWithNulIsNotCutAtIt) {
    const std::string path = folder.write("script", "#!/bin/sh\n");
    EXPECT_EQ(launcher.launch(path + "\0.sh"s, {}), nullptr);
}

TEST_F(PosixProcessLauncherTest, TooLongEnvironmentIsNotStarted) {
    EXPECT_EQ(launch("exit 0", {{"LONG", std::string(4 * 1024 * 1024, 'x')}}), nullptr); // one text may have 128 KiB
}

TEST_F(PosixProcessLauncherTest, WithoutDescriptorsNothingIsStarted) {
    const std::string path = folder.write("script", "#!/bin/sh\n");
    {
        const test::SoftLimit limit(RLIMIT_NOFILE, 4);
        EXPECT_EQ(launcher.launch(path, {}), nullptr);
    }
    EXPECT_NE(launcher.launch(path, {}), nullptr);
}

TEST_F(PosixProcessLauncherTest, FailedStartLeavesNoDescriptorBehind) {
    const auto count = [] {
        const std::filesystem::directory_iterator descriptors("/proc/self/fd");
        return std::distance(begin(descriptors), end(descriptors));
    };
    const auto before = count();
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(launcher.launch(folder.path("missing"), {}), nullptr);
    }
    EXPECT_EQ(count(), before);
    EXPECT_TRUE(test::hasNoChild());
}

// What the program finds ----------------------------------------------------------------------------------------------

TEST_F(PosixProcessLauncherTest, EnvironmentIsExactlyWhatWasGiven) {
    const Environment environment{{"ORV_CONTEXT", "postflight"}, {"P_A=B", "c"}, {"P_ÄÖ", "é\n= x"}, {"P_EMPTY", ""}};
    EXPECT_EQ(outputOf("/bin/cat /proc/$$/environ", environment), "ORV_CONTEXT=postflight\0P_A=B=c\0P_EMPTY=\0P_ÄÖ=é\n= x\0"s);
}

TEST_F(PosixProcessLauncherTest, EmptyEnvironmentStaysEmpty) {
    EXPECT_EQ(outputOf("/bin/cat /proc/$$/environ"), "");
}

TEST_F(PosixProcessLauncherTest, NamesAndValuesOfTheEnvironmentEndAtNul) {
    EXPECT_EQ(outputOf("/bin/cat /proc/$$/environ", {{"A\0B"s, "v\0w"s}}), "A=v\0"s);
}

TEST_F(PosixProcessLauncherTest, ProgramGetsNoArguments) {
    EXPECT_EQ(outputOf("/bin/cat /proc/$$/cmdline"), "/bin/sh\0"s + folder.path("script") + "\0"s);
}

TEST_F(PosixProcessLauncherTest, WorkingFolderIsKept) {
    EXPECT_EQ(outputOf("/bin/readlink /proc/$$/cwd"), std::filesystem::current_path().string() + "\n");
}

TEST_F(PosixProcessLauncherTest, StandardInputIsTheNullDevice) {
    EXPECT_EQ(outputOf("/bin/readlink /proc/$$/fd/0"), "/dev/null\n");
}

TEST_F(PosixProcessLauncherTest, NoOtherDescriptorReachesTheProgram) {
    const test::Barrier barrier(folder.path("barrier"));
    const auto bystander = launch("read line < '" + barrier.path() + "'"); // its pipes are open on our side
    const int stranger = ::open("/dev/null", O_RDONLY);                    // without close-on-exec
    const int far = ::fcntl(stranger, F_DUPFD, 500);
    const std::string lister = folder.write("lister", "#!/bin/ls /proc/self/fd\n"); // the program itself, no shell between
    const auto child = launcher.launch(lister, {});
    ::close(stranger);
    ::close(far);
    barrier.release();
    ASSERT_NE(child, nullptr);
    const std::string output = child->readStandardOutputToEnd();
    EXPECT_TRUE(output.ends_with("/proc/self/fd:\n0\n1\n2\n3\n")) << output; // 3 is the folder that it lists
}

TEST_F(PosixProcessLauncherTest, SignalsAreAsANewProgramExpectsThem) {
    sigset_t blocked;
    sigset_t before;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::sigaddset(&blocked, SIGUSR2);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto pipeHandler = std::signal(SIGPIPE, SIG_IGN);
    const auto userHandler = std::signal(SIGUSR1, SIG_IGN);
    // The program itself tells, no shell between: it prints its own status, then its script.
    const auto child = launcher.launch(folder.write("teller", "#!/bin/cat /proc/self/status\n"), {});
    std::signal(SIGPIPE, pipeHandler);
    std::signal(SIGUSR1, userHandler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_NE(child, nullptr);
    const std::string output = child->readStandardOutputToEnd();
    for (const std::string set : {"SigBlk", "SigIgn", "SigCgt"}) {
        EXPECT_NE(output.find(set + ":\t0000000000000000\n"), std::string::npos) << output;
    }
}

TEST_F(PosixProcessLauncherTest, OutputsArriveAlsoWhenOurOwnStandardDescriptorsAreClosed) {
    const std::string path = folder.write("script", "#!/bin/sh\necho out\necho err >&2\n");
    const int status = test::statusInFork([&] {
        ::close(0);
        ::close(1);
        ::close(2);
        const auto child = launcher.launch(path, {});
        return child && child->readStandardErrorToEnd() == "err\n" && child->readStandardOutputToEnd() == "out\n" ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
}

// How it ends ---------------------------------------------------------------------------------------------------------

TEST_F(PosixProcessLauncherTest, SignalCountsAsStatus128AndItsNumber) {
    for (const int number : {SIGTERM, SIGKILL, SIGSEGV}) {
        const auto child = launch("kill -" + std::to_string(number) + " $$");
        ASSERT_NE(child, nullptr);
        ASSERT_TRUE(eventually([&] { return !child->isRunning(); }));
        EXPECT_EQ(child->terminationStatus(), 128 + number);
    }
}

TEST_F(PosixProcessLauncherTest, StatusIsKnownAlsoWhenWeWereStartedWithChildSignalsIgnored) {
    const std::string path = folder.write("script", "#!/bin/sh\nexit 7\n");
    const int status = test::statusInFork([&] {
        std::signal(SIGCHLD, SIG_IGN);
        PosixProcessLauncher ownLauncher;
        const auto child = ownLauncher.launch(path, {});
        return child && eventually([&] { return !child->isRunning(); }) ? child->terminationStatus() : 1;
    });
    EXPECT_EQ(status, 7);
}

TEST_F(PosixProcessLauncherTest, StatusThatSomebodyElseTookIsNoSuccess) {
    const auto child = launch("exit 0");
    ASSERT_NE(child, nullptr);
    ASSERT_GT(::waitpid(-1, nullptr, 0), 0);
    EXPECT_FALSE(child->isRunning());
    EXPECT_NE(child->terminationStatus(), 0);
}

TEST_F(PosixProcessLauncherTest, EndedChildLeavesNoZombie) {
    const auto child = launch("exit 0");
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(eventually([&] { return !child->isRunning(); }));
    EXPECT_TRUE(test::hasNoChild());
}

TEST_F(PosixProcessLauncherTest, ChildGivenUpWhileRunningGoesOnAndLeavesNoZombie) {
    const test::Barrier barrier(folder.path("barrier"));
    auto child = launch("read line < '" + barrier.path() + "'\necho done > '" + folder.path("done") + "'");
    ASSERT_NE(child, nullptr);
    EXPECT_TRUE(child->isRunning());
    child.reset();
    EXPECT_FALSE(test::hasNoChild());
    barrier.release();
    EXPECT_TRUE(eventually(test::hasNoChild));
    EXPECT_EQ(test::contentsOf(folder.path("done")), "done\n");
}

TEST_F(PosixProcessLauncherTest, ChildGivenUpAfterItsEndLeavesNoZombie) {
    auto child = launch("exit 0");
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->readStandardErrorToEnd(), ""); // it has ended or is about to
    child.reset();
    EXPECT_TRUE(eventually(test::hasNoChild));
}

// Outputs -------------------------------------------------------------------------------------------------------------

long peakKilobytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST_F(PosixProcessLauncherTest, GigabyteOnStandardErrorIsReadWholeButKeptInBoundedMemory) {
    const long before = peakKilobytes();
    const auto child = launch("exec /usr/bin/head -c 1073741824 /dev/zero >&2");
    ASSERT_NE(child, nullptr);
    const std::string text = child->readStandardErrorToEnd();
    ASSERT_TRUE(eventually([&] { return !child->isRunning(); }));
    EXPECT_EQ(child->terminationStatus(), 0); // its writing has not been refused
    constexpr std::size_t kept = 16 * 1024 * 1024;
    ASSERT_GT(text.size(), kept);
    EXPECT_EQ(text.substr(kept), "\n[1056964608 more bytes were not kept.]\n");
    EXPECT_LT(peakKilobytes() - before, 256 * 1024); // room for sanitizers, which multiply what is used
}

TEST_F(PosixProcessLauncherTest, GigabyteOnStandardOutputBlocksItsWriterWhileNobodyReads) {
    const auto child = launch("echo $$ > '" + folder.path("pid") + "'\nexec /usr/bin/head -c 1073741824 /dev/zero");
    ASSERT_NE(child, nullptr);
    const pid_t process = awaitPid();
    ASSERT_GT(process, 0);
    ASSERT_TRUE(
        eventually([&] { return stateOf(process) == 'S' && test::contentsOf("/proc/" + std::to_string(process) + "/comm") == "head\n"; }));
    EXPECT_TRUE(child->isRunning());
    ASSERT_EQ(::kill(process, SIGKILL), 0);
    ASSERT_TRUE(eventually([&] { return !child->isRunning(); }));
    EXPECT_EQ(child->terminationStatus(), 128 + SIGKILL);
    EXPECT_EQ(child->readStandardErrorToEnd(), "");
    const std::string output = child->readStandardOutputToEnd();
    EXPECT_GT(output.size(), 0U);
    EXPECT_LE(output.size(), 1024U * 1024U); // what the pipe held
}

TEST_F(PosixProcessLauncherTest, ScriptThatOverfillsItsOutputTimesOutAndIsThenHelpedOnNotEnded) {
    // Two million characters, printed by the shell itself: more than any pipe holds.
    const std::string script = folder.write("script", "#!/bin/sh\necho early >&2\necho $$ > '" + folder.path("pid") +
                                                          "'\nprintf 'a=%02000000d\\n' 1\necho late >&2\nexit 0\n");
    FakeClock clock;
    bool hasWaited = false;
    clock.onSleep = [&](std::chrono::microseconds /*duration*/) {
        const pid_t process = awaitPid();
        hasWaited = hasWaited || (process > 0 && eventually([&] { return waitsForReader(process); }));
        clock.advance(std::chrono::seconds(21));
    };
    ORVScriptRunner runner(script, launcher, clock);
    ORVError error;
    auto run = std::async(std::launch::async, [&] { return runner.runWithArgumentsTimeoutError({}, 20, &error); });
    const bool returned = run.wait_for(std::chrono::seconds(20)) == std::future_status::ready;
    if (const pid_t stuck = returned ? -1 : awaitPid(); stuck > 0) {
        ::kill(stuck, SIGKILL); // else the runner would be waited for without end
    }
    ASSERT_TRUE(returned);
    EXPECT_TRUE(hasWaited);
    EXPECT_FALSE(run.get());
    EXPECT_EQ(error.localizedDescription(), "Script timed out.");
    EXPECT_EQ(error.localizedFailureReason(), "early\nlate\n");
    EXPECT_GT(clock.nowInSeconds(), 20U);
    EXPECT_TRUE(eventually(test::hasNoChild));
}

TEST_F(PosixProcessLauncherTest, ClosedOutputsEndAtOnceThoughTheProgramGoesOn) {
    const test::Barrier barrier(folder.path("barrier"));
    const auto child = launch("exec >&- 2>&-\nread line < '" + barrier.path() + "'");
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->readStandardErrorToEnd(), "");
    EXPECT_EQ(child->readStandardOutputToEnd(), "");
    EXPECT_TRUE(child->isRunning());
    barrier.release();
    ASSERT_TRUE(eventually([&] { return !child->isRunning(); }));
    EXPECT_EQ(child->terminationStatus(), 0);
}

TEST_F(PosixProcessLauncherTest, BackgroundChildThatKeepsStandardErrorOpenIsWaitedFor) {
    const test::Barrier barrier(folder.path("barrier"));
    const auto child = launch("echo early >&2\n{ read line < '" + barrier.path() + "'; echo late >&2; } &\nexit 0");
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(eventually([&] { return !child->isRunning(); }));
    auto text = std::async(std::launch::async, [&] { return child->readStandardErrorToEnd(); });
    EXPECT_EQ(text.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    barrier.release();
    EXPECT_EQ(text.get(), "early\nlate\n");
}

TEST_F(PosixProcessLauncherTest, ReadingASecondTimeGivesNothingMore) {
    const auto child = launch("echo once");
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->readStandardOutputToEnd(), "once\n");
    EXPECT_EQ(child->readStandardOutputToEnd(), "");
}

// Many ----------------------------------------------------------------------------------------------------------------

TEST_F(PosixProcessLauncherTest, ThreeHundredRunAtOnceUnder1024Descriptors) {
    const test::SoftLimit limit(RLIMIT_NOFILE, 1024);
    const test::Barrier barrier(folder.path("barrier"));
    const std::string path = folder.write("script", "#!/bin/sh\nread line < '" + barrier.path() + "'\necho \"$N\" >&2\nexit 5\n");
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (int i = 0; i < 300; ++i) {
        children.push_back(launcher.launch(path, {{"N", std::to_string(i)}}));
        ASSERT_NE(children.back(), nullptr) << i;
    }
    EXPECT_TRUE(std::all_of(children.begin(), children.end(), [](const auto &child) { return child->isRunning(); }));
    for (int i = 0; i < 300; ++i) {
        barrier.release();
    }
    for (std::size_t i = 0; i < children.size(); ++i) {
        ASSERT_TRUE(eventually([&] { return !children[i]->isRunning(); }));
        EXPECT_EQ(children[i]->terminationStatus(), 5);
        EXPECT_EQ(children[i]->readStandardErrorToEnd(), std::to_string(i) + "\n");
    }
    EXPECT_TRUE(test::hasNoChild());
}

TEST_F(PosixProcessLauncherTest, SeveralThreadsStartProgramsAtOnce) {
    const std::string path = folder.write("script", "#!/bin/sh\necho \"$N\"\n");
    std::vector<std::future<int>> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.push_back(std::async(std::launch::async, [&, thread] {
            int right = 0;
            for (int i = 0; i < 10; ++i) {
                const std::string number = std::to_string(thread * 10 + i);
                const auto child = launcher.launch(path, {{"N", number}});
                right += child && child->readStandardOutputToEnd() == number + "\n" ? 1 : 0;
            }
            return right;
        }));
    }
    for (auto &thread : threads) {
        EXPECT_EQ(thread.get(), 10);
    }
    EXPECT_TRUE(eventually(test::hasNoChild));
}

} // namespace
} // namespace orvane
