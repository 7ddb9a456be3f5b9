#include "SettingsDesk.h"

namespace orvane {
namespace {

using test::SettingsTest;
using List = std::vector<std::string>;

class Store : public SettingsTest {};

TEST_F(Store, LoadsPresetsCountersAndSettings) {
    onDisk({{"ORVPresets", make.list({labelled("A")})},
            {"ORVAutomaticVars", make.dictionary({{"AutoJob", make.text("41")}})},
            {"ORVShowMenubar", PropertyListValue::ofBoolean(true)},
            {"ORVHotKeyCode", PropertyListValue::ofInteger(35)},
            {"ORVHotKeyFlags", PropertyListValue::ofInteger(1048576)}});
    start();
    EXPECT_EQ(loaded, Outcome::Done);
    EXPECT_EQ(run->labels(), List{"A"});
    EXPECT_EQ(run->counters.value("AutoJob"), "41");
    EXPECT_TRUE(run->general.showsMenubar());
    EXPECT_EQ(run->general.hotKey(), (StoredHotKey{35, 1048576}));
    EXPECT_FALSE(run->store.isModified());
}

TEST_F(Store, SavesAnEditAndTellsTheOthers) {
    presetsOnDisk({labelled("A"), labelled("B")});
    start();
    run->presets.renamePreset(run->preset(1), "C");
    EXPECT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(labelsOnDisk(), (List{"A", "C"}));
    EXPECT_EQ(notifications.posted, List{"ORVPresetConfigurationChangedNotification"});
    EXPECT_FALSE(run->store.isModified());
    EXPECT_EQ(preferences.locksHeld(), 0);
}

TEST_F(Store, WritesUnderTheLockAndTellsAfterIt) {
    presetsOnDisk({labelled("A")});
    start();
    preferences.journal.clear();
    run->presets.renamePreset(run->preset(0), "C");
    int locksWhenTold = -1;
    notifications.addObserver(this, "ORVPresetConfigurationChangedNotification", DistributedNotifications::Suspension::DeliverImmediately,
                              [&] { locksWhenTold = preferences.locksHeld(); });
    EXPECT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(preferences.journal.front(), "lock");
    EXPECT_EQ(preferences.journal.back(), "unlock");
    EXPECT_EQ(locksWhenTold, 0);
}

TEST_F(Store, WithoutEditsNothingIsWrittenOrPosted) {
    presetsOnDisk({labelled("A")});
    start();
    EXPECT_EQ(run->store.save(), Outcome::Unchanged);
    EXPECT_TRUE(notifications.posted.empty());
    for (const std::string &call : preferences.journal) {
        EXPECT_FALSE(call.starts_with("setAppValue")) << call;
    }
}

TEST_F(Store, WritesOnlyTheKeyThatChanged) {
    onDisk({{"ORVPresets", make.list({labelled("A")})},
            {"ORVAutomaticVars", make.dictionary({{"AutoJob", make.text("1")}})},
            {"foreign", make.text("kept")}});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    preferences.journal.clear();
    ASSERT_EQ(run->store.save(), Outcome::Done);
    List written;
    for (const std::string &call : preferences.journal) {
        if (call.starts_with("setAppValue")) {
            written.push_back(call);
        }
    }
    EXPECT_EQ(written, List{"setAppValue ORVPresets"});
    EXPECT_EQ(diskValue("foreign").string(), "kept");
}

TEST_F(Store, MakingTheFileKeepsTheMenuBarItemShown) {
    start();
    EXPECT_TRUE(run->general.showsMenubar());
    run->presets.addPreset(0, "A", "{Name}");
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_TRUE(diskValue("ORVShowMenubar").boolean());
    EXPECT_TRUE(run->general.showsMenubar());
}

TEST_F(Store, MakingTheFileForAHotKeyAloneKeepsTheItemShown) {
    start();
    run->general.setHotKey({35, 1048576});
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_TRUE(diskValue("ORVShowMenubar").boolean());
}

TEST_F(Store, SavingNothingMakesNoFile) {
    start();
    EXPECT_EQ(run->store.save(), Outcome::Unchanged);
    EXPECT_FALSE(preferences.disk.has_value());
}

TEST_F(Store, AFileWithoutTheKeyStaysWithoutIt) {
    onDisk({{"ORVPresets", make.list({labelled("A")})}});
    start();
    EXPECT_FALSE(run->general.showsMenubar());
    run->presets.renamePreset(run->preset(0), "B");
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(diskValue("ORVShowMenubar").type(), PropertyListType::Null);
}

TEST_F(Store, SavingIsUndoneLikeAnyOtherStep) {
    presetsOnDisk({labelled("A")});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    ASSERT_EQ(run->store.save(), Outcome::Done);
    run->history.undo();
    EXPECT_TRUE(run->store.isModified());
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(labelsOnDisk(), List{"A"});
}

TEST_F(Store, ADeletedPresetThatComesBackAfterSavingIsStoredAgain) {
    presetsOnDisk({labelled("A"), labelled("B")});
    start();
    run->presets.removePresets(std::array{run->preset(0)});
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(labelsOnDisk(), List{"B"});
    run->history.undo();
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(labelsOnDisk(), (List{"A", "B"}));
}

// Other programs.

TEST_F(Store, AChangeElsewhereIsMergedWhenSaving) {
    presetsOnDisk({labelled("A"), labelled("B")});
    start();
    run->presets.renamePreset(run->preset(0), "Mine");
    changeOnDisk("ORVPresets", make.list({labelled("A"), labelled("B", "{Other}"), labelled("Added")}));
    EXPECT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(labelsOnDisk(), (List{"Mine", "B", "Added"}));
    EXPECT_EQ(diskValue("ORVPresets").array()[1].find("directoryName")->string(), "{Other}");
    EXPECT_EQ(run->labels(), labelsOnDisk());
    EXPECT_FALSE(run->store.isModified());
}

TEST_F(Store, DifferentKeysOfOnePresetAreMerged) {
    presetsOnDisk({labelled("A", "{Name}")});
    start();
    run->presets.renamePreset(run->preset(0), "Mine");
    changeOnDisk("ORVPresets", make.list({labelled("A", "{Theirs}")}));
    EXPECT_EQ(run->store.save(), Outcome::Done);
    EXPECT_TRUE(diskValue("ORVPresets").array()[0].equals(labelled("Mine", "{Theirs}")));
}

TEST_F(Store, TheSameKeyChangedOnBothSidesIsAskedAboutAndNothingIsWritten) {
    presetsOnDisk({labelled("A")});
    start();
    run->presets.renamePreset(run->preset(0), "Mine");
    changeOnDisk("ORVPresets", make.list({labelled("Theirs")}));
    EXPECT_EQ(run->store.save(), Outcome::Conflicts);
    EXPECT_EQ(labelsOnDisk(), List{"Theirs"});
    ASSERT_EQ(run->store.conflicts().size(), 1U);
    EXPECT_EQ(run->store.conflicts()[0].key, "label");
}

TEST_F(Store, MineIsWrittenOnceItIsDecided) {
    presetsOnDisk({labelled("A", "{Name}")});
    start();
    run->presets.setDirectoryName(run->preset(0), "{Mine}");
    changeOnDisk("ORVPresets", make.list({labelled("A", "{Theirs}")}));
    ASSERT_EQ(run->store.save(), Outcome::Conflicts);
    ASSERT_EQ(run->store.conflicts().size(), 1U);
    EXPECT_EQ(run->store.conflicts()[0].key, "directoryName");
    EXPECT_EQ(run->store.conflicts()[0].theirs.root().string(), "{Theirs}");
    run->store.decide(0, MergeSide::Mine);
    EXPECT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(diskValue("ORVPresets").array()[0].find("directoryName")->string(), "{Mine}");
}

TEST_F(Store, TheirsIsTakenOverOnceItIsDecided) {
    presetsOnDisk({labelled("A", "{Name}")});
    start();
    run->presets.setDirectoryName(run->preset(0), "{Mine}");
    changeOnDisk("ORVPresets", make.list({labelled("A", "{Theirs}")}));
    ASSERT_EQ(run->store.save(), Outcome::Conflicts);
    run->store.decide(0, MergeSide::Theirs);
    EXPECT_EQ(run->store.save(), Outcome::Unchanged);
    EXPECT_EQ(run->presets.text(run->preset(0), "directoryName"), "{Theirs}");
    EXPECT_EQ(diskValue("ORVPresets").array()[0].find("directoryName")->string(), "{Theirs}");
}

TEST_F(Store, ADecisionDoesNotHoldForWhatCameAfterIt) {
    presetsOnDisk({labelled("A", "{Name}")});
    start();
    run->presets.setDirectoryName(run->preset(0), "{Mine}");
    changeOnDisk("ORVPresets", make.list({labelled("A", "{Theirs}")}));
    ASSERT_EQ(run->store.save(), Outcome::Conflicts);
    run->store.decide(0, MergeSide::Mine);
    changeOnDisk("ORVPresets", make.list({labelled("A", "{Even later}")}));
    EXPECT_EQ(run->store.save(), Outcome::Conflicts);
    EXPECT_EQ(diskValue("ORVPresets").array()[0].find("directoryName")->string(), "{Even later}");
}

TEST_F(Store, ReloadingTakesOverWhatOthersChanged) {
    presetsOnDisk({labelled("A")});
    start();
    const ItemID a = run->preset(0);
    changeOnDisk("ORVPresets", make.list({labelled("B"), labelled("A", "{Theirs}")}));
    EXPECT_EQ(run->store.reload(), Outcome::Done);
    EXPECT_EQ(run->labels(), (List{"B", "A"}));
    EXPECT_EQ(run->preset(1), a); // the same preset for whoever looks at it
    EXPECT_FALSE(run->store.isModified());
    EXPECT_STREQ(run->history.undoName(), "Changes by Another Program");
    EXPECT_EQ(run->store.reload(), Outcome::Unchanged);
}

TEST_F(Store, UndoingWhatWasTakenOverAndSavingPutsItBack) {
    presetsOnDisk({labelled("A")});
    start();
    changeOnDisk("ORVPresets", make.list({labelled("A"), labelled("B")}));
    ASSERT_EQ(run->store.reload(), Outcome::Done);
    run->history.undo();
    EXPECT_TRUE(run->store.isModified());
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(labelsOnDisk(), List{"A"});
}

TEST_F(Store, UnsavedEditsStayThroughReloading) {
    presetsOnDisk({labelled("A"), labelled("B")});
    start();
    run->presets.renamePreset(run->preset(0), "Mine");
    changeOnDisk("ORVPresets", make.list({labelled("A"), labelled("B"), labelled("C")}));
    EXPECT_EQ(run->store.reload(), Outcome::Done);
    EXPECT_EQ(run->labels(), (List{"Mine", "B", "C"}));
    EXPECT_TRUE(run->store.isModified());
    run->history.undo();                  // what was taken over
    run->history.undo();                  // the edit
    EXPECT_TRUE(run->store.isModified()); // the disk has C
}

TEST_F(Store, TheHelpersCountersNeverConflict) {
    onDisk({{"ORVPresets", make.list({labelled("A")})},
            {"ORVAutomaticVars", make.dictionary({{"AutoA", make.text("1")}, {"AutoB", make.text("5")}})}});
    start();
    run->counters.setValue("AutoA", "100");
    changeOnDisk("ORVAutomaticVars", make.dictionary({{"AutoA", make.text("2")}, {"AutoB", make.text("6")}, {"AutoC", make.text("0")}}));
    EXPECT_EQ(run->store.save(), Outcome::Done);
    EXPECT_TRUE(diskValue("ORVAutomaticVars")
                    .equals(make.dictionary({{"AutoA", make.text("100")}, {"AutoB", make.text("6")}, {"AutoC", make.text("0")}})));
    EXPECT_EQ(run->counters.value("AutoB"), "6");
}

TEST_F(Store, SavingPresetsNeverSetsACounterBack) {
    onDisk({{"ORVPresets", make.list({labelled("A")})}, {"ORVAutomaticVars", make.dictionary({{"AutoA", make.text("1")}})}});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    changeOnDisk("ORVAutomaticVars", make.dictionary({{"AutoA", make.text("2")}}));
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(diskValue("ORVAutomaticVars").find("AutoA")->string(), "2");
    // What was stored once is no edit any more.
    run->counters.setValue("AutoA", "50");
    ASSERT_EQ(run->store.save(), Outcome::Done);
    changeOnDisk("ORVAutomaticVars", make.dictionary({{"AutoA", make.text("51")}}));
    run->presets.renamePreset(run->preset(0), "C");
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(diskValue("ORVAutomaticVars").find("AutoA")->string(), "51");
}

TEST_F(Store, AnEditThatTheDiskHasAlreadyIsNoEditAnyMore) {
    onDisk({{"ORVPresets", make.list({labelled("A")})}, {"ORVAutomaticVars", make.dictionary({{"AutoA", make.text("1")}})}});
    start();
    run->counters.setValue("AutoA", "2");
    changeOnDisk("ORVAutomaticVars", make.dictionary({{"AutoA", make.text("2")}}));
    EXPECT_EQ(run->store.save(), Outcome::Unchanged);
    changeOnDisk("ORVAutomaticVars", make.dictionary({{"AutoA", make.text("3")}}));
    EXPECT_EQ(run->store.save(), Outcome::Unchanged);
    EXPECT_EQ(diskValue("ORVAutomaticVars").find("AutoA")->string(), "3");
}

TEST_F(Store, ASettingChangedOnBothSidesIsAskedAbout) {
    onDisk({{"ORVHotKeyCode", PropertyListValue::ofInteger(1)}, {"ORVHotKeyFlags", PropertyListValue::ofInteger(1048576)}});
    start();
    run->general.setHotKey({2, 1048576});
    changeOnDisk("ORVHotKeyCode", PropertyListValue::ofInteger(3));
    ASSERT_EQ(run->store.save(), Outcome::Conflicts);
    ASSERT_EQ(run->store.conflicts().size(), 1U);
    EXPECT_EQ(run->store.conflicts()[0].kind, MergeConflict::Kind::Setting);
    EXPECT_EQ(diskValue("ORVHotKeyCode").integer(), 3);
    run->store.decide(0, MergeSide::Theirs);
    EXPECT_EQ(run->store.save(), Outcome::Unchanged);
    EXPECT_EQ(run->general.hotKey().code, 3);
}

// What cannot be read or written.

TEST_F(Store, AFileThatCannotBeReadIsShownAsSuchAndNeverWritten) {
    presetsOnDisk({labelled("A")});
    preferences.unreadable = true;
    start();
    EXPECT_EQ(loaded, Outcome::Unreadable);
    EXPECT_EQ(run->store.state(), SettingsStore::State::Unreadable);
    EXPECT_FALSE(run->store.problem().isEmpty());
    run->presets.addPreset(0, "New", "x");
    preferences.journal.clear();
    EXPECT_EQ(run->store.save(), Outcome::Unreadable);
    EXPECT_TRUE(preferences.journal.empty());
    preferences.unreadable = false;
    EXPECT_EQ(run->store.reload(), Outcome::Done);
    EXPECT_EQ(run->labels(), List{"A"});
}

TEST_F(Store, AFileThatBecomesUnreadableKeepsTheEditsUnsaved) {
    presetsOnDisk({labelled("A")});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    preferences.unreadable = true;
    EXPECT_EQ(run->store.save(), Outcome::Unreadable);
    EXPECT_EQ(labelsOnDisk(), List{"A"});
    EXPECT_EQ(run->labels(), List{"B"});
    EXPECT_TRUE(run->store.isModified());
    preferences.unreadable = false;
    EXPECT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(labelsOnDisk(), List{"B"});
}

TEST_F(Store, SomethingElseInThePlaceOfTheListIsLeftAlone) {
    onDisk({{"ORVPresets", make.text("odd")}});
    start();
    EXPECT_EQ(loaded, Outcome::Unreadable);
    run->presets.addPreset(0, "New", "x");
    EXPECT_EQ(run->store.save(), Outcome::Unreadable);
    EXPECT_EQ(diskValue("ORVPresets").string(), "odd");
}

TEST_F(Store, AHeldLockIsToldFromAnImpossibleOne) {
    presetsOnDisk({labelled("A")});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    preferences.failAt("lock", 1);
    EXPECT_EQ(run->store.save(), Outcome::Failed);
    preferences.heldElsewhere = true;
    EXPECT_EQ(run->store.save(), Outcome::InUse);
    EXPECT_EQ(labelsOnDisk(), List{"A"});
    EXPECT_TRUE(run->store.isModified());
}

TEST_F(Store, ATextThatStoodThereAlreadyIsNoHindrance) {
    presetsOnDisk({labelled("A"), labelled(std::string_view("a\0b", 3))});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    EXPECT_EQ(run->store.save(), Outcome::Done);
}

TEST_F(Store, ARefusedWritingLosesNothing) {
    presetsOnDisk({labelled("A")});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    preferences.failAt("synchronize", 2); // the first one reads
    EXPECT_EQ(run->store.save(), Outcome::Failed);
    EXPECT_FALSE(run->store.problem().isEmpty());
    EXPECT_TRUE(notifications.posted.empty());
    EXPECT_TRUE(run->store.isModified());
    EXPECT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(labelsOnDisk(), List{"B"});
}

TEST_F(Store, ATextThatTheFileCannotHoldIsNamed) {
    presetsOnDisk({labelled("A")});
    start();
    run->presets.renamePreset(run->preset(0), std::string_view("a\0b", 3));
    EXPECT_EQ(run->store.save(), Outcome::Failed);
    EXPECT_EQ(labelsOnDisk(), List{"A"});
    EXPECT_NE(run->store.problem().english().find(std::string_view("a\0b", 3)), std::string::npos);
}

} // namespace
} // namespace orvane
