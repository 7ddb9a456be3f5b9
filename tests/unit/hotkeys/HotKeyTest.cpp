#include "hotkeys/SGHotKey.h"
#include "unit/hotkeys/KeyDesk.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane::test {
namespace {

struct Target {
    std::vector<const SGHotKey *> launched;
    std::vector<const SGHotKey *> stopped;
    void launch(const SGHotKey *sender) { launched.push_back(sender); }
    void stop(const SGHotKey *sender) { stopped.push_back(sender); }
};

constexpr SGSelector Launch = SGSelector::of<Target, &Target::launch>("launch:");
constexpr SGSelector Stop = SGSelector::of<Target, &Target::stop>("stop:");

TEST(SGSelector, IsEqualToThoseOfItsName) {
    EXPECT_EQ(Launch, (SGSelector::of<Target, &Target::launch>("launch:")));
    EXPECT_EQ(SGSelector(), SGSelector());
    EXPECT_NE(Launch, Stop);
    EXPECT_NE(Launch, (SGSelector::of<Target, &Target::launch>("launch")));
    EXPECT_NE(Launch, SGSelector());
}

TEST(SGHotKey, BeginsEmptyWithTheClearCombination) {
    const SGHotKey hotKey;
    EXPECT_FALSE(hotKey.identifier());
    EXPECT_FALSE(hotKey.name());
    EXPECT_TRUE(hotKey.keyCombo().isClearCombo());
    EXPECT_EQ(hotKey.target(), nullptr);
    EXPECT_EQ(hotKey.action(), SGSelector());
    EXPECT_EQ(hotKey.hotKeyID(), EventHotKeyID());
}

TEST(SGHotKey, NoCombinationIsTheClearOne) {
    SGHotKey hotKey("x", std::nullopt);
    EXPECT_TRUE(hotKey.keyCombo().isClearCombo());
    hotKey.setKeyCombo(SGKeyCombo(3, 0x100));
    EXPECT_EQ(hotKey.keyCombo(), SGKeyCombo(3, 0x100));
    hotKey.setKeyCombo(std::nullopt);
    EXPECT_TRUE(hotKey.keyCombo().isClearCombo());
}

TEST(SGHotKey, KeepsWhatItIsGiven) {
    Target target;
    SGHotKey hotKey("x", SGKeyCombo(3, 0x100), &target, Launch);
    hotKey.setName("Show the menu");
    EXPECT_EQ(hotKey.identifier(), "x");
    EXPECT_EQ(hotKey.name(), "Show the menu");
    EXPECT_EQ(hotKey.target(), &target);
    EXPECT_EQ(hotKey.action(), Launch);
    EXPECT_EQ(hotKey.action().name(), "launch:");
}

TEST(SGHotKey, InvokesTheActionWithItselfAsSender) {
    Target target;
    SGHotKey hotKey("x", std::nullopt, &target, Launch);
    hotKey.invoke();
    hotKey.setAction(Stop);
    hotKey.invoke();
    EXPECT_EQ(target.launched, std::vector<const SGHotKey *>{&hotKey});
    EXPECT_EQ(target.stopped, std::vector<const SGHotKey *>{&hotKey});
}

TEST(SGHotKey, InvokesNothingWithoutTargetOrAction) {
    Target target;
    SGHotKey hotKey("x", std::nullopt, nullptr, Launch);
    hotKey.invoke();
    hotKey.setTarget(&target);
    hotKey.setAction(SGSelector());
    hotKey.invoke();
    EXPECT_TRUE(target.launched.empty());
}

TEST(SGHotKey, MatchesAnIdWhenSignatureAndNumberAreEqual) {
    SGHotKey hotKey;
    hotKey.setHotKeyID({7, 3});
    EXPECT_TRUE(hotKey.matchesHotKeyID({7, 3}));
    EXPECT_FALSE(hotKey.matchesHotKeyID({7, 4}));
    EXPECT_FALSE(hotKey.matchesHotKeyID({8, 3}));
}

TEST(SGHotKey, DescriptionHasClassIdentifierAndCombination) {
    KeyDesk desk;
    desk.setNewKeyCodes();
    EXPECT_EQ(SGHotKey("ORVHotkey", SGKeyCombo(36, 0x300)).description(), "<SGHotKey: ORVHotkey, \u2318\u21E7Return>");
    EXPECT_EQ(SGHotKey().description(), "<SGHotKey: (null), (None)>");
}

} // namespace
} // namespace orvane::test
