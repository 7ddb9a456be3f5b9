#include "unit/core/Desk.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;
using Rows = std::vector<PromptValueRow>;

/// A desk with a user who follows a script, one step for each batch of events.
class Prompt : public ::testing::Test {
protected:
    /// Runs the prompt for a preset of that folder name; whether something was made tells whether it was completed.
    bool ask(std::string_view directoryName, std::deque<std::function<void()>> script) {
        desk.prompt.script = std::move(script);
        desk.prompt.journal.clear();
        desk.workspace.opened.clear();
        desk.create(preset(directoryName));
        EXPECT_TRUE(desk.prompt.script.empty());
        return !desk.workspace.opened.empty();
    }
    [[nodiscard]] Lines values() const {
        Lines result;
        for (const PromptValueRow &row : desk.manager->promptValues()) {
            result.push_back(row.value);
        }
        return result;
    }
    [[nodiscard]] long count(const std::string &line) const {
        return std::count(desk.prompt.journal.begin(), desk.prompt.journal.end(), line);
    }
    [[nodiscard]] std::function<void()> typing(std::string text, TextMovement movement) {
        return [this, text = std::move(text), movement] {
            desk.prompt.type(text);
            desk.prompt.endEditing(movement);
        };
    }

    Desk desk;
};

TEST_F(Prompt, OpensWithTheFirstValueSelectedForEditing) {
    ask("{a}{b}", {[&] {
            EXPECT_TRUE(desk.prompt.isOnScreen());
            EXPECT_EQ(desk.prompt.selectedRow(), 0);
            EXPECT_EQ(desk.prompt.editedRow(), 0);
            EXPECT_TRUE(desk.prompt.textIsSelected());
            desk.prompt.giveUp();
        }});
    EXPECT_FALSE(desk.prompt.isOnScreen());
}

TEST_F(Prompt, IsCompletedByReturnInItsOnlyValue) {
    EXPECT_TRUE(ask("{a}", {typing("Acme", TextMovement::Return)}));
    EXPECT_EQ(values(), Lines{"Acme"});
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Lines{"Acme/"});
}

TEST_F(Prompt, IsCompletedByTabInItsOnlyValue) {
    EXPECT_TRUE(ask("{a}", {typing("Acme", TextMovement::Tab)}));
    EXPECT_EQ(values(), Lines{"Acme"});
}

TEST_F(Prompt, GoesOnWithReturnAndTabAndIsCompletedInTheLastValue) {
    EXPECT_TRUE(ask("{a} {b} {c}", {typing("1", TextMovement::Return),
                                    [&] {
                                        EXPECT_EQ(desk.prompt.editedRow(), 1);
                                        EXPECT_TRUE(desk.prompt.textIsSelected());
                                        EXPECT_EQ(values(), (Lines{"1", "", ""}));
                                    },
                                    typing("2", TextMovement::Tab),
                                    [&] {
                                        EXPECT_EQ(desk.prompt.editedRow(), 2);
                                        EXPECT_TRUE(desk.prompt.textIsSelected());
                                    },
                                    typing("3", TextMovement::Return)}));
    EXPECT_EQ(values(), (Lines{"1", "2", "3"}));
}

TEST_F(Prompt, IsFilledWithReturnAloneHoweverManyRowsThereAre) {
    std::string name;
    std::deque<std::function<void()>> script;
    for (int i = 0; i < 200; ++i) {
        name += "{v" + std::to_string(i) + "}";
        script.push_back(typing("x", TextMovement::Return));
    }
    EXPECT_TRUE(ask(name, script));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Lines{std::string(200, 'x') + "/"});
}

TEST_F(Prompt, OnlyStoresTheTextAfterBacktabOrAClickElsewhere) {
    for (const TextMovement movement : {TextMovement::Backtab, TextMovement::Illegal}) {
        EXPECT_FALSE(ask("{a}{b}", {typing("typed", movement), [&] {
                                        EXPECT_EQ(desk.prompt.editedRow(), -1);
                                        EXPECT_EQ(values(), (Lines{"typed", ""}));
                                        desk.prompt.giveUp();
                                    }}));
    }
}

TEST_F(Prompt, IsNotCompletedByBacktabOrAClickElsewhereInTheLastValue) {
    for (const TextMovement movement : {TextMovement::Backtab, TextMovement::Illegal}) {
        EXPECT_FALSE(ask("x{a}", {typing("typed", movement), [&] {
                                      EXPECT_EQ(count("window stopModal"), 0);
                                      EXPECT_EQ(desk.prompt.editedRow(), -1);
                                      desk.prompt.giveUp();
                                  }}));
    }
}

TEST_F(Prompt, StartsEditingTheSelectedRowWithReturn) {
    ask("{a}{b}", {[&] { desk.prompt.selectRow(1); },
                   [&] {
                       EXPECT_EQ(desk.prompt.editedRow(), -1);
                       desk.prompt.pressKeyInTable(ReturnKeyCode);
                       EXPECT_EQ(desk.prompt.editedRow(), 1);
                       EXPECT_TRUE(desk.prompt.textIsSelected());
                   },
                   [&] { desk.prompt.giveUp(); }});
    EXPECT_EQ(count("table editColumn 1 row 1 select 1"), 1);
}

TEST_F(Prompt, LeavesEveryOtherKeyToTheTable) {
    constexpr int Space = 49;
    constexpr int KeypadEnter = 76;
    ask("{a}{b}", {[&] { desk.prompt.selectRow(1); }, [&] { desk.prompt.pressKeyInTable(Space); },
                   [&] { desk.prompt.pressKeyInTable(KeypadEnter); }, [&] { desk.prompt.giveUp(); }});
    EXPECT_EQ(count("table superKeyDown 49"), 1);
    EXPECT_EQ(count("table superKeyDown 76"), 1);
    EXPECT_EQ(desk.prompt.editedRow(), -1);
}

TEST_F(Prompt, EditsNothingWithReturnWhileNoRowIsSelected) {
    ask("{a}", {[&] {
            desk.prompt.selectRow(-1);
            desk.prompt.pressKeyInTable(ReturnKeyCode);
            EXPECT_EQ(desk.prompt.editedRow(), -1);
            desk.prompt.giveUp();
        }});
}

TEST_F(Prompt, TakesTheTextThatIsBeingTypedWhenConfirmed) {
    EXPECT_TRUE(ask("{a}{b}", {[&] {
                        desk.prompt.type("typed");
                        desk.prompt.confirm();
                    }}));
    EXPECT_EQ(values(), (Lines{"typed", ""}));
    EXPECT_EQ(count("window endEditing"), 1);
}

TEST_F(Prompt, EndsNoEditingWhenNothingIsEdited) {
    EXPECT_TRUE(ask("{a}", {typing("typed", TextMovement::Illegal), [&] { desk.prompt.confirm(); }}));
    EXPECT_EQ(count("window endEditing"), 0);
}

TEST_F(Prompt, DropsTheTextThatIsBeingTypedWhenAbandoned) {
    const auto giveUp = [&] { desk.prompt.giveUp(); };
    const auto close = [&] { desk.prompt.closeWindow(); };
    for (const std::function<void()> &leave : {std::function<void()>(giveUp), std::function<void()>(close)}) {
        EXPECT_FALSE(ask("x{a}", {[&] {
                             desk.prompt.type("typed");
                             leave();
                         }}));
        EXPECT_TRUE(desk.alerts.alerts.empty());
        EXPECT_EQ(values(), Lines{""});
        EXPECT_EQ(count("window stopModal"), 1);
        EXPECT_EQ(desk.fileSystem.listing("/jobs"), Lines());
    }
}

TEST_F(Prompt, StaysCompletedWhenItsWindowClosesAfterwards) {
    EXPECT_TRUE(ask("{a}", {[&] {
                        desk.prompt.type("typed");
                        desk.prompt.confirm();
                        desk.prompt.closeWindow();
                    }}));
}

TEST_F(Prompt, TakesNoNoticeOfAnotherWindowThatCloses) {
    EXPECT_TRUE(ask("{a}", {[&] { desk.prompt.closeAnotherWindow(); }, typing("typed", TextMovement::Return)}));
}

TEST_F(Prompt, IsAbandonedWhenItWasBothCompletedAndAbandoned) {
    EXPECT_FALSE(ask("{a}", {[&] {
                         desk.prompt.type("typed");
                         desk.prompt.confirm();
                         desk.prompt.giveUp();
                     }}));
    EXPECT_FALSE(ask("x{a}", {[&] {
                         desk.prompt.giveUp();
                         desk.prompt.confirm();
                     }}));
}

TEST_F(Prompt, IsAbandonedWhenItsWindowClosedBeforeItWasCompleted) {
    EXPECT_FALSE(ask("x{a}", {[&] {
                         desk.prompt.closeWindow();
                         desk.prompt.confirm();
                     }}));
    EXPECT_TRUE(desk.alerts.alerts.empty());
}

TEST_F(Prompt, StaysCompletedWhenItsWindowClosesWhileTheEditingEnds) {
    desk.prompt.whenEditingEnds = [&] { desk.prompt.closeWindow(); };
    EXPECT_TRUE(ask("{a}", {[&] {
                        desk.prompt.type("typed");
                        desk.prompt.confirm();
                    }}));
    EXPECT_EQ(values(), Lines{"typed"});
}

TEST_F(Prompt, ForgetsWhatTheUserDidBeforeItIsInFront) {
    desk.prompt.whenOrderedFront = [&] { desk.prompt.confirm(); };
    EXPECT_FALSE(ask("x{a}", {[] {}, [&] { desk.prompt.giveUp(); }}));
    EXPECT_TRUE(desk.alerts.alerts.empty());
    desk.prompt.whenOrderedFront = [&] { desk.prompt.giveUp(); };
    EXPECT_TRUE(ask("x{a}", {[] {}, typing("1", TextMovement::Illegal), [&] { desk.prompt.confirm(); }}));
}

TEST_F(Prompt, StartsEveryRunAnew) {
    EXPECT_FALSE(ask("x{a}", {[&] { desk.prompt.giveUp(); }}));
    EXPECT_TRUE(ask("x{a}", {typing("1", TextMovement::Return)}));
    EXPECT_FALSE(ask("y{a}", {[&] { desk.prompt.giveUp(); }}));
    EXPECT_TRUE(desk.alerts.alerts.empty());
    EXPECT_EQ(desk.prompt.loads(), 1); // one copy of the interface a run: the journal holds the last run only
}

TEST_F(Prompt, IsAbandonedWhenTheProgramIsAboutToQuit) {
    desk.prompt.quitsAfterScript = true;
    EXPECT_FALSE(ask("x{a}", {[] {}, [] {}}));
    EXPECT_EQ(count("window runModalSession"), 2);
    EXPECT_EQ(count("window orderOut"), 1);
    EXPECT_TRUE(desk.alerts.alerts.empty());
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Lines());
}

TEST_F(Prompt, IsAbandonedByEveryAnswerButThatTheSessionContinues) {
    desk.prompt.quitsAfterScript = true;
    for (const long answer : {RunContinuesResponse - 1, RunContinuesResponse + 1, 0L, 1L}) {
        desk.prompt.lastAnswer = answer;
        EXPECT_FALSE(ask("x{a}", {[] {}, [] {}})) << answer;
        EXPECT_EQ(count("window runModalSession"), 2) << answer;
        EXPECT_EQ(count("window endModalSession"), 1) << answer;
    }
    EXPECT_TRUE(desk.alerts.alerts.empty());
}

TEST_F(Prompt, IsNotAskedForAgainWhileItIsBeingLoaded) {
    bool isAskedAgain = false;
    desk.prompt.whileLoading = [&] {
        if (std::exchange(isAskedAgain, true)) {
            return;
        }
        EXPECT_FALSE(desk.manager->runPromptModally());
        EXPECT_EQ(desk.application.activations, std::vector<bool>{true});
        EXPECT_EQ(desk.prompt.loads(), 1);
    };
    EXPECT_TRUE(ask("{a}", {typing("outer", TextMovement::Return)}));
    EXPECT_TRUE(isAskedAgain);
    EXPECT_EQ(values(), Lines{"outer"});
    EXPECT_EQ(desk.prompt.loads(), 1);
    EXPECT_EQ(count("window beginModalSession"), 1);
}

TEST_F(Prompt, IsNotAskedForTwiceAtOnce) {
    EXPECT_TRUE(ask("{a}", {[&] {
                                desk.prompt.type("outer");
                                desk.application.activations.clear();
                                EXPECT_FALSE(desk.manager->runPromptModally());
                                EXPECT_EQ(desk.application.activations, std::vector<bool>{true});
                                EXPECT_TRUE(desk.prompt.isOnScreen());
                                EXPECT_EQ(desk.prompt.editedRow(), 0);
                            },
                            [&] { desk.prompt.confirm(); }}));
    EXPECT_EQ(values(), Lines{"outer"});
    EXPECT_EQ(desk.prompt.loads(), 1);
    EXPECT_EQ(count("window beginModalSession"), 1);
}

TEST_F(Prompt, KeepsItsValuesWhileAnotherCreationIsAskedFor) {
    EXPECT_TRUE(ask("{a}{b}", {typing("outer", TextMovement::Return),
                               [&] {
                                   desk.application.activations.clear();
                                   desk.manager->createFileHierarchyFromPreset(preset("{c}").root());
                                   desk.manager->createFileHierarchyFromPreset(preset("plain").root());
                                   EXPECT_EQ(desk.application.activations, (std::vector<bool>{true, true}));
                                   EXPECT_EQ(desk.manager->promptDirectoryName(), "{a}{b}");
                               },
                               typing("most", TextMovement::Return)}));
    EXPECT_EQ(values(), (Lines{"outer", "most"}));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), Lines{"outermost/"});
    EXPECT_EQ(desk.prompt.loads(), 1);
    EXPECT_TRUE(ask("{a}", {typing("next", TextMovement::Return)})); // and afterwards as ever
}

TEST_F(Prompt, GoesOnInItsOwnWindowWhenItsFileIsAskedForAgainAndGone) {
    EXPECT_TRUE(ask("{a}", {typing("typed", TextMovement::Illegal),
                            [&] {
                                desk.prompt.isMissing = true;
                                EXPECT_FALSE(desk.manager->loadPromptBundle());
                            },
                            [] {}, [&] { desk.prompt.confirm(); }}));
    EXPECT_EQ(values(), Lines{"typed"});
    EXPECT_EQ(count("window runModalSession"), 4);
    EXPECT_EQ(count("window orderOut"), 1);
}

TEST_F(Prompt, DoesItsStepsInOrder) {
    ask("{a}", {[&] { desk.prompt.moveWindow("7 8 90 100"); }, [&] { desk.prompt.giveUp(); }});
    desk.application.whenActivated = [&] { desk.prompt.journal.emplace_back("activate"); };
    ask("{a}", {[] {}, typing("x", TextMovement::Return)});
    EXPECT_EQ(desk.prompt.journal,
              (Lines{"loadNibNamed PromptWindow", "table selectRow 0 extends 0", "table editColumn 1 row 0 select 1",
                     "window makeKeyAndOrderFront", "window disableScreenUpdates", "window beginModalSession",
                     "window setFrameFromString 7 8 90 100", "activate", "window enableScreenUpdates", "window runModalSession",
                     "window runModalSession", "window endEditing", "table superTextDidEndEditing 0", "window stopModal",
                     "table superTextDidEndEditing 0", "table editColumn -1 row 0 select 1", "window endModalSession",
                     "window stringWithSavedFrame", "window orderOut"}));
    EXPECT_EQ(desk.application.activations, (std::vector<bool>{true, true}));
}

TEST_F(Prompt, RunsNoSessionOnceItIsCompleted) {
    desk.application.whenActivated = [&] { desk.prompt.confirm(); };
    EXPECT_FALSE(ask("{a}", {})); // completed with an empty name
    EXPECT_EQ(count("window runModalSession"), 0);
    EXPECT_EQ(desk.alerts.alerts.size(), 1U);
}

TEST_F(Prompt, RunsNoSessionOnceItIsAbandoned) {
    desk.application.whenActivated = [&] { desk.prompt.giveUp(); };
    EXPECT_FALSE(ask("x{a}", {}));
    EXPECT_EQ(count("window runModalSession"), 0);
    EXPECT_EQ(count("window endModalSession"), 1);
    EXPECT_EQ(count("window orderOut"), 1);
    EXPECT_TRUE(desk.alerts.alerts.empty());
}

TEST_F(Prompt, AnnouncesTheFolderNameBeforeItChanges) {
    ask("{a}", {[&] { desk.prompt.giveUp(); }});
    Lines names;
    desk.observer.hook = [&](const std::string &entry) {
        if (entry.ends_with(" promptDirectoryName")) {
            names.push_back(entry + ": " + desk.manager->promptDirectoryName());
        }
    };
    ask("x{a}", {[&] { desk.prompt.giveUp(); }});
    desk.observer.hook = nullptr;
    EXPECT_EQ(names, (Lines{"will promptDirectoryName: {a}", "did promptDirectoryName: x{a}"}));
}

TEST_F(Prompt, IsShownAgainWhereItWasLeft) {
    ask("{a}", {[&] {
                    EXPECT_EQ(desk.prompt.frame(), desk.prompt.fileFrame);
                    desk.prompt.moveWindow("5 6 700 800");
                },
                typing("x", TextMovement::Return)});
    ask("{a}", {[&] {
            EXPECT_EQ(desk.prompt.frame(), "5 6 700 800");
            desk.prompt.moveWindow("1 2 300 400");
            desk.prompt.giveUp();
        }});
    ask("{a}", {[&] {
            EXPECT_EQ(desk.prompt.frame(), "1 2 300 400"); // where it was abandoned counts as well
            desk.prompt.giveUp();
        }});
}

TEST_F(Prompt, IsShownWhereItsFileSaysAfterTheProgramStartedAgain) {
    ask("{a}", {[&] {
            desk.prompt.moveWindow("5 6 700 800");
            desk.prompt.giveUp();
        }});
    desk.manager = ORVPresetManager::create(desk.ports());
    ask("{a}", {[&] {
            EXPECT_EQ(desk.prompt.frame(), desk.prompt.fileFrame);
            desk.prompt.giveUp();
        }});
}

TEST_F(Prompt, KeepsToTheFilesFrameWhereTheDesktopDoesNotTellIt) {
    ask("{a}", {[&] {
            desk.prompt.moveWindow("");
            desk.prompt.giveUp();
        }});
    ask("{a}", {[&] { desk.prompt.giveUp(); }});
    EXPECT_EQ(count("window setFrameFromString "), 0);
}

TEST_F(Prompt, ForgetsWhereItWasLeftOnceTheDesktopDoesNotTellItAnyMore) {
    ask("{a}", {[&] {
            desk.prompt.moveWindow("5 6 700 800");
            desk.prompt.giveUp();
        }});
    ask("{a}", {[&] {
            EXPECT_EQ(desk.prompt.frame(), "5 6 700 800");
            desk.prompt.moveWindow("");
            desk.prompt.giveUp();
        }});
    ask("{a}", {[&] {
            EXPECT_EQ(desk.prompt.frame(), desk.prompt.fileFrame);
            desk.prompt.giveUp();
        }});
}

TEST_F(Prompt, ShowsNothingWithoutItsInterfaceFile) {
    desk.prompt.isMissing = true;
    EXPECT_FALSE(ask("{a}", {}));
    EXPECT_EQ(desk.prompt.journal, Lines{"loadNibNamed PromptWindow"});
    EXPECT_TRUE(desk.application.activations.empty());
    EXPECT_TRUE(desk.alerts.alerts.empty());
    desk.prompt.isMissing = false;
    EXPECT_TRUE(ask("{a}", {typing("x", TextMovement::Return)})); // once it is back
}

TEST_F(Prompt, DoesNotUseTheLastRunsWindowWhenTheInterfaceFileIsGone) {
    ask("{a}", {[&] { desk.prompt.giveUp(); }});
    desk.prompt.isMissing = true;
    EXPECT_FALSE(ask("x{a}", {}));
    EXPECT_EQ(desk.prompt.journal, Lines{"loadNibNamed PromptWindow"});
}

TEST_F(Prompt, DoesNotUseTheLastRunsTableWhenTheInterfaceFileIsGone) {
    constexpr int Space = 49;
    ask("{a}", {[&] { desk.prompt.giveUp(); }});
    desk.prompt.isMissing = true;
    ask("x{a}", {});
    desk.prompt.pressKeyInTable(Space);
    desk.prompt.pressKeyInTable(ReturnKeyCode);
    desk.prompt.type("late");
    desk.prompt.endEditing(TextMovement::Return);
    EXPECT_EQ(desk.prompt.journal, Lines{"loadNibNamed PromptWindow"});
    EXPECT_EQ(values(), Lines{""});
}

TEST_F(Prompt, ShowsNothingWhenTheInterfaceFileConnectsNothing) {
    ask("{a}", {[&] { desk.prompt.giveUp(); }});
    desk.prompt.awakesNobody = true;
    EXPECT_FALSE(ask("x{a}", {}));
    EXPECT_EQ(desk.prompt.journal, Lines{"loadNibNamed PromptWindow"});
}

TEST_F(Prompt, TakesMessagesBeforeItsFirstRunWithoutHarm) {
    desk.manager->finishPrompt();
    desk.manager->abortPrompt();
    desk.manager->tableTextDidEndEditing(TextMovement::Return);
    desk.manager->tableKeyDown(ReturnKeyCode);
    EXPECT_TRUE(ask("{a}", {typing("x", TextMovement::Return)}));
}

// What it says about the folder while the user types.

/// What the manager says while the prompt of that folder name is open.
class Preview : public Prompt {
protected:
    std::string nameOf(std::string_view directoryName, const Rows &rows) {
        std::string name;
        ask(directoryName, {[&] {
                name = desk.manager->directoryNameForRows(rows);
                desk.prompt.giveUp();
            }});
        return name;
    }
    PromptProblem problemOf(std::string_view directoryName, const Rows &rows) {
        PromptProblem problem = PromptProblem::None;
        ask(directoryName, {[&] {
                problem = desk.manager->problemForRows(rows);
                desk.prompt.giveUp();
            }});
        return problem;
    }
    /// The name of the folder that these values really lead to; empty when there is none.
    std::string created(std::string_view directoryName, const Rows &rows) {
        Desk other;
        other.prompt.whileShown = [&](std::span<PromptValueRow> shown) { std::copy(rows.begin(), rows.end(), shown.begin()); };
        other.create(preset(directoryName));
        const Lines made = other.fileSystem.listing("/jobs");
        return made.empty() ? "" : made.at(0).substr(0, made.at(0).size() - 1);
    }
};

TEST_F(Preview, ShowsTheNameThatACreationGives) {
    struct Case {
        const char *directoryName;
        Rows rows;
        const char *name;
    };
    for (const Case &each : {Case{"{a} {b}", {{"a", "Acme"}, {"b", "1"}}, "Acme 1"}, Case{"{a}", {{"a", "x/y:z"}}, "x_y_z"},
                             Case{"{a}{a}", {{"a", "first"}, {"a", "second"}}, "firstfirst"},
                             Case{"{a}{b}", {{"a", "x"}, {"b", "{a}"}}, "xx"}, Case{"\\{{a}\\}", {{"a", "x"}}, "{x}"}}) {
        EXPECT_EQ(nameOf(each.directoryName, each.rows), each.name) << each.directoryName;
        EXPECT_EQ(created(each.directoryName, each.rows), each.name) << each.directoryName;
    }
}

TEST_F(Preview, ShowsAnEmptyNameAsItIs) {
    EXPECT_EQ(nameOf("{a}", {{"a", ""}}), "");
}

TEST_F(Preview, FindsNothingWrongWithAFreeName) {
    EXPECT_EQ(problemOf("{a}", {{"a", "free"}}), PromptProblem::None);
    EXPECT_EQ(problemOf("{a}", {{"a", "  "}}), PromptProblem::None); // blanks are a name
}

TEST_F(Preview, FindsABlankName) {
    EXPECT_EQ(problemOf("{a}", {{"a", ""}}), PromptProblem::BlankName);
    // The first pass leaves "{a}", which is free; the second leaves nothing.
    EXPECT_EQ(problemOf("{a}{b}", {{"a", ""}, {"b", "{a}"}}), PromptProblem::BlankName);
    EXPECT_EQ(created("{a}{b}", {{"a", ""}, {"b", "{a}"}}), "");
}

TEST_F(Preview, FindsWhatExistsAtTheNameAsTyped) {
    desk.fileSystem.addFile("/jobs/file");
    desk.fileSystem.addFolder("/jobs/folder/inner");
    EXPECT_EQ(problemOf("{a}", {{"a", "file"}}), PromptProblem::AlreadyExists);
    EXPECT_EQ(problemOf("{a}", {{"a", "folder"}}), PromptProblem::AlreadyExists);
    EXPECT_EQ(problemOf("{a}", {{"a", "folder/inner"}}), PromptProblem::AlreadyExists);
}

TEST_F(Preview, FindsWhatExistsAtTheCleanedName) {
    desk.fileSystem.addFile("/jobs/a_b");
    EXPECT_EQ(problemOf("{a}", {{"a", "a:b"}}), PromptProblem::AlreadyExists);
    EXPECT_EQ(problemOf("{a}", {{"a", "a/b"}}), PromptProblem::AlreadyExists);
    EXPECT_EQ(problemOf("{a}", {{"a", "a-b"}}), PromptProblem::None);
}

TEST_F(Preview, FindsTheFolderItselfUnderTheNameOfADot) {
    EXPECT_EQ(problemOf("{a}", {{"a", "."}}), PromptProblem::AlreadyExists);
    EXPECT_EQ(problemOf("{a}", {{"a", ".."}}), PromptProblem::AlreadyExists);
}

TEST_F(Preview, FindsNamesThatNoFolderCanHave) {
    // The first pass leaves ".{a}", which is free; the second leaves "..".
    EXPECT_EQ(problemOf("{a}{b}", {{"a", "."}, {"b", "{a}"}}), PromptProblem::ImpossibleName);
    EXPECT_EQ(created("{a}{b}", {{"a", "."}, {"b", "{a}"}}), "");
    EXPECT_EQ(problemOf("{a}", {{"a", std::string("x\0y", 3)}}), PromptProblem::ImpossibleName);
    EXPECT_EQ(problemOf("{a}", {{"a", "..."}}), PromptProblem::None);
}

TEST_F(Preview, FindsANameOfMoreThan255Bytes) {
    EXPECT_EQ(problemOf("{a}", {{"a", std::string(255, 'x')}}), PromptProblem::None);
    EXPECT_EQ(problemOf("{a}", {{"a", std::string(256, 'x')}}), PromptProblem::NameTooLong);
    std::string umlauts;
    for (int i = 0; i < 128; ++i) {
        umlauts += "ü"; // two bytes each
    }
    EXPECT_EQ(problemOf("{a}", {{"a", umlauts}}), PromptProblem::NameTooLong);
    // Two short names with a slash between them become one long one.
    EXPECT_EQ(problemOf("{a}/{a}", {{"a", std::string(128, 'x')}}), PromptProblem::NameTooLong);
}

TEST_F(Preview, FollowsTheDiskWhileThePromptIsOpen) {
    ask("{a}", {[&] {
                    EXPECT_EQ(desk.manager->problemForRows(Rows{{"a", "x"}}), PromptProblem::None);
                    desk.fileSystem.addFolder("/jobs/x");
                },
                [&] {
                    EXPECT_EQ(desk.manager->problemForRows(Rows{{"a", "x"}}), PromptProblem::AlreadyExists);
                    desk.prompt.giveUp();
                }});
}

TEST_F(Preview, DoesNotHinderTheCompletion) {
    desk.fileSystem.addFolder("/jobs/x");
    ask("{a}", {typing("x", TextMovement::Return)});
    EXPECT_EQ(desk.alerts.alerts.at(0).title, "Directory already exists");
}

} // namespace
} // namespace orvane::test
