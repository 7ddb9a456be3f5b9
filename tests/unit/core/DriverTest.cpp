#include "unit/core/Desk.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Names = std::vector<std::string>;
using Alert = FakeAlerts::Alert;

TEST(Driver, CreatesAPresetWithoutVariablesAtOnceWithoutPromptOrCounters) {
    Desk desk;
    desk.setCounters(dict({{"AutoJob", text("4")}}));
    desk.preferences.journal.clear();
    desk.create(preset("Plain", {file("a")}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"Plain/", "Plain/a"}));
    EXPECT_TRUE(desk.prompt.runs.empty());
    EXPECT_TRUE(desk.observer.journal.empty());
    EXPECT_EQ(desk.counter("AutoJob"), "4");
    for (const std::string &call : desk.preferences.journal) {
        EXPECT_FALSE(call.starts_with("setAppValue")) << call;
    }
    EXPECT_EQ(desk.workspace.opened, (Names{"/jobs/Plain"}));
    EXPECT_TRUE(desk.alerts.alerts.empty());
}

TEST(Driver, ReadsThePresetsAgainAlsoForAPresetWithoutVariables) {
    Desk desk;
    desk.setPresets(list({dict({{"label", text("New")}})}));
    desk.create(preset("Plain"));
    EXPECT_EQ(desk.manager->presetNames(), (Names{"New"}));
}

TEST(Driver, WithoutVariablesTakesTheTemplateAsItStands) {
    Desk desk;
    desk.create(preset("a\\{b\\}"));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"a\\{b\\}/"}));
}

TEST(Driver, OffersARowForEveryUseInTheFolderNameAndEachNewNameOfTheTree) {
    Desk desk;
    desk.prompt.answers = {{"Project", "Acme"}, {"Scene", "1"}};
    desk.create(preset("{Project} {Project}", {file("{Scene}{Project}"), file("{Scene}")}));
    ASSERT_EQ(desk.prompt.runs.size(), 1U);
    EXPECT_EQ(desk.prompt.runs[0].directoryName, "{Project} {Project}");
    EXPECT_EQ(desk.prompt.runs[0].rows, (std::vector<PromptValueRow>{{"Project", ""}, {"Project", ""}, {"Scene", ""}}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"Acme Acme/", "Acme Acme/1", "Acme Acme/1Acme"}));
}

TEST(Driver, LetsTheFirstOfTwoRowsOfOneNameWin) {
    Desk desk;
    desk.prompt.whileShown = [](std::span<PromptValueRow> rows) {
        rows[0].value = "first";
        rows[1].value = "second";
    };
    desk.create(preset("{P} {P}"));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"first first/"}));
}

TEST(Driver, AnnouncesTheRowsAndTheFolderName) {
    Desk desk;
    std::vector<std::size_t> rows;
    desk.observer.hook = [&](const std::string &) { rows.push_back(desk.manager->promptValues().size()); };
    desk.create(preset("{a}{b}"));
    EXPECT_EQ(desk.observer.journal,
              (Names{"will promptValues", "did promptValues", "will promptDirectoryName", "did promptDirectoryName"}));
    EXPECT_EQ(rows, (std::vector<std::size_t>{0, 2, 2, 2}));
    EXPECT_EQ(desk.manager->promptDirectoryName(), "{a}{b}");
}

TEST(Driver, MakesAndStoresNothingWhenThePromptIsCancelled) {
    Desk desk;
    desk.prompt.cancels = true;
    desk.create(preset("{AutoJob}"));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Names());
    EXPECT_FALSE(desk.preferences.disk.has_value());
    EXPECT_TRUE(desk.alerts.alerts.empty());
    EXPECT_TRUE(desk.workspace.opened.empty());
}

TEST(Driver, OffersZeroFirstAndCountsOn) {
    Desk desk;
    desk.create(preset("Job {AutoNumber}"));
    EXPECT_EQ(desk.counter("AutoNumber"), "0");
    desk.create(preset("Job {AutoNumber}"));
    EXPECT_EQ(desk.counter("AutoNumber"), "1");
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"Job 0/", "Job 1/"}));
}

TEST(Driver, OffersEveryRowOfOneCounterTheSameNumber) {
    Desk desk;
    desk.setCounters(dict({{"AutoJob", text("3")}}));
    desk.create(preset("{AutoJob} {AutoJob}"));
    ASSERT_EQ(desk.prompt.runs.size(), 1U);
    EXPECT_EQ(desk.prompt.runs[0].rows, (std::vector<PromptValueRow>{{"AutoJob", "4"}, {"AutoJob", "4"}}));
}

TEST(Driver, StoresWhatTheUserLeftAndKeepsOtherCounters) {
    Desk desk;
    desk.setCounters(dict({{"AutoOther", text("9")}, {"AutoJob", text("3")}}));
    desk.prompt.answers = {{"AutoJob", "007 b"}, {"Client", "Acme"}};
    desk.create(preset("{AutoJob}{Client}"));
    EXPECT_EQ(desk.counter("AutoJob"), "007 b");
    EXPECT_EQ(desk.counter("AutoOther"), "9");
    EXPECT_EQ(desk.counter("Client"), "(absent)");
}

TEST(Driver, StoresTheLaterOfTwoRowsOfOneCounter) {
    Desk desk;
    desk.prompt.whileShown = [](std::span<PromptValueRow> rows) {
        rows[0].value = "1";
        rows[1].value = "2";
    };
    desk.create(preset("{AutoJob} {AutoJob}"));
    EXPECT_EQ(desk.counter("AutoJob"), "2");
}

TEST(Driver, LeavesOutACounterThatThePreferencesCannotHoldAndStoresTheOthers) {
    Desk desk;
    desk.setCounters(dict({{"AutoA", text("1")}, {"AutoB", text("4")}}));
    desk.prompt.answers = {{"AutoA", std::string("x\0y", 3)}};
    desk.create(preset("Job {AutoB}", {file("{AutoA}")}));
    EXPECT_EQ(desk.counter("AutoA"), "1");
    EXPECT_EQ(desk.counter("AutoB"), "5");
    EXPECT_EQ(
        desk.log.entries(),
        (Names{"The last values of automatic variables were not stored: the preferences cannot hold the text of one; the others were.",
               "ORV creation error: Unable to create file '/jobs/Job 5/" + std::string("x\0y", 3) + "'. Invalid argument."}));
    EXPECT_FALSE(desk.manager->countersWereStored());
}

TEST(Driver, StoresTheCountersThoughNoVariableIsOne) {
    Desk desk;
    desk.create(preset("plain"));
    ASSERT_FALSE(desk.preferences.disk.has_value()); // not without a prompt
    desk.create(preset("{Project}x"));
    ASSERT_TRUE(desk.preferences.disk.has_value());
    const PropertyListValue *const stored = desk.preferences.disk->root().find(ORVAutomaticVarsKey);
    ASSERT_NE(stored, nullptr);
    EXPECT_TRUE(stored->isDictionary());
    EXPECT_TRUE(stored->dictionary().empty());
}

TEST(Driver, SharesACounterBetweenPresetsByExactName) {
    Desk desk;
    desk.create(preset("A{AutoJob}"));
    desk.create(preset("B{AutoJob}"));
    desk.create(preset("C{autojob}"));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"A0/", "B1/", "C0/"}));
}

TEST(Driver, KeepsCountersThatOthersStoredWhileThePromptWasOpen) {
    Desk desk;
    desk.setCounters(dict({{"AutoMine", text("1")}, {"AutoTheirs", text("1")}}));
    desk.prompt.whileShown = [&](std::span<PromptValueRow>) {
        desk.setCounters(dict({{"AutoMine", text("5")}, {"AutoTheirs", text("8")}, {"AutoNew", text("3")}}));
    };
    desk.create(preset("{AutoMine}"));
    EXPECT_EQ(desk.counter("AutoMine"), "2");
    EXPECT_EQ(desk.counter("AutoTheirs"), "8");
    EXPECT_EQ(desk.counter("AutoNew"), "3");
}

TEST(Driver, HoldsThePreferencesWhileItStoresCounters) {
    Desk desk;
    desk.preferences.journal.clear();
    desk.create(preset("{AutoJob}"));
    const Names &journal = desk.preferences.journal;
    const auto lock = std::find(journal.begin(), journal.end(), "lock");
    const auto set = std::find(journal.begin(), journal.end(), "setAppValue ORVAutomaticVars");
    const auto unlock = std::find(journal.begin(), journal.end(), "unlock");
    EXPECT_TRUE(lock < set && set < unlock && unlock != journal.end());
    EXPECT_EQ(desk.preferences.locksHeld(), 0);
}

TEST(Driver, HoldsThemFromReadingToStoringWhenToldSo) {
    Desk desk;
    desk.manager->setKeepsPreferencesLocked(true);
    int held = 0;
    desk.prompt.whileShown = [&](std::span<PromptValueRow>) { held = desk.preferences.locksHeld(); };
    desk.create(preset("{AutoJob}"));
    EXPECT_EQ(held, 1);
    EXPECT_EQ(desk.preferences.locksHeld(), 0);
    desk.create(preset("{Project}")); // has no counter
    EXPECT_EQ(held, 0);
}

TEST(Driver, MakesNothingWhenToldToHoldThePreferencesAndAnotherProgramHasThem) {
    Desk desk;
    desk.manager->setKeepsPreferencesLocked(true);
    desk.preferences.heldElsewhere = true;
    desk.create(preset("{AutoJob}"));
    EXPECT_EQ(desk.alerts.alerts.at(0).title, "Preferences are in use");
    EXPECT_TRUE(desk.prompt.runs.empty());
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Names());
}

TEST(Driver, GoesOnWithoutStoringWhenThePreferencesCannotBeLocked) {
    Desk desk;
    desk.setCounters(dict({{"AutoJob", text("41")}}));
    desk.preferences.failAt("lock", 1);
    desk.create(preset("{AutoJob}"));
    EXPECT_NE(desk.fileSystem.node("/jobs/42"), nullptr);
    EXPECT_EQ(desk.counter("AutoJob"), "41");
    EXPECT_FALSE(desk.manager->countersWereStored());
    EXPECT_EQ(desk.log.entries(), (Names{"The last values of automatic variables were not stored: the preferences could not be locked."}));
}

TEST(Driver, StoresNoCountersWhenTheyCannotBeReadAtThatMoment) {
    Desk desk;
    desk.setCounters(dict({{"AutoJob", text("41")}, {"AutoOther", text("77")}}));
    // The first reading of a creation gives the defaults, the second comes just before the storing.
    for (const int reading : {1, 2}) {
        desk.preferences.unreadable = false;
        int readings = 0;
        desk.preferences.beforeSynchronize = [&] { desk.preferences.unreadable = ++readings == reading; };
        desk.create(preset("Job {AutoJob}"));
        EXPECT_FALSE(desk.manager->countersWereStored());
        EXPECT_EQ(desk.counter("AutoJob"), "41");
        EXPECT_EQ(desk.counter("AutoOther"), "77");
    }
    desk.preferences.beforeSynchronize = nullptr;
    desk.preferences.unreadable = false;
    desk.create(preset("Again {AutoJob}"));
    EXPECT_TRUE(desk.manager->countersWereStored());
    EXPECT_EQ(desk.counter("AutoJob"), "42");
    EXPECT_EQ(desk.counter("AutoOther"), "77");
}

TEST(Driver, StoresNoCountersOverSomethingThatIsNoDictionary) {
    Desk desk;
    desk.setCounters(list({text("precious")}));
    desk.create(preset("Job {AutoJob}"));
    EXPECT_FALSE(desk.manager->countersWereStored());
    EXPECT_TRUE(desk.preferences.disk->root().find(ORVAutomaticVarsKey)->isArray());
    EXPECT_NE(desk.fileSystem.node("/jobs/Job 0"), nullptr);
    EXPECT_EQ(desk.log.entries(), (Names{"The last values of automatic variables were not stored: what stands in their place in the "
                                         "preferences is no dictionary."}));
}

TEST(Driver, MissesNoCountersOfAPresetWithoutThem) {
    Desk desk;
    desk.setCounters(list({text("precious")}));
    desk.create(preset("Job {Name}"));
    EXPECT_TRUE(desk.manager->countersWereStored());
    EXPECT_TRUE(desk.preferences.disk->root().find(ORVAutomaticVarsKey)->isArray());
    EXPECT_EQ(desk.fileSystem.listing("/jobs").size(), 1U);
}

TEST(Driver, SaysSoWhenThePreferencesRefuseTheCounters) {
    Desk desk;
    desk.preferences.failAt("synchronize", 3); // two readings, then the storing
    desk.create(preset("Job {AutoJob}"));
    EXPECT_FALSE(desk.manager->countersWereStored());
    EXPECT_NE(desk.fileSystem.node("/jobs/Job 0"), nullptr);
}

TEST(Driver, ReportsABlankFolderNameAfterThePrompt) {
    Desk desk;
    desk.create(dict({{"fileHierarchy", dict({{"isFolder", yes()}, {"children", list({file("{AutoJob}")})}})}}));
    EXPECT_EQ(desk.prompt.runs.size(), 1U);
    ASSERT_EQ(desk.alerts.alerts.size(), 1U);
    EXPECT_EQ(desk.alerts.alerts[0],
              (Alert{"Top level folder name is blank",
                     "Make sure that the top-level folder name for this preset has been set in the ORV Preference Pane."}));
    EXPECT_EQ(desk.counter("AutoJob"), "0"); // stored before any check
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Names());
}

TEST(Driver, TakesANameOfBlanksForAName) {
    Desk desk;
    desk.create(preset("  "));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"  /"}));
}

TEST(Driver, ReportsWhatExistsLeavesItAloneAndStillStoresCounters) {
    Desk desk;
    desk.fileSystem.addFile("/jobs/Job 0/precious", "x");
    desk.create(preset("Job {AutoJob}", {file("new")}));
    ASSERT_EQ(desk.alerts.alerts.size(), 1U);
    EXPECT_EQ(desk.alerts.alerts[0], (Alert{"Directory already exists", "'Job 0' already exists in '/jobs'."}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"Job 0/", "Job 0/precious"}));
    EXPECT_EQ(desk.counter("AutoJob"), "0");
    EXPECT_TRUE(desk.workspace.opened.empty());
}

TEST(Driver, CountsAFileOfTheNameAsExisting) {
    Desk desk;
    desk.fileSystem.addFile("/jobs/x", "precious");
    desk.create(preset("x"));
    EXPECT_EQ(desk.alerts.alerts.at(0).title, "Directory already exists");
    EXPECT_EQ(desk.fileSystem.node("/jobs/x")->contents, "precious");
}

TEST(Driver, DoesNotCleanTheNameItChecksButTheOneItMakes) {
    Desk desk;
    desk.create(preset("a/b:c"));
    EXPECT_EQ(desk.fileSystem.calls("fileExists").back(), "fileExists /jobs/a/b:c");
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"a_b_c/"}));
    EXPECT_EQ(desk.workspace.opened, (Names{"/jobs/a/b:c"}));
}

TEST(Driver, SubstitutesTheTopNameOnceMore) {
    Desk desk;
    desk.prompt.answers = {{"a", "x"}, {"b", "{a}"}};
    desk.create(preset("{a}{b}"));
    // Rows a, b: the first pass leaves "x{a}", the path that is checked and opened; the second makes "xx".
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"xx/"}));
    EXPECT_EQ(desk.workspace.opened, (Names{"/jobs/x{a}"}));
}

TEST(Driver, RemovesWhatItMadeAndReportsTheReasonWhenANodeFails) {
    Desk desk;
    desk.fileSystem.failItem("bad", ENOSPC);
    desk.create(preset("Job", {file("good"), folder("d", {file("bad")})}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Names());
    ASSERT_EQ(desk.alerts.alerts.size(), 1U);
    EXPECT_EQ(desk.alerts.alerts[0],
              (Alert{"ORV wasn't able to create the preset",
                     "ORV wasn't able to create the preset, because a file creation failed: Unable to create file '/jobs/Job/d/bad'."}));
    EXPECT_TRUE(desk.workspace.opened.empty());
}

TEST(Driver, RemovesWhatItMadeBeforeItReportsTheFailure) {
    Desk desk;
    desk.fileSystem.failItem("bad", ENOSPC);
    std::optional<Names> seen;
    desk.alerts.whileShown = [&] { seen = desk.fileSystem.listing("/jobs"); };
    desk.prompt.answers = {{"Client", "Acme"}};
    desk.create(preset("{Client}", {file("good"), file("bad")}));
    EXPECT_EQ(desk.fileSystem.calls("makeEmptyFile"), (Names{"makeEmptyFile good", "makeEmptyFile bad"}));
    EXPECT_EQ(seen, Names());
}

TEST(Driver, ReportsNoReasonForAnEmptyNodeNameWhenThereNeverWasOne) {
    Desk desk;
    desk.create(preset("Job", {file("")}));
    ASSERT_EQ(desk.alerts.alerts.size(), 1U);
    EXPECT_EQ(desk.alerts.alerts[0].message, "ORV wasn't able to create the preset, because a file creation failed: (null)");
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Names());
}

TEST(Driver, ReportsTheLastReasonThatThereWasForAnEmptyNodeName) {
    Desk desk;
    desk.fileSystem.failItem("bad", ENOSPC);
    desk.create(preset("First", {file("bad")}));
    desk.create(preset("Fine"));
    desk.create(preset("Second", {file("")}));
    ASSERT_EQ(desk.alerts.alerts.size(), 2U);
    EXPECT_EQ(desk.alerts.alerts[1], desk.alerts.alerts[0]);
}

TEST(Driver, LeavesAFolderThatSomebodyElseMadeBetweenCheckAndCreation) {
    Desk desk;
    desk.fileSystem.beforeCall = [&](const std::string &line) {
        if (line == "enterFolder Job") {
            desk.fileSystem.addFile("/jobs/Job/theirs", "precious");
        }
    };
    desk.create(preset("Job", {file("mine"), file("..")}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"Job/", "Job/theirs"}));
    EXPECT_EQ(desk.alerts.alerts.size(), 1U);
}

TEST(Driver, RemovesNothingWhenTheFolderMadeIsNotTheOneChecked) {
    Desk desk;
    desk.create(preset("a:b", {file("..")}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"a_b/"}));
    EXPECT_TRUE(desk.fileSystem.calls("removeEverythingMade").empty());
}

TEST(Driver, IgnoresNameLabelAndModeOfTheRootNode) {
    Desk desk;
    desk.create(dict({{"directoryName", text("Top")},
                      {"fileHierarchy", dict({{"filename", text("{ignored}")},
                                              {"isFolder", yes(false)},
                                              {"color", text("red")},
                                              {"permissions", text("700")},
                                              {"children", list({file("f")})}})}}));
    EXPECT_TRUE(desk.prompt.runs.empty());
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"Top/", "Top/f"}));
    EXPECT_EQ(desk.fileSystem.calls("leaveFolder"), (Names{"leaveFolder Top"}));
}

TEST(Driver, WithoutATreeMakesAnEmptyFolder) {
    Desk desk;
    desk.create(dict({{"directoryName", text("Top")}}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"Top/"}));
}

TEST(Driver, SurvivesPresetsOfWrongTypes) {
    Desk desk;
    for (const PropertyList &wrong : {text("x"), list({}), yes(), number(1), PropertyList()}) {
        desk.create(wrong);
        desk.create(dict({{"directoryName", wrong}, {"fileHierarchy", wrong}, {"scriptFile", dict({})}}));
    }
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"1/", "x/"})); // a text is a name, and so is a number
}

TEST(Driver, JoinsPathsLikeThePlatform) {
    Desk desk;
    desk.fileSystem.addFolder("/");
    desk.manager->setBasePath("/jobs//");
    desk.manager->createFileHierarchyFromPreset(preset("x").root());
    desk.manager->setBasePath("/");
    desk.manager->createFileHierarchyFromPreset(preset("y/").root());
    EXPECT_EQ(desk.workspace.opened, (Names{"/jobs/x", "/y"}));
    EXPECT_NE(desk.fileSystem.node("/y_"), nullptr);
    desk.manager->setBasePath(std::nullopt);
    desk.manager->createFileHierarchyFromPreset(preset("z", {folder("d", {file("..")})}).root());
    ASSERT_EQ(desk.alerts.alerts.size(), 1U);
    EXPECT_EQ(desk.alerts.alerts[0].message,
              "ORV wasn't able to create the preset, because a file creation failed: Unable to create file 'z/d/..'.");
}

TEST(Driver, StartsTheScriptThenOpensTheFolder) {
    Desk desk;
    desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/cleanup.sh");
    desk.threads.mode = FakeThreadLauncher::Mode::Keep;
    desk.create(presetWithScript("Job", "cleanup.sh"));
    EXPECT_EQ(desk.workspace.opened, (Names{"/jobs/Job"})); // while the script may still be running
    EXPECT_TRUE(desk.processes.launches().empty());
    desk.threads.runKept();
    ASSERT_EQ(desk.processes.launches().size(), 1U);
    EXPECT_EQ(desk.processes.launches()[0].path, "/home/user/.local/share/Orvane/Scripts/cleanup.sh");
}

TEST(Driver, StartsTheScriptBeforeItOpensTheFolder) {
    Desk desk;
    desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/cleanup.sh");
    std::size_t opened = 99;
    desk.processes.anyProgram = FakeProgram{.running = [&] {
        opened = desk.workspace.opened.size();
        return false;
    }};
    desk.create(presetWithScript("Job", "cleanup.sh"));
    EXPECT_EQ(opened, 0U);
    EXPECT_EQ(desk.workspace.opened, (Names{"/jobs/Job"}));
}

TEST(Driver, HandsTheScriptThePathThatItCheckedNotTheOneThatItMade) {
    Desk desk;
    desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/s");
    desk.create(presetWithScript("a:b", "s"));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"a_b/"}));
    ASSERT_EQ(desk.processes.launches().size(), 1U);
    EXPECT_EQ(desk.processes.launches()[0].environment.at("ORV_ROOT_PATH"), "/jobs/a:b");
}

TEST(Driver, LeavesTheOpeningToScriptsNamedAfterTheFinder) {
    for (const char *name : {"Reveal in Finder.sh", "FinderCleanup.sh", "FINDER", "xfinderx"}) {
        Desk desk;
        desk.create(presetWithScript("Job", name));
        EXPECT_TRUE(desk.workspace.opened.empty()) << name;
        EXPECT_EQ(desk.threads.launches(), 1U);
    }
    for (const char *name : {"cleanup.sh", "find er.sh", "FİNDER.sh", "Finder/cleanup.sh"}) {
        Desk desk;
        desk.create(presetWithScript("Job", name));
        EXPECT_EQ(desk.workspace.opened, (Names{"/jobs/Job"})) << name;
    }
}

TEST(Driver, RunsNoScriptAfterAFailure) {
    Desk desk;
    desk.fileSystem.addFolder("/jobs/Job");
    desk.create(presetWithScript("Job", "x.sh")); // exists
    desk.fileSystem.failItem("Bad");
    desk.create(presetWithScript("Bad", "x.sh")); // cannot be made
    EXPECT_EQ(desk.alerts.alerts.size(), 2U);
    EXPECT_EQ(desk.threads.launches(), 0U);
}

TEST(Driver, HandsTheScriptItsFolderAndEveryVariable) {
    Desk desk;
    desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/s");
    desk.prompt.whileShown = [](std::span<PromptValueRow> rows) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            rows[i].value = std::to_string(i);
        }
    };
    desk.create(presetWithScript("{job no}{project name}{Job-No}{straße}{a}{A}{job no}", "s"));
    ASSERT_EQ(desk.processes.launches().size(), 1U);
    const std::map<std::string, std::string> expected{{"ORV_CONTEXT", "postflight"},
                                                      {"ORV_ROOT_PATH", "/jobs/0123450"},
                                                      {"P_JOB_NO", "6"},
                                                      {"P_PROJECT_NAME", "1"},
                                                      {"P_JOB-NO", "2"},
                                                      {"P_STRASSE", "3"},
                                                      {"P_A", "5"}};
    EXPECT_EQ(desk.processes.launches()[0].environment, expected);
}

TEST(Driver, ForgetsTheRowsOfTheLastRun) {
    Desk desk;
    desk.prompt.answers = {{"a", "1"}};
    desk.create(preset("{a}"));
    EXPECT_EQ(desk.manager->promptValues().size(), 1U);
    desk.create(preset("plain"));
    EXPECT_TRUE(desk.manager->promptValues().empty());
}

TEST(Driver, OutlivesPreferencesThatChangeWhileThePromptIsOpen) {
    Desk desk;
    desk.setPresets(list({preset("{a}", {file("f"), folder("d", {file("{a}")})})}));
    desk.prompt.answers = {{"a", "x"}};
    desk.prompt.whileShown = [&](std::span<PromptValueRow>) {
        desk.preferences.disk.reset();
        desk.manager->readConfiguration();
        desk.mainThread.endEvent();
    };
    desk.manager->setBasePath("/jobs");
    desk.manager->handlePresetClicked(0);
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"x/", "x/d/", "x/d/x", "x/f"}));
}

TEST(Script, ThatIsMissingIsReportedByName) {
    Desk desk;
    desk.create(presetWithScript("Job", "gone.sh"));
    ASSERT_EQ(desk.alerts.alerts.size(), 1U);
    EXPECT_EQ(desk.alerts.alerts[0],
              (Alert{"Script file not found", "'gone.sh' is the specified script file for this preset, but that file doesn't exist."}));
    EXPECT_TRUE(desk.log.entries().empty());
    EXPECT_NE(desk.fileSystem.node("/jobs/Job"), nullptr);
}

TEST(Script, ThatIsNotExecutableIsReportedByName) {
    Desk desk;
    desk.fileSystem.addFile("/home/user/.local/share/Orvane/Scripts/x.sh");
    desk.create(presetWithScript("Job", "x.sh"));
    ASSERT_EQ(desk.alerts.alerts.size(), 1U);
    EXPECT_EQ(desk.alerts.alerts[0], (Alert{"Script file not executable",
                                            "'x.sh' is the specified script file for this preset, but that file isn't executable."}));
}

TEST(Script, ThatFailsIsLoggedWithItsErrorsAndReportedWithoutThem) {
    Desk desk;
    desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/x.sh");
    desk.processes.anyProgram = FakeProgram{.status = 3, .standardError = "oops"};
    desk.create(presetWithScript("Job", "x.sh"));
    EXPECT_EQ(desk.log.entries(), (Names{"ORV script 'x.sh' error: Script returned error code 3.", "Script stderr:\noops"}));
    ASSERT_EQ(desk.alerts.alerts.size(), 1U);
    EXPECT_EQ(desk.alerts.alerts[0],
              (Alert{"Script reported errors", "'x.sh' is the specified script file for this preset, and it reported errors during its "
                                               "execution. Check Console.app for more information on why the script failed."}));
}

TEST(Script, ThatFailsIsLoggedBeforeItIsReported) {
    Desk desk;
    desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/x.sh");
    desk.processes.anyProgram = FakeProgram{.status = 3};
    std::size_t lines = 0;
    desk.alerts.whileShown = [&] { lines = desk.log.entries().size(); };
    desk.create(presetWithScript("Job", "x.sh"));
    EXPECT_EQ(lines, 2U);
}

TEST(Script, ThatCannotBeStartedIsLoggedWithoutStandardError) {
    Desk desk;
    desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/x.sh");
    desk.processes.anyProgram.reset();
    desk.create(presetWithScript("Job", "x.sh"));
    EXPECT_EQ(desk.log.entries(), (Names{"ORV script 'x.sh' error: Unable to execute script.", "Script stderr:\n(null)"}));
    EXPECT_EQ(desk.alerts.alerts.at(0).title, "Script reported errors");
}

TEST(Script, ThatTimesOutIsReportedAfter121Seconds) {
    Desk desk;
    desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/x.sh");
    desk.processes.anyProgram = FakeProgram{.runningPolls = FakeProgram::Endless, .standardError = "so far"};
    desk.create(presetWithScript("Job", "x.sh"));
    EXPECT_EQ(desk.log.entries(), (Names{"ORV script 'x.sh' error: Script timed out.", "Script stderr:\nso far"}));
    EXPECT_EQ(desk.clock.nowInSeconds(), 121U);
}

TEST(Script, ThatSucceedsSaysNothing) {
    Desk desk;
    desk.fileSystem.addScript("/home/user/.local/share/Orvane/Scripts/x.sh");
    desk.processes.anyProgram = FakeProgram{.runningPolls = 5, .standardError = "only a warning"};
    desk.create(presetWithScript("Job", "x.sh"));
    EXPECT_TRUE(desk.log.entries().empty());
    EXPECT_TRUE(desk.alerts.alerts.empty());
}

} // namespace
} // namespace orvane::test
