#include "SettingsDesk.h"

namespace orvane {
namespace {

class General : public testing::Test, public GeneralSettingsObserver {
protected:
    void generalSettingsDidChange() override { ++messages; }
    void load(const test::PresetMaker::Entries &entries, bool exists = true) {
        general.load(make.document(make.dictionary(entries)), exists);
    }

    test::PresetMaker make;
    EditHistory history;
    test::FakeLoginItem loginItem;
    GeneralSettings general{history, loginItem};
    int messages = 0;
};

TEST_F(General, TheMenuBarItemIsReadAsTheHelperReadsIt) {
    load({}, false);
    EXPECT_TRUE(general.showsMenubar());
    load({});
    EXPECT_FALSE(general.showsMenubar());
    load({{"ORVShowMenubar", PropertyListValue::ofInteger(1)}});
    EXPECT_TRUE(general.showsMenubar());
}

TEST_F(General, ShowingInTheMenuBarIsUndone) {
    load({});
    general.setShowsMenubar(true);
    EXPECT_TRUE(general.showsMenubar());
    EXPECT_STREQ(history.undoName(), "Show in Menu Bar");
    history.undo();
    EXPECT_FALSE(general.showsMenubar());
}

TEST_F(General, TheHotKeyIsReadFromNumbersAndDecimalTexts) {
    load({{"ORVHotKeyCode", make.text(" 35x")}, {"ORVHotKeyFlags", PropertyListValue::ofReal(1048576.0)}});
    EXPECT_EQ(general.hotKey(), (StoredHotKey{35, 1048576}));
    load({{"ORVHotKeyCode", make.text("+7")}, {"ORVHotKeyFlags", make.text("none")}});
    EXPECT_EQ(general.hotKey(), (StoredHotKey{7, 0}));
    load({});
    EXPECT_FALSE(general.hasHotKey());
}

TEST_F(General, AHotKeyIsSetAndClearedInOneStepEach) {
    load({});
    general.setHotKey({35, 1048576});
    EXPECT_EQ(general.hotKey(), (StoredHotKey{35, 1048576}));
    general.clearHotKey();
    EXPECT_FALSE(general.hasHotKey());
    history.undo();
    EXPECT_EQ(general.hotKey(), (StoredHotKey{35, 1048576}));
    history.undo();
    EXPECT_FALSE(general.hasHotKey());
    EXPECT_FALSE(history.canUndo());
}

TEST_F(General, TheSameHotKeyKeepsTheTypesOnDisk) {
    load({{"ORVHotKeyCode", make.text("35")}, {"ORVHotKeyFlags", make.text("256")}});
    general.setHotKey({35, 256});
    EXPECT_FALSE(history.canUndo());
}

TEST_F(General, StartingAtLoginIsStoredAtOnce) {
    general.addObserver(*this);
    EXPECT_TRUE(general.setStartsAtLogin(true));
    EXPECT_TRUE(loginItem.enabled);
    EXPECT_EQ(messages, 1);
    loginItem.refuses = true;
    EXPECT_FALSE(general.setStartsAtLogin(false));
    EXPECT_TRUE(general.startsAtLogin());
    EXPECT_FALSE(history.canUndo());
    general.removeObserver(*this);
}

} // namespace
} // namespace orvane
