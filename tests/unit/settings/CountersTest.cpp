#include "CounterList.h"

#include "unit/presetfiles/Presets.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {
namespace {

using List = std::vector<std::string>;

class Counters : public testing::Test, public CounterListObserver {
protected:
    void SetUp() override { counters.addObserver(*this); }
    void TearDown() override { counters.removeObserver(*this); }
    void countersDidChange() override { ++messages; }
    PropertyList dictionary(const test::PresetMaker::Entries &entries) { return make.document(make.dictionary(entries)); }
    void load(const test::PresetMaker::Entries &entries) { counters.values().load(dictionary(entries)); }
    std::string valueIn(const PropertyList &list, std::string_view key) {
        const PropertyListValue *value = list.root().find(key);
        return value == nullptr ? "(none)" : std::string(value->string());
    }

    test::PresetMaker make;
    EditHistory history;
    CounterList counters{history};
    int messages = 0;
};

TEST_F(Counters, ShowTheirValueAndWhatComesNext) {
    load({{"AutoJob", make.text("41")}, {"AutoText", make.text("A1")}, {"autojob", PropertyListValue::ofInteger(7)}});
    EXPECT_EQ(counters.names(), (List{"AutoJob", "AutoText", "autojob"}));
    EXPECT_EQ(counters.value("AutoJob"), "41");
    EXPECT_EQ(counters.nextValue("AutoJob"), "42");
    EXPECT_EQ(counters.nextValue("AutoText"), "A1");
    EXPECT_EQ(counters.value("autojob"), "7");
    EXPECT_EQ(counters.nextValue("AutoUnknown"), "0");
}

TEST_F(Counters, AreEditedAndUndone) {
    load({{"AutoJob", make.text("41")}});
    counters.setValue("AutoJob", "5");
    counters.setValue("AutoJob", "50");
    EXPECT_EQ(counters.value("AutoJob"), "50");
    EXPECT_STREQ(history.undoName(), "Change Counter");
    history.undo();
    EXPECT_EQ(counters.value("AutoJob"), "41");
    EXPECT_GE(messages, 3);
}

TEST_F(Counters, TheSameValueIsNoEditAndKeepsItsType) {
    load({{"AutoJob", PropertyListValue::ofInteger(41)}});
    counters.setValue("AutoJob", "41");
    EXPECT_FALSE(history.canUndo());
}

TEST_F(Counters, AResetOneIsOfferedAsZeroAndStaysInTheList) {
    load({{"AutoJob", make.text("41")}});
    counters.reset("AutoJob");
    EXPECT_EQ(counters.nextValue("AutoJob"), "0");
    EXPECT_EQ(counters.names(), List{"AutoJob"});
}

TEST_F(Counters, ADeletedOneIsGoneUntilItIsUndone) {
    load({{"AutoA", make.text("1")}, {"AutoB", make.text("2")}});
    counters.remove("AutoA");
    EXPECT_EQ(counters.names(), List{"AutoB"});
    EXPECT_EQ(valueIn(counters.values().applied(dictionary({{"AutoA", make.text("9")}, {"AutoB", make.text("2")}})), "AutoA"), "(none)");
    history.undo();
    EXPECT_EQ(counters.names(), (List{"AutoA", "AutoB"}));
}

TEST_F(Counters, FollowTheDiskWhereTheyWereNotEdited) {
    load({{"AutoA", make.text("1")}, {"AutoB", make.text("2")}});
    counters.setValue("AutoA", "100");
    messages = 0;
    counters.values().rebase(dictionary({{"AutoA", make.text("3")}, {"AutoB", make.text("4")}}));
    EXPECT_GT(messages, 0);
    EXPECT_EQ(counters.value("AutoA"), "100");
    EXPECT_EQ(counters.value("AutoB"), "4");
}

TEST_F(Counters, UndoingAnEditUncoversWhatTheHelperCountedMeanwhile) {
    load({{"AutoA", make.text("1")}});
    counters.setValue("AutoA", "100");
    counters.values().rebase(dictionary({{"AutoA", make.text("2")}}));
    history.undo();
    EXPECT_EQ(counters.value("AutoA"), "2");
    EXPECT_TRUE(counters.values().overrides().empty());
}

TEST_F(Counters, UndoingAStoredEditBringsBackWhatStoodThereBefore) {
    load({{"AutoA", make.text("1")}});
    counters.setValue("AutoA", "100");
    counters.values().commit(dictionary({{"AutoA", make.text("100")}}));
    history.undo();
    EXPECT_EQ(counters.value("AutoA"), "1");
    EXPECT_EQ(valueIn(counters.values().applied(dictionary({{"AutoA", make.text("100")}})), "AutoA"), "1");
    history.redo();
    EXPECT_EQ(counters.value("AutoA"), "100");
}

TEST_F(Counters, UndoingAStoredDeletionBringsTheCounterBack) {
    load({{"AutoA", make.text("1")}});
    counters.remove("AutoA");
    counters.values().commit(dictionary({}));
    EXPECT_TRUE(counters.names().empty());
    history.undo();
    EXPECT_EQ(counters.value("AutoA"), "1");
}

TEST_F(Counters, ARenamedOneTakesAlongWhatTheHelperCountsMeanwhile) {
    load({{"AutoA", make.text("1")}, {"AutoB", make.text("5")}});
    {
        const EditHistory::Step step(history, "Rename Variable");
        counters.rename("AutoA", "AutoNew");
    }
    EXPECT_EQ(counters.names(), (List{"AutoB", "AutoNew"}));
    const PropertyList stored = counters.values().applied(dictionary({{"AutoA", make.text("2")}, {"AutoB", make.text("5")}}));
    EXPECT_EQ(valueIn(stored, "AutoA"), "(none)");
    EXPECT_EQ(valueIn(stored, "AutoNew"), "2");
    history.undo();
    EXPECT_EQ(counters.names(), (List{"AutoA", "AutoB"}));
}

TEST_F(Counters, ARenamingThatWasStoredIsUndone) {
    load({{"AutoA", make.text("1")}});
    {
        const EditHistory::Step step(history, "Rename Variable");
        counters.rename("AutoA", "AutoNew");
    }
    counters.values().commit(dictionary({{"AutoNew", make.text("1")}}));
    history.undo();
    EXPECT_EQ(counters.names(), List{"AutoA"});
    EXPECT_EQ(counters.value("AutoA"), "1");
    history.redo();
    EXPECT_EQ(counters.names(), List{"AutoNew"});
    EXPECT_EQ(counters.value("AutoNew"), "1");
}

TEST_F(Counters, SomethingElseThanADictionaryCountsAsNone) {
    counters.values().load(make.document(make.text("odd")));
    EXPECT_TRUE(counters.names().empty());
}

} // namespace
} // namespace orvane
