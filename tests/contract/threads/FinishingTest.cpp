// Folders full of files, which one thread makes while another one completes them: what is on disk, what is told and what is left
// must be what one thread leaves.

#include "TwoThreadsTestSupport.h"
#include "contract/processes/ProcessTestTools.h"

#include "ObservedFileSystem.h"
#include "platform/posix/PosixFileFinisher.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <functional>
#include <mutex>
#include <poll.h>
#include <random>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace orvane::testing {

namespace {

/// How often each thing stands among so many nodes of a flat folder.
struct Mixture {
    unsigned seed = 0;
    int nodes = 600;
    int twins = 0;   ///< nodes of the same name
    int folders = 5; ///< each with a file in it
};

PropertyList flat(const Mixture &mixture) {
    std::mt19937 random(mixture.seed);
    const auto below = [&](std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); };
    const auto number = [&](int end) { return below(static_cast<std::size_t>(end)); };
    std::vector<PropertyList> children;
    for (int i = 0; i < mixture.nodes; ++i) {
        static const std::vector<std::string> contents{"", "", "", "small", "small", "small", "small", "missing", "tagged"};
        static const std::vector<std::string> modes{"", "", "", "400", "640", "755", "000", "777"};
        static const std::vector<std::string> colors{"", "", "", "red", "green"};
        const bool isTwin = number(mixture.nodes) < static_cast<std::size_t>(mixture.twins);
        const bool isFolder = number(mixture.nodes) < static_cast<std::size_t>(mixture.folders);
        const std::string name = isTwin ? "twin" : "{Job} take " + std::to_string(i);
        const std::string content = number(60) == 0 ? "large" : number(60) == 0 ? "tree" : contents[below(contents.size())];
        const std::string &anyMode = modes[below(modes.size())];
        // Files that are emptied again, and folders that are read afterwards, are open to their owner.
        const bool isOpen = isTwin || isFolder || content == "tree";
        const std::string mode = !isOpen || anyMode == "755" || (isTwin && !isFolder && anyMode == "640") ? anyMode : "";
        children.push_back(
            dict({{"filename", text(name)},
                  {"isFolder", yes(isFolder)},
                  {"color", text(colors[below(colors.size())])},
                  {"permissions", text(mode)},
                  {"contentFilename", text(isFolder ? "" : content)},
                  {"children", list(isFolder ? std::vector<PropertyList>{test::file("inside")} : std::vector<PropertyList>{})}}));
    }
    return test::preset("top", children);
}

std::vector<PropertyList> copies(int count) {
    std::vector<PropertyList> all;
    for (int i = 0; i < count; ++i) {
        all.push_back(dict({{"filename", text("copy " + std::to_string(i))}, {"color", text("red")}, {"contentFilename", text("small")}}));
    }
    return all;
}

class FinishingTest : public TwoThreadsTest {
protected:
    void SetUp() override {
        TwoThreadsTest::SetUp();
        putFolder(contentAt("tree"));
        putContent("tree/leaf", "leaf", 0600);
        putContent("tagged", "tagged");
        setAttribute(contentAt("tagged"), "user.xdg.tags", "dailies");
        letTheClockTick();
    }
};

TEST_F(FinishingTest, MakesWhatOneMakes) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        const Outcome outcome = bothWays(flat({.seed = seed, .nodes = 400 + static_cast<int>(seed) * 50}), folder / "one");
        EXPECT_EQ(outcome.alerts.size(), 0U) << seed;
        EXPECT_EQ(shared.finishings, static_cast<int>(seed));
        EXPECT_EQ(shared.sharings, 0);
        EXPECT_EQ(starts, 0);
    }
}

TEST_F(FinishingTest, FewFilesAreLeftToOne) {
    EXPECT_EQ(bothWays(test::preset("top", copies(399)), folder / "one").disk.size(), 400U);
    EXPECT_EQ(shared.finishings + shared.sharings, 0);
    EXPECT_EQ(bothWays(test::preset("top", copies(400)), folder / "one").disk.size(), 401U);
    EXPECT_EQ(shared.finishings, 1);
}

TEST_F(FinishingTest, TwinsAreWhatTheyAreForOne) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        const Outcome outcome = bothWays(flat({.seed = seed, .twins = 40, .folders = 0}), folder / "one");
        EXPECT_EQ(outcome.alerts.size(), 0U) << seed; // a file of the creation may be emptied again
        EXPECT_FALSE(outcome.log.empty()) << seed;
        EXPECT_EQ(shared.finishings, static_cast<int>(seed));
    }
}

TEST_F(FinishingTest, FailsWithTheErrorThatOneMeetsAndLeavesNothing) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
        const Outcome outcome = bothWays(flat({.seed = seed, .twins = 40, .folders = 70}), folder / "one"); // files over folders
        EXPECT_EQ(outcome.alerts.size(), 1U) << seed;
        EXPECT_EQ(outcome.disk.size(), 0U) << seed;
    }
    EXPECT_EQ(shared.sharings, 0);
}

TEST_F(FinishingTest, AFileThatFindsNoRoomForItsContentsIsDecidedByOne) {
    ASSERT_NE(::signal(SIGXFSZ, SIG_IGN), SIG_ERR);
    const int before = shared.hierarchies;
    Outcome outcome;
    {
        const test::SoftLimit size(RLIMIT_FSIZE, 2000); // half of a content
        outcome = bothWays(test::preset("top", copies(500)), folder / "one");
    }
    EXPECT_NE(::signal(SIGXFSZ, SIG_DFL), SIG_ERR);
    EXPECT_EQ(outcome.alerts.size(), 0U);
    EXPECT_EQ(outcome.disk.size(), 501U); // all of them empty
    ASSERT_EQ(outcome.log.size(), 1U);
    EXPECT_NE(outcome.log.front().find("copy 0': File too large (499 more like it)"), std::string::npos) << outcome.log.front();
    EXPECT_EQ(shared.hierarchies, before + 2);
    EXPECT_EQ(starts, 1);
}

TEST_F(FinishingTest, WhateverHasRunOutIsDecidedByOne) {
    single.room = shared.room = 450;
    for (const int error : {ENOSPC, EMFILE, ENOMEM}) {
        single.errorWhenFull = shared.errorWhenFull = error;
        const Outcome outcome = bothWays(test::preset("top", copies(500)), folder / "one");
        EXPECT_EQ(outcome.alerts.size(), 1U) << error;
        EXPECT_EQ(outcome.disk.size(), 0U) << error;
        EXPECT_EQ(starts, 1) << error;
    }
}

TEST_F(FinishingTest, WantOfMemoryIsDecidedByOne) {
    shared.beforeContent = [this](std::string_view) {
        if (shared.hierarchies == 1) {
            throw std::bad_alloc();
        }
    };
    const Outcome outcome = create(shared, test::preset("top", copies(500)), folder / "one");
    EXPECT_EQ(outcome.alerts.size(), 0U);
    EXPECT_EQ(outcome.disk.size(), 501U);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(shared.hierarchies, 2);
}

TEST_F(FinishingTest, NoDescriptorIsLeftOpen) {
    const std::size_t before = openDescriptors();
    std::vector<PropertyList> children = copies(500);
    static_cast<void>(bothWays(test::preset("top", children), folder / "one"));
    children.push_back(test::file(std::string(256, 'n')));
    EXPECT_EQ(bothWays(test::preset("top", children), folder / "one").alerts.size(), 1U);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(shared.finishings, 2);
}

std::atomic<long> questionsLeft = 0;
bool isStoppedSoon() {
    return --questionsLeft < 0;
}

TEST_F(FinishingTest, AStopTakesEverythingAway) {
    for (const long questions : {1L, 3L, 40L, 300L, 600L}) {
        questionsLeft = questions;
        ObservedFileSystem observed(
            shared, [] {}, isStoppedSoon);
        const Outcome outcome = create(observed, test::preset("top", copies(590)), folder / "one");
        EXPECT_EQ(observed.wasStopped(), questions < 590) << questions;
        EXPECT_EQ(shared.removalsTooEarly, 0) << questions;
        EXPECT_EQ(outcome.disk.size(), questions < 590 ? 0U : 591U) << questions;
        EXPECT_EQ(starts, 0) << questions;
    }
    EXPECT_EQ(desk.log.entries(), std::vector<std::string>()); // nothing of contents that could not be copied
}

TEST_F(FinishingTest, AFileIsEmptiedAgainOnlyWhenItHasItsContents) {
    auto writer = files.beginHierarchy(folder / "two");
    const ContentSource *const content = files.contentSource(folder / "support/Orvane/File Content/small");
    ASSERT_TRUE(writer->enterFolder("top"));
    const auto work = [&] {
        for (int i = 0; i < 50; ++i) {
            const std::string name = "take " + std::to_string(i);
            EXPECT_TRUE(writer->copyItem(name, *content, {}) && writer->makeEmptyFile(name, {2, 0640U}));
        }
        EXPECT_EQ(writer->makeOnTwoThreads({}, [](HierarchyWriter &) {}), TwoThreads::Refused);
    };
    ASSERT_EQ(writer->finishOnSecondThread(work, [](bool isGood) { EXPECT_TRUE(isGood); }), TwoThreads::Done);
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(contentsOf(folder / "two/top/take " + std::to_string(i)), "") << i;
        EXPECT_EQ(modeOf(folder / "two/top/take " + std::to_string(i)), 0640U) << i;
    }
    EXPECT_EQ(writer->makeOnTwoThreads({}, [](HierarchyWriter &) {}), TwoThreads::Done); // no longer beside another
    writer->removeEverythingMade();
    EXPECT_TRUE(namesIn(folder / "two").empty());
}

TEST_F(FinishingTest, WaitsForTheFilesThatTheOtherThreadIsAt) {
    putContent("wide", std::string(100'000, 'w')); // more than a pipe takes in
    const auto *const wide = static_cast<const PosixContent *>(files.contentSource(contentAt("wide")));
    const auto *const small = static_cast<const PosixContent *>(files.contentSource(contentAt("small")));
    std::array<int, 2> channel{};
    ASSERT_EQ(::pipe2(channel.data(), O_CLOEXEC), 0);
    const FileDescriptor end(channel[0]);
    std::mutex monitor;
    std::condition_variable changed;
    bool isWaitedFor = false;
    bool wasWaitedFor = false;
    bool wasLeftTooEarly = false;
    std::size_t bytes = 0;
    std::thread reader([&] { // until then the second thread is at the first file of its batch
        std::unique_lock lock(monitor);
        EXPECT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), [&] { return isWaitedFor; }));
        wasLeftTooEarly = changed.wait_for(lock, std::chrono::milliseconds(50), [&] { return wasWaitedFor; });
        lock.unlock();
        std::array<char, 4096> buffer{};
        for (ssize_t got = 0; (got = ::read(end.get(), buffer.data(), buffer.size())) > 0;) {
            bytes += static_cast<std::size_t>(got);
        }
    });
    const std::function<void(bool)> finished = [](bool isGood) { EXPECT_TRUE(isGood); };
    PosixFileFinisher finisher(finished);
    finisher.add({FileDescriptor(channel[1]), 1, {wide, 0, {}}});
    const auto sizeOf = [&](unsigned i) { return contentsOf(folder / "two/" + std::to_string(i)).size(); };
    for (unsigned i = 1; i <= 3; ++i) { // with which the batch is full
        const std::string path = folder / "two/" + std::to_string(i);
        finisher.add({FileDescriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644)), i + 1, {small, 0, {}}});
    }
    pollfd written{end.get(), POLLIN, 0};
    EXPECT_EQ(::poll(&written, 1, 20'000), 1);
    const auto mark = [&](bool &what) {
        const std::lock_guard lock(monitor);
        what = true;
        changed.notify_all();
    };
    mark(isWaitedFor);
    finisher.wait();
    for (unsigned i = 1; i <= 3; ++i) {
        EXPECT_EQ(sizeOf(i), 4096U) << i;
    }
    mark(wasWaitedFor);
    finisher.end();
    reader.join();
    EXPECT_FALSE(wasLeftTooEarly);
    EXPECT_EQ(bytes, 100'000U);
    EXPECT_TRUE(finisher.isGood());
}

TEST_F(FinishingTest, AFileThatCannotBeClosedIsNotComplete) {
    putContent("empty", "");
    const auto *const empty = static_cast<const PosixContent *>(files.contentSource(contentAt("empty")));
    constexpr int NotOpen = 1'000'000'000; // nothing is to be written, so that closing is the first call that counts
    for (const bool hasContent : {true, false}) {
        const std::function<void(bool)> finished = [&](bool isGood) { EXPECT_EQ(isGood, !hasContent); };
        PosixFileFinisher finisher(finished);
        finisher.add({FileDescriptor(NotOpen), 1, {hasContent ? empty : nullptr, 0, {}}});
        finisher.end();
        EXPECT_EQ(finisher.isGood(), !hasContent);
    }
}

TEST_F(FinishingTest, WhatTheWorkThrowsIsThrownWhenTheFilesAreComplete) {
    auto writer = files.beginHierarchy(folder / "two");
    const ContentSource *const content = files.contentSource(folder / "support/Orvane/File Content/small");
    ASSERT_TRUE(writer->enterFolder("top"));
    const auto work = [&] {
        EXPECT_TRUE(writer->copyItem("first", *content, {}));
        throw std::bad_alloc();
    };
    EXPECT_THROW(static_cast<void>(writer->finishOnSecondThread(work, [](bool) {})), std::bad_alloc);
    EXPECT_EQ(contentsOf(folder / "two/top/first").size(), 4096U);
    ASSERT_TRUE(writer->copyItem("second", *content, {}));
    EXPECT_EQ(contentsOf(folder / "two/top/second").size(), 4096U); // by this thread
}

TEST_F(FinishingTest, WithoutMoreThreadsTheMakerCompletesTheFiles) {
    putFolder(folder / "own");
    ASSERT_EQ(::chmod(std::string(folder / "own").c_str(), 0777), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  PosixFileSystem own;
                  auto writer = own.beginHierarchy(folder / "own");
                  const ContentSource *const content = own.contentSource(folder / "support/Orvane/File Content/small");
                  const rlimit none = {0, 0};
                  if (!writer->enterFolder("top") || ::setrlimit(RLIMIT_NPROC, &none) != 0) {
                      return "not begun";
                  }
                  int told = 0;
                  const auto work = [&] {
                      for (int i = 0; i < 100; ++i) {
                          told += writer->copyItem(std::to_string(i), *content, {3, {}}) ? 0 : 1000;
                      }
                  };
                  const pthread_t here = ::pthread_self();
                  const auto finished = [&](bool isGood) { told += isGood && ::pthread_equal(here, ::pthread_self()) != 0 ? 1 : 1000; };
                  if (writer->finishOnSecondThread(work, finished) != TwoThreads::Done || told == 0 || told >= 1000) {
                      return "not finished here: " + std::to_string(told);
                  }
                  for (const std::string &name : namesIn(folder / "own/top")) {
                      if (contentsOf(folder / "own/top/" + name).size() != 4096) {
                          return name;
                      }
                  }
                  return std::to_string(namesIn(folder / "own/top").size());
              }),
              "100");
}

TEST_F(FinishingTest, AfterTheFirstFailureTheOthersAreGivenUp) {
    const auto *const content = static_cast<const PosixContent *>(files.contentSource(folder / "support/Orvane/File Content/small"));
    std::atomic<int> good = 0;
    std::atomic<int> bad = 0;
    const std::function<void(bool)> finished = [&](bool isGood) { ++(isGood ? good : bad); };
    PosixFileFinisher finisher(finished);
    for (unsigned i = 0; i < 300; ++i) {
        const std::string path = folder / "two/" + std::to_string(i);
        putFile(path, "");
        const int flags = i == 150 ? O_RDONLY : O_WRONLY;
        finisher.add({FileDescriptor(::open(path.c_str(), flags | O_CLOEXEC)), i + 1, {content, 0, {}}});
    }
    finisher.end();
    EXPECT_FALSE(finisher.isGood());
    EXPECT_EQ(bad, 1);
    EXPECT_GT(good, 0);
    std::size_t complete = 0;
    for (unsigned i = 0; i < 300; ++i) {
        const std::size_t size = contentsOf(folder / "two/" + std::to_string(i)).size();
        EXPECT_EQ(size, size == 0 || i == 150 ? 0U : 4096U) << i;
        complete += size > 0 ? 1 : 0;
    }
    EXPECT_LT(complete, 299U); // at least the rest of that batch was not touched
}

} // namespace

} // namespace orvane::testing
