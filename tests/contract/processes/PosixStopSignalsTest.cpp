// What stops a program that passes it on stops the program that it has started, at whatever moment it comes.

#include "ProcessTestTools.h"

#include "platform/posix/PosixProcessLauncher.h"

#include <cerrno>
#include <csignal>
#include <memory>
#include <sys/prctl.h>

namespace orvane {
namespace {

using test::eventually;

class PosixStopSignalsTest : public testing::Test {
protected:
    void SetUp() override { _longScript = folder.write("long", "#!/bin/sh\necho > '" + folder.path("started") + "'\nexec sleep 1000\n"); }

    /// A program in a process of its own, which starts the long script and waits for it in that way.
    pid_t startProgram(const std::function<void(ChildProcess &)> &waitForScript) const {
        const pid_t program = ::fork();
        if (program == 0) {
            PosixProcessLauncher launcher(PosixProcessLauncher::StopSignals::ArePassedOn);
            const auto script = launcher.launch(_longScript, {});
            if (script) {
                waitForScript(*script);
            }
            ::_exit(9);
        }
        return program;
    }
    /// Whether the signal ends the program, and the script with it. This process gets what the program leaves.
    static bool endsBoth(pid_t program, int signal) {
        ::kill(program, signal);
        int status = 0;
        const bool isEnded = eventually([&] { return ::waitpid(program, &status, WNOHANG) == program; });
        const bool isBySignal = isEnded && WIFSIGNALED(status) && WTERMSIG(status) == signal;
        return isBySignal && eventually([] { return ::waitpid(-1, nullptr, WNOHANG) < 0 && errno == ECHILD; }, std::chrono::seconds(10));
    }
    /// As `endsBoth` in a process that may have been left nothing; what survives is ended.
    static int statusOfKeeper(const std::function<bool()> &keep) {
        return test::statusInFork([&] {
            ::prctl(PR_SET_CHILD_SUBREAPER, 1);
            ::setpgid(0, 0);
            const bool isKept = keep();
            if (!isKept) {
                std::signal(SIGTERM, SIG_IGN);
                ::kill(0, SIGTERM);
            }
            return isKept ? 0 : 1;
        });
    }
    static void poll(ChildProcess &script) {
        while (script.isRunning()) {
            ::usleep(1000);
        }
    }

    test::TestFolder folder;

private:
    std::string _longScript;
};

TEST_F(PosixStopSignalsTest, EndBothWhileTheChildIsWaitedFor) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EQ(statusOfKeeper([&] {
                      std::filesystem::remove(folder.path("started"));
                      const pid_t program = startProgram(poll);
                      return eventually([&] { return std::filesystem::exists(folder.path("started")); }) && endsBoth(program, signal);
                  }),
                  0)
            << signal;
    }
}

TEST_F(PosixStopSignalsTest, EndBothWhileItsOutputIsReadToTheEnd) {
    EXPECT_EQ(statusOfKeeper([&] {
                  const pid_t program = startProgram([](ChildProcess &script) { static_cast<void>(script.readStandardErrorToEnd()); });
                  return eventually([&] { return std::filesystem::exists(folder.path("started")); }) && endsBoth(program, SIGTERM);
              }),
              0);
}

TEST_F(PosixStopSignalsTest, LeaveNoChildBehindAtWhateverMomentTheyCome) {
    constexpr int Rounds = 300;
    constexpr int Step = 7; // microseconds; all of it takes longer than starting a process does
    EXPECT_EQ(statusOfKeeper([&] {
                  bool isKept = true;
                  for (int round = 0; round < Rounds && isKept; ++round) {
                      const pid_t program = startProgram(poll);
                      const auto moment = std::chrono::steady_clock::now() + std::chrono::microseconds(round * Step);
                      while (std::chrono::steady_clock::now() < moment) {
                      }
                      isKept = endsBoth(program, SIGTERM);
                  }
                  return isKept;
              }),
              0);
}

TEST_F(PosixStopSignalsTest, DoWhatTheyDidBeforeWhenThereIsNoChild) {
    const std::string ended = folder.write("ended", "#!/bin/sh\nexit 3\n");
    for (const bool isStarted : {false, true}) {
        const int status = test::statusInFork([&] {
            std::signal(SIGHUP, SIG_IGN);
            PosixProcessLauncher launcher(PosixProcessLauncher::StopSignals::ArePassedOn);
            const auto child = launcher.launch(isStarted ? ended : folder.path("missing"), {});
            const bool isAsExpected =
                isStarted ? child && eventually([&] { return !child->isRunning(); }) && child->terminationStatus() == 3 : child == nullptr;
            struct sigaction termination {};
            struct sigaction hangup {};
            sigset_t held;
            ::sigaction(SIGTERM, nullptr, &termination);
            ::sigaction(SIGHUP, nullptr, &hangup);
            ::sigprocmask(SIG_BLOCK, nullptr, &held);
            const bool isBack = termination.sa_handler == SIG_DFL && hangup.sa_handler == SIG_IGN && ::sigismember(&held, SIGTERM) == 0;
            ::raise(SIGHUP);
            return isAsExpected && isBack ? 0 : 1;
        });
        EXPECT_EQ(status, 0) << isStarted;
    }
}

TEST_F(PosixStopSignalsTest, StopTheProgramAloneWhereTheyAreItsOwn) {
    const test::Barrier barrier(folder.path("barrier"));
    const std::string path =
        folder.write("script", "#!/bin/sh\nread line < '" + barrier.path() + "'\necho > '" + folder.path("done") + "'\n");
    const int status = test::statusInFork([&] {
        PosixProcessLauncher launcher;
        const auto child = launcher.launch(path, {});
        return child ? ::raise(SIGTERM) : 1;
    });
    EXPECT_EQ(status, 128 + SIGTERM);
    barrier.release();
    EXPECT_TRUE(eventually([&] { return std::filesystem::exists(folder.path("done")); }));
}

} // namespace
} // namespace orvane
