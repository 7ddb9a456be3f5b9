#include "PosixRecoveryFile.h"

#include "SettingsDesk.h"
#include "TemporaryFolder.h"

#include "fakes/FakeSystemLog.h"
#include "platform/posix/PosixPreferencesStore.h"
#include "platform/propertylist/PropertyListFiles.h"

// The models over real files: what is written, and what stays as it was.

namespace orvane {
namespace {

constexpr const char *Before = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<!-- a remark -->
	<key>foreign</key>
	<date>2020-01-02T03:04:05Z</date>
	<key>ORVPresets</key>
	<array>
		<dict>
			<key>x-preset</key>
			<real>1.5</real>
			<key>label</key>
			<string>A</string>
			<key>fileHierarchy</key>
			<dict>
				<key>children</key>
				<array>
					<dict>
						<key>filename</key>
						<string>x</string>
						<key>x-node</key>
						<data>
						AAEC
						</data>
					</dict>
				</array>
			</dict>
		</dict>
	</array>
	<key>ORVAutomaticVars</key>
	<dict>
		<key>AutoJob</key>
		<string>41</string>
	</dict>
</dict>
</plist>
)";

class SettingsOnDisk : public testing::Test {
protected:
    using Outcome = SettingsStore::Outcome;
    std::string replaced(std::string text, const std::string &from, const std::string &to) {
        const std::size_t found = text.find(from);
        EXPECT_NE(found, std::string::npos) << from;
        return text.replace(found, from.size(), to);
    }

    test::TemporaryFolder folder;
    FakeSystemLog log;
    PosixPreferencesStore preferences{folder / "preferences.plist", folder / "lock", log};
    FakeDistributedNotifications notifications;
    PosixRecoveryFile recovery{folder / "state/unsaved"};
    test::FakeLoginItem loginItem;
    test::SettingsRun run{preferences, notifications, recovery, loginItem};
};

TEST_F(SettingsOnDisk, AnEditChangesItsOwnTextAndEveryOtherByteStays) {
    folder.write("preferences.plist", Before);
    ASSERT_EQ(run.store.load(), Outcome::Done);
    run.presets.renameNode(run.presets.itemAtPlace(run.preset(0), std::array{0U}), "y");
    ASSERT_EQ(run.store.save(), Outcome::Done);
    EXPECT_EQ(folder.read("preferences.plist"), replaced(Before, "<string>x</string>", "<string>y</string>"));
}

TEST_F(SettingsOnDisk, UndoingBringsTheSameBytesBack) {
    folder.write("preferences.plist", Before);
    ASSERT_EQ(run.store.load(), Outcome::Done);
    run.presets.removePresets(std::array{run.preset(0)});
    run.counters.setValue("AutoJob", "7");
    ASSERT_EQ(run.store.save(), Outcome::Done);
    EXPECT_NE(folder.read("preferences.plist"), Before);
    run.history.undo();
    run.history.undo();
    ASSERT_EQ(run.store.save(), Outcome::Done);
    EXPECT_EQ(folder.read("preferences.plist"), Before);
}

TEST_F(SettingsOnDisk, ADamagedFileIsNeverReplaced) {
    const std::string damaged = std::string(Before).substr(0, 300);
    folder.write("preferences.plist", damaged);
    EXPECT_EQ(run.store.load(), Outcome::Unreadable);
    run.presets.addPreset(0, "A", "a");
    EXPECT_EQ(run.store.save(), Outcome::Unreadable);
    EXPECT_EQ(folder.read("preferences.plist"), damaged);
}

TEST_F(SettingsOnDisk, AFileDamagedMeanwhileKeepsTheEditsInTheFileOfUnsavedOnes) {
    folder.write("preferences.plist", Before);
    ASSERT_EQ(run.store.load(), Outcome::Done);
    run.presets.renamePreset(run.preset(0), "Edited");
    folder.write("preferences.plist", "damaged");
    EXPECT_EQ(run.store.save(), Outcome::Unreadable);
    ASSERT_TRUE(run.store.updateRecovery());
    EXPECT_EQ(folder.mode("state/unsaved"), 0600U);
    folder.write("preferences.plist", Before);
    PosixPreferencesStore freshPreferences(folder / "preferences.plist", folder / "lock", log);
    test::SettingsRun next(freshPreferences, notifications, recovery, loginItem);
    ASSERT_EQ(next.store.load(), Outcome::Done);
    ASSERT_EQ(next.store.recover(), Outcome::Done);
    EXPECT_EQ(next.labels(), std::vector<std::string>{"Edited"});
    ASSERT_EQ(next.store.save(), Outcome::Done);
    EXPECT_FALSE(folder.has("state/unsaved"));
    EXPECT_EQ(folder.read("preferences.plist"), replaced(Before, "<string>A</string>", "<string>Edited</string>"));
}

TEST_F(SettingsOnDisk, TheFirstSavingMakesTheFileForTheUserAlone) {
    ASSERT_EQ(run.store.load(), Outcome::Done);
    run.presets.addPreset(0, "A", "{Name}");
    ASSERT_EQ(run.store.save(), Outcome::Done);
    EXPECT_EQ(folder.mode("preferences.plist"), 0600U);
    const auto written = readPropertyList(folder.read("preferences.plist"));
    ASSERT_TRUE(written.has_value());
    EXPECT_TRUE(written->root().find("ORVShowMenubar")->boolean());
    EXPECT_EQ(written->root().find("ORVPresets")->array().size(), 1U);
}

TEST_F(SettingsOnDisk, ATextThatXMLCannotHoldIsNamedAndNothingIsLost) {
    folder.write("preferences.plist", Before);
    ASSERT_EQ(run.store.load(), Outcome::Done);
    EXPECT_FALSE(run.store.canStoreText("a\x01"));
    run.presets.renamePreset(run.preset(0), "a\x01");
    EXPECT_EQ(run.store.save(), Outcome::Failed);
    EXPECT_NE(run.store.problem().english().find("a\x01"), std::string::npos);
    EXPECT_EQ(folder.read("preferences.plist"), Before);
    EXPECT_TRUE(run.store.isModified());
    run.presets.renamePreset(run.preset(0), "ab");
    EXPECT_EQ(run.store.save(), Outcome::Done);
}

} // namespace
} // namespace orvane
