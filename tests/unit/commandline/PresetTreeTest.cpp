#include "PresetTree.h"

#include "unit/commandline/TestPresets.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(PresetTree, ListsEachFolderBeforeItsContents) {
    PresetMaker make;
    const auto preset = make.preset("{Top}", {make.folder("a", {make.file("b"), make.folder("c", {make.file("d")})}), make.file("e")});
    std::vector<std::pair<std::size_t, std::string>> places;
    for (const TreeItem &item : treeOfPreset(preset)) {
        places.emplace_back(item.depth, item.name);
    }
    const std::vector<std::pair<std::size_t, std::string>> expected{{0, "{Top}"}, {1, "a"}, {2, "b"}, {2, "c"}, {3, "d"}, {1, "e"}};
    EXPECT_EQ(places, expected);
}

TEST(PresetTree, TellsWhatTheEngineWouldMakeOfEachValue) {
    PresetMaker make;
    const auto preset = make.preset(
        "T",
        {make.file("f", {{"permissions", make.text("640")}, {"color", make.text("red")}, {"contentFilename", make.text("c.txt")}}),
         make.folder("d", {}, {{"permissions", make.text("0755")}, {"color", make.text("Red")}, {"contentFilename", make.text("x")}})});
    const Tree tree = treeOfPreset(preset);
    ASSERT_EQ(tree.size(), 3U);
    EXPECT_EQ(tree[1].mode, 0640U);
    EXPECT_EQ(tree[1].label, 6);
    EXPECT_EQ(tree[1].content, "c.txt");
    EXPECT_FALSE(tree[1].isFolder);
    EXPECT_EQ(tree[2].mode, std::nullopt);
    EXPECT_EQ(tree[2].label, 0);
    EXPECT_EQ(tree[2].content, "");
    EXPECT_TRUE(tree[2].isFolder);
}

TEST(PresetTree, APresetWithoutAnythingIsALoneFolder) {
    PresetMaker make;
    const Tree tree = treeOfPreset(make.dictionary({}));
    ASSERT_EQ(tree.size(), 1U);
    EXPECT_TRUE(tree[0].isFolder);
    EXPECT_EQ(tree[0].name, "");
}

TEST(PresetTree, ChildrenOfFilesDoNotCount) {
    PresetMaker make;
    const auto preset = make.preset("T", {make.file("f", {{"children", make.array({make.file("never{")})}})});
    EXPECT_EQ(treeOfPreset(preset).size(), 2U);
    EXPECT_EQ(ORVPresetSurvey(preset).tree.nodes(), 1U);
    EXPECT_EQ(endlessTemplate(ORVPresetSurvey(preset)), "");
}

TEST(TemplateSurvey, CountsWhatIsInTheTopLevelFolder) {
    PresetMaker make;
    EXPECT_EQ(ORVPresetSurvey(make.preset("T", {make.folder("a", {make.file("b")}), make.file("c")})).tree.nodes(), 3U);
}

TEST(TemplateSurvey, FindsANameWhoseScanWouldNeverEnd) {
    PresetMaker make;
    EXPECT_EQ(endlessTemplate(ORVPresetSurvey(make.preset("Job {", {}))),
              "the folder name 'Job {' ends in an opening brace, so that looking for its variables would never end");
    EXPECT_EQ(endlessTemplate(ORVPresetSurvey(make.preset("T", {make.folder("a", {make.file("{a\\}")})}))),
              "the name '{a\\}' ends in an escaped closing brace while a variable is open, so that looking for its variables would "
              "never end");
}

TEST(TemplateSurvey, LooksAtNamesAsTheyAreCleaned) {
    PresetMaker make;
    EXPECT_EQ(endlessTemplate(ORVPresetSurvey(make.preset("T", {make.file("a/b{")}))),
              "the name 'a_b{' ends in an opening brace, so that looking for its variables would never end");
}

TEST(TemplateSurvey, NamesWhoseScanEndsPass) {
    PresetMaker make;
    EXPECT_NE(endlessTemplate(ORVPresetSurvey(make.preset("{a}{", {}))), "");
    for (const char *name : {"{a} {b}", "{ab", "\\{", "{}", "a}", "{a{b}", "}{x}", "{a\\}b}"}) {
        EXPECT_EQ(endlessTemplate(ORVPresetSurvey(make.preset(name, {make.file(name)}))), "") << name;
    }
}

TEST(TemplateSurvey, DeepTreesNeedNoStack) {
    PresetMaker make;
    PropertyListValue node = make.file("end");
    for (int level = 0; level < 200000; ++level) {
        node = make.folder("d", {node});
    }
    const auto preset = make.preset("T", {node});
    EXPECT_EQ(ORVPresetSurvey(preset).tree.nodes(), 200001U);
    EXPECT_EQ(treeOfPreset(preset).back().depth, 200001U);
}

} // namespace
} // namespace orvane
