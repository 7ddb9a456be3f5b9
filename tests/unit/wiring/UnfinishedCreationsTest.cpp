// What the helper does at its start about creations that were ended half-way.

#include "wiring/UnfinishedCreations.h"

#include "fakes/FakeCreationRecovery.h"
#include "fakes/FakeMainThread.h"
#include "fakes/FakeSystemLog.h"
#include "fakes/FakeThreadLauncher.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using Paths = std::vector<std::string>;

class UnfinishedCreationsTest : public testing::Test {
protected:
    static std::vector<std::string> topPaths(const std::vector<CreationRemains> &remains) {
        Paths paths;
        for (const CreationRemains &each : remains) {
            paths.push_back(each.topPath);
        }
        return paths;
    }
    /// What is in the log about a path.
    [[nodiscard]] std::size_t logged(const std::string &text) const {
        const auto entries = log.entries();
        return static_cast<std::size_t>(
            std::count_if(entries.begin(), entries.end(), [&](const std::string &entry) { return entry.find(text) != std::string::npos; }));
    }

    FakeCreationRecovery recovery;
    FakeThreadLauncher threads;
    FakeMainThread mainThread;
    FakeSystemLog log;
    std::vector<std::vector<CreationRemains>> asked;
    std::function<void(bool)> answer;
    std::vector<RemainsRemoval> told;
    UnfinishedCreations unfinished{recovery, threads, mainThread, log,
                                   UnfinishedCreationsOffer{[this](const std::vector<CreationRemains> &remains, auto answered) {
                                                                EXPECT_TRUE(mainThread.isCurrent());
                                                                asked.push_back(remains);
                                                                answer = std::move(answered);
                                                            },
                                                            [this](const RemainsRemoval &removal) {
                                                                EXPECT_TRUE(mainThread.isCurrent());
                                                                told.push_back(removal);
                                                            }}};
};

TEST_F(UnfinishedCreationsTest, NothingIsAskedWhenNothingIsLeft) {
    unfinished.look();
    EXPECT_TRUE(asked.empty());
    EXPECT_TRUE(log.entries().empty());
}

TEST_F(UnfinishedCreationsTest, AllRemainsAreAskedAboutInOneQuestion) {
    recovery.entries = {{"/jobs/One", "0", 3, {}}, {"/jobs/Two", "4", 1, {"/jobs/Two/mine"}}};
    unfinished.look();
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(topPaths(asked.front()), (Paths{"/jobs/One", "/jobs/Two"}));
    EXPECT_EQ(asked.front().back().changed, Paths{"/jobs/Two/mine"});
    EXPECT_EQ(logged("/jobs/One was ended half-way"), 1U);
    EXPECT_EQ(logged("/jobs/Two was ended half-way"), 1U);
    EXPECT_TRUE(recovery.removed.empty() && recovery.kept.empty());
}

TEST_F(UnfinishedCreationsTest, WhatWasChangedAltogetherIsNotAskedAboutButLogged) {
    recovery.entries = {{"/jobs/Mine", "0", 0, {"/jobs/Mine"}}};
    unfinished.look();
    EXPECT_TRUE(asked.empty());
    EXPECT_EQ(logged("/jobs/Mine"), 1U);
    EXPECT_EQ(recovery.entries.size(), 1U) << "'orvane recover' still knows it";
}

TEST_F(UnfinishedCreationsTest, RemovingTakesAwayWhatWasOfferedAndNothingElse) {
    recovery.entries = {{"/jobs/One", "0", 3, {}}, {"/jobs/Two", "1", 2, {}}, {"/jobs/Mine", "2", 0, {"/jobs/Mine"}}};
    unfinished.look();
    recovery.entries.push_back({"/jobs/Later", "3", 7, {}});
    answer(true);
    EXPECT_EQ(recovery.removed, (Paths{"/jobs/One", "/jobs/Two"}));
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told.front().removed, 5U);
    EXPECT_TRUE(told.front().changed.empty());
    EXPECT_TRUE(told.front().left.empty());
    EXPECT_EQ(topPaths(recovery.entries), (Paths{"/jobs/Mine", "/jobs/Later"}));
    EXPECT_EQ(logged("left, removed: "), 2U);
}

TEST_F(UnfinishedCreationsTest, WhatWasChangedWhileTheQuestionStoodIsTold) {
    recovery.entries = {{"/jobs/One", "0", 3, {}}};
    unfinished.look();
    recovery.entries = {{"/jobs/One", "0", 2, {"/jobs/One/Notes"}}};
    recovery.heldBack = 1; // the folder around it
    answer(true);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told.front().removed, 1U);
    EXPECT_EQ(told.front().changed, Paths{"/jobs/One/Notes"});
    EXPECT_TRUE(told.front().left.empty()) << "it stays for a reason that is told";
}

TEST_F(UnfinishedCreationsTest, WhatCannotBeRemovedIsTold) {
    recovery.entries = {{"/jobs/One", "0", 3, {}}};
    recovery.heldBack = 2;
    unfinished.look();
    answer(true);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told.front().removed, 1U);
    EXPECT_EQ(told.front().left, Paths{"/jobs/One"});
}

TEST_F(UnfinishedCreationsTest, WhatAnotherProgramHasRemovedMeanwhileIsNotRemovedAgain) {
    recovery.entries = {{"/jobs/One", "0", 3, {}}};
    unfinished.look();
    recovery.entries = {{"/jobs/Other", "0", 9, {}}}; // the entry was used again
    answer(true);
    EXPECT_TRUE(recovery.removed.empty());
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told.front().removed, 0U);
    EXPECT_TRUE(told.front().left.empty());
}

TEST_F(UnfinishedCreationsTest, WhatIsInTheHandsOfAnotherProgramJustThenIsNotTakenForGone) {
    recovery.entries = {{"/jobs/One", "0", 3, {}}, {"/jobs/Two", "1", 2, {}}};
    unfinished.look();
    recovery.busy = {"1"};
    recovery.whenRemoving = [this] { recovery.busy.clear(); };
    answer(true);
    EXPECT_EQ(recovery.removed, Paths{"/jobs/One"});
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told.front().removed, 3U);
    EXPECT_EQ(told.front().left, Paths{"/jobs/Two"});
}

TEST_F(UnfinishedCreationsTest, KeepingForgetsAllThatWasOffered) {
    recovery.entries = {{"/jobs/One", "0", 3, {}}, {"/jobs/Two", "1", 2, {}}, {"/jobs/Mine", "2", 0, {"/jobs/Mine"}}};
    unfinished.look();
    answer(false);
    EXPECT_EQ(recovery.kept, (Paths{"/jobs/One", "/jobs/Two"}));
    EXPECT_EQ(topPaths(recovery.entries), Paths{"/jobs/Mine"});
    EXPECT_TRUE(recovery.removed.empty());
    EXPECT_TRUE(told.empty());
    EXPECT_EQ(logged("is kept"), 2U);
}

TEST_F(UnfinishedCreationsTest, NoAnswerLeavesEverythingForTheNextStart) {
    recovery.entries = {{"/jobs/One", "0", 3, {}}};
    unfinished.look();
    answer = nullptr;
    EXPECT_EQ(recovery.entries.size(), 1U);
    EXPECT_TRUE(told.empty());
}

TEST_F(UnfinishedCreationsTest, DisksAreLookedAtBesideTheMainThread) {
    threads.mode = FakeThreadLauncher::Mode::Real;
    recovery.entries = {{"/jobs/One", "0", 3, {}}};
    unfinished.look();
    EXPECT_TRUE(mainThread.runUntil([&] { return !asked.empty(); }));
    threads.joinAll();
    answer(true);
    EXPECT_TRUE(told.empty()) << "the answer does not wait for the removal";
    EXPECT_TRUE(mainThread.runUntil([&] { return !told.empty(); }));
    threads.joinAll();
    EXPECT_EQ(threads.launches(), 2U);
    EXPECT_EQ(told.front().removed, 3U);
}

TEST_F(UnfinishedCreationsTest, WhereNoThreadCanBeHadItIsDoneAllTheSame) {
    threads.refuses = true;
    recovery.entries = {{"/jobs/One", "0", 3, {}}};
    unfinished.look();
    ASSERT_EQ(asked.size(), 1U);
    answer(true);
    EXPECT_EQ(recovery.removed, Paths{"/jobs/One"});
    EXPECT_EQ(told.size(), 1U);
}

} // namespace
} // namespace orvane::test
