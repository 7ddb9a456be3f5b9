#include "unit/core/Desk.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Names = std::vector<std::string>;
using Rows = std::vector<PromptValueRow>;

PropertyList with(const PropertyList &node, std::string_view key, const PropertyList &value) {
    std::vector<std::pair<std::string_view, PropertyList>> entries;
    for (const PropertyListEntry &entry : node.root().dictionary()) {
        if (entry.key != key) {
            entries.emplace_back(entry.key, node.at(entry.value));
        }
    }
    entries.emplace_back(key, value);
    return dict(entries);
}

TEST(Nodes, ReplaceSlashesAndColonsInNames) {
    Desk desk;
    EXPECT_TRUE(desk.makeNode(file("a/b:c")));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"a_b_c"}));
    EXPECT_EQ(ORVPresetManager::cleanFilesystemEntities(".~/x:/"), ".~_x__");
}

TEST(Nodes, SubstituteVariables) {
    Desk desk;
    const Rows rows{{"Project", "Acme/1"}};
    EXPECT_TRUE(desk.makeNode(folder("{Project}", {file("{Project}.txt")}), rows));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"Acme_1/", "Acme_1/Acme_1.txt"}));
}

TEST(Nodes, WithAnEmptyNameFailWithoutAnErrorOfTheirOwn) {
    Desk desk;
    const Rows rows{{"x", ""}};
    EXPECT_FALSE(desk.makeNode(file("{x}"), rows));
    EXPECT_FALSE(desk.makeNode(dict({{"isFolder", yes()}})));
    EXPECT_EQ(desk.creationError(), "(none)");
    EXPECT_FALSE(desk.makeNode(file("..")));
    EXPECT_FALSE(desk.makeNode(file("")));
    EXPECT_EQ(desk.creationError(), "Unable to create file '/jobs/..'."); // the older one stays
}

TEST(Nodes, WithoutChildrenMakeAnEmptyFolder) {
    Desk desk;
    EXPECT_TRUE(desk.makeNode(dict({{"filename", text("d")}, {"isFolder", yes()}})));
    ASSERT_NE(desk.fileSystem.node("/jobs/d"), nullptr);
    EXPECT_TRUE(desk.fileSystem.node("/jobs/d")->isFolder());
}

TEST(Nodes, AreFilesUnlessSaidOtherwise) {
    Desk desk;
    EXPECT_TRUE(desk.makeNode(file("f")));
    EXPECT_TRUE(desk.makeNode(with(file("g"), "isFolder", text("NO"))));
    EXPECT_TRUE(desk.makeNode(with(file("h"), "isFolder", number(1))));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"f", "g", "h/"}));
}

TEST(Nodes, TakeContentsFromTheStore) {
    Desk desk;
    desk.fileSystem.addFile("/home/user/.local/share/Orvane/File Content/letter.txt", "Dear");
    EXPECT_TRUE(desk.makeNode(with(file("x"), "contentFilename", text("letter.txt"))));
    EXPECT_EQ(desk.fileSystem.node("/jobs/x")->contents, "Dear");
}

TEST(Nodes, WhoseContentsAreMissingUnreadableOrAnAliasToAFolderAreEmptyFiles) {
    Desk desk;
    const std::string store = "/home/user/.local/share/Orvane/File Content/";
    desk.fileSystem.addFile(store + "secret", "x").readable = false;
    desk.fileSystem.addFolder("/elsewhere");
    desk.fileSystem.addLink(store + "alias", "/elsewhere");
    desk.fileSystem.addLink(store + "dangling", "/nowhere");
    desk.fileSystem.addLink(store + "cycle", "cycle");
    desk.fileSystem.addSpecial(store + "fifo");
    for (const char *content : {"missing", "secret", "alias", "dangling", "cycle", "fifo"}) {
        EXPECT_TRUE(desk.makeNode(with(file(content), "contentFilename", text(content)))) << content;
        ASSERT_NE(desk.fileSystem.node("/jobs/" + std::string(content)), nullptr);
        EXPECT_EQ(desk.fileSystem.node("/jobs/" + std::string(content))->contents, "");
    }
    EXPECT_EQ(desk.creationError(), "(none)");
}

TEST(Nodes, MadeInTheStoreAreContentsForThoseAfterThem) {
    const auto copy = [](std::string_view name, std::string_view content) { return with(file(name), "contentFilename", text(content)); };
    const std::string store = "/home/user/.local/share/Orvane/File Content";
    for (const std::string &base : {store, std::string("/home/user/.local/share")}) {
        Desk desk;
        desk.fileSystem.addFile(store + "/letter", "Dear");
        const PropertyList tree = folder("T", {copy("x", "T/y"), copy("y", "letter"), copy("z", "T/y"), file("y"), copy("last", "T/y")});
        const PropertyList inStore = folder("Orvane", {folder("File Content", {tree})});
        EXPECT_TRUE(desk.manager->createFileNodeAtBasePathWithReplacePairs(base == store ? tree.root() : inStore.root(), base, {}));
        EXPECT_EQ(desk.fileSystem.node(store + "/T/x")->contents, "") << base;
        EXPECT_EQ(desk.fileSystem.node(store + "/T/z")->contents, "Dear") << base;
        EXPECT_EQ(desk.fileSystem.node(store + "/T/last")->contents, "") << base;
    }
}

TEST(Nodes, WhoseCopyFailsAreEmptyFiles) {
    Desk desk;
    desk.fileSystem.addFile("/home/user/.local/share/Orvane/File Content/c", "text");
    desk.fileSystem.failCall(1, ENOSPC, "copyItem");
    EXPECT_TRUE(desk.makeNode(with(file("x"), "contentFilename", text("c"))));
    EXPECT_EQ(desk.fileSystem.node("/jobs/x")->contents, "");
    EXPECT_EQ(desk.fileSystem.calls("makeEmptyFile").size(), 1U);
}

TEST(Nodes, OfFoldersDoNotLookAtContents) {
    Desk desk;
    EXPECT_TRUE(desk.makeNode(with(folder("d"), "contentFilename", text("c"))));
    EXPECT_TRUE(desk.fileSystem.calls("contentSource").empty());
}

TEST(Nodes, FollowAnAliasToAFile) {
    Desk desk;
    desk.fileSystem.addFile("/elsewhere/real", "truth");
    desk.fileSystem.addLink("/home/user/.local/share/Orvane/File Content/alias", "/elsewhere/real");
    EXPECT_TRUE(desk.makeNode(with(file("x"), "contentFilename", text("alias"))));
    EXPECT_EQ(desk.fileSystem.node("/jobs/x")->contents, "truth");
}

TEST(Nodes, ThatCannotBeMadeLeaveAnErrorWithTheFullPath) {
    Desk desk;
    desk.fileSystem.failItem("f", EACCES);
    desk.fileSystem.failItem("d", EACCES);
    EXPECT_FALSE(desk.makeNode(folder("top", {file("f")})));
    EXPECT_EQ(desk.creationError(), "Unable to create file '/jobs/top/f'.");
    EXPECT_FALSE(desk.makeNode(folder("top", {folder("d")})));
    EXPECT_EQ(desk.creationError(), "Unable to create directory /jobs/top/d.");
    const ORVError error = desk.manager->fileCreationError().value_or(ORVError());
    EXPECT_EQ(error.domain, "ORVPresetManager");
    EXPECT_EQ(error.code, 0);
    EXPECT_EQ(error.userInfo.size(), 1U);
}

TEST(Nodes, ThatCannotBeMadeTellTheLogTheReason) {
    Desk desk;
    desk.fileSystem.failItem("f", EACCES);
    desk.fileSystem.failItem("d", ENOSPC);
    EXPECT_FALSE(desk.makeNode(folder("top", {file("f")})));
    EXPECT_FALSE(desk.makeNode(folder("top", {folder("d")})));
    EXPECT_FALSE(desk.makeNode(folder("top", {file("")})));
    EXPECT_EQ(desk.log.entries(), (Names{"ORV creation error: Unable to create file '/jobs/top/f'. Permission denied.",
                                         "ORV creation error: Unable to create directory /jobs/top/d. No space left on device.",
                                         "ORV creation error: An item in '/jobs/top' has an empty name."}));
}

TEST(Nodes, WhoseCopiesFailTellTheLogOnceForAll) {
    Desk desk;
    desk.fileSystem.addFile("/home/user/.local/share/Orvane/File Content/c", "text");
    const auto copy = [](std::string_view name) { return with(file(name), "contentFilename", text("c")); };
    desk.fileSystem.failCall(1, EDQUOT, "copyItem");
    desk.fileSystem.failCall(3, EIO, "copyItem");
    EXPECT_TRUE(desk.makeNode(folder("top", {copy("1"), copy("2"), copy("3")})));
    EXPECT_EQ(desk.log.entries(),
              Names{"The contents could not be copied, so the file is empty: '/jobs/top/1': Disk quota exceeded (1 more like it)"});
}

TEST(Nodes, ThatAreMadeTellTheLogNothing) {
    Desk desk;
    EXPECT_TRUE(desk.makeNode(folder("top", {file("f")})));
    EXPECT_EQ(desk.log.entries(), Names{});
}

TEST(Nodes, ThatSucceedDoNotClearTheError) {
    Desk desk;
    EXPECT_FALSE(desk.makeNode(file(".")));
    EXPECT_TRUE(desk.makeNode(file("good")));
    EXPECT_EQ(desk.creationError(), "Unable to create file '/jobs/.'.");
}

TEST(Nodes, StopAtTheFirstChildThatFails) {
    Desk desk;
    const PropertyList top =
        with(with(folder("top", {file("1"), file(".."), file("3")}), "permissions", text("700")), "color", text("red"));
    EXPECT_FALSE(desk.makeNode(top));
    EXPECT_EQ(desk.fileSystem.listing("/jobs"), (Names{"top/", "top/1"}));
    EXPECT_FALSE(desk.fileSystem.node("/jobs/top")->attributes.has_value()); // neither label nor mode
    EXPECT_TRUE(desk.fileSystem.calls("removeEverythingMade").empty());      // that is the caller's
}

TEST(Nodes, GetLabelAndModeAfterTheirContents) {
    Desk desk;
    const PropertyList top =
        with(with(folder("top", {with(file("f"), "color", text("orange"))}), "permissions", text("555")), "color", text("gray"));
    EXPECT_TRUE(desk.makeNode(top));
    EXPECT_EQ(desk.fileSystem.journal(), (Names{"beginHierarchy /jobs", "enterFolder top", "makeEmptyFile f label=7",
                                                "leaveFolder top label=1 mode=0555", "forgetContents"}));
}

TEST(Nodes, OfUnknownColoursGetNoLabel) {
    Desk desk;
    for (const char *color : {"", "Red", "grey", "RED", " red", "pink"}) {
        EXPECT_TRUE(desk.makeNode(with(file("x" + std::string(color)), "color", text(color))));
        EXPECT_EQ(desk.fileSystem.node("/jobs/x" + std::string(color))->label, 0) << color;
    }
    EXPECT_TRUE(desk.makeNode(with(file("y"), "color", number(3))));
    EXPECT_EQ(desk.fileSystem.node("/jobs/y")->label, 0);
}

TEST(Nodes, ReadPermissionsAsThreeOctalDigits) {
    const std::pair<const char *, std::optional<unsigned>> cases[] = {
        {"755", 0755U}, {"644", 0644U}, {"000", 0U},    {"999", 0U},    {"abc", 0U},   {"7a5", 7U},    {"7x5", 7U},
        {"75x", 075U},  {" 75", 075U},  {"  7", 7U},    {"   ", 0U},    {"+75", 075U}, {"0x7", 0U},    {"75 ", 075U},
        {"7é5", 7U},    {"é75", 0U},    {"777", 0777U}, {"日本語", 0U}, {"😀7", 0U},    {"-01", 07777U}};
    for (const auto &[text, mode] : cases) {
        EXPECT_EQ(ORVPresetManager::modeOfPermissions(text), mode) << text;
    }
    for (const char *text : {"", "7", "75", "0755", "75é5", "😀75", "😀😀"}) {
        EXPECT_EQ(ORVPresetManager::modeOfPermissions(text), std::nullopt) << text;
    }
}

TEST(Nodes, TakePermissionsOfOtherTypesByTheirText) {
    Desk desk;
    EXPECT_TRUE(desk.makeNode(with(file("n"), "permissions", number(750))));
    EXPECT_EQ(desk.fileSystem.node("/jobs/n")->mode, 0750U);
    EXPECT_TRUE(desk.makeNode(with(file("m"), "permissions", list({}))));
    EXPECT_FALSE(desk.fileSystem.node("/jobs/m")->attributes->mode.has_value());
}

TEST(Nodes, ThatAreNoDictionariesFailLikeOnesWithoutAName) {
    Desk desk;
    EXPECT_FALSE(desk.makeNode(folder("top", {text("child")})));
    EXPECT_EQ(desk.creationError(), "(none)");
}

TEST(Nodes, OfTheSameNameMergeFoldersAndEmptyFiles) {
    Desk desk;
    desk.fileSystem.addFile("/home/user/.local/share/Orvane/File Content/c", "text");
    const PropertyList first = with(with(file("f"), "contentFilename", text("c")), "permissions", text("600"));
    EXPECT_TRUE(desk.makeNode(folder("top", {folder("d", {file("1")}), folder("d", {file("2")}), first, file("f")})));
    EXPECT_EQ(desk.fileSystem.listing("/jobs/top"), (Names{"d/", "d/1", "d/2", "f"}));
    EXPECT_EQ(desk.fileSystem.node("/jobs/top/f")->contents, "");
    EXPECT_EQ(desk.fileSystem.node("/jobs/top/f")->mode, 0600U);
}

TEST(Nodes, OfTheSameNameAndAnotherKindFail) {
    Desk desk;
    EXPECT_FALSE(desk.makeNode(folder("a", {file("x"), folder("x")})));
    EXPECT_EQ(desk.creationError(), "Unable to create directory /jobs/a/x.");
    EXPECT_FALSE(desk.makeNode(folder("b", {folder("x"), file("x")})));
    EXPECT_EQ(desk.creationError(), "Unable to create file '/jobs/b/x'.");
}

TEST(Nodes, NeverEmptyAForeignFile) {
    Desk desk;
    desk.fileSystem.addFile("/jobs/top/f", "precious");
    EXPECT_FALSE(desk.makeNode(folder("top", {file("f")})));
    EXPECT_EQ(desk.fileSystem.node("/jobs/top/f")->contents, "precious");
}

TEST(Nodes, OfFoldersMakeWhatIsMissingOnTheWayButFilesDoNot) {
    Desk desk;
    EXPECT_TRUE(desk.manager->createFileNodeAtBasePathWithReplacePairs(folder("d").root(), "/new/base", {}));
    EXPECT_NE(desk.fileSystem.node("/new/base/d"), nullptr);
    EXPECT_FALSE(desk.manager->createFileNodeAtBasePathWithReplacePairs(file("f").root(), "/other/base/", {}));
    EXPECT_EQ(desk.creationError(), "Unable to create file '/other/base/f'.");
    EXPECT_EQ(desk.fileSystem.node("/other"), nullptr);
}

TEST(Nodes, WhoseBaseCannotBeUsedFail) {
    Desk desk;
    desk.fileSystem.addFile("/file");
    EXPECT_FALSE(desk.manager->createFileNodeAtBasePathWithReplacePairs(folder("d").root(), "/file", {}));
    EXPECT_EQ(desk.creationError(), "Unable to create directory /file/d.");
}

TEST(Nodes, NestedVeryDeeplyAreMade) {
    Desk desk;
    constexpr int Levels = 3000;
    PropertyListBuilder builder;
    PropertyListValue node;
    for (int i = 0; i < Levels; ++i) {
        std::vector<PropertyListEntry> entries{{"filename", builder.string("d")}, {"isFolder", PropertyListValue::ofBoolean(true)}};
        if (i > 0) {
            entries.push_back({"children", builder.array({&node, 1})});
        }
        node = builder.dictionary(entries);
    }
    EXPECT_TRUE(desk.makeNode(builder.finish(node)));
    EXPECT_EQ(desk.fileSystem.calls("leaveFolder").size(), static_cast<std::size_t>(Levels));
    EXPECT_EQ(desk.progress.total, static_cast<std::size_t>(Levels));
}

} // namespace
} // namespace orvane::test
