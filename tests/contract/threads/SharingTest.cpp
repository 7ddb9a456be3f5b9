// Which hierarchies two threads share, and what they share beside the disk: contents, descriptors, the journal, the log.

#include "TwoThreadsTestSupport.h"
#include "contract/processes/ProcessTestTools.h"

#include "presets/ORVJournaledFileSystem.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <new>
#include <utility>

#include <sched.h>
#include <sys/resource.h>

namespace orvane::testing {

namespace {

class SharingTest : public TwoThreadsTest {};

/// So many copies, each in a folder of its own or all in one.
std::vector<PropertyList> copies(int count, const std::string &content, bool isEachInAFolder) {
    std::vector<PropertyList> all;
    for (int i = 0; i < count; ++i) {
        const std::string name = "copy " + std::to_string(i);
        const PropertyList copy = dict({{"filename", text(name)}, {"contentFilename", text(content)}});
        all.push_back(isEachInAFolder ? test::folder("in " + name, {copy}) : copy);
    }
    return all;
}

TEST_F(SharingTest, TheLogTellsOfTheContentsThatOneCouldNotCopy) {
    const auto copy = [](const std::string &name) { return dict({{"filename", text(name)}, {"contentFilename", text("small")}}); };
    std::vector<PropertyList> children;
    for (int i = 0; i < 100; ++i) { // each with a pair of twins, the second of which is made empty
        const std::string number = std::to_string(i);
        children.push_back(test::folder("scene " + number, {copy("twin"), copy("twin"), test::file("a"), test::file("b")}));
    }
    const Outcome whole = bothWays(test::preset("top", children), folder / "one");
    ASSERT_EQ(whole.log.size(), 1U);
    EXPECT_NE(whole.log.front().find("/top/scene 0/twin': File exists (99 more like it)"), std::string::npos) << whole.log.front();
    children[30] = test::folder("scene 30", {test::file(std::string(256, 'n'))}); // no thread alone comes to those behind it
    const Outcome failed = bothWays(test::preset("top", children), folder / "one");
    ASSERT_EQ(failed.log.size(), 2U);
    EXPECT_NE(failed.log.front().find("/top/scene 0/twin': File exists (29 more like it)"), std::string::npos) << failed.log.front();
    EXPECT_EQ(shared.sharings, 2);
}

TEST_F(SharingTest, NamesThatDifferInCaseOnlyAreLeftToOne) {
    for (const char *const last : {"tWIN", "Twin", "another"}) {
        std::vector<PropertyList> children = scenes(1500);
        children.insert(children.begin(), scene("Twin"));
        children.push_back(scene(last));
        shared.makers.clear();
        const bool isTheSame = std::string(last) == "Twin";
        const bool isAnother = std::string(last) == "another";
        std::mutex monitor;
        std::condition_variable changed;
        bool isLastMade = false;
        shared.beforeEmptyFile = [&](std::string_view name) { // waits for the second thread where one is to come
            std::unique_lock lock(monitor);
            if (name == "another") {
                isLastMade = true;
                changed.notify_all();
            } else if (name == "frame 0" && isAnother) {
                EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), [&] { return isLastMade; }));
            }
        };
        EXPECT_EQ(bothWays(test::preset("top", children), folder / "one").disk.size(), isTheSame ? 3003U : 3005U);
        EXPECT_EQ(shared.makers.size(), isAnother ? 2U : 1U) << last;
    }
}

TEST_F(SharingTest, NamesBesideAFolderMadeAheadAreComparedBeforeItIsMade) {
    const Outcome outcome = bothWays(
        test::preset("top", {test::file("Twin"), test::file("twin"), test::folder("large", scenes(250)), test::file("x")}), folder / "one");
    EXPECT_EQ(outcome.disk.size(), 505U);
    EXPECT_EQ(shared.mostAhead, 0U);
    EXPECT_EQ(shared.sharings, 1); // of the large one by itself
}

TEST_F(SharingTest, SmallHierarchiesAreLeftToOne) {
    RandomTree tree(3, 79);
    EXPECT_EQ(bothWays(tree.preset(), folder / "one").disk.size(), 80U);
    EXPECT_EQ(shared.sharings, 0);
}

TEST_F(SharingTest, ShareHierarchiesFrom80NodesOn) {
    int trees = 0;
    for (const std::size_t nodes : {80U, 100U, 150U, 300U}) {
        for (unsigned seed = 1; seed <= 4; ++seed) {
            RandomTree tree(seed, nodes);
            const Outcome outcome = bothWays(tree.preset(), folder / "one");
            EXPECT_EQ(outcome.alerts.size(), 0U) << nodes << " " << seed;
            EXPECT_EQ(outcome.disk.size(), nodes + 1) << seed;
            EXPECT_EQ(shared.sharings, ++trees) << nodes << " " << seed;
        }
    }
}

TEST_F(SharingTest, FailuresOfSmallHierarchiesAreThoseThatOneMeets) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        RandomTree tree(seed, 80 + seed * 7);
        tree.any().name = std::string(256, 'n');
        tree.any().name = "";
        const Outcome outcome = bothWays(tree.preset(), folder / "one");
        EXPECT_EQ(outcome.alerts.size(), 1U) << seed;
        EXPECT_EQ(outcome.disk.size(), 0U) << seed;
    }
    EXPECT_GT(shared.sharings, 0);
}

TEST_F(SharingTest, ADiskThatRefusesIsNotAskedForEver) {
    std::vector<PropertyList> folders;
    for (int i = 0; i < 20; ++i) {
        folders.push_back(test::folder("scene " + std::to_string(i), scenes(50)));
    }
    single.refusesTwoThreads = true;
    EXPECT_EQ(create(single, test::preset("top", folders), folder / "one").disk.size(), 2021U);
    EXPECT_EQ(single.refusals, 4);
}

TEST_F(SharingTest, LookUpDifferentContentsAtTheSameTime) {
    const auto copy = [](const std::string &name, const char *content) {
        return dict({{"filename", text(name)}, {"contentFilename", text(content)}});
    };
    std::vector<PropertyList> children = scenes(100);
    children.insert(children.begin(), copy("first", "small"));
    children.push_back(copy("last", "large"));
    std::mutex monitor;
    std::condition_variable changed;
    int lookedUp = 0;
    int together = 0;
    shared.beforeContent = [&](std::string_view) {
        std::unique_lock lock(monitor);
        ++lookedUp;
        changed.notify_all();
        together += changed.wait_for(lock, std::chrono::seconds(20), [&] { return lookedUp == 2; }) ? 1 : 0;
    };
    const Outcome outcome = create(shared, test::preset("top", children), folder / "two");
    EXPECT_EQ(together, 2);
    EXPECT_EQ(outcome.disk.size(), 203U);
    EXPECT_EQ(contentsOf(folder / "two/top/last").size(), 200'000U);
}

TEST_F(SharingTest, LookUpOneContentOnce) {
    const auto copy = [](const std::string &name) { return dict({{"filename", text(name)}, {"contentFilename", text("small")}}); };
    std::vector<PropertyList> children = scenes(100);
    children.insert(children.begin(), copy("first"));
    children.push_back(copy("last"));
    std::mutex monitor;
    std::condition_variable changed;
    bool isOtherNear = false;
    int lookedUp = 0;
    shared.beforeEmptyFile = [&](std::string_view name) {
        const std::lock_guard lock(monitor);
        isOtherNear = isOtherNear || name == "frame 99";
        changed.notify_all();
    };
    shared.beforeContent = [&](std::string_view) {
        std::unique_lock lock(monitor);
        ++lookedUp;
        EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), [&] { return isOtherNear; }));
        changed.wait_for(lock, std::chrono::milliseconds(100), [&] { return lookedUp > 1; }); // the other one comes, and has to wait
    };
    EXPECT_EQ(create(shared, test::preset("top", children), folder / "two").disk.size(), 203U);
    EXPECT_EQ(lookedUp, 1);
    EXPECT_EQ(contentsOf(folder / "two/top/last").size(), 4096U);
    EXPECT_EQ(shared.sharings, 1);
}

TEST_F(SharingTest, OneProcessorIsLeftToOne) {
    RandomTree tree(5);
    cpu_set_t before;
    ASSERT_EQ(::sched_getaffinity(0, sizeof before, &before), 0);
    cpu_set_t oneProcessor;
    CPU_ZERO(&oneProcessor);
    CPU_SET(static_cast<unsigned>(::sched_getcpu()), &oneProcessor);
    ASSERT_EQ(::sched_setaffinity(0, sizeof oneProcessor, &oneProcessor), 0);
    EXPECT_EQ(bothWays(tree.preset(), folder / "one").disk.size(), Nodes + 1);
    EXPECT_EQ(shared.sharings, 0);
    EXPECT_EQ(::sched_setaffinity(0, sizeof before, &before), 0);
}

TEST_F(SharingTest, WithoutMoreThreadsOneMakesEverything) {
    putFolder(folder / "own");
    ASSERT_EQ(::chmod(std::string(folder / "own").c_str(), 0777), 0);
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  const rlimit none = {0, 0};
                  if (::setrlimit(RLIMIT_NPROC, &none) != 0) {
                      return "no limit";
                  }
                  const Outcome outcome = create(shared, test::preset("top", scenes(200)), folder / "own");
                  return std::to_string(outcome.alerts.size()) + " alerts, " + std::to_string(outcome.log.size()) + " entries, " +
                         std::to_string(outcome.disk.size()) + " items, " + std::to_string(starts) + " new beginning, " +
                         std::to_string(shared.hierarchies) + " hierarchies";
              }),
              "0 alerts, 0 entries, 401 items, 1 new beginning, 2 hierarchies");
}

/// An ACL of three entries as an extended attribute has it (Linux, uapi/linux/posix_acl_xattr.h): version 2, then tag, permissions and id
/// of each.
std::string aclOf(unsigned owner, unsigned group, unsigned others) {
    std::string acl;
    const auto put = [&](std::uint32_t value, int bytes) { // little-endian
        for (; bytes > 0; --bytes, value >>= 8U) {
            acl += static_cast<char>(value & 0xFFU);
        }
    };
    put(2, 4);
    for (const auto &[tag, permissions] : {std::pair(0x01U, owner), {0x04U, group}, {0x20U, others}}) {
        put(tag, 2);
        put(permissions, 2);
        put(0xFFFFFFFFU, 4);
    }
    return acl;
}

TEST_F(SharingTest, UnderADefaultACLModesAreThoseThatOneSets) {
    putFolder(folder / "open");
    setAttribute(folder / "open", "system.posix_acl_default", aclOf(7, 5, 0));
    putFolder(folder / "open/base");
    std::vector<PropertyList> children;
    for (int i = 0; i < 200; ++i) {
        const std::string number = std::to_string(i);
        const auto with = [&](const char *name, const char *mode, const char *content) {
            return dict({{"filename", text(name + number)}, {"permissions", text(mode)}, {"contentFilename", text(content)}});
        };
        children.push_back(test::folder("scene " + number, {with("any ", "", ""), with("all ", "777", ""), with("most ", "766", "small"),
                                                            with("its own ", "", "small")}));
    }
    std::mutex monitor;
    std::condition_variable changed;
    bool isLastMade = false;
    shared.beforeEmptyFile = [&](std::string_view name) { // so that both make something
        std::unique_lock lock(monitor);
        if (name == "all 199") {
            isLastMade = true;
            changed.notify_all();
        } else if (name == "any 0") {
            EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), [&] { return isLastMade; }));
        }
    };
    const Outcome outcome = bothWays(test::preset("top", children), folder / "open/base");
    EXPECT_EQ(shared.sharings, 1);
    ASSERT_EQ(outcome.disk.size(), 1001U);
    for (const char *const number : {"0", "199"}) {
        const std::string inside = "/top/scene " + std::string(number) + "/";
        const auto modeOfMade = [&](const std::string &name) { return outcome.disk.at(inside + name + number).substr(5, 3); };
        EXPECT_EQ(modeOfMade("any "), "416") << number;     // 0640
        EXPECT_EQ(modeOfMade("all "), "511") << number;     // 0777
        EXPECT_EQ(modeOfMade("most "), "502") << number;    // 0766
        EXPECT_EQ(modeOfMade("its own "), "420") << number; // 0644
    }
}

TEST_F(SharingTest, WantOfMemoryIsDecidedByOne) {
    shared.beforeContent = [this](std::string_view) {
        if (shared.hierarchies == 1) {
            throw std::bad_alloc();
        }
    };
    const Outcome outcome = create(shared, test::preset("top", copies(200, "small", true)), folder / "one");
    EXPECT_EQ(outcome.alerts.size(), 0U);
    EXPECT_EQ(outcome.disk.size(), 401U);
    EXPECT_EQ(contentsOf(folder / "one/top/in copy 199/copy 199").size(), 4096U);
    EXPECT_EQ(shared.sharings, 1);
    EXPECT_EQ(shared.hierarchies, 2);
    EXPECT_EQ(starts, 1);
}

TEST_F(SharingTest, AFolderThatWasThereIsLeftToOne) {
    const Outcome outcome =
        bothWays(test::preset("top", {test::folder("twin", scenes(500)), test::folder("twin", scenes(700))}), folder / "one");
    EXPECT_EQ(outcome.disk.size(), 1402U);
    EXPECT_EQ(shared.sharings, 1); // of the first one
    putFolder(folder / "two/there");
    auto writer = files.beginHierarchy(folder / "two");
    ASSERT_TRUE(writer->enterFolder("there"));
    EXPECT_EQ(writer->makeOnTwoThreads({}, [](HierarchyWriter &) { FAIL() << "called"; }), TwoThreads::Refused);
    EXPECT_EQ(writer->finishOnSecondThread([] { FAIL() << "called"; }, [](bool) { FAIL() << "called"; }), TwoThreads::Refused);
}

TEST_F(SharingTest, AmongTheContentsOneMakesThemInTheirOrder) {
    putFolder(contentAt("work"));
    for (const bool isEachInAFolder : {true, false}) {
        std::vector<PropertyList> children = copies(500, "work/top/first", isEachInAFolder);
        children.insert(children.begin(), dict({{"filename", text("first")}, {"permissions", text("604")}}));
        const std::string base = contentAt("work");
        const Outcome outcome = create(shared, test::preset("top", children), base);
        EXPECT_EQ(outcome.disk.size(), isEachInAFolder ? 1002U : 502U);
        EXPECT_EQ(modeOf(base + (isEachInAFolder ? "/top/in copy 499/copy 499" : "/top/copy 499")), 0604U);
        EXPECT_EQ(shared.sharings + shared.finishings, 0);
        std::filesystem::remove_all(base + "/top");
    }
}

TEST_F(SharingTest, ContentsThatMayBeAmongThoseMadeAreLeftToOne) {
    for (const bool isEachInAFolder : {true, false}) {
        std::vector<PropertyList> children = copies(500, "../../../one/top/first", isEachInAFolder);
        children.insert(children.begin(), dict({{"filename", text("first")}, {"permissions", text("604")}}));
        const Outcome outcome = bothWays(test::preset("top", children), folder / "one");
        ASSERT_EQ(outcome.disk.size(), isEachInAFolder ? 1002U : 502U);
        for (int i = 0; i < 500; ++i) {
            const std::string name = "copy " + std::to_string(i);
            EXPECT_EQ(outcome.disk.at("/top/" + (isEachInAFolder ? "in " + name + "/" : "") + name).substr(0, 8), "file 388"); // 0604
        }
        EXPECT_EQ(starts, 1);
    }
}

TEST_F(SharingTest, ContentsThatLeadToWhatIsMadeAreLeftToOne) {
    // Links among the contents: to a file that is made, and to the folder in which it is.
    ASSERT_EQ(::symlink(std::string(folder / "one/top/first").c_str(), contentAt("later").c_str()), 0);
    ASSERT_EQ(::symlink(std::string(folder / "one/top").c_str(), contentAt("inside").c_str()), 0);
    for (const char *const content : {"later", "inside/first"}) {
        for (const bool isEachInAFolder : {true, false}) {
            std::vector<PropertyList> children = copies(500, content, isEachInAFolder);
            const PropertyList first = dict({{"filename", text("first")}, {"contentFilename", text("small")}, {"color", text("red")}});
            children.insert(children.begin(), first);
            const Outcome outcome = bothWays(test::preset("top", children), folder / "one");
            EXPECT_EQ(starts, 1) << content;
            const std::string last = isEachInAFolder ? "/top/in copy 499/copy 499" : "/top/copy 499";
            EXPECT_EQ(outcome.disk.at(last), outcome.disk.at("/top/first")) << content;
        }
    }
}

TEST_F(SharingTest, ContentsThatAreMissingUntilTheyAreMadeAreLeftToOne) {
    ASSERT_EQ(::symlink(std::string(folder / "one/top/last").c_str(), contentAt("later").c_str()), 0);
    std::vector<PropertyList> children = copies(500, "later", false);
    children.push_back(dict({{"filename", text("last")}, {"contentFilename", text("small")}}));
    const Outcome outcome = bothWays(test::preset("top", children), folder / "one");
    EXPECT_EQ(outcome.disk.size(), 502U);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(bothWays(test::preset("top", copies(500, "missing", false)), folder / "one").disk.size(), 501U);
    EXPECT_EQ(starts, 0); // what is missing and stays so is no reason
}

TEST_F(SharingTest, AnOldContentThatIsMovedInMeanwhileIsReadByOne) {
    shared.beforeEmptyFile = [&](std::string_view name) {
        if (name == "last" && shared.hierarchies == 1) {
            std::filesystem::rename(contentAt("small"), contentAt("later")); // born before the creation began
        }
    };
    std::vector<PropertyList> children = copies(500, "later", false);
    children.push_back(test::file("last"));
    EXPECT_EQ(create(shared, test::preset("top", children), folder / "one").disk.size(), 502U);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(contentsOf(folder / "one/top/copy 0").size(), 4096U);
}

TEST_F(SharingTest, ContentsThatWereWrittenAMomentAgoAreWhatTheyAre) {
    for (const bool isEachInAFolder : {true, false}) {
        putFile(contentAt("fresh"), std::string(300, 'f')); // its time may be that of the beginning: one may have to make it again
        const Outcome outcome = bothWays(test::preset("top", copies(500, "fresh", isEachInAFolder)), folder / "one");
        EXPECT_EQ(outcome.alerts.size(), 0U);
        EXPECT_LE(starts, 1);
        EXPECT_EQ(outcome.disk.size(), isEachInAFolder ? 1001U : 501U);
        letTheClockTick();
        EXPECT_EQ(bothWays(test::preset("top", copies(500, "fresh", isEachInAFolder)), folder / "one").disk, outcome.disk);
        EXPECT_EQ(starts, 0);
    }
}

TEST_F(SharingTest, AContentThatSomebodyChangesMeanwhileIsReadAgainByOne) {
    int lookedUp = 0;
    shared.beforeEmptyFile = [&](std::string_view name) {
        if (name == "last" && shared.hierarchies == 1) {
            putFile(contentAt("small"), "changed");
        }
    };
    shared.beforeContent = [&](std::string_view) { ++lookedUp; };
    std::vector<PropertyList> children = copies(500, "small", false);
    children.push_back(test::file("last"));
    EXPECT_EQ(create(shared, test::preset("top", children), folder / "one").disk.size(), 502U);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(lookedUp, 2);
    EXPECT_EQ(contentsOf(folder / "one/top/copy 0"), "changed");
}

TEST_F(SharingTest, ABaseThatLeadsAmongTheContentsIsLeftToOne) {
    putFolder(contentAt("work"));
    ASSERT_EQ(::symlink(contentAt("work").c_str(), std::string(folder / "alias").c_str()), 0);
    std::vector<PropertyList> children = copies(500, "work/top/first", false);
    children.insert(children.begin(), dict({{"filename", text("first")}, {"contentFilename", text("small")}}));
    const Outcome outcome = create(shared, test::preset("top", children), folder / "alias");
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(contentsOf(contentAt("work/top/copy 499")).size(), 4096U);
}

TEST_F(SharingTest, FewDescriptorsAreLeftToOne) {
    RandomTree tree(4);
    for (const auto &[limit, sharings] : {std::pair<rlim_t, int>{500, 0}, {1024, 1}}) {
        const test::SoftLimit few(RLIMIT_NOFILE, limit);
        EXPECT_EQ(bothWays(tree.preset(), folder / "one").disk.size(), Nodes + 1) << limit;
        EXPECT_EQ(shared.sharings, sharings) << limit;
        EXPECT_EQ(bothWays(test::preset("top", copies(500, "small", false)), folder / "one").disk.size(), 501U) << limit;
        EXPECT_EQ(shared.finishings, sharings) << limit;
    }
}

/// Knows what each of the two is at.
class WatchedJournal final : public CreationJournal {
public:
    [[nodiscard]] std::unique_ptr<Entry> begin(std::string_view) override { return std::make_unique<Watched>(*this); }

    std::array<int, Workers> noted{}; ///< items
    std::array<int, Workers> completing{};
    std::array<bool, Workers> isAtWork{};
    int mistakes = 0; ///< items begun before the last one was done

private:
    class Watched final : public Entry {
    public:
        explicit Watched(WatchedJournal &journal) : _journal(journal) {}
        FolderNumber aboutToMake(Kind kind, FolderNumber, std::string_view, Worker worker) override {
            const std::lock_guard lock(_monitor);
            ++_journal.noted.at(worker);
            _journal.mistakes += std::exchange(_journal.isAtWork.at(worker), true) && kind != Kind::Folder ? 1 : 0;
            return kind == Kind::Folder ? ++_folders : Base;
        }
        void isCompleting(Worker worker) override {
            const std::lock_guard lock(_monitor);
            ++_journal.completing.at(worker);
        }
        void isDone(Worker worker) override {
            const std::lock_guard lock(_monitor);
            _journal.isAtWork.at(worker) = false;
        }

    private:
        WatchedJournal &_journal;
        std::mutex _monitor;
        FolderNumber _folders = Base;
    };
};

TEST_F(SharingTest, TheJournalIsToldWhatEachOfThemIsAt) {
    WatchedJournal journal;
    ORVJournaledFileSystem journaled(shared, journal);
    const std::vector<PropertyList> children = scenes(1000);
    std::mutex monitor;
    std::condition_variable changed;
    bool isLastMade = false;
    shared.beforeEmptyFile = [&](std::string_view name) { // so that both make something
        std::unique_lock lock(monitor);
        if (name == "frame 999") {
            isLastMade = true;
            changed.notify_all();
        } else if (name == "frame 0") {
            EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), [&] { return isLastMade; }));
        }
    };
    EXPECT_EQ(create(journaled, test::preset("top", children), folder / "two").disk.size(), 2001U);
    EXPECT_EQ(journal.noted[0] + journal.noted[1], 2001);
    EXPECT_GT(journal.noted[0], 1);
    EXPECT_GT(journal.noted[1], 0);
    EXPECT_EQ(journal.mistakes, 0);
    EXPECT_FALSE(journal.isAtWork[0] || journal.isAtWork[1]);
    EXPECT_EQ(create(journaled, test::preset("flat", copies(1000, "small", false)), folder / "two").disk.size(), 3002U);
    EXPECT_EQ(journal.noted[0] + journal.noted[1], 3002);
    EXPECT_EQ(journal.mistakes, 0);
    EXPECT_FALSE(journal.isAtWork[0] || journal.isAtWork[1]);
    EXPECT_EQ(journal.completing[0], 0);
    EXPECT_GT(journal.completing[1], 1); // once more with every batch
}

} // namespace

} // namespace orvane::testing
