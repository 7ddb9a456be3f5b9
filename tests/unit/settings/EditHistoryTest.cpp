#include "EditHistory.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace orvane {
namespace {

/// Appends a letter, and takes over later letters where it may.
class Letter final : public EditChange {
public:
    Letter(std::string &text, std::string letters, bool joins) : _text(text), _letters(std::move(letters)), _joins(joins) {}
    void redo() override { _text += _letters; }
    void undo() override { _text.resize(_text.size() - _letters.size()); }
    bool absorb(EditChange &later) override {
        auto *other = dynamic_cast<Letter *>(&later);
        if (!_joins || other == nullptr) {
            return false;
        }
        _letters += other->_letters;
        return true;
    }

private:
    std::string &_text;
    std::string _letters;
    bool _joins;
};

class History : public testing::Test {
protected:
    void type(const char *letter, const char *name = "Typing", const std::string &mergeKey = "") {
        const EditHistory::Step step(history, name, mergeKey);
        history.perform(std::make_unique<Letter>(text, letter, true));
    }
    std::string text;
    EditHistory history;
};

TEST_F(History, UndoesAndRedoesStepByStep) {
    type("a", "First");
    type("b", "Second");
    EXPECT_STREQ(history.undoName(), "Second");
    history.undo();
    EXPECT_EQ(text, "a");
    EXPECT_STREQ(history.undoName(), "First");
    EXPECT_STREQ(history.redoName(), "Second");
    history.redo();
    EXPECT_EQ(text, "ab");
    EXPECT_FALSE(history.canRedo());
}

TEST_F(History, AStepInsideOfAnotherJoinsIt) {
    {
        const EditHistory::Step outer(history, "Outer");
        type("a", "Inner");
        type("b", "Inner");
    }
    EXPECT_STREQ(history.undoName(), "Outer");
    history.undo();
    EXPECT_EQ(text, "");
    EXPECT_FALSE(history.canUndo());
}

TEST_F(History, AStepWithoutChangesIsNone) {
    { const EditHistory::Step step(history, "Nothing"); }
    EXPECT_FALSE(history.canUndo());
    EXPECT_STREQ(history.undoName(), "");
}

TEST_F(History, TypingInOneFieldIsOneStep) {
    type("a", "Typing", "field");
    type("b", "Typing", "field");
    type("c", "Typing", "other field");
    history.undo();
    EXPECT_EQ(text, "ab");
    history.undo();
    EXPECT_EQ(text, "");
}

TEST_F(History, LeavingTheFieldEndsTheStep) {
    type("a", "Typing", "field");
    history.endMerging();
    type("b", "Typing", "field");
    history.undo();
    EXPECT_EQ(text, "a");
}

TEST_F(History, TypingAfterUndoingIsAStepOfItsOwn) {
    type("a", "Typing", "field");
    type("x", "Other");
    history.undo();
    type("b", "Typing", "field");
    history.undo();
    EXPECT_EQ(text, "a");
}

TEST_F(History, AChangeAfterUndoingForgetsWhatWasUndone) {
    type("a");
    history.undo();
    type("b");
    EXPECT_FALSE(history.canRedo());
    EXPECT_EQ(text, "b");
}

TEST_F(History, KnowsWhetherThereIsSomethingToSave) {
    EXPECT_FALSE(history.isModified());
    type("a", "Typing", "field");
    EXPECT_TRUE(history.isModified());
    history.markSaved();
    EXPECT_FALSE(history.isModified());
    type("b", "Typing", "field"); // not joined with what was saved
    EXPECT_TRUE(history.isModified());
    history.undo();
    EXPECT_FALSE(history.isModified());
    history.undo();
    EXPECT_TRUE(history.isModified());
}

TEST_F(History, WhatWasSavedIsOutOfReachOnceItWasUndoneAndOverwritten) {
    type("a");
    history.markSaved();
    history.undo();
    type("b");
    EXPECT_TRUE(history.isModified());
    history.undo();
    EXPECT_TRUE(history.isModified());
}

TEST_F(History, ForgetsTheOldestStepsBeyondItsLimit) {
    for (std::size_t i = 0; i < EditHistory::MostSteps + 5; ++i) {
        type("a");
    }
    std::size_t undone = 0;
    for (; history.canUndo(); ++undone) {
        history.undo();
    }
    EXPECT_EQ(undone, EditHistory::MostSteps);
    EXPECT_EQ(text, "aaaaa");
    EXPECT_TRUE(history.isModified()); // the saved state is among those forgotten
}

TEST_F(History, ClearingKeepsWhetherThereIsSomethingToSave) {
    type("a");
    history.clear();
    EXPECT_FALSE(history.canUndo());
    EXPECT_TRUE(history.isModified());
}

TEST_F(History, TellsItsObserversAfterEachStep) {
    struct Counter final : EditHistoryObserver {
        void historyDidChange() override { ++count; }
        int count = 0;
    } observer;
    history.addObserver(observer);
    {
        const EditHistory::Step step(history, "Two");
        type("a");
        type("b");
    }
    EXPECT_EQ(observer.count, 1);
    history.undo();
    EXPECT_EQ(observer.count, 2);
    history.removeObserver(observer);
    history.redo();
    EXPECT_EQ(observer.count, 2);
}

} // namespace
} // namespace orvane
