#include "ports/Menu.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orvane::test {
namespace {

using Titles = std::vector<std::string>;

/// A menu whose items write down their titles when they are chosen.
class ClickInMenu : public ::testing::Test {
protected:
    [[nodiscard]] MenuItem item(std::string title) {
        MenuItem made;
        made.title = std::move(title);
        made.action = [this](const MenuItem &sender) { chosen.push_back(sender.title); };
        return made;
    }
    void append(MenuItem item) { menu.insertItemAtIndex(std::move(item), menu.numberOfItems()); }

    Menu menu;
    Titles chosen;
};

TEST_F(ClickInMenu, RunsTheActionOfThatItemAlone) {
    append(item("a"));
    append(item("b"));
    menu.performActionForItemAtIndex(1);
    EXPECT_EQ(chosen, Titles{"b"});
}

TEST_F(ClickInMenu, DoesNothingWhereNoItemIs) {
    append(item("a"));
    menu.performActionForItemAtIndex(1);
    EXPECT_EQ(chosen, Titles());
}

TEST_F(ClickInMenu, DoesNothingOnASeparatorNorOnAnItemWithoutAction) {
    MenuItem line = item("line");
    line.isSeparator = true;
    append(line);
    MenuItem idle = item("idle");
    idle.action = nullptr;
    append(idle);
    menu.performActionForItemAtIndex(0);
    menu.performActionForItemAtIndex(1);
    EXPECT_EQ(chosen, Titles());
}

TEST_F(ClickInMenu, DoesNothingOnAnItemThatIsDisabledAtThatMoment) {
    bool isEnabled = false;
    Titles asked;
    MenuItem changing = item("changing");
    changing.validate = [&](const MenuItem &sender) {
        asked.push_back(sender.title);
        return isEnabled;
    };
    append(changing);
    menu.performActionForItemAtIndex(0);
    EXPECT_EQ(chosen, Titles());
    isEnabled = true;
    menu.performActionForItemAtIndex(0);
    EXPECT_EQ(chosen, Titles{"changing"});
    EXPECT_EQ(asked, (Titles{"changing", "changing"}));
}

TEST_F(ClickInMenu, HandsOverTheChosenItemEvenWhenTheActionRemovesIt) {
    MenuItem passing = item("passing");
    passing.representedObject = 7;
    std::optional<std::int32_t> representedObject;
    passing.action = [this, &representedObject](const MenuItem &sender) {
        // What the action needs is taken from it first, so that this test is about the item alone.
        Titles &titles = chosen;
        std::optional<std::int32_t> &object = representedObject;
        menu.removeItemAtIndex(0);
        titles.push_back(sender.title);
        object = sender.representedObject;
    };
    append(passing);
    append(item("next")); // takes its place
    menu.performActionForItemAtIndex(0);
    EXPECT_EQ(chosen, Titles{"passing"});
    EXPECT_EQ(representedObject, 7);
    ASSERT_EQ(menu.numberOfItems(), 1U);
    EXPECT_EQ(menu.itemAtIndex(0).title, "next");
}

} // namespace
} // namespace orvane::test
