#include "fakes/FakeFinderInformation.h"
#include "fakes/FakeUserFolders.h"
#include "ports/UTF16.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVUTF16.h"
#include "unit/core/Desk.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

TEST(FinderLabel, NumbersFollowTheTable) {
    const std::pair<const char *, long> cases[] = {
        {"", 0},    {"gray", 1},   {"green", 2},          {"purple", 3},        {"blue", 4},          {"yellow", 5},
        {"red", 6}, {"orange", 7}, {"grey", ORVNotFound}, {"Red", ORVNotFound}, {"red ", ORVNotFound}};
    for (const auto &[color, label] : cases) {
        EXPECT_EQ(ORVFinderLabelForColor(color), label) << color;
    }
    EXPECT_EQ(ORVFinderLabelForColor(std::nullopt), 0);
    EXPECT_EQ(ORVNotFound, 9223372036854775807L);
}

TEST(FinderLabel, IsWrittenIntoItsThreeBitsOnly) {
    FakeFinderInformation information;
    information.addItem("/a", 0xFFFF);
    EXPECT_EQ(ORVSetFinderLabelForPath(2, "/a", information), 0);
    EXPECT_EQ(information.flags("/a"), 0xFFF5);
    information.addItem("/b", 0x000E);
    EXPECT_EQ(ORVSetFinderLabelForPath(0, "/b", information), 0);
    EXPECT_EQ(information.flags("/b"), 0x0000);
}

TEST(FinderLabel, AboveSevenIsCutToItsLowBits) {
    FakeFinderInformation information;
    information.addItem("/a", 0);
    EXPECT_EQ(ORVSetFinderLabelForPath(15, "/a", information), 0);
    EXPECT_EQ(information.flags("/a"), 0x000E);
    EXPECT_EQ(ORVSetFinderLabelForPath(8, "/a", information), 0);
    EXPECT_EQ(information.flags("/a"), 0);
}

TEST(FinderLabel, OfAMissingItemIsQuietlyNotSet) {
    FakeFinderInformation information;
    EXPECT_EQ(ORVSetFinderLabelForPath(2, "/missing", information), 0);
    EXPECT_EQ(information.journal(), (std::vector<std::string>{"hasItem /missing"}));
}

TEST(FinderLabel, GivesTheErrorOfAFailedReadOrWrite) {
    FakeFinderInformation information;
    information.addItem("/a", 0x10);
    information.readError = EIO;
    EXPECT_EQ(ORVSetFinderLabelForPath(2, "/a", information), EIO);
    information.readError = 0;
    information.writeError = EACCES;
    EXPECT_EQ(ORVSetFinderLabelForPath(2, "/a", information), EACCES);
    EXPECT_EQ(information.flags("/a"), 0x10);
}

TEST(SupportFolder, IsInTheUsersApplicationSupport) {
    FakeUserFolders folders;
    EXPECT_EQ(ORVApplicationSupportPath(folders), "/home/user/.local/share/Orvane");
}

TEST(SupportFolder, IsAskedForOnceAndKept) {
    Desk desk;
    EXPECT_EQ(desk.manager->applicationSupportPath(), "/home/user/.local/share/Orvane");
    desk.folders.applicationSupport = "/elsewhere";
    EXPECT_EQ(desk.manager->applicationSupportPath(), "/home/user/.local/share/Orvane");
    EXPECT_EQ(desk.folders.supportQuestions, 1);
}

TEST(Characters, AreRemovedUnitByUnit) {
    EXPECT_EQ(stringByDeletingFileSystemEntities("~/a:b/c"), "abc");
    EXPECT_EQ(stringByRemovingCharactersInSet("aabaa", [](char16_t unit) { return unit == u'a'; }), "b");
    EXPECT_EQ(stringByRemovingCharactersInSet("ä😀é", [](char16_t unit) { return unit == u'é'; }), "ä😀");
    EXPECT_EQ(stringByRemovingCharactersInSet("a😀", [](char16_t unit) { return unit == 0xD83D; }), "a\xED\xB8\x80");
    EXPECT_EQ(stringByRemovingCharactersInSet("a\xFF/b", [](char16_t unit) { return unit == u'/'; }), "a\xFF"
                                                                                                      "b");
    EXPECT_EQ(stringByRemovingCharactersInSet("", [](char16_t) { return true; }), "");
}

TEST(Color, IsReadFromHexadecimalDigits) {
    EXPECT_EQ(colorFromHexRGB("FF8000"), (ORVColor{1.0F, 128.0F / 255.0F, 0.0F, 1.0F}));
    EXPECT_EQ(colorFromHexRGB("0x0000FF"), (ORVColor{0.0F, 0.0F, 1.0F, 1.0F}));
    EXPECT_EQ(colorFromHexRGB("0X0000FF"), colorFromHexRGB("0000FF"));
    EXPECT_EQ(colorFromHexRGB("1FF8000"), colorFromHexRGB("FF8000"));
    EXPECT_EQ(colorFromHexRGB(" \tff8000 rest"), colorFromHexRGB("FF8000"));
    EXPECT_EQ(colorFromHexRGB("FFFFFFFFFF"), (ORVColor{1.0F, 1.0F, 1.0F, 1.0F})); // one that does not fit is the largest
}

TEST(Color, IsOpaqueBlackWithoutDigits) {
    const ORVColor black{0.0F, 0.0F, 0.0F, 1.0F};
    for (const char *text : {"", "xyz", "#FF0000", "0x", "0xg", "  "}) {
        EXPECT_EQ(colorFromHexRGB(text), black) << text;
    }
    EXPECT_EQ(colorFromHexRGB(std::nullopt), black);
}

TEST(ButtonState, OnAloneIsTrue) {
    EXPECT_EQ(static_cast<int>(ORVButtonStateForBool(true)), 1);
    EXPECT_EQ(static_cast<int>(ORVButtonStateForBool(false)), 0);
    EXPECT_TRUE(ORVBoolForButtonState(static_cast<ORVButtonState>(1)));
    EXPECT_FALSE(ORVBoolForButtonState(static_cast<ORVButtonState>(0)));
    EXPECT_FALSE(ORVBoolForButtonState(static_cast<ORVButtonState>(-1)));
}

TEST(Paths, AreJoinedLikeThePlatforms) {
    const std::array<const char *, 3> cases[] = {{"/a", "b", "/a/b"}, {"/a/", "b", "/a/b"},     {"/", "b", "/b"},
                                                 {"", "b", "b"},      {"/a", "b/c/", "/a/b/c"}, {"/a//b", "c//d", "/a/b/c/d"},
                                                 {"/a", "", "/a"},    {"/a/", "", "/a"},        {"/a", "/b", "/a/b"},
                                                 {"", "", ""},        {"/", "/", "/"},          {"a", "..", "a/.."}};
    for (const auto &[path, component, expected] : cases) {
        EXPECT_EQ(stringByAppendingPathComponent(path, component), expected) << path << " + " << component;
    }
}

TEST(Paths, AreTakenApartLikeThePlatforms) {
    const std::array<const char *, 3> cases[] = {{"/a/b", "b", "/a"}, {"/a/b/", "b", "/a"}, {"/a", "a", "/"},  {"/", "/", "/"},
                                                 {"a", "a", ""},      {"", "", ""},         {"a/b", "b", "a"}, {"//a//b//", "b", "/a"}};
    for (const auto &[path, last, rest] : cases) {
        EXPECT_EQ(lastPathComponent(path), last) << path;
        EXPECT_EQ(stringByDeletingLastPathComponent(path), rest) << path;
    }
}

TEST(Paths, ExpandALeadingTilde) {
    FakeUserFolders folders;
    EXPECT_EQ(stringByExpandingTildeInPath("~/x", folders), "/home/user/x");
    EXPECT_EQ(stringByExpandingTildeInPath("~", folders), "/home/user");
    EXPECT_EQ(stringByExpandingTildeInPath("~/", folders), "/home/user");
    EXPECT_EQ(stringByExpandingTildeInPath("/a/~", folders), "/a/~");
    EXPECT_EQ(stringByExpandingTildeInPath("~other/x", folders), "~other/x");
}

TEST(UTF16, CountsUnits) {
    EXPECT_EQ(ORVUTF16Length(""), 0U);
    EXPECT_EQ(ORVUTF16Length("aé日"), 3U);
    EXPECT_EQ(ORVUTF16Length("😀"), 2U);
    EXPECT_EQ(ORVUTF16Length("\xFF\xC3"), 2U);
    EXPECT_EQ(ORVUTF16Length("\xED\xA0\x80"), 1U); // half of a pair
}

TEST(UTF16, RoundTripsEveryByteSequence) {
    for (const std::string_view text :
         {"", "aé日😀", "\xFF\xFE", "\xC3(", "\xED\xA0\x80x", "\xF0\x9F\x98", "\xC0\xAF", "\xF5\x80\x80\x80"}) {
        EXPECT_EQ(ORVTextOfUTF16(ORVUTF16OfText(text)), text);
    }
}

} // namespace
} // namespace orvane::test
