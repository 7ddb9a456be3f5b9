#include "CounterList.h"
#include "Documents.h"
#include "VariableIndex.h"

namespace orvane {
namespace {

using List = std::vector<std::string>;

class Variables : public test::DocumentTest {
protected:
    [[nodiscard]] List namesOf(const std::vector<Variable> &variables) const {
        List names;
        for (const Variable &variable : variables) {
            names.push_back(variable.name + " " + std::to_string(variable.uses.size()));
        }
        return names;
    }
    VariableRenaming rename(const std::string &from, const std::string &to, bool mayJoin = false) {
        std::vector<ItemID> all;
        for (std::size_t i = 0; i < document.numberOfPresets(); ++i) {
            all.push_back(document.presetAt(i));
        }
        return renameVariable(document, counters, all, from, to, mayJoin);
    }
    void count(const test::PresetMaker::Entries &entries) { counters.values().load(make.document(make.dictionary(entries))); }

    CounterList counters{history};
    VariableIndex index{document};
};

TEST_F(Variables, AreListedInTheOrderOfThePromptWithTheirPlaces) {
    load({make.preset("{b} {a}", {make.folder("{c}", {make.file("x{b}{AutoN}")})})});
    const auto &found = index.variablesOfPreset(document.presetAt(0));
    EXPECT_EQ(namesOf(found), (List{"b 2", "a 1", "c 1", "AutoN 1"}));
    EXPECT_EQ(found[0].uses[0], (VariableUse{document.presetAt(0), 0, 3}));
    EXPECT_EQ(found[0].uses[1], (VariableUse{at({0, 0}), 1, 4}));
    EXPECT_TRUE(found[3].isAutomatic);
    EXPECT_FALSE(found[0].isAutomatic);
}

TEST_F(Variables, OfAllPresetsAreListedOnce) {
    load({make.preset("{a}"), make.preset("{b}{a}"), make.text("odd")});
    EXPECT_EQ(namesOf(index.allVariables()), (List{"a 2", "b 1"}));
    EXPECT_TRUE(index.isUsed("b"));
    EXPECT_FALSE(index.isUsed("c"));
}

TEST_F(Variables, FollowEditsAndUndoing) {
    load({make.preset("{a}", {make.file("x")})});
    const ItemID preset = document.presetAt(0);
    EXPECT_EQ(namesOf(index.variablesOfPreset(preset)), List{"a 1"});
    document.renameNode(at({0}), "{b}");
    EXPECT_EQ(namesOf(index.variablesOfPreset(preset)), (List{"a 1", "b 1"}));
    history.undo();
    EXPECT_EQ(namesOf(index.variablesOfPreset(preset)), List{"a 1"});
}

TEST_F(Variables, InsideOfAFileAreNotAskedFor) {
    load({make.preset("{a}", {make.file("f", {{"children", make.list({make.file("{hidden}")})}})})});
    EXPECT_EQ(namesOf(index.variablesOfPreset(document.presetAt(0))), List{"a 1"});
}

TEST_F(Variables, AreRenamedEverywhereInOneStep) {
    load({make.preset("{Old} {x}{Old}", {make.folder("{Old}", {make.file("a{Old}b{x}")})}), make.preset("{Old}")});
    EXPECT_EQ(rename("Old", "New"), VariableRenaming::Done);
    EXPECT_EQ(document.text(document.presetAt(0), "directoryName"), "{New} {x}{New}");
    EXPECT_EQ(names(), "{New}(a{New}b{x})");
    EXPECT_EQ(document.text(document.presetAt(1), "directoryName"), "{New}");
    EXPECT_STREQ(history.undoName(), "Rename Variable");
    history.undo();
    EXPECT_EQ(names(), "{Old}(a{Old}b{x})");
    EXPECT_FALSE(history.canUndo());
}

TEST_F(Variables, EscapedBracesStayAsTheyAre) {
    EXPECT_EQ(templateWithRenamedVariable(R"(\{Old}{Old}\{\})", true, "Old", "New"), R"(\{Old}{New}\{\})");
    EXPECT_EQ(templateWithRenamedVariable(R"({a\}b}{a})", true, "a}b", "New"), "{New}{a}");
    EXPECT_EQ(templateWithRenamedVariable("{a{b}", true, "a{b", "New"), "{New}");
    EXPECT_EQ(templateWithRenamedVariable("{old}{Old }{Old", true, "Old", "New"), "{old}{Old }{Old");
}

TEST_F(Variables, OneThatIsNotReplacedInAFileNameIsReplacedUnderItsNewName) {
    load({make.preset("x", {make.file("{a/b}")})});
    EXPECT_EQ(rename("a_b", "c"), VariableRenaming::Done);
    EXPECT_EQ(names(), "{c}");
}

TEST_F(Variables, NamesThatFileNamesCannotHoldAreRefused) {
    load({make.preset("{a}")});
    for (const char *name : {"", "a{", "a}", "a\\", "a:b", "a/b"}) {
        EXPECT_EQ(rename("a", name), VariableRenaming::BadName) << name;
    }
    EXPECT_FALSE(history.canUndo());
}

TEST_F(Variables, TwoBecomeOneOnlyWhenThatIsMeant) {
    load({make.preset("{a}{b}")});
    EXPECT_EQ(rename("a", "b"), VariableRenaming::Exists);
    EXPECT_EQ(rename("a", "b", true), VariableRenaming::Done);
    EXPECT_EQ(document.text(document.presetAt(0), "directoryName"), "{b}{b}");
    EXPECT_EQ(rename("nobody", "c"), VariableRenaming::NotUsed);
}

TEST_F(Variables, ACounterGoesAlong) {
    load({make.preset("{AutoA}")});
    count({{"AutoA", make.text("41")}});
    ASSERT_EQ(rename("AutoA", "AutoB"), VariableRenaming::Done);
    EXPECT_EQ(counters.names(), List{"AutoB"});
    EXPECT_EQ(counters.value("AutoB"), "41");
    history.undo();
    EXPECT_EQ(counters.names(), List{"AutoA"});
    EXPECT_EQ(document.text(document.presetAt(0), "directoryName"), "{AutoA}");
}

TEST_F(Variables, ACounterThatOtherPresetsUseStaysForThem) {
    load({make.preset("{AutoA}"), make.preset("{AutoA}")});
    count({{"AutoA", make.text("41")}});
    ASSERT_EQ(renameVariable(document, counters, std::array{document.presetAt(0)}, "AutoA", "AutoB"), VariableRenaming::Done);
    EXPECT_EQ(counters.value("AutoA"), "41");
    EXPECT_EQ(counters.value("AutoB"), "41");
    EXPECT_EQ(document.text(document.presetAt(1), "directoryName"), "{AutoA}");
}

TEST_F(Variables, ACounterThatTheNewNameHasStays) {
    load({make.preset("{AutoA}")});
    count({{"AutoA", make.text("41")}, {"AutoB", make.text("7")}});
    ASSERT_EQ(rename("AutoA", "AutoB"), VariableRenaming::Done);
    EXPECT_EQ(counters.names(), List{"AutoB"});
    EXPECT_EQ(counters.value("AutoB"), "7");
}

TEST_F(Variables, ACounterWhoseVariableIsNoneAnyMoreGoes) {
    load({make.preset("{AutoA}")});
    count({{"AutoA", make.text("41")}});
    ASSERT_EQ(rename("AutoA", "Number"), VariableRenaming::Done);
    EXPECT_TRUE(counters.names().empty());
}

} // namespace
} // namespace orvane
