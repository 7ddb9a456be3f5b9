// What every process launcher promises, run on the fake and on the real one.

#include "ProcessTestTools.h"

#include "fakes/FakeProcesses.h"
#include "platform/posix/PosixProcessLauncher.h"

#include <atomic>
#include <memory>

namespace orvane {
namespace {

using test::eventually;

struct Behaviour {
    std::string output;
    std::string error;
    int status = 0;
    bool waits = false; ///< runs until it is released
};

class LauncherHarness {
public:
    virtual ~LauncherHarness() = default;
    virtual ProcessLauncher &launcher() = 0;
    virtual std::string makeProgram(const Behaviour &behaviour) = 0;
    virtual std::string missingProgram() = 0;
    virtual void release() = 0;
};

class FakeLauncherHarness final : public LauncherHarness {
public:
    FakeLauncherHarness() { _launcher.anyProgram.reset(); }
    ProcessLauncher &launcher() override { return _launcher; }
    std::string makeProgram(const Behaviour &behaviour) override {
        const std::string path = "/programs/" + std::to_string(_launcher.programs.size());
        FakeProgram program{
            .status = behaviour.status, .standardOutput = behaviour.output, .standardError = behaviour.error, .running = {}};
        if (behaviour.waits) {
            program.running = [this] { return !_released; };
        }
        _launcher.programs[path] = program;
        return path;
    }
    std::string missingProgram() override { return "/programs/missing"; }
    void release() override { _released = true; }

private:
    std::atomic<bool> _released{false};
    FakeProcessLauncher _launcher;
};

class PosixLauncherHarness final : public LauncherHarness {
public:
    ProcessLauncher &launcher() override { return _launcher; }
    std::string makeProgram(const Behaviour &behaviour) override {
        const std::string number = std::to_string(++_programs);
        const std::string output = _folder.write("out" + number, behaviour.output);
        const std::string error = _folder.write("err" + number, behaviour.error);
        std::string script = "#!/bin/sh\n/bin/cat '" + output + "'\n/bin/cat '" + error + "' >&2\n";
        if (behaviour.waits) {
            script += "read line < '" + _barrier.path() + "'\n";
        }
        return _folder.write("program" + number, script + "exit " + std::to_string(behaviour.status) + "\n");
    }
    std::string missingProgram() override { return _folder.path("missing"); }
    void release() override { _barrier.release(); }

private:
    test::TestFolder _folder;
    test::Barrier _barrier{_folder.path("barrier")};
    PosixProcessLauncher _launcher;
    int _programs = 0;
};

struct FakeLauncher {
    using Harness = FakeLauncherHarness;
};
struct PosixLauncher {
    using Harness = PosixLauncherHarness;
};

template <typename Kind> class ProcessLauncherContract : public testing::Test {
protected:
    std::unique_ptr<ChildProcess> launch(const Behaviour &behaviour) {
        return harness.launcher().launch(harness.makeProgram(behaviour), {{"ORV_CONTEXT", "postflight"}});
    }
    typename Kind::Harness harness;
};

using Launchers = testing::Types<FakeLauncher, PosixLauncher>;
TYPED_TEST_SUITE(ProcessLauncherContract, Launchers);

TYPED_TEST(ProcessLauncherContract, MissingProgramIsNotStarted) {
    EXPECT_EQ(this->harness.launcher().launch(this->harness.missingProgram(), {}), nullptr);
}

TYPED_TEST(ProcessLauncherContract, EndedProgramTellsItsExitStatus) {
    for (const int status : {0, 1, 3, 127, 255}) {
        const auto child = this->launch({.output = {}, .error = {}, .status = status});
        ASSERT_NE(child, nullptr);
        ASSERT_TRUE(eventually([&] { return !child->isRunning(); }));
        EXPECT_EQ(child->terminationStatus(), status);
    }
}

TYPED_TEST(ProcessLauncherContract, ProgramIsRunningUntilItEndsAndNeverAgain) {
    const auto child = this->launch({.output = {}, .error = {}, .status = 4, .waits = true});
    ASSERT_NE(child, nullptr);
    EXPECT_TRUE(child->isRunning());
    EXPECT_TRUE(child->isRunning());
    this->harness.release();
    ASSERT_TRUE(eventually([&] { return !child->isRunning(); }));
    EXPECT_FALSE(child->isRunning());
    EXPECT_EQ(child->terminationStatus(), 4);
}

TYPED_TEST(ProcessLauncherContract, OutputsComeSeparatelyAndWhole) {
    const auto child = this->launch({.output = "a=1\nb=2\n", .error = "oops"});
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(eventually([&] { return !child->isRunning(); }));
    EXPECT_EQ(child->readStandardErrorToEnd(), "oops");
    EXPECT_EQ(child->readStandardOutputToEnd(), "a=1\nb=2\n");
}

TYPED_TEST(ProcessLauncherContract, ProgramThatOverfillsItsOutputGoesOnWhenThatIsDropped) {
    const auto child = this->launch({.output = std::string(300'000, 'o'), .error = "problem"});
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->readStandardErrorToEndDroppingOutput(), "problem");
    EXPECT_TRUE(eventually([&] { return !child->isRunning(); }));
    EXPECT_EQ(child->readStandardOutputToEnd(), "");
}

TYPED_TEST(ProcessLauncherContract, OutputsKeepNulAndBytesThatAreNoUtf8) {
    const std::string bytes{"a\0b\xFF\xC3\r\n\x80=", 9};
    const auto child = this->launch({.output = bytes, .error = bytes + bytes});
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(eventually([&] { return !child->isRunning(); }));
    EXPECT_EQ(child->readStandardErrorToEnd(), bytes + bytes);
    EXPECT_EQ(child->readStandardOutputToEnd(), bytes);
}

TYPED_TEST(ProcessLauncherContract, SilentProgramGivesEmptyOutputs) {
    const auto child = this->launch({});
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->readStandardErrorToEnd(), "");
    EXPECT_EQ(child->readStandardOutputToEnd(), "");
}

TYPED_TEST(ProcessLauncherContract, SeveralProgramsRunAtOnce) {
    const auto first = this->launch({.output = "first", .error = {}, .status = 1, .waits = true});
    const auto second = this->launch({.output = "second", .error = {}, .status = 2});
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    ASSERT_TRUE(eventually([&] { return !second->isRunning(); }));
    EXPECT_TRUE(first->isRunning());
    this->harness.release();
    ASSERT_TRUE(eventually([&] { return !first->isRunning(); }));
    EXPECT_EQ(first->terminationStatus(), 1);
    EXPECT_EQ(second->terminationStatus(), 2);
    EXPECT_EQ(first->readStandardOutputToEnd(), "first");
    EXPECT_EQ(second->readStandardOutputToEnd(), "second");
}

} // namespace
} // namespace orvane
