// The second thread finds no memory, while the first one has enough: nothing that two threads could decide. A program of its own, as its
// allocation is that of all that is in it.

#include "TwoThreadsTestSupport.h"

#include "platform/posix/PosixCreationJournal.h"
#include "presets/ORVJournaledFileSystem.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>
#include <thread>
#include <vector>

namespace orvane::testing {

namespace {

std::atomic<bool> isShort = false;    ///< of memory, for all threads that have none for certain
thread_local bool isProvided = false; ///< has memory for certain
std::atomic<int> refused = 0;         ///< requests

void *memoryOrNull(std::size_t size) noexcept {
    if (isShort && !isProvided) {
        ++refused;
        return nullptr;
    }
    return std::malloc(size > 0 ? size : 1);
}

} // namespace

} // namespace orvane::testing

void *operator new(std::size_t size) {
    if (void *const memory = orvane::testing::memoryOrNull(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
    return orvane::testing::memoryOrNull(size);
}

void operator delete(void *memory) noexcept {
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete(void *memory, const std::nothrow_t &) noexcept {
    std::free(memory);
}

namespace orvane::testing {

namespace {

class SecondThreadMemoryTest : public TwoThreadsTest {
protected:
    void SetUp() override {
        TwoThreadsTest::SetUp();
        isProvided = true;
        refused = 0;
    }
    void TearDown() override { isShort = false; }

    /// Makes the preset; in the first attempt the item of that name waits for the second thread to find no memory.
    Outcome createWithLittleMemory(const PropertyList &preset, const std::string &last) {
        return createWithLittleMemory(shared, preset, last);
    }
    Outcome createWithLittleMemory(FileSystem &disk, const PropertyList &preset, const std::string &last) {
        shared.beforeEmptyFile = [this, last](std::string_view name) {
            if (name == last && shared.hierarchies == 1) {
                const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
                while (refused == 0 && std::chrono::steady_clock::now() < deadline) {
                    std::this_thread::yield();
                }
                EXPECT_GT(refused, 0);
            }
        };
        isShort = true;
        Outcome outcome = create(disk, preset, folder / "one");
        isShort = false;
        return outcome;
    }
};

TEST_F(SecondThreadMemoryTest, LabelsForWhichThereIsNoneAreSetByOne) {
    std::vector<PropertyList> children;
    for (int i = 0; i < 500; ++i) {
        children.push_back(dict({{"filename", text("take " + std::to_string(i))}, {"color", text("red")}}));
    }
    const Outcome outcome = createWithLittleMemory(test::preset("top", children), "take 499");
    EXPECT_EQ(outcome.alerts.size(), 0U);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(shared.hierarchies, 2);
    ASSERT_EQ(outcome.disk.size(), 501U);
    for (const auto &[path, what] : outcome.disk) {
        EXPECT_EQ(what.find("Red") != std::string::npos, path != "/top") << path << ": " << what;
    }
}

TEST_F(SecondThreadMemoryTest, WhatTwoCannotShareIsMadeByOne) {
    const Outcome outcome = createWithLittleMemory(test::preset("top", scenes(200)), "frame 100");
    EXPECT_EQ(outcome.alerts.size(), 0U);
    EXPECT_EQ(shared.sharings, 1);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(shared.hierarchies, 2);
    EXPECT_EQ(outcome.disk.size(), 401U);
}

TEST_F(SecondThreadMemoryTest, WhatTwoCannotShareIsMadeByOneWithAJournalToo) {
    PosixCreationJournal journal(folder / "journal");
    ORVJournaledFileSystem journaled(shared, journal);
    const Outcome outcome = createWithLittleMemory(journaled, test::preset("top", scenes(200)), "frame 100");
    EXPECT_EQ(outcome.alerts.size(), 0U);
    EXPECT_EQ(shared.sharings, 1);
    EXPECT_EQ(outcome.disk.size(), 401U);
}

TEST_F(SecondThreadMemoryTest, WhatItCannotRemoveStaysAndIsToldOf) {
    // The names are longer than what a text holds without memory of its own.
    const auto named = [](int i) { return "a scene whose name is long, number " + std::to_string(i); };
    FakeSystemLog log;
    PosixFileSystem disk;
    disk.setLog(log);
    const std::unique_ptr<HierarchyWriter> writer = disk.beginHierarchy(folder / "one");
    ASSERT_TRUE(writer->enterFolder("top"));
    std::atomic<int> workers = 0;
    const TwoThreads result = writer->makeOnTwoThreads({}, [&](HierarchyWriter &each) {
        const int first = workers++ * 600;
        for (int i = first; i < first + 600; ++i) {
            ASSERT_TRUE(each.enterFolder(named(i)));
            ASSERT_TRUE(each.makeEmptyFile("frame", {}));
            each.leaveFolder({});
        }
    });
    ASSERT_EQ(result, TwoThreads::Done);
    isShort = true;
    writer->removeEverythingMade();
    isShort = false;
    EXPECT_GT(refused, 0);
    const std::size_t left = snapshot(folder / "one").size();
    EXPECT_GT(left, 0U);
    EXPECT_LE(left, 1201U) << "what this thread was to remove is gone";
    ASSERT_EQ(log.entries().size(), 1U);
    EXPECT_NE(log.entries()[0].find("could not be removed"), std::string::npos) << log.entries()[0];
}

} // namespace

} // namespace orvane::testing
