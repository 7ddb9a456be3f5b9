#include "fakes/FakeClock.h"
#include "fakes/FakeProcesses.h"
#include "presets/ORVScriptRunner.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Dictionary = ORVScriptRunner::Dictionary;
using Names = std::vector<std::string>;

class Runner : public ::testing::Test {
protected:
    std::optional<Dictionary> run(const FakeProgram &program, unsigned timeout = 120) {
        processes.anyProgram = program;
        ORVScriptRunner runner("/scripts/x.sh", processes, clock);
        return runner.runWithArgumentsTimeoutError({{"A", "b"}}, timeout, &error);
    }
    FakeClock clock;
    FakeProcessLauncher processes;
    ORVError error;
};

TEST_F(Runner, KeepsItsPath) {
    EXPECT_EQ(ORVScriptRunner("/a/b", processes, clock).scriptPath(), "/a/b");
}

TEST_F(Runner, StartsTheScriptWithExactlyTheEnvironment) {
    EXPECT_TRUE(run({}));
    EXPECT_TRUE(ORVScriptRunner("/scripts/x.sh", processes, clock).runWithArgumentsTimeoutError({}, 1, &error));
    ASSERT_EQ(processes.launches().size(), 2U);
    EXPECT_EQ(processes.launches()[0].path, "/scripts/x.sh");
    EXPECT_EQ(processes.launches()[0].environment, (Dictionary{{"A", "b"}}));
    EXPECT_EQ(processes.launches()[1].environment, Dictionary());
}

TEST_F(Runner, ReturnsThePairsOfTheOutput) {
    EXPECT_EQ(run({.standardOutput = "a = 1\nb=\n=c\nd=e=f\na=2\n"}), (Dictionary{{"a", "2"}, {"d", "e=f"}}));
}

TEST_F(Runner, SplitsOutputAtLineFeedsOnly) {
    EXPECT_EQ(ORVScriptRunner::parseOutput("a=1\r\nb=2\r\n"), (Dictionary{{"a", "1\r"}, {"b", "2\r"}}));
    EXPECT_EQ(ORVScriptRunner::parseOutput("a=1\rb=2"), (Dictionary{{"a", "1\rb=2"}}));
}

TEST_F(Runner, TrimsBlanksAndTabsAfterLookingForEmptySides) {
    EXPECT_EQ(ORVScriptRunner::parseOutput("\t a\t = \tb \nc= \n =d"), (Dictionary{{"a", "b"}, {"c", ""}, {"", "d"}}));
    EXPECT_EQ(ORVScriptRunner::parseOutput("\va\f=\vb\f"), (Dictionary{{"\va\f", "\vb\f"}}));
}

TEST_F(Runner, SkipsLinesWithoutAnEqualsSign) {
    EXPECT_EQ(ORVScriptRunner::parseOutput("hello\n\n=\n"), Dictionary());
    EXPECT_EQ(ORVScriptRunner::parseOutput("a=1\n\nhello\nb=2"), (Dictionary{{"a", "1"}, {"b", "2"}}));
    EXPECT_EQ(ORVScriptRunner::parseOutput(""), Dictionary());
}

TEST_F(Runner, ReplacesBytesThatAreNoText) {
    EXPECT_EQ(ORVTextOfBytes("a\xFF"
                             "b\xC3"),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD");
    EXPECT_EQ(ORVTextOfBytes("ä日😀"), "ä日😀");
    EXPECT_EQ(ORVTextOfBytes("\xED\xA0\x80"), "\xEF\xBF\xBD");
    EXPECT_EQ(ORVTextOfBytes(std::string_view("a\0b", 3)), std::string("a\0b", 3));
}

TEST_F(Runner, ReadsStandardErrorBeforeItAsksForTheStatus) {
    EXPECT_TRUE(run({.runningPolls = 1}));
    EXPECT_EQ(processes.calls(),
              (Names{"launch", "isRunning", "isRunning", "readStandardErrorToEnd", "terminationStatus", "readStandardOutputToEnd"}));
}

TEST_F(Runner, SleepsAMillisecondBeforeEveryQuestion) {
    EXPECT_TRUE(run({.runningPolls = 4}));
    EXPECT_EQ(clock.sleeps(), 5U);
    EXPECT_EQ(clock.microseconds(), 5000U);
}

TEST_F(Runner, ReportsAStatusThatIsNotZero) {
    EXPECT_FALSE(run({.status = 3, .standardOutput = "a=1", .standardError = "oops"}));
    EXPECT_EQ(error.domain, "ORVScriptRunner");
    EXPECT_EQ(error.code, 0);
    EXPECT_EQ(error.localizedDescription(), "Script returned error code 3.");
    EXPECT_EQ(error.localizedFailureReason(), "oops");
    EXPECT_EQ(processes.calls(), (Names{"launch", "isRunning", "readStandardErrorToEnd", "terminationStatus"}));
}

TEST_F(Runner, TakesEveryStatusButZeroForAFailure) {
    for (const int status : {1, 127, 128, 139, 255}) {
        EXPECT_FALSE(run({.status = status}));
        EXPECT_EQ(error.localizedDescription(), "Script returned error code " + std::to_string(status) + ".");
    }
}

TEST_F(Runner, MakesTextOfWhatItReads) {
    EXPECT_EQ(run({.standardOutput = "a=\xFF\n"}), (Dictionary{{"a", "\xEF\xBF\xBD"}}));
    EXPECT_FALSE(run({.status = 1, .standardError = "\xFF"}));
    EXPECT_EQ(error.localizedFailureReason(), "\xEF\xBF\xBD");
}

TEST_F(Runner, ReportsAScriptThatCannotBeStartedWithoutAReason) {
    processes.anyProgram.reset();
    ORVScriptRunner runner("/scripts/x.sh", processes, clock);
    EXPECT_FALSE(runner.runWithArgumentsTimeoutError({}, 1, &error));
    EXPECT_EQ(error.localizedDescription(), "Unable to execute script.");
    EXPECT_EQ(error.localizedFailureReason(), std::nullopt);
    EXPECT_EQ(clock.sleeps(), 0U);
}

TEST_F(Runner, LeavesTheErrorAloneWhenTheScriptSucceeds) {
    error.domain = "before";
    EXPECT_TRUE(run({.standardError = "only a warning"}));
    EXPECT_EQ(error.domain, "before");
    EXPECT_EQ(error.localizedDescription(), std::nullopt);
}

TEST_F(Runner, NeedsNoPlaceForTheError) {
    processes.anyProgram = FakeProgram{.status = 1};
    ORVScriptRunner runner("/scripts/x.sh", processes, clock);
    EXPECT_FALSE(runner.runWithArgumentsTimeoutError({}, 1, nullptr));
}

TEST_F(Runner, TimesOutOnlyWhenMoreWholeSecondsHavePassedThanTheLimit) {
    EXPECT_FALSE(run({.runningPolls = FakeProgram::Endless, .standardError = "late"}, 120));
    EXPECT_EQ(error.localizedDescription(), "Script timed out.");
    EXPECT_EQ(error.localizedFailureReason(), "late");
    EXPECT_EQ(clock.nowInSeconds(), 121U);
    EXPECT_EQ(processes.calls().back(), "readStandardErrorToEndDroppingOutput"); // neither status nor output is asked for
}

TEST_F(Runner, CountsTheSecondsFromItsOwnStart) {
    clock.setSeconds(1'000'000);
    EXPECT_TRUE(run({.runningPolls = 3}, 1));
    EXPECT_FALSE(run({.runningPolls = FakeProgram::Endless}, 1));
    EXPECT_EQ(clock.nowInSeconds(), 1'000'002U);
}

TEST_F(Runner, TakesAClockThatIsSetBackForALongTime) {
    clock.setSeconds(10);
    FakeProgram program;
    program.running = [this, questions = 0]() mutable {
        clock.setSeconds(9);
        return ++questions < 100;
    };
    EXPECT_FALSE(run(program, 120));
    EXPECT_EQ(error.localizedDescription(), "Script timed out.");
    EXPECT_EQ(clock.sleeps(), 2U);
}

TEST_F(Runner, TakesAZeroLimitForThirtySeconds) {
    EXPECT_FALSE(run({.runningPolls = FakeProgram::Endless}, 0));
    EXPECT_EQ(clock.nowInSeconds(), 31U);
}

TEST_F(Runner, CountsAScriptThatEndsInThePassThatPassedTheLimitAsLate) {
    EXPECT_FALSE(run({.running = [this] { return clock.microseconds() <= 2'000'000; }}, 1));
    EXPECT_EQ(error.localizedDescription(), "Script timed out.");
}

TEST_F(Runner, CountsAScriptThatEndsOnePassEarlierAsInTime) {
    EXPECT_TRUE(run({.running = [this] { return clock.microseconds() < 2'000'000; }}, 1));
}

} // namespace
} // namespace orvane::test
