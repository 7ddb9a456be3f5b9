// Large hierarchies, which two threads make: what is on disk, what is told and what is left must be what one thread leaves.

#include "TwoThreadsTestSupport.h"

#include "ObservedFileSystem.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace orvane::testing {

namespace {

TEST_F(TwoThreadsTest, MakeWhatOneMakes) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        RandomTree tree(seed);
        const Outcome outcome = bothWays(tree.preset(), folder / "one");
        EXPECT_EQ(outcome.alerts.size(), 0U) << seed;
        EXPECT_EQ(outcome.disk.size(), Nodes + 1) << seed;
        EXPECT_EQ(outcome.nodes, Nodes + 1) << seed;
        EXPECT_EQ(shared.sharings, static_cast<int>(seed));
    }
}

TEST_F(TwoThreadsTest, ShareWhatLiesDeepInOneFolder) {
    RandomTree tree(7);
    const PropertyList whole = tree.preset();
    const PropertyList nested = whole.at(*whole.root().find("fileHierarchy"));
    const PropertyList inner = dict({{"filename", text("inner")},
                                     {"isFolder", yes()},
                                     {"color", text("green")},
                                     {"permissions", text("700")},
                                     {"children", nested.at(*nested.root().find("children"))}});
    const PropertyList preset = test::preset("top", {test::folder("a"), test::folder("b", {inner}), test::file("c")});
    const Outcome outcome = bothWays(preset, folder / "one");
    EXPECT_EQ(outcome.alerts.size(), 0U) << outcome.alerts.front().message.value_or("");
    EXPECT_EQ(outcome.disk.size(), Nodes + 5);
    EXPECT_EQ(shared.sharings, 1);
}

TEST_F(TwoThreadsTest, ShareManyFoldersOfOneFolder) {
    EXPECT_EQ(bothWays(test::preset("top", scenes(2500)), folder / "one").disk.size(), 5001U);
    EXPECT_EQ(shared.sharings, 1);
}

TEST_F(TwoThreadsTest, BothMakeWhatComesBeforeAFailureAtTheEnd) {
    std::vector<PropertyList> children = scenes(2500);
    children.push_back(test::folder("last", {test::folder("in it", {test::file(std::string(256, 'n'))})}));
    std::mutex monitor;
    std::condition_variable changed;
    bool isMetAtTheEnd = false;
    bool hasGoneOn = false;
    bool wasWhileOneWaited = false;
    shared.beforeEmptyFile = [&](std::string_view name) {
        std::unique_lock lock(monitor);
        if (name.size() == 256) {
            isMetAtTheEnd = true;
        } else if (name == "frame 2250") { // in a part of its own, well before the failure
            hasGoneOn = isMetAtTheEnd;
            changed.notify_all();
        } else if (name == "frame 0") {
            wasWhileOneWaited = changed.wait_for(lock, std::chrono::seconds(20), [&] { return hasGoneOn; });
        }
    };
    const Outcome outcome = create(shared, test::preset("top", children), folder / "two");
    EXPECT_TRUE(wasWhileOneWaited);
    ASSERT_EQ(outcome.alerts.size(), 1U);
    EXPECT_NE(outcome.alerts.front().message.value_or("").find("/top/last/in it/nnn"), std::string::npos);
    EXPECT_EQ(outcome.disk.size(), 0U);
    EXPECT_EQ(shared.sharings, 1);
}

TEST_F(TwoThreadsTest, AFolderGetsItsModeAfterTheFoldersInIt) {
    std::vector<PropertyList> many;
    for (int i = 0; i < 400; ++i) {
        many.push_back(test::file("file " + std::to_string(i)));
    }
    const auto folderOf = [&](const char *name, const char *mode, const std::vector<PropertyList> &children) {
        return dict({{"filename", text(name)}, {"isFolder", yes()}, {"permissions", text(mode)}, {"children", list(children)}});
    };
    std::vector<PropertyList> outer = many;
    outer.push_back(folderOf("inner", "711", many));
    std::vector<PropertyList> top = many;
    top.push_back(folderOf("outer", "751", outer));
    EXPECT_EQ(bothWays(test::preset("top", top), folder / "one").disk.size(), 1203U);
    EXPECT_EQ(shared.sharings, 1);
    EXPECT_EQ(shared.modes, (std::vector<unsigned>{0711, 0751}));
    EXPECT_EQ(single.modes, shared.modes);
}

TEST_F(TwoThreadsTest, FailWithTheErrorThatOneMeetsAndLeaveNothing) {
    const std::vector<std::string> badNames{std::string(256, 'n'), "..", "", "."};
    for (unsigned seed = 1; seed <= 15; ++seed) {
        RandomTree tree(seed);
        for (unsigned bad = 0; bad <= seed % 4; ++bad) {
            tree.any().name = badNames[(seed + bad) % badNames.size()];
        }
        const Outcome outcome = bothWays(tree.preset(), folder / "one");
        EXPECT_EQ(outcome.alerts.size(), 1U) << seed;
        EXPECT_EQ(outcome.disk.size(), 0U) << seed;
    }
    EXPECT_GT(shared.sharings, 10); // bad names at the top of the tree can make two of them equal
}

TEST_F(TwoThreadsTest, TellOfTheFirstFailureThoughTheLastOneIsMetSooner) {
    std::vector<PropertyList> children = scenes(2500);
    for (const std::size_t i : {1000U, 2499U}) {
        children[i] = test::folder("frame " + std::to_string(i), {test::file(std::string(256, 'n') + std::to_string(i))});
    }
    const Outcome outcome = bothWays(test::preset("top", children), folder / "one");
    ASSERT_EQ(outcome.alerts.size(), 1U);
    EXPECT_NE(outcome.alerts.front().message.value_or("").find("n1000'"), std::string::npos);
    EXPECT_EQ(outcome.disk.size(), 0U);
    EXPECT_EQ(shared.sharings, 1);
}

TEST_F(TwoThreadsTest, DuplicateNamesAreWhatTheyAreForOne) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        RandomTree tree(seed);
        for (unsigned bad = 0; bad < 40; ++bad) {
            tree.any().name = "twin";
        }
        static_cast<void>(bothWays(tree.preset(), folder / "one"));
    }
    EXPECT_GT(shared.sharings, 0); // of folders without twins
    EXPECT_FALSE(desk.log.entries().empty());
}

TEST_F(TwoThreadsTest, OnlySoManyFoldersAreMadeAhead) {
    std::vector<PropertyList> inside;
    for (int i = 0; i < 1000; ++i) {
        inside.push_back(test::file("file " + std::to_string(i)));
    }
    for (int level = 0; level < 90; ++level) {
        inside = {test::folder("level " + std::to_string(level), inside), test::file("beside " + std::to_string(level))};
    }
    EXPECT_EQ(bothWays(test::preset("top", inside), folder / "one").disk.size(), 1181U);
    EXPECT_EQ(shared.sharings, 1); // from some level on
    EXPECT_GT(shared.mostAhead, 0U);
    EXPECT_LE(shared.mostAhead, 64U);
}

TEST_F(TwoThreadsTest, AFolderMadeAheadThatWasExchangedIsNotEntered) {
    PosixFileSystem open(mode_t{0}); // others may write in what is made
    auto writer = open.beginHierarchy(folder / "two");
    ASSERT_TRUE(writer->enterFolder("top"));
    const std::vector<FolderAhead> ahead{{FolderAhead::InCurrent, "ahead"}};
    std::once_flag exchange;
    const TwoThreads done = writer->makeOnTwoThreads(ahead, [&](HierarchyWriter &each) {
        std::call_once(exchange, [&] {
            std::filesystem::rename(folder / "two/top/ahead", folder / "two/elsewhere");
            putFolder(folder / "two/top/ahead");
        });
        EXPECT_FALSE(each.enterFolder("ahead"));
        EXPECT_EQ(each.lastError(), EEXIST);
        EXPECT_TRUE(each.makeEmptyFile("in top " + std::to_string(reinterpret_cast<std::uintptr_t>(&each)), {}));
    });
    EXPECT_EQ(done, TwoThreads::Done);
    EXPECT_EQ(namesIn(folder / "two/top/ahead").size(), 0U);
    EXPECT_EQ(namesIn(folder / "two/top").size(), 3U);
}

TEST_F(TwoThreadsTest, AnExchangedFolderIsDecidedByOne) {
    PosixFileSystem open(mode_t{0}); // others may write in what is made
    WatchedFileSystem watched(open);
    std::mutex monitor;
    std::condition_variable changed;
    bool isExchanged = false;
    watched.beforeEmptyFile = [&](std::string_view name) { // the parts before and behind the folder; nobody is in it yet
        std::unique_lock lock(monitor);
        if (name == "first" && !isExchanged) {
            std::filesystem::rename(folder / "two/top/large", folder / "elsewhere");
            putFolder(folder / "two/top/large");
            isExchanged = true;
            changed.notify_all();
        } else if (name == "frame 0 last") {
            EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), [&] { return isExchanged; }));
        }
    };
    std::vector<PropertyList> children{test::file("first"), test::folder("large", scenes(250))};
    for (int i = 0; i < 40; ++i) {
        children.push_back(scene("frame " + std::to_string(i) + " last"));
    }
    const Outcome outcome = create(watched, test::preset("top", children), folder / "two");
    EXPECT_EQ(outcome.alerts.size(), 0U);
    EXPECT_EQ(outcome.disk.size(), 583U);
    EXPECT_EQ(watched.mostAhead, 1U);
    EXPECT_EQ(watched.sharings, 1);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(namesIn(folder / "elsewhere").size(), 0U);
}

TEST_F(TwoThreadsTest, WhatAFailureLeavesUnderACleanedNameIsWhatOneLeaves) {
    desk.prompt.answers = {{"Day", "a:b"}, {"Job", "Acme/7"}}; // nothing is removed from the name that is made
    for (unsigned seed = 1; seed <= 2; ++seed) {
        RandomTree tree(seed);
        tree.any().name = std::string(256, 'n');
        const Outcome outcome = bothWays(tree.preset(), folder / "one");
        EXPECT_EQ(outcome.alerts.size(), 1U) << seed;
        EXPECT_TRUE(outcome.disk.contains("/a_b top")) << seed;
    }
    EXPECT_EQ(shared.sharings, 0);
}

TEST_F(TwoThreadsTest, AFullDiskIsDecidedByOne) {
    for (const long room : {500L, 900L, 1499L}) {
        single.room = shared.room = room;
        RandomTree tree(5);
        const int before = shared.hierarchies;
        const Outcome outcome = bothWays(tree.preset(), folder / "one");
        EXPECT_EQ(outcome.alerts.size(), 1U);
        EXPECT_EQ(outcome.disk.size(), 0U);
        EXPECT_EQ(shared.hierarchies, before + 2);
        EXPECT_EQ(starts, 1);
    }
}

TEST_F(TwoThreadsTest, WhateverHasRunOutIsDecidedByOne) {
    single.room = shared.room = 900;
    for (const int error : {ENOSPC, EDQUOT, EMFILE, ENFILE, ENOMEM, EMLINK, EBADF}) { // the last one where a folder stayed closed
        single.errorWhenFull = shared.errorWhenFull = error;
        RandomTree tree(5, 1000);
        const Outcome outcome = bothWays(tree.preset(), folder / "one");
        EXPECT_EQ(outcome.alerts.size(), 1U) << error;
        EXPECT_EQ(outcome.disk.size(), 0U) << error;
        EXPECT_EQ(starts, 1) << error;
    }
}

TEST_F(TwoThreadsTest, WhichCopiesFindNoRoomIsDecidedByOne) {
    single.roomForCopies = shared.roomForCopies = 150;
    RandomTree tree(5, 1000);
    const Outcome outcome = bothWays(tree.preset(), folder / "one");
    EXPECT_EQ(outcome.alerts.size(), 0U); // the others are empty
    EXPECT_EQ(outcome.disk.size(), 1001U);
    EXPECT_EQ(starts, 1);
}

TEST_F(TwoThreadsTest, NoDescriptorIsLeftOpen) {
    RandomTree tree(9);
    const std::size_t before = openDescriptors();
    static_cast<void>(bothWays(tree.preset(), folder / "one"));
    tree.any().name = std::string(256, 'n');
    static_cast<void>(bothWays(tree.preset(), folder / "one"));
    EXPECT_EQ(openDescriptors(), before);
}

std::atomic<long> questionsLeft = 0;
bool isStoppedSoon() {
    return --questionsLeft < 0;
}

TEST_F(TwoThreadsTest, AStopTakesEverythingAway) {
    for (const long questions : {1L, 40L, 300L, 700L, 1400L}) {
        questionsLeft = questions;
        ObservedFileSystem observed(
            shared, [] {}, isStoppedSoon);
        RandomTree tree(2);
        const Outcome outcome = create(observed, tree.preset(), folder / "one");
        EXPECT_TRUE(observed.wasStopped()) << questions;
        EXPECT_FALSE(observed.topIsThere()) << questions;
        EXPECT_EQ(outcome.disk.size(), 0U) << questions;
        EXPECT_EQ(starts, 0) << questions;
    }
    EXPECT_GE(shared.sharings, 3);
    EXPECT_EQ(desk.log.entries(), std::vector<std::string>()); // nothing of contents that could not be copied
}

TEST_F(TwoThreadsTest, WritersLeaveWhatIsForeign) {
    auto writer = files.beginHierarchy(folder / "two");
    ASSERT_TRUE(writer->enterFolder("top"));
    const std::vector<FolderAhead> ahead{{FolderAhead::InCurrent, "ahead"}, {0, "inside"}};
    std::atomic<int> next = 0;
    const TwoThreads done = writer->makeOnTwoThreads(ahead, [&](HierarchyWriter &each) {
        const std::string mine = std::to_string(next++);
        bool good = each.enterFolder("ahead") && each.enterFolder("inside");
        for (int i = 0; i < 800; ++i) {
            good = good && each.makeEmptyFile(mine + "-" + std::to_string(i), {});
        }
        good = good && each.enterFolder("own " + mine) && each.makeEmptyFile("file", {});
        for (int i = 0; i < 3; ++i) {
            each.leaveFolder({});
        }
        EXPECT_TRUE(good && each.makeEmptyFile("in top " + mine, {}));
        EXPECT_EQ(each.makeOnTwoThreads({}, [](HierarchyWriter &) {}), TwoThreads::Refused);
    });
    ASSERT_EQ(done, TwoThreads::Done);
    ASSERT_TRUE(writer->enterFolder("ahead") && writer->enterFolder("inside"));
    writer->leaveFolder({6, 0700});
    writer->leaveFolder({0, 0750});
    writer->leaveFolder({});
    EXPECT_EQ(namesIn(folder / "two/top"), (std::vector<std::string>{"ahead", "in top 0", "in top 1"}));
    EXPECT_EQ(namesIn(folder / "two/top/ahead/inside").size(), 1602U);
    EXPECT_EQ(modeOf(folder / "two/top/ahead/inside"), 0700U);
    EXPECT_EQ(modeOf(folder / "two/top/ahead"), 0750U);
    putFile(folder / "two/top/ahead/inside/own 1/foreign", "theirs");
    writer->removeEverythingMade();
    EXPECT_EQ(snapshot(folder / "two").size(), 5U); // the file and the folders on the way to it
    EXPECT_EQ(contentsOf(folder / "two/top/ahead/inside/own 1/foreign"), "theirs");
}

TEST_F(TwoThreadsTest, ModesThatEitherOfThemCouldNotSetAreTold) {
    const std::string beginning = "A label, permissions or times could not be set: 'top/";
    for (const bool isSecondAlone : {false, true}) {
        FakeSystemLog log;
        PosixFileSystem closed(mode_t{0022}); // folders are reached by their paths
        closed.setLog(log);
        auto writer = closed.beginHierarchy(folder / "two");
        ASSERT_TRUE(writer->enterFolder("top"));
        const TwoThreads done = writer->makeOnTwoThreads({}, [&](HierarchyWriter &each) {
            const std::string name = &each == writer.get() ? "first" : "second";
            EXPECT_TRUE(each.enterFolder(name));
            if (name == "second" || !isSecondAlone) {
                std::filesystem::remove(folder / "two/top/" + name);
            }
            each.leaveFolder({0, 0750});
        });
        EXPECT_EQ(done, TwoThreads::Done);
        writer->leaveFolder({});
        EXPECT_TRUE(log.entries().empty());
        writer.reset();
        ASSERT_EQ(log.entries().size(), 1U);
        EXPECT_EQ(log.entries().front(), beginning + (isSecondAlone ? "second': No such file or directory"
                                                                    : "first': No such file or directory (1 more like it)"));
        std::filesystem::remove_all(folder / "two/top");
    }
}

TEST_F(TwoThreadsTest, AFolderThatCannotBeMadeAheadFails) {
    auto writer = files.beginHierarchy(folder / "two");
    ASSERT_TRUE(writer->enterFolder("top"));
    const std::vector<FolderAhead> ahead{{FolderAhead::InCurrent, "good"}, {0, std::string(256, 'n')}};
    EXPECT_EQ(writer->makeOnTwoThreads(ahead, [](HierarchyWriter &) { FAIL() << "called"; }), TwoThreads::Failed);
    EXPECT_EQ(writer->lastError(), ENAMETOOLONG);
    writer->removeEverythingMade();
    EXPECT_TRUE(namesIn(folder / "two").empty());
}

} // namespace

} // namespace orvane::testing
