#include "TreeDrawing.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvane {
namespace {

TreeItem folder(std::size_t depth, std::string name) {
    TreeItem item;
    item.depth = depth;
    item.name = std::move(name);
    item.isFolder = true;
    return item;
}

TreeItem file(std::size_t depth, std::string name) {
    TreeItem item = folder(depth, std::move(name));
    item.isFolder = false;
    return item;
}

const Tree Example{folder(0, "Top"), folder(1, "a"), file(2, "b"), folder(2, "c"), file(3, "d"), file(1, "e"), folder(1, "f")};

TEST(TreeDrawing, DrawsBranchesWithLines) {
    TextStyle style;
    style.unicode = true;
    EXPECT_EQ(drawTree(Example, style), "Top/\n"
                                        "├── a/\n"
                                        "│   ├── b\n"
                                        "│   └── c/\n"
                                        "│       └── d\n"
                                        "├── e\n"
                                        "└── f/\n");
}

TEST(TreeDrawing, DrawsBranchesInASCII) {
    EXPECT_EQ(drawTree(Example, {}), "Top/\n"
                                     "|-- a/\n"
                                     "|   |-- b\n"
                                     "|   `-- c/\n"
                                     "|       `-- d\n"
                                     "|-- e\n"
                                     "`-- f/\n");
}

TEST(TreeDrawing, TellsModeLabelContentAndProblem) {
    TreeItem item = file(1, "x");
    item.mode = 07;
    item.label = 6;
    item.content = "c.txt";
    item.problem = "is wrong";
    EXPECT_EQ(drawTree(Tree{folder(0, "T"), item}, {}), "T/\n`-- x  007  * red  <- c.txt  ! is wrong\n");
}

TEST(TreeDrawing, ControlCharactersDoNotReachTheTerminal) {
    EXPECT_EQ(drawTree(Tree{folder(0, "a\033[2Jb\n")}, {}), "a\\x1b[2Jb\\x0a/\n");
}

TEST(TreeDrawing, ColorsOnlyWhenAsked) {
    TreeItem item = file(1, "x");
    item.label = 7;
    item.problem = "wrong";
    const Tree tree{folder(0, "T"), item};
    EXPECT_EQ(drawTree(tree, {}).find('\033'), std::string::npos);
    TextStyle style;
    style.color = true;
    const std::string drawn = drawTree(tree, style);
    EXPECT_NE(drawn.find("\033[1;34mT\033[0m/"), std::string::npos);
    EXPECT_NE(drawn.find("\033[38;5;208m*\033[0m"), std::string::npos);
}

TEST(TreeDrawing, AMissingNameIsVisible) {
    EXPECT_EQ(drawTree(Tree{folder(0, "")}, {}), "(no name)/\n");
}

TEST(TreeDrawing, DeepBranchesAreCutAndTellTheirLevel) {
    Tree tree;
    for (std::size_t depth = 0; depth < 5000; ++depth) {
        tree.push_back(folder(depth, "d"));
    }
    const std::string drawn = drawTree(tree, {});
    EXPECT_LT(drawn.size(), 5000U * (200 * 4 + 40));
    EXPECT_NE(drawn.find("`-- [level 4999] d/\n"), std::string::npos);
    EXPECT_EQ(drawn.find("[level 200]"), std::string::npos);
    EXPECT_NE(drawn.find("[level 201]"), std::string::npos);
}

TEST(TreeDrawing, JSONNestsAsTheTreeDoes) {
    JSONWriter writer;
    writeTree(writer, Example);
    const auto tree = nlohmann::json::parse(writer.text());
    EXPECT_EQ(tree["name"], "Top");
    ASSERT_EQ(tree["children"].size(), 3U);
    EXPECT_EQ(tree["children"][0]["children"][1]["children"][0]["name"], "d");
    EXPECT_EQ(tree["children"][0]["children"][1]["children"][0]["folder"], false);
    EXPECT_FALSE(tree["children"][1].contains("children"));
    EXPECT_EQ(tree["children"][2]["children"].size(), 0U);
}

TEST(TreeDrawing, JSONLeavesOutWhatIsAbsent) {
    TreeItem item = file(0, "x");
    JSONWriter plain;
    writeTree(plain, Tree{item});
    EXPECT_EQ(plain.text(), R"({"name":"x","folder":false})");
    item.mode = 0640;
    item.label = 1;
    item.content = "c";
    item.problem = "p";
    JSONWriter full;
    writeTree(full, Tree{item});
    EXPECT_EQ(full.text(), R"({"name":"x","folder":false,"label":"gray","mode":"640","content":"c","problem":"p"})");
    JSONWriter none;
    writeTree(none, {});
    EXPECT_EQ(none.text(), "null");
}

TEST(TreeDrawing, CountsInWords) {
    EXPECT_EQ(countOfTree(Example), "4 folders, 3 files");
    EXPECT_EQ(countOfTree(Tree{folder(0, "x"), file(1, "y")}), "1 folder, 1 file");
}

} // namespace
} // namespace orvane
