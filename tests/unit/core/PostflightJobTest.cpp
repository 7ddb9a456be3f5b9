// What a creation hands over to its script.

#include "unit/core/Desk.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Environment = std::map<std::string, std::string>;

class PostflightJob : public ::testing::Test {
protected:
    PostflightJob() {
        desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/s");
        desk.threads.mode = FakeThreadLauncher::Mode::Keep;
    }
    [[nodiscard]] Environment environmentOf(std::size_t launch) const { return desk.processes.launches().at(launch).environment; }
    Desk desk;
};

TEST_F(PostflightJob, KeepsTheVariablesOfItsOwnCreationWhenAnotherOneFollows) {
    desk.prompt.answers = {{"a", "1"}};
    desk.create(presetWithScript("First {a}", "s"));
    desk.prompt.answers = {{"a", "2"}};
    desk.create(presetWithScript("Second {a}", "s"));
    desk.create(preset("Without variables"));
    desk.threads.runKept();
    ASSERT_EQ(desk.processes.launches().size(), 2U);
    EXPECT_EQ(environmentOf(0), (Environment{{"ORV_CONTEXT", "postflight"}, {"ORV_ROOT_PATH", "/jobs/First 1"}, {"P_A", "1"}}));
    EXPECT_EQ(environmentOf(1), (Environment{{"ORV_CONTEXT", "postflight"}, {"ORV_ROOT_PATH", "/jobs/Second 2"}, {"P_A", "2"}}));
}

TEST_F(PostflightJob, ReplacesEveryBlankOfANameAndNothingElse) {
    const Environment environment =
        desk.manager->environmentOfScript("/x", std::vector<PromptValueRow>{{" a  b ", "1"}, {"c\td\ne.f", "2"}});
    EXPECT_EQ(environment, (Environment{{"ORV_CONTEXT", "postflight"}, {"ORV_ROOT_PATH", "/x"}, {"P__A__B_", "1"}, {"P_C\tD\nE.F", "2"}}));
}

TEST_F(PostflightJob, HoldsVariablesThatTheUserLeftEmpty) {
    desk.create(presetWithScript("Job{a}", "s"));
    desk.threads.runKept();
    ASSERT_EQ(desk.processes.launches().size(), 1U);
    EXPECT_EQ(environmentOf(0), (Environment{{"ORV_CONTEXT", "postflight"}, {"ORV_ROOT_PATH", "/jobs/Job"}, {"P_A", ""}}));
}

TEST_F(PostflightJob, IsMadeForAScriptNameOfBlanksToo) {
    desk.create(presetWithScript("Job", " "));
    EXPECT_EQ(desk.threads.launches(), 1U);
}

TEST_F(PostflightJob, NamesAScriptThatIsLookedForOnlyWhenItsThreadRuns) {
    desk.fileSystem.remove("/home/user/.local/share/Orvane/Scripts/s");
    desk.create(presetWithScript("Job", "s"));
    desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/s");
    desk.threads.runKept();
    EXPECT_EQ(desk.processes.launches().size(), 1U);
    EXPECT_TRUE(desk.alerts.alerts.empty());
}

TEST_F(PostflightJob, ReportsEveryFailureOnTheMainThreadUnderTheLastPartOfTheScriptsPath) {
    const std::string scripts = "/home/user/.local/share/Orvane/Scripts/tools/";
    desk.fileSystem.addFile(scripts + "plain%d");
    desk.fileSystem.addScript(scripts + "failing%d");
    desk.processes.anyProgram = FakeProgram{.status = 1};
    desk.threads.mode = FakeThreadLauncher::Mode::Real;
    const std::pair<const char *, const char *> cases[] = {
        {"missing", "Script file not found"}, {"plain", "Script file not executable"}, {"failing", "Script reported errors"}};
    for (const auto &[name, title] : cases) {
        const std::size_t before = desk.alerts.dismissed;
        desk.create(presetWithScript(name, "tools/" + std::string(name) + "%d"));
        ASSERT_TRUE(desk.mainThread.runUntil([&] { return desk.alerts.dismissed > before; })) << name;
        desk.threads.joinAll();
        EXPECT_EQ(desk.alerts.alerts.back().title, title);
        EXPECT_TRUE(desk.alerts.alerts.back().message->starts_with("'" + std::string(name) + "0' is the specified script file")) << name;
        EXPECT_EQ(desk.alerts.threads.back(), std::this_thread::get_id()) << name;
    }
    EXPECT_EQ(desk.log.entries().at(0), "ORV script 'failing%d' error: Script returned error code 1.");
}

} // namespace
} // namespace orvane::test
