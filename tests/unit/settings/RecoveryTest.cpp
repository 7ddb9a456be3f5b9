#include "SettingsDesk.h"

namespace orvane {
namespace {

using test::SettingsTest;
using List = std::vector<std::string>;

class Recovery : public SettingsTest {
protected:
    /// A run that ends without saving what `edit` did.
    template <typename Edit> void crashAfter(const Edit &edit) {
        start();
        edit();
        ASSERT_TRUE(run->store.updateRecovery());
        run.reset();
    }
};

TEST_F(Recovery, UnsavedEditsAreOfferedAtTheNextStart) {
    presetsOnDisk({labelled("A"), labelled("B")});
    crashAfter([&] {
        run->presets.renamePreset(run->preset(0), "Edited");
        run->presets.removePresets(std::array{run->preset(1)});
        run->presets.addPreset(9, "New", "{New}");
    });
    start();
    EXPECT_EQ(run->labels(), (List{"A", "B"}));
    ASSERT_TRUE(run->store.offersRecovery());
    EXPECT_EQ(run->store.recover(), Outcome::Done);
    EXPECT_EQ(run->labels(), (List{"Edited", "New"}));
    EXPECT_FALSE(run->store.offersRecovery());
    EXPECT_TRUE(run->store.isModified());
    EXPECT_STREQ(run->history.undoName(), "Restore Unsaved Edits");
    EXPECT_EQ(labelsOnDisk(), (List{"A", "B"}));
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_EQ(labelsOnDisk(), (List{"Edited", "New"}));
}

TEST_F(Recovery, CountersAndSettingsAreRestoredToo) {
    onDisk({{"ORVPresets", make.list({labelled("A")})},
            {"ORVAutomaticVars", make.dictionary({{"AutoA", make.text("1")}, {"AutoB", make.text("2")}, {"AutoC", make.text("3")}})}});
    crashAfter([&] {
        run->counters.setValue("AutoA", "10");
        run->counters.remove("AutoB");
        const EditHistory::Step step(run->history, "Rename Variable");
        run->counters.rename("AutoC", "AutoD");
        run->general.setHotKey({35, 256});
    });
    changeOnDisk("ORVAutomaticVars", make.dictionary({{"AutoA", make.text("1")}, {"AutoB", make.text("2")}, {"AutoC", make.text("4")}}));
    start();
    ASSERT_EQ(run->store.recover(), Outcome::Done);
    EXPECT_EQ(run->counters.names(), (List{"AutoA", "AutoD"}));
    EXPECT_EQ(run->counters.value("AutoA"), "10");
    EXPECT_EQ(run->counters.value("AutoD"), "4"); // counted on meanwhile
    EXPECT_EQ(run->general.hotKey(), (StoredHotKey{35, 256}));
    run->history.undo();
    EXPECT_EQ(run->counters.names(), (List{"AutoA", "AutoB", "AutoC"}));
    EXPECT_FALSE(run->general.hasHotKey());
}

TEST_F(Recovery, WhatChangedOnDiskMeanwhileIsMerged) {
    presetsOnDisk({labelled("A"), labelled("B")});
    crashAfter([&] { run->presets.renamePreset(run->preset(0), "Edited"); });
    presetsOnDisk({labelled("A"), labelled("B", "{Theirs}"), labelled("C")});
    start();
    ASSERT_EQ(run->store.recover(), Outcome::Done);
    EXPECT_EQ(run->labels(), (List{"Edited", "B", "C"}));
    EXPECT_EQ(run->presets.text(run->preset(1), "directoryName"), "{Theirs}");
}

TEST_F(Recovery, ConflictsWithTheDiskAreAskedAbout) {
    presetsOnDisk({labelled("A", "{Name}")});
    crashAfter([&] { run->presets.setDirectoryName(run->preset(0), "{Edited}"); });
    presetsOnDisk({labelled("A", "{Theirs}")});
    start();
    EXPECT_EQ(run->store.recover(), Outcome::Conflicts);
    EXPECT_FALSE(run->store.isModified());
    EXPECT_TRUE(run->store.offersRecovery());
    run->store.decide(0, MergeSide::Mine);
    EXPECT_EQ(run->store.recover(), Outcome::Done);
    EXPECT_EQ(run->presets.text(run->preset(0), "directoryName"), "{Edited}");
}

TEST_F(Recovery, SavingRemovesTheFile) {
    presetsOnDisk({labelled("A")});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    ASSERT_TRUE(run->store.updateRecovery());
    EXPECT_TRUE(recovery.bytes.has_value());
    ASSERT_EQ(run->store.save(), Outcome::Done);
    EXPECT_FALSE(recovery.bytes.has_value());
}

TEST_F(Recovery, UndoingEverythingRemovesTheFile) {
    presetsOnDisk({labelled("A")});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    ASSERT_TRUE(run->store.updateRecovery());
    run->history.undo();
    ASSERT_TRUE(run->store.updateRecovery());
    EXPECT_FALSE(recovery.bytes.has_value());
}

TEST_F(Recovery, WritesOnlyWhenSomethingHasChangedSince) {
    presetsOnDisk({labelled("A")});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    ASSERT_TRUE(run->store.updateRecovery());
    ASSERT_TRUE(run->store.updateRecovery());
    EXPECT_EQ(recovery.writes, 1);
    run->presets.renamePreset(run->preset(0), "C");
    ASSERT_TRUE(run->store.updateRecovery());
    EXPECT_EQ(recovery.writes, 2);
}

TEST_F(Recovery, ARefusedWritingIsToldAndTriedAgain) {
    presetsOnDisk({labelled("A")});
    start();
    run->presets.renamePreset(run->preset(0), "B");
    recovery.refuses = true;
    EXPECT_FALSE(run->store.updateRecovery());
    recovery.refuses = false;
    EXPECT_TRUE(run->store.updateRecovery());
    EXPECT_TRUE(recovery.bytes.has_value());
}

TEST_F(Recovery, WhatIsNotDecidedOnSurvivesEditingAndASecondCrash) {
    presetsOnDisk({labelled("A"), labelled("B")});
    crashAfter([&] { run->presets.renamePreset(run->preset(0), "First"); });
    crashAfter([&] { run->presets.renamePreset(run->preset(1), "Second"); });
    start();
    ASSERT_EQ(run->store.recover(), Outcome::Done); // the latest first
    EXPECT_EQ(run->labels(), (List{"A", "Second"}));
    ASSERT_TRUE(run->store.offersRecovery());
    ASSERT_EQ(run->store.recover(), Outcome::Done);
    EXPECT_EQ(run->labels(), (List{"First", "Second"}));
    EXPECT_FALSE(run->store.offersRecovery());
}

TEST_F(Recovery, WhatIsNotDecidedOnSurvivesSaving) {
    presetsOnDisk({labelled("A"), labelled("B")});
    crashAfter([&] { run->presets.renamePreset(run->preset(0), "First"); });
    start();
    run->presets.renamePreset(run->preset(1), "Second");
    ASSERT_EQ(run->store.save(), Outcome::Done);
    start();
    ASSERT_TRUE(run->store.offersRecovery());
    ASSERT_EQ(run->store.recover(), Outcome::Done);
    EXPECT_EQ(run->labels(), (List{"First", "Second"}));
}

TEST_F(Recovery, DiscardingRemovesTheFile) {
    presetsOnDisk({labelled("A")});
    crashAfter([&] { run->presets.renamePreset(run->preset(0), "B"); });
    start();
    run->store.discardRecovery();
    EXPECT_FALSE(run->store.offersRecovery());
    EXPECT_FALSE(recovery.bytes.has_value());
    EXPECT_EQ(run->labels(), List{"A"});
}

TEST_F(Recovery, AnUnreadablePreferencesFileLeavesTheOfferAlone) {
    presetsOnDisk({labelled("A")});
    crashAfter([&] { run->presets.renamePreset(run->preset(0), "B"); });
    preferences.unreadable = true;
    start();
    EXPECT_TRUE(run->store.offersRecovery());
    EXPECT_EQ(run->store.recover(), Outcome::Unreadable);
    ASSERT_TRUE(run->store.updateRecovery());
    EXPECT_TRUE(recovery.bytes.has_value());
}

TEST_F(Recovery, AFileThatIsNoneOfOursOffersNothing) {
    presetsOnDisk({labelled("A")});
    for (const char *bytes :
         {"", "garbage", "<plist><dict/></plist>", "<plist><dict><key>ORVUnsavedVersion</key><integer>1</integer></dict></plist>"}) {
        recovery.bytes = bytes;
        start();
        EXPECT_FALSE(run->store.offersRecovery()) << bytes;
    }
}

} // namespace
} // namespace orvane
