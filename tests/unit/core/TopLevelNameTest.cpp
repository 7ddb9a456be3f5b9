// The name of the top-level folder, on its way from the template to the disk.

#include "unit/core/Desk.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Names = std::vector<std::string>;
using Alert = FakeAlerts::Alert;

const char *const BlankTitle = "Top level folder name is blank";

TEST(TopLevelName, ThatIsMissingIsBlankAlsoWithoutAPrompt) {
    Desk desk;
    desk.create(dict({{"label", text("Nameless")}}));
    ASSERT_EQ(desk.alerts.alerts.size(), 1U);
    EXPECT_EQ(desk.alerts.alerts[0].title, BlankTitle);
    EXPECT_TRUE(desk.prompt.runs.empty());
}

TEST(TopLevelName, OfAVariableThatTheUserLeftEmptyIsBlank) {
    Desk desk;
    desk.create(preset("{Client}", {file("f")}));
    ASSERT_EQ(desk.alerts.alerts.size(), 1U);
    EXPECT_EQ(desk.alerts.alerts[0].title, BlankTitle);
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Names());
}

TEST(TopLevelName, ThatExistsIsToldByTheLastPartOfItsPath) {
    Desk desk;
    desk.fileSystem.addFolder("/jobs/2026/May");
    desk.create(preset("2026/May"));
    EXPECT_EQ(desk.alerts.alerts, (std::vector{Alert{"Directory already exists", "'May' already exists in '/jobs/2026'."}}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"2026/", "2026/May/"}));
}

TEST(TopLevelName, IsCheckedWithTheValuesAsTheUserLeftThem) {
    Desk desk;
    desk.prompt.answers = {{"Client", "a/b:c"}};
    desk.create(preset("{Client}"));
    EXPECT_EQ(desk.fileSystem.calls("fileExists").back(), "fileExists /jobs/a/b:c");
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"a_b_c/"}));
    EXPECT_EQ(desk.workspace.opened, (Names{"/jobs/a/b:c"}));
}

TEST(TopLevelName, MayUseAVariableWithASlashUnlikeTheNamesOfTheTree) {
    Desk desk;
    desk.prompt.answers = {{"a/b", "x"}, {"c_d", "y"}};
    desk.create(preset("{a/b}", {file("{c/d}")}));
    ASSERT_EQ(desk.prompt.runs.size(), 1U);
    EXPECT_EQ(desk.prompt.runs[0].rows, (std::vector<PromptValueRow>{{"a/b", ""}, {"c_d", ""}}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"x/", "x/{c_d}"}));
}

TEST(TopLevelName, WithAPerCentSignIsReadAsAFormatInMessages) {
    Desk desk;
    desk.fileSystem.addFolder("/jobs/100%d");
    desk.create(preset("100%d"));
    desk.create(preset("50%d", {file("..")}));
    ASSERT_EQ(desk.alerts.alerts.size(), 2U);
    EXPECT_EQ(desk.alerts.alerts[0].message, "'1000' already exists in '/jobs'.");
    EXPECT_EQ(desk.alerts.alerts[1].message,
              "ORV wasn't able to create the preset, because a file creation failed: Unable to create file '/jobs/500/..'.");
}

TEST(TopLevelName, IsTheOnlyNameOfTheRootNode) {
    const PropertyList named = dict({{"fileHierarchy", dict({{"filename", text("ignored")}, {"isFolder", yes(false)}})}});
    const PropertyList blank = ORVPresetManager::rootNodeOfPreset(named.root(), "");
    EXPECT_EQ(blank.root().find("filename"), nullptr);
    EXPECT_TRUE(blank.root().find("isFolder")->boolean());
    EXPECT_EQ(ORVPresetManager::rootNodeOfPreset(named.root(), "Job").root().find("filename")->string(), "Job");
}

} // namespace
} // namespace orvane::test
