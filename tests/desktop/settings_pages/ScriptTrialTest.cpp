// Test runs of scripts: what they are started with, what is left of them, and a system that gives too little for one.

#include "SettingsPagesDesk.h"

#include "contract/processes/ProcessTestTools.h"
#include "platform/posix/PosixBlockedSignals.h"
#include "window/ScriptTrial.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <dlfcn.h>
#include <fcntl.h>
#include <optional>
#include <pthread.h>
#include <sstream>
#include <unistd.h>

namespace {
std::atomic<bool> refusesThreads = false;
std::atomic<int> threadsRefused = 0;
} // namespace

/// Stands before the C library's in this program: a limit would not hold for root, nor where the stack of an ended thread is left.
extern "C" __attribute__((visibility("default"))) int pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                                                                     void *(*function)(void *), void *argument) noexcept {
    if (refusesThreads) {
        ++threadsRefused;
        return EAGAIN;
    }
    static const auto next = reinterpret_cast<decltype(&::pthread_create)>(::dlsym(RTLD_NEXT, "pthread_create"));
    return next(thread, attributes, function, argument);
}

namespace orvane::test {
namespace {

bool hasEnded(pid_t process) {
    const std::string words = contentsOf("/proc/" + std::to_string(process) + "/stat");
    return words.empty() || words.find(") Z ") != std::string::npos;
}

/// What this process hands down to those it starts, in one way that they should not see.
class IgnoredSignal {
public:
    explicit IgnoredSignal(int number) : _number(number), _before(std::signal(number, SIG_IGN)) {}
    IgnoredSignal(const IgnoredSignal &) = delete;
    IgnoredSignal &operator=(const IgnoredSignal &) = delete;
    ~IgnoredSignal() { std::signal(_number, _before); }

private:
    int _number;
    void (*_before)(int);
};

class ScriptTrialTest : public SettingsPagesTest {
protected:
    ScriptTrialTest() {
        onDisk({{"ORVPresets", make.list({make.preset("Job", {}, {{"scriptFile", make.text("tidy.sh")}})})},
                {"ORVShowMenubar", PropertyListValue::ofBoolean(true)}});
        start();
        makeContext();
        renew();
    }
    ~ScriptTrialTest() override {
        trial.reset();
        for (const pid_t process : started) {
            if (!hasEnded(process)) {
                ::kill(process, SIGKILL);
            }
        }
    }

    /// Another object for test runs in place of the one that was.
    void renew() {
        trial = std::make_unique<ScriptTrial>(nullptr);
        trial->stateDidChange = [this] {
            if (trial->state() == ScriptTrial::State::Running && whenRunning) {
                whenRunning();
            }
        };
        trial->wrote = [this](const QString &text, bool) { output += text.toStdString(); };
        trial->finished = [this](const ScriptTrial::Result &ended) { result = ended; };
    }
    [[nodiscard]] std::string script() const { return folder("/share/Orvane/Scripts/tidy.sh"); }
    void begin(const std::string &text, const std::string &interpreter = "/bin/sh") {
        writeFile(script(), "#!" + interpreter + "\n" + text, true);
        result.reset();
        output.clear();
        TrialRequest request;
        request.preset = run->presets.record(run->preset(0));
        request.rows = preview->rowsOfPreset(run->preset(0));
        request.supportFolder = paths.supportFolder;
        trial->start(std::move(request));
    }
    [[nodiscard]] bool ends() {
        return waitUntil([this] { return result.has_value(); });
    }
    [[nodiscard]] std::string problem() const { return result ? result->problem.toStdString() : "no result"; }
    /// What the same script writes to its standard output when the helper starts it.
    [[nodiscard]] std::string outputUnderTheHelper() {
        const auto child = processes.launch(script(), {});
        if (child == nullptr) {
            return "not started";
        }
        const std::string written = child->readStandardOutputToEnd();
        EXPECT_TRUE(eventually([&] { return !child->isRunning(); }));
        return written;
    }
    /// The process whose number the script writes as its first line.
    [[nodiscard]] pid_t writtenProcess() {
        EXPECT_TRUE(waitUntil([this] { return output.find('\n') != std::string::npos; }));
        pid_t process = 0;
        std::istringstream(output) >> process;
        if (process > 1) {
            started.push_back(process);
        }
        return process;
    }

    std::unique_ptr<ScriptTrial> trial;
    std::function<void()> whenRunning;
    std::optional<ScriptTrial::Result> result;
    std::string output;
    std::vector<pid_t> started;
};

constexpr const char *DeafChild = "sh -c 'trap \"\" TERM; echo $$; exec sleep 600' & wait\n";

TEST_F(ScriptTrialTest, WithoutDescriptorsForItTheScriptCannotBeStarted) {
    constexpr int MostNeeded = 64;
    int failures = 0;
    for (int left = 0; left < MostNeeded; ++left) { // each step fails at another place
        std::optional<SoftLimit> few;
        whenRunning = [&] {
            const int firstFree = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
            ::close(firstFree);
            few.emplace(RLIMIT_NOFILE, static_cast<rlim_t>(firstFree + left));
        };
        begin("exit 0\n");
        ASSERT_TRUE(waitUntil([&] {
            if (trial->state() != ScriptTrial::State::Making) {
                few.reset();
            }
            return result.has_value();
        }));
        EXPECT_EQ(trial->state(), ScriptTrial::State::Idle);
        if (result->end == ScriptTrial::End::Exited) {
            break;
        }
        ++failures;
        EXPECT_EQ(result->end, ScriptTrial::End::Failed);
        EXPECT_EQ(problem().find("The script cannot be started: "), 0U) << problem();
    }
    EXPECT_GE(failures, 3);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->end, ScriptTrial::End::Exited) << "with enough of them it runs";
}

TEST_F(ScriptTrialTest, WithoutAThreadTheRunFailsAtOnce) {
    refusesThreads = true;
    begin("exit 0\n");
    refusesThreads = false;
    EXPECT_GT(threadsRefused, 0);
    EXPECT_EQ(trial->state(), ScriptTrial::State::Idle);
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->end, ScriptTrial::End::Failed);
    EXPECT_EQ(problem().find("The test cannot be started"), 0U) << problem();
    begin("exit 0\n");
    ASSERT_TRUE(ends());
    EXPECT_EQ(result->end, ScriptTrial::End::Exited);
}

TEST_F(ScriptTrialTest, SignalsAreAsTheHelperGivesThem) {
    const IgnoredSignal ignored(SIGXFSZ);
    const PosixBlockedSignals blocked(SIGUSR2);
    begin({}, "/usr/bin/env -S grep -hE ^Sig(Blk|Ign): /proc/self/status"); // a shell would unblock them itself
    ASSERT_TRUE(ends());
    EXPECT_EQ(output, outputUnderTheHelper());
    EXPECT_EQ(output, "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
}

TEST_F(ScriptTrialTest, DescriptorsAreThoseThatTheHelperGives) {
    const int leftOpen = ::open("/", O_RDONLY | O_DIRECTORY); // NOLINT(android-cloexec-open): that is the point
    ASSERT_GE(leftOpen, 0);
    begin("ls /proc/self/fd; readlink /proc/self/fd/0\n");
    EXPECT_TRUE(ends());
    const std::string expected = outputUnderTheHelper();
    ::close(leftOpen);
    EXPECT_EQ(output, expected);
    EXPECT_EQ(output, "0\n1\n2\n3\n/dev/null\n") << "the fourth is the folder that is listed";
}

TEST_F(ScriptTrialTest, AChildThatDoesNotListenIsEndedAfterAScriptThatDid) {
    begin(DeafChild);
    const pid_t child = writtenProcess();
    ASSERT_GT(child, 1);
    trial->stop();
    ASSERT_TRUE(ends());
    EXPECT_EQ(result->end, ScriptTrial::End::Stopped);
    EXPECT_TRUE(waitUntil([&] { return hasEnded(child); }));
}

TEST_F(ScriptTrialTest, WhatIsLeftOfAStoppedRunEndsWithTheObject) {
    begin(DeafChild);
    const pid_t child = writtenProcess();
    ASSERT_GT(child, 1);
    trial->stop();
    ASSERT_TRUE(ends());
    trial.reset();
    EXPECT_TRUE(eventually([&] { return hasEnded(child); }));
}

TEST_F(ScriptTrialTest, WhatIsLeftOfAStoppedRunEndsWhenTheNextBegins) {
    begin(DeafChild);
    const pid_t child = writtenProcess();
    ASSERT_GT(child, 1);
    trial->stop();
    ASSERT_TRUE(ends());
    begin("exit 0\n");
    EXPECT_TRUE(eventually([&] { return hasEnded(child); })) << "its folder is gone";
    ASSERT_TRUE(ends());
    EXPECT_EQ(result->end, ScriptTrial::End::Exited);
}

TEST_F(ScriptTrialTest, StopWhileTheScriptIsBeingStartedReachesIt) {
    bool wasStopped = false;
    whenRunning = [&] {
        // Behind the start of the script, before anything is heard of it.
        QMetaObject::invokeMethod(
            trial.get(),
            [&] {
                trial->stop();
                wasStopped = true;
            },
            Qt::QueuedConnection);
    };
    begin("exec sleep 600\n");
    ASSERT_TRUE(ends());
    EXPECT_TRUE(wasStopped);
    EXPECT_EQ(result->end, ScriptTrial::End::Stopped);
    EXPECT_EQ(result->status, SIGTERM) << "it was asked";
}

// As with the helper, which leaves it alone, too.
TEST_F(ScriptTrialTest, ABackgroundChildOfAScriptThatEndedByItselfIsLeftAlone) {
    const std::string answer = folder("/answer");
    const std::string number = folder("/number");
    begin("sh -c 'trap \"echo alive >" + answer + "; exit\" USR1; echo $$ >" + number + "; while :; do sleep 0.05; done' &\n" +
          "while [ ! -s " + number + " ]; do sleep 0.01; done; cat " + number + "\n");
    const pid_t child = writtenProcess();
    ASSERT_GT(child, 1);
    ASSERT_TRUE(ends());
    EXPECT_EQ(result->end, ScriptTrial::End::Exited);
    begin("exit 0\n");
    ASSERT_TRUE(ends());
    trial.reset();
    ASSERT_EQ(::kill(child, SIGUSR1), 0);
    EXPECT_TRUE(eventually([&] { return contentsOf(answer) == "alive\n"; }));
}

} // namespace
} // namespace orvane::test
