#include "Documents.h"

#include <functional>
#include <random>

// Long runs of edits in any order, from a fixed seed: whatever was done, undoing and redoing gives exactly the states that there
// were, and an observer that only follows the messages always has the right picture.

namespace orvane {
namespace {

using test::DocumentTest;
using test::TreeMirror;

class DocumentUndo : public DocumentTest {
protected:
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random); }

    std::vector<ItemID> allNodes() {
        std::vector<ItemID> nodes;
        document.forEachBelow(PresetList, [&](ItemID item) {
            if (document.isNode(item)) {
                nodes.push_back(item);
            }
            return true;
        });
        return nodes;
    }
    std::vector<ItemID> someNodes() {
        const auto all = allNodes();
        std::vector<ItemID> some;
        for (std::size_t i = 0; i < 1 + below(4) && !all.empty(); ++i) {
            some.push_back(all[below(all.size())]);
        }
        return some;
    }
    std::vector<ItemID> somePresets() {
        std::vector<ItemID> some;
        for (std::size_t i = 0; i < 1 + below(2) && document.numberOfPresets() > 0; ++i) {
            some.push_back(document.presetAt(below(document.numberOfPresets())));
        }
        return some;
    }
    ItemID anyFolder() {
        std::vector<ItemID> folders;
        document.forEachBelow(PresetList, [&](ItemID item) {
            if (!document.isPreset(item) && document.canInsert(item)) {
                folders.push_back(item);
            }
            return true;
        });
        return folders.empty() ? NoItem : folders[below(folders.size())];
    }
    std::string anyText() {
        std::string text;
        text.assign(1 + below(3), static_cast<char>('a' + below(4)));
        return text;
    }

    void editPresets() {
        const auto presets = somePresets();
        switch (below(5)) {
        case 0:
            document.addPreset(below(5), anyText(), "{" + anyText() + "}");
            break;
        case 1:
            document.duplicatePresets(presets);
            break;
        case 2:
            document.movePresets(presets, below(6));
            break;
        case 3:
            if (document.numberOfPresets() > 3) {
                document.removePresets(presets);
            }
            break;
        default:
            if (!presets.empty()) {
                document.renamePreset(presets[0], anyText());
            }
        }
    }
    void editNodes() {
        const auto nodes = someNodes();
        const ItemID folder = anyFolder();
        switch (below(8)) {
        case 0:
            document.removeNodes(nodes);
            break;
        case 1:
            document.duplicateNodes(nodes);
            break;
        case 2:
            document.setColor(nodes, below(2) == 0 ? "red" : "");
            break;
        case 3:
            document.setFolder(nodes, below(2) == 0);
            break;
        case 4:
            if (!nodes.empty()) {
                document.renameNode(nodes[0], anyText());
            }
            break;
        case 5:
        case 6:
            if (folder != NoItem) {
                document.moveNodes(nodes, folder, below(5));
            }
            break;
        default:
            if (folder != NoItem) {
                document.addNode(folder, below(5), anyText(), below(2) == 0);
            }
        }
    }

    std::mt19937 random{20261121};
};

TEST_F(DocumentUndo, EveryStateComesBackAndObserversFollow) {
    for (int round = 0; round < 40; ++round) {
        load({make.preset("{A}", {make.folder("f", {make.file("x"), make.folder("g", {make.file("y")})}), make.file("z")}), labelled("B"),
              make.text("odd"), make.preset("c", {make.text("odd"), make.folder("h", {})})});
        TreeMirror mirror(document);
        std::vector<PropertyList> states{document.propertyList()};
        for (int edit = 0; edit < 60; ++edit) {
            history.endMerging();
            const bool couldUndo = history.canUndo();
            const std::uint64_t revision = history.revision();
            below(4) == 0 ? editPresets() : editNodes();
            ASSERT_TRUE(mirror.isRight());
            if (history.revision() != revision) {
                states.push_back(document.propertyList());
            } else {
                ASSERT_EQ(history.canUndo(), couldUndo);
            }
        }
        for (std::size_t i = states.size() - 1; i > 0; --i) {
            history.undo();
            ASSERT_TRUE(mirror.isRight());
            ASSERT_TRUE(document.propertyList().root().equals(states[i - 1].root())) << "round " << round << " state " << i - 1;
        }
        ASSERT_FALSE(history.canUndo());
        for (std::size_t i = 1; i < states.size(); ++i) {
            history.redo();
            ASSERT_TRUE(mirror.isRight());
            ASSERT_TRUE(document.propertyList().root().equals(states[i].root())) << "round " << round << " state " << i;
        }
        ASSERT_FALSE(history.canRedo());
    }
}

TEST_F(DocumentUndo, WhatAnEditedDocumentWritesLoadsToTheSame) {
    load({make.preset("{A}", {make.folder("f", {make.file("x")})})});
    for (int edit = 0; edit < 300; ++edit) {
        below(4) == 0 ? editPresets() : editNodes();
        if (below(3) == 0) {
            history.undo();
        }
    }
    const PropertyList written = document.propertyList();
    EditHistory otherHistory;
    PresetDocument other(otherHistory);
    other.load(written);
    for (std::size_t i = 0; i < other.numberOfPresets(); ++i) {
        other.setScript(other.presetAt(i), "makes the record anew");
        other.setScript(other.presetAt(i), "");
    }
    EXPECT_GT(other.numberOfPresets(), 0U);
    EXPECT_TRUE(other.propertyList().root().equals(written.root()));
}

TEST_F(DocumentUndo, TheDocumentMayGoBeforeItsHistory) {
    {
        PresetDocument other(history);
        const ItemID preset = other.addPreset(0, "A", "a");
        other.removePresets(std::array{preset});
        history.undo();
    }
    EXPECT_FALSE(history.canUndo());
    EXPECT_FALSE(history.canRedo());
}

} // namespace
} // namespace orvane
