#include "unit/menubar/MenuDesk.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane::test {
namespace {

using Titles = std::vector<std::string>;
using Journal = std::vector<std::string>;

/// Does something at every change of a menu.
struct Watch final : MenuObserver {
    explicit Watch(std::function<void()> action) : changed(std::move(action)) {}
    void menuDidChange() override { changed(); }
    std::function<void()> changed;
};

// What stands in the menu.

TEST(PresetItems, StandOnTopInTheOrderOfThePresets) {
    MenuDesk desk;
    desk.setFile(list({labelled("Film"), labelled("Advert"), labelled("Book")}));
    desk.controller->awakeFromNib();
    EXPECT_EQ(desk.titles(), (Titles{"Film", "Advert", "Book", "Preferences…", "Quit Orvane"}));
    for (std::int32_t i = 0; i < 3; ++i) {
        const MenuItem &item = desk.menu.itemAtIndex(static_cast<std::size_t>(i));
        EXPECT_EQ(item.tag, 9);
        EXPECT_EQ(item.representedObject, i);
        EXPECT_EQ(item.keyEquivalent, "");
        EXPECT_TRUE(item.action);
        EXPECT_FALSE(item.isSeparator);
    }
    for (std::size_t i = 3; i < 5; ++i) {
        EXPECT_NE(desk.menu.itemAtIndex(i).tag, 9);
    }
}

TEST(PresetItems, AreMadeAnewByEveryReload) {
    MenuDesk desk;
    desk.setFile(list({labelled("a"), labelled("b"), labelled("c")}));
    desk.controller->awakeFromNib();
    desk.setFile(list({labelled("d"), labelled("e")}));
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.titles(), (Titles{"d", "e", "Preferences…", "Quit Orvane"}));
    EXPECT_EQ(desk.menu.itemAtIndex(1).representedObject, 1);
}

TEST(PresetItems, FollowTheChangeNotificationFromTheFirstOneOn) {
    MenuDesk desk;
    desk.setFile(list({labelled("a")}));
    EXPECT_EQ(desk.desk.notifications.observerCount(), 0U);
    desk.controller->awakeFromNib();
    desk.setFile(list({labelled("b")}));
    EXPECT_EQ(desk.titles().at(0), "a");
    desk.desk.notifications.arrive("SomethingElse");
    EXPECT_EQ(desk.titles().at(0), "a");
    desk.desk.notifications.arrive(ORVPresetConfigurationChangedNotification);
    EXPECT_EQ(desk.titles(), (Titles{"b", "Preferences…", "Quit Orvane"}));
}

TEST(PresetItems, TakeSeveralChangesWhileSuspendedForOne) {
    MenuDesk desk;
    desk.controller->awakeFromNib();
    desk.desk.preferences.journal.clear();
    desk.desk.notifications.suspend();
    for (int i = 0; i < 3; ++i) {
        desk.desk.notifications.arrive(ORVPresetConfigurationChangedNotification);
    }
    desk.desk.notifications.resume();
    EXPECT_EQ(desk.desk.preferences.journal, Journal{"dictionaryWithContentsOfFile"});
}

TEST(PresetItems, AreReadFromTheFileAndNotFromACache) {
    MenuDesk desk;
    desk.setFile(list({labelled("a")}));
    desk.desk.preferences.journal.clear();
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.desk.preferences.journal, Journal{"dictionaryWithContentsOfFile"});
}

TEST(PresetItems, AreThereBeforeTheObserverIs) {
    MenuDesk desk;
    desk.setFile(list({labelled("a")}));
    std::size_t observers = 99;
    Watch watch([&] { observers = desk.desk.notifications.observerCount(); });
    desk.menu.addObserver(watch);
    desk.controller->awakeFromNib();
    desk.menu.removeObserver(watch);
    EXPECT_EQ(observers, 0U);
    EXPECT_EQ(desk.desk.notifications.observerCount(), 1U);
}

TEST(PresetItems, StopFollowingWhenTheControllerGoes) {
    MenuDesk desk;
    desk.controller->awakeFromNib();
    desk.controller.reset();
    EXPECT_EQ(desk.desk.notifications.observerCount(), 0U);
}

TEST(PresetItems, AreRemovedOnlyWhereTheyStandOnTop) {
    MenuDesk desk;
    MenuItem below;
    below.title = "below";
    below.tag = ORVPresetItemTag;
    desk.menu.insertItemAtIndex(below, 2);
    desk.setFile(list({labelled("a")}));
    desk.controller->reloadPrefs();
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.titles(), (Titles{"a", "Preferences…", "Quit Orvane", "below"}));
}

TEST(PresetItems, EndAtTheFirstItemOfAnyOtherTag) {
    for (const int tag : {3, 8, 10, -9}) {
        MenuDesk desk;
        MenuItem fixed;
        fixed.title = "fixed";
        fixed.tag = tag;
        desk.menu.insertItemAtIndex(fixed, 0);
        desk.setFile(list({labelled("a")}));
        desk.controller->reloadPrefs();
        desk.controller->reloadPrefs();
        EXPECT_EQ(desk.titles(), (Titles{"a", "fixed", "Preferences…", "Quit Orvane"})) << tag;
    }
}

TEST(PresetItems, AreRemovedBeforeTheFileIsReadAndMadeAfterwards) {
    MenuDesk desk;
    desk.setFile(list({labelled("a")}));
    desk.controller->reloadPrefs();
    desk.desk.preferences.journal.clear();
    Journal &journal = desk.desk.preferences.journal;
    Watch watch([&] { journal.push_back("menu of " + std::to_string(desk.menu.numberOfItems())); });
    desk.menu.addObserver(watch);
    desk.controller->reloadPrefs();
    desk.menu.removeObserver(watch);
    EXPECT_EQ(journal, (Journal{"menu of 2", "dictionaryWithContentsOfFile", "menu of 3"}));
}

TEST(PresetItems, DoNotNeedAFixedItemBelowThem) {
    Menu menu;
    MenuDesk desk;
    desk.setFile(list({labelled("a"), labelled("b")}));
    while (desk.menu.numberOfItems() > 0) {
        desk.menu.removeItemAtIndex(0);
    }
    desk.controller->reloadPrefs();
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.titles(), (Titles{"a", "b"}));
}

TEST(PresetItems, AreAlwaysEnabled) {
    MenuDesk desk;
    desk.setFile(list({labelled("a")}));
    desk.controller->reloadPrefs();
    ASSERT_TRUE(desk.menu.itemAtIndex(0).validate);
    EXPECT_TRUE(desk.menu.itemAtIndex(0).validate(desk.menu.itemAtIndex(0)));
    EXPECT_TRUE(desk.menu.itemAtIndex(0).isEnabled());
    EXPECT_TRUE(desk.controller->validateMenuItem(desk.menu.itemAtIndex(0)));
    EXPECT_TRUE(desk.controller->validateMenuItem(MenuItem()));
}

TEST(PresetItems, ThousandsOfThemComeAndGo) {
    MenuDesk desk;
    std::vector<PropertyList> presets;
    for (int i = 0; i < 5000; ++i) {
        presets.push_back(labelled(std::to_string(i)));
    }
    desk.setFile(list(presets));
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.menu.numberOfItems(), 5002U);
    EXPECT_EQ(desk.menu.itemAtIndex(4999).representedObject, 4999);
    desk.desk.preferences.disk.reset();
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.menu.numberOfItems(), 2U);
}

TEST(PresetItems, ShowLabelsAsTheyAre) {
    const Titles labels{"R&D", "a\tb", "-", "🎬 Film", "\xD7\xA1\xD7\xA8\xD7\x98", std::string(300, 'x'), "", "two\nlines"};
    MenuDesk desk;
    std::vector<PropertyList> presets;
    presets.reserve(labels.size());
    for (const std::string &label : labels) {
        presets.push_back(dict({{"label", text(label)}, {"directoryName", text("folder")}}));
    }
    desk.setFile(list(presets));
    desk.controller->reloadPrefs();
    Titles shown = desk.titles();
    shown.resize(labels.size());
    EXPECT_EQ(shown, labels);
    for (std::size_t i = 0; i < labels.size(); ++i) {
        EXPECT_FALSE(desk.menu.itemAtIndex(i).isSeparator);
    }
}

TEST(PresetItems, WithoutLabelGoByTheirFolderName) {
    MenuDesk desk;
    desk.setFile(list({preset("{Client}"), dict({{"directoryName", text("{Client}_{Job}")}}), dict({}),
                       dict({{"label", list({})}, {"directoryName", text("x")}}), dict({{"label", number(7)}}), text("no preset"), list({}),
                       labelled("last")}));
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.titles(), (Titles{"Preset", "{Client}_{Job}", "(no label)", "x", "7", "(no label)", "(no label)", "last", "Preferences…",
                                     "Quit Orvane"}));
    EXPECT_EQ(desk.menu.itemAtIndex(7).representedObject, 7); // every preset keeps its index
}

TEST(PresetItems, AreNoneWhenThePreferencesAreBroken) {
    for (const PropertyList &presets : {text("x"), dict({{"a", labelled("a")}}), yes(), number(3), data("x"), PropertyList(), list({})}) {
        MenuDesk desk;
        desk.setFile(presets);
        desk.controller->awakeFromNib();
        EXPECT_EQ(desk.titles(), (Titles{"Preferences…", "Quit Orvane"}));
        EXPECT_EQ(desk.statusBar.items.size(), 1U);
    }
}

TEST(PresetItems, AreNoneWithoutFile) {
    MenuDesk desk;
    desk.controller->awakeFromNib();
    EXPECT_EQ(desk.titles(), (Titles{"Preferences…", "Quit Orvane"}));
    EXPECT_TRUE(desk.desk.alerts.alerts.empty());
}

TEST(PresetItems, GoWhenTheFileCannotBeReadAnyMore) {
    MenuDesk desk;
    desk.setFile(list({labelled("a")}));
    desk.controller->awakeFromNib();
    desk.desk.preferences.unreadable = true;
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.titles(), (Titles{"Preferences…", "Quit Orvane"}));
    EXPECT_EQ(desk.statusBar.items.size(), 1U);
}

TEST(PresetItems, ThatNeverEndAreWarnedOfByTheLog) {
    MenuDesk desk;
    desk.setFile(list({labelled("fine"), preset("{Job"), preset("ends in {"), preset("x", {folder("d", {file("{a\\}")})}),
                       preset("tree", {file("a"), file("b {")})}));
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.desk.log.entries(), (Journal{"Warning: Preset 2 'Preset': looking for the variables of the name 'ends in {' never ends, "
                                                "so that the program hangs once the preset is chosen.",
                                                "Warning: Preset 3 'Preset': looking for the variables of the name '{a\\}' never ends, so "
                                                "that the program hangs once the preset is chosen.",
                                                "Warning: Preset 4 'Preset': looking for the variables of the name 'b {' never ends, so "
                                                "that the program hangs once the preset is chosen."}));
    EXPECT_EQ(desk.menu.numberOfItems(), 7U); // they stay in the menu
}

// The status item.

TEST(StatusItem, ShowsTheMenuUnderTheImage) {
    MenuDesk desk;
    desk.setFile(list({labelled("a")}));
    desk.controller->awakeFromNib();
    ASSERT_EQ(desk.statusBar.items.size(), 1U);
    const FakeStatusItem &item = *desk.statusBar.items[0];
    EXPECT_EQ(item.length, -1.0);
    EXPECT_EQ(item.title, "");
    EXPECT_EQ(item.image, "ORVMenuBar.png");
    EXPECT_TRUE(item.highlights);
    EXPECT_EQ(item.menu, &desk.menu);
    EXPECT_EQ(desk.controller->statusItem(), desk.statusBar.items[0]);
    EXPECT_EQ(desk.statusBar.journal,
              (Journal{"statusItemWithLength -1.000000", "setTitle ''", "setImage ORVMenuBar.png", "setHighlightMode 1", "setMenu"}));
}

TEST(StatusItem, IsThereWithoutFileAndWhenTheFileCannotBeRead) {
    MenuDesk desk;
    desk.controller->awakeFromNib();
    EXPECT_EQ(desk.statusBar.items.size(), 1U);
    desk.setFile(list({}), yes(false));
    desk.controller->reloadPrefs();
    EXPECT_TRUE(desk.statusBar.items.empty());
    desk.desk.preferences.unreadable = true;
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.statusBar.items.size(), 1U);
    desk.desk.preferences.unreadable = false;
    desk.desk.preferences.disk = list({text("a file that holds no dictionary")});
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.statusBar.items.size(), 1U);
}

TEST(StatusItem, IsHiddenWhenTheFileLacksTheKeyWhileTheMenuKeepsItsItems) {
    MenuDesk desk;
    desk.controller->awakeFromNib();
    EXPECT_EQ(desk.statusBar.items.size(), 1U);
    desk.desk.preferences.disk = dict({{ORVPresetsKey, list({labelled("a"), labelled("b")})}});
    desk.controller->reloadPrefs();
    EXPECT_TRUE(desk.statusBar.items.empty());
    EXPECT_EQ(desk.controller->statusItem(), nullptr);
    EXPECT_EQ(desk.titles(), (Titles{"a", "b", "Preferences…", "Quit Orvane"}));
}

TEST(StatusItem, FollowsTheSwitch) {
    MenuDesk desk;
    desk.setFile(list({}), yes(false));
    desk.controller->awakeFromNib();
    EXPECT_EQ(desk.statusBar.journal, Journal{"removeStatusItem none"});
    desk.setFile(list({}), yes());
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.statusBar.items.size(), 1U);
    const auto first = desk.controller->statusItem();
    desk.controller->reloadPrefs(); // from true to true: the same one
    EXPECT_EQ(desk.controller->statusItem(), first);
    EXPECT_EQ(desk.statusBar.made, 1);
    EXPECT_EQ(std::count(desk.statusBar.journal.begin(), desk.statusBar.journal.end(), "setMenu"), 1); // and not set up again
    desk.setFile(list({}), yes(false));
    desk.controller->reloadPrefs();
    EXPECT_TRUE(desk.statusBar.items.empty());
    desk.setFile(list({}), yes());
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.statusBar.made, 2);
    EXPECT_NE(desk.controller->statusItem(), first);
}

TEST(StatusItem, IsNotTouchedAgainWhileItIsShown) {
    MenuDesk desk;
    desk.setFile(list({labelled("a")}));
    desk.controller->awakeFromNib();
    desk.statusBar.journal.clear();
    desk.controller->reloadPrefs();
    desk.controller->setupStatusItem();
    desk.desk.preferences.disk.reset(); // without file it is shown as well
    desk.controller->reloadPrefs();
    EXPECT_EQ(desk.statusBar.journal, Journal());
}

TEST(StatusItem, ReadsTheSwitchAsABooleanValue) {
    for (const PropertyList &on :
         {yes(), number(1), number(-7), real(0.5), text("YES"), text("true"), text("1"), text(" y"), text("007")}) {
        MenuDesk desk;
        desk.setFile(list({}), on);
        desk.controller->awakeFromNib();
        EXPECT_EQ(desk.statusBar.items.size(), 1U);
    }
    for (const PropertyList &off : {yes(false), number(0), real(0.0), text("NO"), text("false"), text("0"), text(""), text("on"),
                                    list({yes()}), dict({}), data("1"), PropertyList()}) {
        MenuDesk desk;
        desk.setFile(list({}), off);
        desk.controller->awakeFromNib();
        EXPECT_TRUE(desk.statusBar.items.empty());
    }
}

TEST(StatusItem, IsTriedAgainAfterThereWasNoRoom) {
    MenuDesk desk;
    desk.statusBar.isFull = true;
    desk.controller->awakeFromNib();
    EXPECT_EQ(desk.controller->statusItem(), nullptr);
    desk.statusBar.isFull = false;
    desk.controller->reloadPrefs();
    EXPECT_NE(desk.controller->statusItem(), nullptr);
}

TEST(StatusItem, IsShownBeforeThePresetItemsAreMade) {
    MenuDesk desk;
    desk.setFile(list({labelled("a")}));
    std::vector<std::size_t> shown;
    Watch watch([&] { shown.push_back(desk.statusBar.items.size()); });
    desk.menu.addObserver(watch);
    desk.controller->awakeFromNib();
    desk.setFile(list({labelled("b")}), yes(false));
    desk.controller->reloadPrefs();
    desk.menu.removeObserver(watch);
    // The first item comes; then the old one goes while the status item is still there, and the new one comes without it.
    EXPECT_EQ(shown, (std::vector<std::size_t>{1, 1, 0}));
}

// The fixed item.

TEST(Preferences, AreShownOnTheirPane) {
    MenuDesk desk;
    desk.click(0);
    EXPECT_EQ(desk.systemPreferences.panes, Titles{std::string(ORVPreferenceDomain)});
}

TEST(Preferences, AreNotMissedAloud) {
    MenuDesk desk;
    desk.systemPreferences.isServed = false;
    desk.click(0);
    EXPECT_EQ(desk.systemPreferences.panes.size(), 1U);
    EXPECT_TRUE(desk.desk.alerts.alerts.empty());
    EXPECT_TRUE(desk.desk.log.entries().empty());
}

} // namespace
} // namespace orvane::test
