// What is found of creations whose process has ended, and by whom. The journal stands in memory, as in use.

#include "platform/posix/PosixCreationJournal.h"
#include "platform/posix/PosixCreationRecovery.h"

#include "FilesTestSupport.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane::testing {

namespace {

class CreationRecoveryTest : public ::testing::Test {
protected:
    CreationRecoveryTest() {
        std::string pattern = "/dev/shm/orvane-recovery-XXXXXX";
        _root = ::mkdtemp(pattern.data()) == nullptr ? std::string() : pattern;
        EXPECT_FALSE(_root.empty());
        std::filesystem::create_directory(_root + "/jobs");
    }
    ~CreationRecoveryTest() override { std::filesystem::remove_all(_root); }

    [[nodiscard]] std::string journal() const { return _root + "/creations"; }
    [[nodiscard]] std::string job(const std::string &name) const { return _root + "/jobs/" + name; }
    /// Makes the top folder of a creation and notes it.
    [[nodiscard]] std::unique_ptr<CreationJournal::Entry> begin(const std::string &name) const {
        auto entry = PosixCreationJournal(journal()).begin(_root + "/jobs");
        if (entry) {
            entry->aboutToMake(CreationJournal::Kind::Folder, CreationJournal::Base, name, 0);
            std::filesystem::create_directory(job(name));
            entry->isDone(0);
        }
        return entry;
    }
    /// Such a creation of a process that ends in the middle of it.
    void beginAndDie(const std::string &name) const {
        const pid_t child = ::fork();
        if (child == 0) {
            const auto entry = begin(name);
            ::_exit(entry ? 0 : 1);
        }
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
    }

    /// Such a creation that dies while one of its two threads copies a folder, and after the other one made a file.
    void dieWhileAFolderIsCopied(const std::string &name) const {
        const auto entry = begin(name);
        if (!entry) {
            ::_exit(1);
        }
        entry->aboutToMake(CreationJournal::Kind::Copy, 1, "copied", 1);
        std::filesystem::create_directory(job(name) + "/copied");
        entry->aboutToMake(CreationJournal::Kind::File, 1, "file", 0);
        std::ofstream(job(name) + "/file") << "";
        entry->isDone(0);
        const auto longAfter = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
        for (int i = 0; std::chrono::steady_clock::now() < longAfter; ++i) {
            std::ofstream(job(name) + "/copied/" + std::to_string(i % 50)) << i;
        }
        ::_exit(0);
    }

    /// Changes the folder until its time of change tells so. False when that takes too long.
    static bool becomesChanged(PosixCreationRecovery &recovery, const std::string &folder) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (std::chrono::steady_clock::now() < deadline) {
            std::ofstream(folder + "/passing") << "by";
            std::filesystem::remove(folder + "/passing");
            const auto remains = recovery.remains();
            if (remains.size() == 1 && remains.front().changed == std::vector<std::string>{folder}) {
                return true;
            }
        }
        return false;
    }

private:
    std::string _root;
};

TEST_F(CreationRecoveryTest, NothingIsThereBeforeTheFirstCreation) {
    PosixCreationRecovery recovery(journal());
    EXPECT_FALSE(recovery.mayHaveRemains());
    EXPECT_TRUE(recovery.remains().empty());
    EXPECT_FALSE(std::filesystem::exists(journal())) << "looking makes nothing";
    EXPECT_FALSE(PosixCreationRecovery({}).mayHaveRemains());
}

TEST_F(CreationRecoveryTest, CreationsThatGoOnAndThoseThatWereFinishedAreNoRemains) {
    PosixCreationRecovery recovery(journal());
    auto entry = begin("Acme");
    ASSERT_NE(entry, nullptr);
    EXPECT_FALSE(recovery.mayHaveRemains());
    EXPECT_TRUE(recovery.remains().empty());
    entry.reset();
    EXPECT_FALSE(recovery.mayHaveRemains());
    EXPECT_TRUE(recovery.remains().empty());
}

TEST_F(CreationRecoveryTest, KilledOnesAreFoundBesideOnesThatGoOn) {
    PosixCreationRecovery recovery(journal());
    const auto entry = begin("Running");
    beginAndDie("Acme");
    EXPECT_TRUE(recovery.mayHaveRemains());
    const auto remains = recovery.remains();
    ASSERT_EQ(remains.size(), 1U);
    EXPECT_EQ(remains.front().topPath, job("Acme"));
    EXPECT_EQ(recovery.remove(remains.front()), 1U);
    EXPECT_FALSE(recovery.mayHaveRemains());
    EXPECT_FALSE(std::filesystem::exists(job("Acme")));
    EXPECT_TRUE(std::filesystem::exists(job("Running")));
}

TEST_F(CreationRecoveryTest, WhatEitherOfTwoThreadsWasAtIsNotTakenForChanged) {
    PosixCreationRecovery recovery(journal());
    const pid_t child = ::fork();
    if (child == 0) {
        dieWhileAFolderIsCopied("Acme");
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    const auto remains = recovery.remains();
    ASSERT_EQ(remains.size(), 1U);
    EXPECT_EQ(remains.front().changed, std::vector<std::string>());
    EXPECT_EQ(recovery.remove(remains.front()), remains.front().items);
    EXPECT_FALSE(std::filesystem::exists(job("Acme")));
}

/// Makes "Acme/closed", which keeps its owner out, with a file and a folder with a file in it, and ends in the middle of the creation.
void makeClosedFolderAndDie(const std::string &root, mode_t mode) {
    const auto entry = PosixCreationJournal(root + "/creations").begin(root);
    if (!entry) {
        ::_exit(1);
    }
    using Kind = CreationJournal::Kind;
    const auto makeFolder = [&](CreationJournal::FolderNumber parent, const std::string &path) {
        const auto number = entry->aboutToMake(Kind::Folder, parent, std::filesystem::path(path).filename().string(), 0);
        std::filesystem::create_directory(root + path);
        entry->isDone(0);
        return number;
    };
    const auto makeFile = [&](CreationJournal::FolderNumber parent, const std::string &path) {
        entry->aboutToMake(Kind::File, parent, std::filesystem::path(path).filename().string(), 0);
        std::ofstream(root + path) << "";
        entry->isDone(0);
    };
    const auto closed = makeFolder(makeFolder(CreationJournal::Base, "/Acme"), "/Acme/closed");
    makeFile(closed, "/Acme/closed/file");
    makeFile(makeFolder(closed, "/Acme/closed/inner"), "/Acme/closed/inner/file");
    ::chmod((root + "/Acme/closed/inner").c_str(), 0300);
    ::chmod((root + "/Acme/closed").c_str(), mode);
    entry->isDone(0);
    ::_exit(0);
}

/// Removes that; a file of somebody else's may have come into it meanwhile.
std::string removeClosedFolder(mode_t mode, bool hasForeign) {
    std::string root = "/dev/shm/orvane-recovery-XXXXXX";
    if (::mkdtemp(root.data()) == nullptr) {
        return "no folder";
    }
    const pid_t child = ::fork();
    if (child == 0) {
        makeClosedFolderAndDie(root, mode);
    }
    int status = -1;
    if (::waitpid(child, &status, 0) != child || status != 0) {
        return "no creation";
    }
    const std::string closed = root + "/Acme/closed";
    if (hasForeign) {
        ::chmod(closed.c_str(), 0700);
        std::ofstream(closed + "/foreign") << "theirs";
        ::chmod(closed.c_str(), mode);
    }
    PosixCreationRecovery recovery(root + "/creations");
    const auto remains = recovery.remains();
    const std::size_t removed = remains.empty() ? 0 : recovery.remove(remains.front());
    struct stat after {};
    const bool isThere = ::stat(closed.c_str(), &after) == 0;
    const bool isForeignThere = ::chmod(closed.c_str(), 0700) == 0 && std::filesystem::exists(closed + "/foreign");
    std::filesystem::remove_all(root);
    if (hasForeign) {
        return isForeignThere && (after.st_mode & 07777U) == mode ? "" : "the foreign file or the mode is gone";
    }
    return removed == 5 && !isThere ? "" : std::to_string(removed) + " removed of " + std::to_string(remains.front().items);
}

TEST_F(CreationRecoveryTest, FoldersThatKeepTheirOwnerOutAreRemovedWithWhatIsInThem) {
    for (const mode_t mode : {0000U, 0100U, 0300U, 0444U, 0640U}) {
        EXPECT_EQ(asOrdinaryUser([&] { return removeClosedFolder(mode, false); }), "") << mode;
    }
}

TEST_F(CreationRecoveryTest, AFolderThatKeepsItsOwnerOutAndStaysGetsItsModeBack) {
    for (const mode_t mode : {0000U, 0640U}) {
        EXPECT_EQ(asOrdinaryUser([&] { return removeClosedFolder(mode, true); }), "") << mode;
    }
}

TEST_F(CreationRecoveryTest, ARemovalThatWasKilledGoesOnTheNextTime) {
    PosixCreationRecovery recovery(journal());
    beginAndDie("Acme");
    ASSERT_TRUE(becomesChanged(recovery, job("Acme")));
    {
        const FileDescriptor entry = PosixCreationJournal::openIdle(journal(), recovery.remains().front().entry);
        PosixCreationJournal::beginRemoval(entry.get());
    }
    const auto remains = recovery.remains();
    ASSERT_EQ(remains.size(), 1U);
    EXPECT_EQ(remains.front().items, 1U);
    EXPECT_TRUE(remains.front().changed.empty());
    EXPECT_EQ(recovery.remove(remains.front()), 1U);
    EXPECT_FALSE(std::filesystem::exists(job("Acme")));
}

TEST_F(CreationRecoveryTest, WhatWasPutIntoAFolderStaysWhenARemovalGoesOn) {
    PosixCreationRecovery recovery(journal());
    beginAndDie("Acme");
    {
        const FileDescriptor entry = PosixCreationJournal::openIdle(journal(), recovery.remains().front().entry);
        PosixCreationJournal::beginRemoval(entry.get());
    }
    std::ofstream(job("Acme") + "/mine.txt") << "mine";
    for (const CreationRemains &each : recovery.remains()) {
        recovery.remove(each);
    }
    EXPECT_TRUE(std::filesystem::exists(job("Acme") + "/mine.txt"));
}

TEST_F(CreationRecoveryTest, KeepingForgetsNoOtherCreation) {
    PosixCreationRecovery recovery(journal());
    beginAndDie("Acme");
    const auto old = recovery.remains();
    ASSERT_EQ(old.size(), 1U);
    recovery.remove(old.front());
    beginAndDie("Beta"); // in the entry that is free again
    ASSERT_EQ(recovery.remains().front().entry, old.front().entry);
    recovery.keep(old.front());
    ASSERT_EQ(recovery.remains().size(), 1U);
    EXPECT_EQ(recovery.remains().front().topPath, job("Beta"));
}

TEST_F(CreationRecoveryTest, AFolderThatIsNotOursIsNotOpenedForWriting) {
    const pid_t child = ::fork();
    if (child == 0) {
        // The superuser may take something out of any folder.
        if (::geteuid() == 0) {
            constexpr unsigned Nobody = 65534;
            if (::chmod(job("..").c_str(), 0755) != 0 || ::chown((job("") + "..").c_str(), Nobody, Nobody) != 0 ||
                ::chown(job("").c_str(), Nobody, Nobody) != 0 || ::setgid(Nobody) != 0 || ::setuid(Nobody) != 0) {
                ::_exit(2);
            }
        }
        beginAndDie("Acme");
        PosixCreationRecovery recovery(journal());
        const auto remains = recovery.remains();
        if (remains.size() != 1 || ::chmod(job("").c_str(), 0555) != 0) {
            ::_exit(3);
        }
        const bool isLeft = recovery.remove(remains.front()) == 0 && std::filesystem::exists(job("Acme"));
        ::_exit(::chmod(job("").c_str(), 0755) == 0 && isLeft ? 0 : 4);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(CreationRecoveryTest, OfTwoThatRemoveTheSameOneFindsNothingMore) {
    PosixCreationRecovery one(journal());
    PosixCreationRecovery other(journal());
    beginAndDie("Acme");
    const auto seen = other.remains();
    ASSERT_EQ(seen.size(), 1U);
    EXPECT_EQ(one.remove(one.remains().front()), 1U);
    std::filesystem::create_directory(job("Acme")); // somebody else's
    EXPECT_EQ(other.remove(seen.front()), 0U);
    EXPECT_TRUE(std::filesystem::exists(job("Acme")));
}

TEST_F(CreationRecoveryTest, KeptOnesAreForgotten) {
    PosixCreationRecovery recovery(journal());
    beginAndDie("Acme");
    recovery.keep(recovery.remains().front());
    EXPECT_FALSE(recovery.mayHaveRemains());
    EXPECT_TRUE(recovery.remains().empty());
    EXPECT_TRUE(std::filesystem::exists(job("Acme")));
}

TEST_F(CreationRecoveryTest, WhatIsGoneIsForgottenWhenItIsLookedFor) {
    PosixCreationRecovery recovery(journal());
    beginAndDie("Acme");
    std::filesystem::remove(job("Acme"));
    EXPECT_TRUE(recovery.mayHaveRemains()) << "only the entry is looked at";
    EXPECT_TRUE(recovery.remains().empty());
    EXPECT_FALSE(recovery.mayHaveRemains());
}

} // namespace
} // namespace orvane::testing
