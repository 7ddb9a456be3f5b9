#include "unit/menubar/MenuDesk.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane::test {
namespace {

using Lines = std::vector<std::string>;

/// Three presets in the menu: Film, Advert and one that asks for a value.
class ActivatePreset : public ::testing::Test {
protected:
    ActivatePreset() {
        desk.setFile(list({labelled("Film"), labelled("Advert"), preset("{Job}")}));
        desk.controller->awakeFromNib();
    }
    void send(std::optional<std::int32_t> representedObject) const {
        MenuItem sender;
        sender.representedObject = representedObject;
        desk.controller->activatePreset(sender);
    }
    MenuDesk desk;
};

TEST_F(ActivatePreset, CreatesInTheFrontWindowsFolderWhenTheFileManagerIsActive) {
    desk.frontWindow.active = true;
    desk.frontWindow.shown = "/front";
    desk.click(1);
    EXPECT_EQ(desk.in("/front"), Lines{"Advert/"});
    EXPECT_EQ(desk.desk.manager->contextualDirectory(), "/front");
    EXPECT_TRUE(desk.openPanel.shown.empty());
    EXPECT_TRUE(desk.desk.application.activations.empty()); // the file manager stays in front
}

TEST_F(ActivatePreset, AsksForTheFolderWhenTheFileManagerHasNoWindow) {
    desk.frontWindow.active = true;
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.click(0);
    EXPECT_EQ(desk.in("/chosen"), Lines{"Film/"});
    EXPECT_EQ(desk.openPanel.shown.size(), 1U);
}

TEST_F(ActivatePreset, AsksForTheFolderWhenTheFrontWindowsPathIsEmpty) {
    desk.frontWindow.active = true;
    desk.frontWindow.shown = "";
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.click(0);
    EXPECT_EQ(desk.in("/chosen"), Lines{"Film/"});
}

TEST_F(ActivatePreset, AsksNoFileManagerThatIsNotActive) {
    desk.frontWindow.shown = "/front";
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.click(0);
    EXPECT_EQ(desk.frontWindow.journal, Lines{"fileManagerIsActive"});
    EXPECT_EQ(desk.in("/front"), Lines());
    EXPECT_EQ(desk.in("/chosen"), Lines{"Film/"});
}

TEST_F(ActivatePreset, OffersFoldersOnlyAndNewOnesInThePanel) {
    desk.click(0);
    ASSERT_EQ(desk.openPanel.shown.size(), 1U);
    const OpenPanelSettings &settings = desk.openPanel.shown[0];
    EXPECT_EQ(settings.title, "Orvane: Choose Parent Folder");
    EXPECT_EQ(settings.prompt, "Choose");
    EXPECT_FALSE(settings.canChooseFiles);
    EXPECT_TRUE(settings.canChooseDirectories);
    EXPECT_TRUE(settings.canCreateDirectories);
}

TEST_F(ActivatePreset, TakesTheFirstOfTheChosenFolders) {
    desk.openPanel.filenames = Lines{"/chosen", "/front"};
    desk.click(0);
    EXPECT_EQ(desk.in("/chosen"), Lines{"Film/"});
    EXPECT_EQ(desk.in("/front"), Lines());
}

TEST_F(ActivatePreset, DoesNothingMoreWhenThePanelIsCancelled) {
    desk.desk.manager->setBasePath("/before");
    desk.desk.preferences.journal.clear();
    desk.click(0);
    EXPECT_EQ(desk.desk.preferences.journal, Lines{"synchronize"}); // the manager would have read the presets
    EXPECT_EQ(desk.desk.manager->contextualDirectory(), "/before");
    EXPECT_EQ(desk.managersAskedFor, 0);
    EXPECT_TRUE(desk.desk.alerts.alerts.empty());
    EXPECT_TRUE(desk.desk.workspace.opened.empty());
}

TEST_F(ActivatePreset, CountsAPanelWithoutAnyFolderAsCancelled) {
    desk.openPanel.filenames = Lines();
    desk.click(0);
    EXPECT_EQ(desk.managersAskedFor, 0);
}

TEST_F(ActivatePreset, CountsAnEmptyFirstPathAsCancelled) {
    desk.desk.manager->setBasePath("/before");
    for (const Lines &filenames : {Lines{""}, Lines{"", "/chosen"}}) {
        desk.openPanel.filenames = filenames;
        desk.click(0);
    }
    EXPECT_EQ(desk.openPanel.shown.size(), 2U);
    EXPECT_EQ(desk.managersAskedFor, 0);
    EXPECT_EQ(desk.desk.manager->contextualDirectory(), "/before");
    EXPECT_TRUE(desk.desk.workspace.opened.empty());
}

TEST_F(ActivatePreset, DoesItsStepsInOrder) {
    Lines steps;
    desk.desk.preferences.beforeSynchronize = [&] { steps.emplace_back("synchronize"); };
    desk.frontWindow.hook = [&](const std::string &entry) { steps.push_back(entry); };
    desk.desk.application.whenActivated = [&] { steps.emplace_back("activate"); };
    desk.openPanel.whileShown = [&] { steps.emplace_back("panel"); };
    desk.frontWindow.active = true;
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.click(0);
    // Afterwards the manager reads the presets, and the creation the counters.
    EXPECT_EQ(steps, (Lines{"synchronize", "fileManagerIsActive", "folder", "activate", "panel", "synchronize", "synchronize"}));
    EXPECT_EQ(desk.desk.application.activations, std::vector<bool>{true});
}

TEST_F(ActivatePreset, HandsThePresetsIndexOn) {
    desk.frontWindow.active = true;
    desk.frontWindow.shown = "/front";
    desk.desk.fileSystem.addFile("/home/user/Library/PreferencePanes/ORVPrefPane.prefPane");
    send(1);
    EXPECT_EQ(desk.in("/front"), Lines{"Advert/"});
    desk.desk.workspace.opened.clear();
    send(3); // just behind the last: the preference pane
    EXPECT_EQ(desk.desk.workspace.opened, Lines{"/home/user/Library/PreferencePanes/ORVPrefPane.prefPane"});
    for (const std::int32_t index : {4, -1, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
        send(index);
    }
    EXPECT_EQ(desk.in("/front"), Lines{"Advert/"});
}

TEST_F(ActivatePreset, TakesAnItemWithoutObjectForTheFirstPreset) {
    desk.openPanel.filenames = Lines{"/chosen"};
    send(std::nullopt);
    EXPECT_EQ(desk.openPanel.shown.size(), 1U);
    EXPECT_EQ(desk.in("/chosen"), Lines{"Film/"});
}

TEST_F(ActivatePreset, CreatesWhatThePreferencesHoldAtThatMoment) {
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.setFile(list({labelled("Fresh")})); // and the menu does not know yet
    desk.click(0);
    EXPECT_EQ(desk.in("/chosen"), Lines{"Fresh/"});
}

TEST_F(ActivatePreset, LeavesTheMenuAsItIsUntilAChangeIsAnnounced) {
    const Lines before = desk.titles();
    desk.setFile(list({labelled("Fresh")}), yes(false));
    desk.click(0); // cancelled
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.click(0);
    desk.frontWindow.active = true;
    desk.frontWindow.shown = "/front";
    desk.click(0);
    EXPECT_EQ(desk.in("/chosen"), Lines{"Fresh/"});
    EXPECT_EQ(desk.in("/front"), Lines{"Fresh/"});
    EXPECT_EQ(desk.titles(), before);
    EXPECT_EQ(desk.statusBar.items.size(), 1U);
    desk.desk.notifications.arrive(ORVPresetConfigurationChangedNotification);
    EXPECT_EQ(desk.titles().at(0), "Fresh");
    EXPECT_TRUE(desk.statusBar.items.empty());
}

TEST_F(ActivatePreset, OutlivesAMenuThatIsRebuiltWhileThePanelIsOpen) {
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.openPanel.whileShown = [&] {
        desk.setFile(list({labelled("x"), labelled("y"), labelled("z")}));
        desk.desk.notifications.arrive(ORVPresetConfigurationChangedNotification);
    };
    desk.controller->activatePreset(desk.menu.itemAtIndex(1)); // the item itself, not a copy
    EXPECT_EQ(desk.in("/chosen"), Lines{"y/"});
}

TEST_F(ActivatePreset, KeepsTheIndexWhenAnotherItemTakesThePlaceOfTheChosenOne) {
    const std::optional<PropertyList> before = desk.desk.preferences.disk;
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.openPanel.whileShown = [&] {
        desk.setFile(list({labelled("only")}));
        desk.desk.notifications.arrive(ORVPresetConfigurationChangedNotification);
        EXPECT_FALSE(desk.menu.itemAtIndex(1).representedObject.has_value()); // a fixed one
        desk.desk.preferences.disk = before;                                  // of which the menu does not know
    };
    desk.controller->activatePreset(desk.menu.itemAtIndex(1));
    EXPECT_EQ(desk.in("/chosen"), Lines{"Advert/"});
}

TEST_F(ActivatePreset, OutlivesAMenuThatIsRebuiltWhileThePromptIsOpen) {
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.desk.prompt.answers = {{"Job", "42"}};
    desk.desk.prompt.whileShown = [&](std::span<PromptValueRow>) {
        desk.desk.preferences.disk.reset();
        desk.desk.notifications.arrive(ORVPresetConfigurationChangedNotification);
    };
    desk.click(2);
    EXPECT_EQ(desk.in("/chosen"), Lines{"42/"});
    EXPECT_EQ(desk.menu.numberOfItems(), 2U);
}

TEST_F(ActivatePreset, StartsNoSecondCreationWhileThePromptIsOpen) {
    desk.frontWindow.active = true;
    desk.frontWindow.shown = "/front";
    desk.desk.prompt.answers = {{"Job", "42"}};
    desk.desk.prompt.whileShown = [&](std::span<PromptValueRow> rows) {
        desk.frontWindow.shown = "/chosen"; // the user has gone on to another window
        desk.desk.application.activations.clear();
        desk.click(2);
        desk.click(0);
        EXPECT_EQ(desk.desk.application.activations, (std::vector<bool>{true, true}));
        EXPECT_EQ(rows.size(), 1U);
    };
    desk.click(2);
    EXPECT_EQ(desk.desk.prompt.runs.size(), 1U);
    EXPECT_EQ(desk.in("/front"), Lines{"42/"});
    EXPECT_EQ(desk.in("/chosen"), Lines());
    desk.desk.prompt.whileShown = nullptr;
    desk.click(0); // and afterwards as ever
    EXPECT_EQ(desk.in("/chosen"), Lines{"Film/"});
}

TEST_F(ActivatePreset, StartsNoSecondCreationWhileThePanelIsOpen) {
    desk.openPanel.whileShown = [&] { desk.click(1); };
    desk.click(0);
    EXPECT_EQ(desk.openPanel.shown.size(), 1U);
    desk.openPanel.whileShown = nullptr;
    desk.click(0);
    EXPECT_EQ(desk.openPanel.shown.size(), 2U);
}

TEST_F(ActivatePreset, DoesNothingMoreWithoutAManager) {
    desk.desk.manager.reset();
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.click(0);
    EXPECT_EQ(desk.openPanel.shown.size(), 1U);
    EXPECT_EQ(desk.in("/chosen"), Lines());
}

TEST_F(ActivatePreset, LogsThatAPresetWhichNeverEndsWasChosen) {
    // Its scan starts over for ever, so the preset is made harmless behind the menu's back.
    desk.setFile(list({preset("x {")}));
    desk.controller->reloadPrefs();
    desk.setFile(list({labelled("mended")}));
    desk.openPanel.filenames = Lines{"/chosen"};
    desk.click(0);
    ASSERT_EQ(desk.desk.log.entries().size(), 2U);
    EXPECT_EQ(desk.desk.log.entries()[1],
              "It was chosen: Preset 0 'Preset': looking for the variables of the name 'x {' never ends, so that "
              "the program hangs once the preset is chosen.");
    desk.controller->reloadPrefs();
    desk.click(0);
    EXPECT_EQ(desk.desk.log.entries().size(), 2U);
}

} // namespace
} // namespace orvane::test
