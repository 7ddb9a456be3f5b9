#include "Documents.h"

#include "presets/ORVPropertyListReading.h"

namespace orvane {
namespace {

using test::DocumentTest;
using test::TreeMirror;
using List = std::vector<std::string>;

class Document : public DocumentTest {};

TEST_F(Document, GivesBackWhatItLoaded) {
    load({make.preset("{A}", {make.folder("f", {make.file("x", {{"color", make.text("red")}})})}), labelled("Second")});
    EXPECT_TRUE(document.propertyList().root().equals(
        make.list({make.preset("{A}", {make.folder("f", {make.file("x", {{"color", make.text("red")}})})}), labelled("Second")})));
}

TEST_F(Document, KeepsUnknownKeysAndTypesOnEveryLevelThroughAnEdit) {
    const auto odd = make.dictionary({{"deep", PropertyListValue::ofDate(1.5)}, {"bytes", make.data(std::string_view("\0x", 2))}});
    const auto nodeWith = [&](std::string_view name) {
        return make.dictionary({{"x-node", odd}, {"filename", make.text(name)}, {"permissions", PropertyListValue::ofInteger(644)}});
    };
    const auto presetWith = [&](std::string_view label, std::string_view name) {
        return make.dictionary({{"x-preset", odd},
                                {"label", make.text(label)},
                                {"fileHierarchy", make.dictionary({{"children", make.list({nodeWith(name)})},
                                                                   {"x-root", PropertyListValue::ofReal(2.5, true)},
                                                                   {"isFolder", PropertyListValue::ofInteger(1)}})}});
    };
    load({presetWith("L", "a")});
    document.renamePreset(document.presetAt(0), "M");
    document.renameNode(at({0}), "b");
    EXPECT_TRUE(document.record(document.presetAt(0)).root().equals(presetWith("M", "b")));
}

TEST_F(Document, KeepsTheOrderOfKeys) {
    load({make.dictionary({{"z", make.text("1")}, {"fileHierarchy", make.root({})}, {"label", make.text("L")}, {"a", make.text("2")}})});
    document.renamePreset(document.presetAt(0), "M");
    document.addNode(tree(), 0, "n", false);
    List keys;
    const PropertyList record = document.record(document.presetAt(0));
    for (const PropertyListEntry &entry : record.root().dictionary()) {
        keys.emplace_back(entry.key);
    }
    EXPECT_EQ(keys, (List{"z", "fileHierarchy", "label", "a"}));
}

TEST_F(Document, KeepsWhatIsNoPresetAndNoNodeAsItIs) {
    load({make.text("no preset"), make.preset("d", {make.text("no node"), make.file("x")})});
    const ItemID odd = document.presetAt(0);
    EXPECT_FALSE(document.isEditable(odd));
    document.renamePreset(odd, "L");
    EXPECT_FALSE(document.canInsert(document.treeOf(odd)));
    const ItemID node = document.itemAtPlace(document.presetAt(1), std::array{0U});
    EXPECT_FALSE(document.isEditable(node));
    document.renameNode(node, "n");
    document.movePresets(std::array{odd}, 2);
    EXPECT_TRUE(document.propertyList().root().equals(
        make.list({make.preset("d", {make.text("no node"), make.file("x")}), make.text("no preset")})));
}

TEST_F(Document, AHierarchyOfAnotherTypeStaysUntilThereIsSomethingInIt) {
    load({make.dictionary({{"label", make.text("L")}, {"fileHierarchy", make.text("odd")}})});
    document.renamePreset(document.presetAt(0), "M");
    EXPECT_EQ(ORVTextValue(document.record(document.presetAt(0)).root().find("fileHierarchy")), "odd");
    document.addNode(tree(), 0, "n", false);
    EXPECT_TRUE(document.record(document.presetAt(0)).root().find("fileHierarchy")->isDictionary());
    history.undo();
    EXPECT_EQ(ORVTextValue(document.record(document.presetAt(0)).root().find("fileHierarchy")), "odd");
}

TEST_F(Document, APresetWithoutHierarchyGetsOneWithItsFirstNode) {
    load({labelled("L")});
    document.renamePreset(document.presetAt(0), "M");
    EXPECT_EQ(document.record(document.presetAt(0)).root().find("fileHierarchy"), nullptr);
    document.addNode(tree(), 0, "n", true);
    const PropertyList record = document.record(document.presetAt(0));
    const PropertyListValue *hierarchy = record.root().find("fileHierarchy");
    ASSERT_NE(hierarchy, nullptr);
    EXPECT_TRUE(
        hierarchy->equals(make.root({make.dictionary({{"filename", make.text("n")}, {"isFolder", PropertyListValue::ofBoolean(true)}})})));
}

TEST_F(Document, AFolderThatLosesItsLastChildKeepsAnEmptyList) {
    load({make.preset("d", {make.folder("f", {make.file("x")})})});
    document.removeNodes(std::array{at({0, 0})});
    EXPECT_TRUE(document.record(document.presetAt(0)).root().equals(make.preset("d", {make.folder("f", {})})));
}

TEST_F(Document, UnchangedPresetsShareWhatWasLoaded) {
    load({labelled("A"), labelled("B")});
    const void *before = document.record(document.presetAt(1)).root().storage();
    document.renamePreset(document.presetAt(0), "C");
    EXPECT_EQ(document.propertyList().root().array()[1].storage(), before);
}

TEST_F(Document, ATreeOfAnyDepthIsLoadedEditedAndWritten) {
    constexpr int Depth = 50'000;
    PropertyListValue node = make.file("end");
    for (int i = 0; i < Depth; ++i) {
        node = make.folder("f", {node});
    }
    load({make.preset("d", {node})});
    const ItemID copy = document.duplicateNodes(std::array{at({0})}).front();
    EXPECT_EQ(document.filename(copy), "f 2");
    document.removeNodes(std::array{at({0})});
    EXPECT_EQ(document.numberOfChildren(tree()), 1U);
    EXPECT_TRUE(document.record(document.presetAt(0)).root().isDictionary());
}

// Presets.

TEST_F(Document, AddsAPresetUnderALabelThatIsFree) {
    load({labelled("New Preset"), labelled("New Preset 2")});
    const ItemID preset = document.addPreset(1, "New Preset", "{Name}");
    EXPECT_EQ(labels(), (List{"New Preset", "New Preset 3", "New Preset 2"}));
    EXPECT_EQ(document.text(preset, "directoryName"), "{Name}");
    EXPECT_STREQ(history.undoName(), "Add Preset");
}

TEST_F(Document, ALabelThatIsClearedIsTakenAway) {
    load({labelled("A")});
    const ItemID preset = document.presetAt(0);
    document.renamePreset(preset, "");
    EXPECT_EQ(document.value(preset, "label"), nullptr);
    EXPECT_EQ(document.record(preset).root().find("label"), nullptr) << "an empty one would be an empty item in menus";
    history.undo();
    EXPECT_EQ(document.label(preset), "A");
    history.redo();
    document.renamePreset(preset, "B");
    EXPECT_EQ(document.label(preset), "B");
}

TEST_F(Document, WithoutALabelAPresetGoesByItsFoldersNameTemplate) {
    load({labelled("A"), labelled(""), make.dictionary({{"directoryName", make.text("{Client}")}}), make.dictionary({})});
    EXPECT_EQ(document.title(document.presetAt(0)), "A");
    EXPECT_EQ(document.title(document.presetAt(1)), "{Name}");
    EXPECT_EQ(document.title(document.presetAt(2)), "{Client}");
    EXPECT_EQ(document.title(document.presetAt(3)), "");
}

TEST_F(Document, TheCopyOfAPresetWithoutALabelHasNone) {
    load({labelled(""), make.dictionary({{"directoryName", make.text("{Client}")}})});
    static_cast<void>(document.duplicatePresets(std::array{document.presetAt(0), document.presetAt(1)}));
    EXPECT_EQ(labels(), (List{"", "", "", ""}));
    EXPECT_EQ(document.value(document.presetAt(3), "label"), nullptr);
}

TEST_F(Document, DuplicatesPresetsBehindTheirOriginals) {
    load({make.preset("d", {make.folder("f", {make.file("x")})}), labelled("B")});
    const auto copies = document.duplicatePresets(std::array{document.presetAt(1), document.presetAt(0)});
    EXPECT_EQ(labels(), (List{"Label", "Label 2", "B", "B 2"}));
    ASSERT_EQ(copies.size(), 2U);
    EXPECT_EQ(names(document.treeOf(copies[0])), "f(x)");
    document.renameNode(document.childAt(document.treeOf(copies[0]), 0), "other");
    EXPECT_EQ(names(), "f(x)"); // the original stands by itself
}

TEST_F(Document, DeletesPresetsAndBringsThemBackUnderTheSameIds) {
    load({labelled("A"), labelled("B"), labelled("C"), labelled("D")});
    const ItemID a = document.presetAt(0);
    document.removePresets(std::array{a, document.presetAt(1), document.presetAt(3)});
    EXPECT_EQ(labels(), List{"C"});
    EXPECT_FALSE(document.contains(a));
    EXPECT_STREQ(history.undoName(), "Delete Presets");
    history.undo();
    EXPECT_EQ(labels(), (List{"A", "B", "C", "D"}));
    EXPECT_EQ(document.presetAt(0), a);
    EXPECT_TRUE(document.contains(a));
}

TEST_F(Document, MovesPresetsTogether) {
    load({labelled("A"), labelled("B"), labelled("C"), labelled("D"), labelled("E")});
    document.movePresets(std::array{document.presetAt(4), document.presetAt(0)}, 3);
    EXPECT_EQ(labels(), (List{"B", "C", "A", "E", "D"}));
    document.movePresets(std::array{document.presetAt(0)}, 99);
    EXPECT_EQ(labels(), (List{"C", "A", "E", "D", "B"}));
    history.undo();
    history.undo();
    EXPECT_EQ(labels(), (List{"A", "B", "C", "D", "E"}));
}

TEST_F(Document, MovingAPresetOntoItsOwnPlaceIsNoStep) {
    load({labelled("A"), labelled("B")});
    document.movePresets(std::array{document.presetAt(0)}, 0);
    document.movePresets(std::array{document.presetAt(0)}, 1);
    EXPECT_FALSE(history.canUndo());
}

TEST_F(Document, AScriptWithoutNameTakesTheKeyAway) {
    load({labelled("A")});
    document.setScript(document.presetAt(0), "run.sh");
    EXPECT_EQ(document.text(document.presetAt(0), "scriptFile"), "run.sh");
    document.setScript(document.presetAt(0), "");
    EXPECT_EQ(document.value(document.presetAt(0), "scriptFile"), nullptr);
}

TEST_F(Document, ReplacingAPresetKeepsItsIdAndIsUndone) {
    load({make.preset("d", {make.file("x")}, {{"old", make.text("1")}})});
    const ItemID preset = document.presetAt(0);
    const ItemID node = at({0});
    const auto other = make.dictionary({{"label", make.text("M")}, {"fileHierarchy", make.root({make.file("y"), make.file("z")})}});
    EXPECT_TRUE(document.replacePreset(preset, make.document(other), "Replace"));
    EXPECT_EQ(document.presetAt(0), preset);
    EXPECT_TRUE(document.record(preset).root().equals(other));
    history.undo();
    EXPECT_TRUE(document.record(preset).root().equals(make.preset("d", {make.file("x")}, {{"old", make.text("1")}})));
    EXPECT_EQ(at({0}), node);
}

// Nodes.

TEST_F(Document, AddsNodesUnderNamesThatAreFreeInTheFolder) {
    load({make.preset("d", {make.file("a.txt"), make.folder("v1.0", {})})});
    document.addNode(tree(), 0, "a.txt", false);
    document.addNode(tree(), 99, "v1.0", true);
    EXPECT_EQ(names(), "a 2.txt,a.txt,v1.0,v1.0 2");
}

TEST_F(Document, FilesTakeNoNodes) {
    load({make.preset("d", {make.file("a")})});
    EXPECT_FALSE(document.canInsert(at({0})));
    EXPECT_EQ(document.addNode(at({0}), 0, "x", false), NoItem);
    EXPECT_FALSE(history.canUndo());
}

TEST_F(Document, DeletesAnySelectionAtOnce) {
    load({make.preset("d", {make.file("a"), make.folder("f", {make.file("b"), make.file("c")}), make.file("e"), make.file("g")})});
    document.removeNodes(std::array{at({3}), at({1, 0}), at({0}), at({1})}); // one of them inside of another
    EXPECT_EQ(names(), "e");
    history.undo();
    EXPECT_EQ(names(), "a,f(b,c),e,g");
}

TEST_F(Document, MovesNodesBetweenFoldersInTheirOrder) {
    load({make.preset(
        "d", {make.file("a"), make.folder("f", {make.file("b"), make.file("c")}), make.file("e"), make.folder("g", {make.file("h")})})});
    document.moveNodes(std::array{at({2}), at({1, 1}), at({0})}, at({3}), 0);
    EXPECT_EQ(names(), "f(b),g(a,c,e,h)");
    history.undo();
    EXPECT_EQ(names(), "a,f(b,c),e,g(h)");
    history.redo();
    EXPECT_EQ(names(), "f(b),g(a,c,e,h)");
}

TEST_F(Document, MovesNodesWithinTheirFolder) {
    load({make.preset("d", {make.file("a"), make.file("b"), make.file("c"), make.file("d"), make.file("e")})});
    document.moveNodes(std::array{at({4}), at({1}), at({0})}, tree(), 3);
    EXPECT_EQ(names(), "c,a,b,e,d");
    history.undo();
    EXPECT_EQ(names(), "a,b,c,d,e");
}

TEST_F(Document, MovesNodesFromOnePresetToAnother) {
    load({make.preset("d", {make.file("a"), make.file("b")}), make.preset("e", {make.file("c")})});
    document.moveNodes(std::array{at({1}), at({0})}, tree(1), 1);
    EXPECT_EQ(names(tree(0)), "");
    EXPECT_EQ(names(tree(1)), "c,a,b");
    EXPECT_EQ(document.presetOf(document.childAt(tree(1), 1)), document.presetAt(1));
}

TEST_F(Document, AFolderDoesNotMoveIntoItself) {
    load({make.preset("d", {make.folder("f", {make.folder("g", {})})})});
    EXPECT_FALSE(document.canMove(std::array{at({0})}, at({0})));
    EXPECT_FALSE(document.canMove(std::array{at({0})}, at({0, 0})));
    document.moveNodes(std::array{at({0})}, at({0, 0}), 0);
    EXPECT_EQ(names(), "f(g)");
    EXPECT_FALSE(history.canUndo());
}

TEST_F(Document, DuplicatesNodesWithAllInThem) {
    load({make.preset("d", {make.folder("f", {make.file("x", {{"color", make.text("red")}})}), make.file("a.txt")})});
    const auto copies = document.duplicateNodes(std::array{at({1}), at({0})});
    EXPECT_EQ(names(), "f(x),f 2(x),a.txt,a 2.txt");
    EXPECT_EQ(document.text(document.childAt(copies[0], 0), "color"), "red");
}

TEST_F(Document, AFileThatBecomesAFolderAgainHasItsContentsStill) {
    load({make.preset("d", {make.folder("f", {make.file("x")})})});
    document.setFolder(std::array{at({0})}, false);
    EXPECT_FALSE(document.isFolder(at({0})));
    EXPECT_EQ(
        document.record(document.presetAt(0)).root().find("fileHierarchy")->find("children")->array()[0].find("children")->array().size(),
        1U);
    document.setFolder(std::array{at({0})}, true);
    EXPECT_EQ(names(), "f(x)");
}

TEST_F(Document, ColoursManyNodesInOneStep) {
    load({make.preset("d", {make.file("a"), make.file("b", {{"color", make.text("blue")}})})});
    document.setColor(std::array{at({0}), at({1})}, "red");
    EXPECT_EQ(document.text(at({0}), "color"), "red");
    EXPECT_EQ(document.text(at({1}), "color"), "red");
    history.undo();
    EXPECT_EQ(document.value(at({0}), "color"), nullptr);
    EXPECT_EQ(document.text(at({1}), "color"), "blue");
    document.setColor(std::array{at({1})}, "");
    EXPECT_EQ(document.value(at({1}), "color"), nullptr);
}

TEST_F(Document, PermissionsAreThreeOctalDigitsOrNone) {
    load({make.preset("d", {make.file("a")})});
    for (const char *text : {"75", "0755", "99a", "7 5"}) {
        EXPECT_FALSE(document.setPermissions(std::array{at({0})}, text)) << text;
    }
    EXPECT_FALSE(history.canUndo());
    EXPECT_TRUE(document.setPermissions(std::array{at({0})}, "750"));
    EXPECT_EQ(document.text(at({0}), "permissions"), "750");
    EXPECT_TRUE(document.setPermissions(std::array{at({0})}, ""));
    EXPECT_EQ(document.value(at({0}), "permissions"), nullptr);
}

TEST_F(Document, AValueThatReadsTheSameKeepsItsType) {
    load({make.preset("d", {make.file("a", {{"permissions", PropertyListValue::ofInteger(755)}})})});
    EXPECT_TRUE(document.setPermissions(std::array{at({0})}, "755"));
    EXPECT_EQ(document.value(at({0}), "permissions")->type(), PropertyListType::Integer);
    EXPECT_FALSE(history.canUndo());
}

TEST_F(Document, SetsTheContentFile) {
    load({make.preset("d", {make.file("a")})});
    document.setContentFilename(std::array{at({0})}, "template.txt");
    EXPECT_EQ(document.text(at({0}), "contentFilename"), "template.txt");
    EXPECT_STREQ(history.undoName(), "Change Content File");
}

TEST_F(Document, TypingANameIsOneStep) {
    load({make.preset("d", {make.file("a"), make.file("b")})});
    for (const char *name : {"a1", "a12", "a123"}) {
        document.renameNode(at({0}), name);
    }
    document.renameNode(at({1}), "b1");
    history.undo();
    EXPECT_EQ(names(), "a123,b");
    history.undo();
    EXPECT_EQ(names(), "a,b");
    EXPECT_FALSE(history.canUndo());
}

TEST_F(Document, KnowsPlacesBothWays) {
    load({make.preset("d", {make.file("a"), make.folder("f", {make.file("b"), make.file("c")})})});
    const ItemID c = at({1, 1});
    EXPECT_EQ(document.placeOf(c), (std::vector<std::uint32_t>{1, 1}));
    EXPECT_EQ(document.indexOf(c), 1U);
    EXPECT_EQ(document.parentOf(document.parentOf(c)), tree());
    EXPECT_EQ(at({1, 2}), NoItem);
    document.removeNodes(std::array{at({0})});
    EXPECT_EQ(document.placeOf(c), (std::vector<std::uint32_t>{0, 1}));
}

TEST_F(Document, LoadingAgainTellsObserversAndForgetsTheHistory) {
    load({labelled("A")});
    const TreeMirror mirror(document);
    document.renamePreset(document.presetAt(0), "B");
    load({labelled("C"), labelled("D")});
    EXPECT_TRUE(mirror.isRight());
    EXPECT_FALSE(history.canUndo());
}

TEST_F(Document, WhatIsNoListCountsAsEmpty) {
    document.load(make.document(make.text("odd")));
    EXPECT_EQ(document.numberOfPresets(), 0U);
}

} // namespace
} // namespace orvane
