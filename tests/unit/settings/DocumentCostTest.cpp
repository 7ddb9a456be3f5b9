#include "Documents.h"

#include <functional>

// Edits in a tree of 10,000 nodes touch a handful of them. The document counts how often it looks at an item, which says more about
// how it will feel than any clock on a busy machine.

namespace orvane {
namespace {

using test::DocumentTest;

class DocumentCost : public DocumentTest {
protected:
    /// 100 folders of 99 files each.
    void SetUp() override {
        std::vector<PropertyListValue> folders;
        for (int i = 0; i < 100; ++i) {
            std::vector<PropertyListValue> files;
            for (int j = 0; j < 99; ++j) {
                files.push_back(make.file("file " + std::to_string(j)));
            }
            folders.push_back(make.folder("folder " + std::to_string(i), files));
        }
        load({make.preset("{Name}", folders)});
    }
    std::size_t visitsOf(const std::function<void()> &edit) {
        const std::size_t before = document.itemsVisited();
        edit();
        return document.itemsVisited() - before;
    }
};

TEST_F(DocumentCost, ARenamingTouchesTheNodeAndWhatIsAboveIt) {
    const ItemID node = at({50, 50});
    EXPECT_LT(visitsOf([&] { document.renameNode(node, "other"); }), 20U);
    EXPECT_LT(visitsOf([&] { history.undo(); }), 20U);
    EXPECT_LT(visitsOf([&] { history.redo(); }), 20U);
}

TEST_F(DocumentCost, NodesComeAndGoAtTheCostOfTheirSiblings) {
    const ItemID folder = at({50});
    EXPECT_LT(visitsOf([&] { document.addNode(folder, 0, "new", false); }), 700U);
    EXPECT_LT(visitsOf([&] { document.removeNodes(std::array{document.childAt(folder, 0)}); }), 300U);
    EXPECT_LT(visitsOf([&] { history.undo(); }), 20U);
}

TEST_F(DocumentCost, AFolderGoesAndComesBackAtOnceWhateverIsInIt) {
    EXPECT_LT(visitsOf([&] { document.removeNodes(std::array{at({0})}); }), 50U);
    EXPECT_LT(visitsOf([&] { history.undo(); }), 20U);
}

TEST_F(DocumentCost, AMoveCostsTheSiblingsOnBothSides) {
    EXPECT_LT(visitsOf([&] { document.moveNodes(std::array{at({1, 98})}, at({70}), 0); }), 700U);
    EXPECT_LT(visitsOf([&] { document.moveNodes(std::array{at({99})}, tree(), 0); }), 700U);
}

TEST_F(DocumentCost, AskingForEveryRowCountsSiblingsOnce) {
    const ItemID folder = at({10});
    const std::size_t visits = visitsOf([&] {
        for (std::size_t row = 0; row < document.numberOfChildren(folder); ++row) {
            EXPECT_EQ(document.indexOf(document.childAt(folder, row)), row);
        }
    });
    EXPECT_LT(visits, 99U * 6U);
}

TEST_F(DocumentCost, MovingAThousandNodesIsInProportionToThem) {
    std::vector<ItemID> nodes;
    for (std::uint32_t i = 0; i < 20; ++i) {
        for (std::uint32_t j = 0; j < 50; ++j) {
            nodes.push_back(at({i, j}));
        }
    }
    EXPECT_LT(visitsOf([&] { document.moveNodes(nodes, at({99}), 40); }), nodes.size() * 60);
    EXPECT_EQ(document.numberOfChildren(at({99})), 1099U);
    EXPECT_LT(visitsOf([&] { document.removeNodes(nodes); }), nodes.size() * 60);
    history.undo();
    history.undo();
    EXPECT_EQ(document.numberOfChildren(at({3})), 99U);
}

TEST_F(DocumentCost, DeletingAllOfALargeFolderIsOneMessage) {
    std::vector<PropertyListValue> files;
    for (int j = 0; j < 10'000; ++j) {
        files.push_back(make.file("file " + std::to_string(j)));
    }
    load({make.preset("{Name}", files)});
    test::TreeMirror mirror(document);
    std::vector<ItemID> all;
    for (std::size_t i = 0; i < document.numberOfChildren(tree()); ++i) {
        all.push_back(document.childAt(tree(), i));
    }
    EXPECT_LT(visitsOf([&] { document.removeNodes(all); }), all.size() * 30);
    EXPECT_EQ(mirror.messages, 1U);
    EXPECT_TRUE(mirror.isRight());
}

} // namespace
} // namespace orvane
