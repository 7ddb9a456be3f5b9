#include "NodeText.h"
#include "Documents.h"
#include "PropertyListTexts.h"

namespace orvane {
namespace {

class NodeText : public test::DocumentTest {
protected:
    PropertyListTexts form;
};

TEST_F(NodeText, CarriesSubtreesWholeFromOneDocumentToAnother) {
    load({make.preset("d", {make.folder("f", {make.file("x", {{"color", make.text("red")}, {"x-own", PropertyListValue::ofInteger(7)}})}),
                            make.file("y")})});
    const auto text = textOfNodes(document, std::array{at({1}), at({0}), at({0, 0})}, form);
    ASSERT_TRUE(text.has_value());
    EXPECT_TRUE(text->starts_with("<?xml"));
    EditHistory otherHistory;
    PresetDocument other(otherHistory);
    const ItemID preset = other.addPreset(0, "A", "a");
    const auto nodes = nodesOfText(*text, form);
    ASSERT_TRUE(nodes.has_value());
    const auto made = other.insertNodes(*nodes, other.treeOf(preset), 0, "Paste");
    EXPECT_STREQ(otherHistory.undoName(), "Paste");
    ASSERT_EQ(made.size(), 2U);
    EXPECT_EQ(names(), "f(x),y");
    EXPECT_TRUE(other.nodes(made).root().equals(document.nodes(std::array{at({0}), at({1})}).root()));
}

TEST_F(NodeText, PastedNodesGetFreeNames) {
    load({make.preset("d", {make.file("a.txt"), make.file("b")})});
    const auto text = textOfNodes(document, std::array{at({0}), at({1})}, form);
    document.insertNodes(*nodesOfText(*text, form), tree(), 99, "Paste");
    document.insertNodes(*nodesOfText(*text, form), tree(), 0, "Paste");
    EXPECT_EQ(names(), "a 3.txt,b 3,a.txt,b,a 2.txt,b 2");
    history.undo();
    history.undo();
    EXPECT_EQ(names(), "a.txt,b");
}

TEST_F(NodeText, CuttingIsDeletingUnderAnotherName) {
    load({make.preset("d", {make.file("a"), make.file("b")})});
    const auto text = textOfNodes(document, std::array{at({0})}, form);
    document.removeNodes(std::array{at({0})}, "Cut");
    EXPECT_STREQ(history.undoName(), "Cut");
    document.insertNodes(*nodesOfText(*text, form), tree(), 99, "Paste");
    EXPECT_EQ(names(), "b,a");
}

TEST_F(NodeText, NoNodesGiveNoText) {
    load({make.preset("d")});
    EXPECT_EQ(textOfNodes(document, {}, form), std::nullopt);
}

TEST_F(NodeText, OtherTextsHoldNoNodes) {
    for (const char *text : {"", "hello", "<plist><array/></plist>",
                             "<plist><dict><key>ORVNodesVersion</key><integer>2</integer><key>ORVNodes</key><array/></dict></plist>",
                             "<plist><dict><key>ORVNodesVersion</key><integer>1</integer><key>ORVNodes</key><string/></dict></plist>"}) {
        EXPECT_EQ(nodesOfText(text, form), std::nullopt) << text;
    }
}

TEST_F(NodeText, WhatIsPastedThatIsNoNodeIsKeptAsItIs) {
    load({make.preset("d")});
    const auto made = document.insertNodes(make.document(make.list({make.text("odd"), make.file("x")})), tree(), 0, "Paste");
    ASSERT_EQ(made.size(), 2U);
    EXPECT_FALSE(document.isEditable(made[0]));
    EXPECT_EQ(document.filename(made[1]), "x");
}

} // namespace
} // namespace orvane
