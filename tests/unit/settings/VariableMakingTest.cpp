#include "VariableMaking.h"
#include "Documents.h"

namespace orvane {
namespace {

class MadeVariables : public test::DocumentTest {
protected:
    VariableMade turn(const std::string &text, const std::string &name) { return makeVariable(document, document.presetAt(0), text, name); }
    [[nodiscard]] std::string top() const { return document.text(document.presetAt(0), "directoryName"); }
};

TEST_F(MadeVariables, StandWhereverTheTextStoodInOneStep) {
    load({make.preset("Acme 2026", {make.folder("Acme", {make.file("Acme-Acme.txt"), make.file("other")})})});
    const VariableMade made = turn("Acme", "Client");
    EXPECT_EQ(made.outcome, VariableMaking::Done);
    EXPECT_EQ(made.names, 3U);
    EXPECT_EQ(top(), "{Client} 2026");
    EXPECT_EQ(names(), "{Client}({Client}-{Client}.txt,other)");
    EXPECT_STREQ(history.undoName(), "Make Variable");
    history.undo();
    EXPECT_EQ(top(), "Acme 2026");
    EXPECT_FALSE(history.canUndo());
}

TEST_F(MadeVariables, JoinThoseThatAreThere) {
    load({make.preset("{Year} Acme", {make.file("{Acme} Acme {Year}Acme")})});
    EXPECT_EQ(turn("Acme", "Year").names, 2U);
    EXPECT_EQ(top(), "{Year} {Year}");
    EXPECT_EQ(names(), "{Acme} {Year} {Year}{Year}");
}

TEST_F(MadeVariables, DoNotComeOutOfThePiecesOfOthers) {
    load({make.preset("{Acme}", {make.file("A{x}cme")})});
    EXPECT_EQ(turn("Acme", "Client").outcome, VariableMaking::NotFound);
    EXPECT_EQ(turn("A{x}", "Client").outcome, VariableMaking::BadText);
    EXPECT_FALSE(history.canUndo());
}

TEST_F(MadeVariables, StayTextBehindABackslash) {
    load({make.preset("{x}", {make.file("\\Acme Acme")})});
    EXPECT_EQ(turn("Acme", "Client").names, 1U);
    EXPECT_EQ(names(), "\\Acme {Client}");
}

TEST_F(MadeVariables, MakeBracesOfPlainNamesEscapedOnes) {
    load({make.preset("Acme", {make.file("a}b")})});
    EXPECT_EQ(turn("Acme", "Client").names, 2U);
    EXPECT_EQ(top(), "{Client}");
    EXPECT_EQ(names(), "a\\}b");
}

TEST_F(MadeVariables, NeedANameAndAText) {
    load({make.preset("Acme")});
    EXPECT_EQ(turn("Acme", "").outcome, VariableMaking::BadName);
    EXPECT_EQ(turn("Acme", "a:b").outcome, VariableMaking::BadName);
    EXPECT_EQ(turn("", "Client").outcome, VariableMaking::BadText);
    EXPECT_EQ(turn("ac", "Client").outcome, VariableMaking::NotFound);
    EXPECT_EQ(top(), "Acme");
}

} // namespace
} // namespace orvane
