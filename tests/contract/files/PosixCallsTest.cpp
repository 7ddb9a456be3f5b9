#include "FilesTestSupport.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>

// Counts of system calls, which unlike times are the same on every machine. strace writes one line a call.

namespace orvane::testing {

namespace {

struct Trace {
    int status = -1;
    int calls = 0;
    std::map<std::string, int> byName;
    int opensOfContents = 0;

    int count(const std::string &name) const {
        const auto found = byName.find(name);
        return found == byName.end() ? 0 : found->second;
    }
};

class PosixCalls : public ::testing::Test {
protected:
    void SetUp() override {
        putFolder(folder / "base");
        putFolder(folder / "File Content");
        for (int i = 0; i < 10; ++i) {
            putFile(folder / ("File Content/" + std::to_string(i)), std::string(4096, 'c'), i == 1 ? 0755 : 0644);
        }
        setAttribute(folder / "File Content/3", "user.note", "kept");
    }

    Trace trace(int nodes, const std::string &more = "") {
        const std::string log = folder / "log";
        Trace result;
        result.status = run("strace -f -o '" + log + "' '" + HIERARCHY_DRIVER + "' '" + (folder / "base") + "' '" +
                            (folder / "File Content") + "' " + std::to_string(nodes) + " " + more);
        std::ifstream lines(log);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t begin = line.find_first_not_of("0123456789 ");
            const std::size_t end = line.find('(');
            if (begin != std::string::npos && end != std::string::npos && begin < end && line.find(" = ", end) != std::string::npos) {
                ++result.calls;
                ++result.byName[line.substr(begin, end - begin)];
                result.opensOfContents +=
                    line.find("File Content/", end) != std::string::npos && line.compare(begin, 4, "open") == 0 ? 1 : 0;
            }
        }
        return result;
    }

    const TemporaryFolder folder;
};

} // namespace

TEST_F(PosixCalls, AHierarchyOf1001NodesTakesAtMost2Point6CallsANodeAnd150) {
    const Trace made = trace(1000);
    ASSERT_EQ(made.status, 0);
    ASSERT_EQ(made.count("mkdirat"), 301);
    RecordProperty("calls", made.calls);
    EXPECT_LE(made.calls, 2.6 * 1001 + 150);
    EXPECT_EQ(made.opensOfContents, 7) << "distinct contents, each opened once";
    for (const char *name : {"fsync", "fdatasync", "sync", "syncfs", "sync_file_range", "rename", "renameat", "renameat2"}) {
        EXPECT_EQ(made.count(name), 0) << name;
    }
}

TEST_F(PosixCalls, AnOrdinaryFolderAndAnEmptyFileTakeOneCallEach) {
    const Trace made = trace(1000);
    ASSERT_EQ(made.status, 0);
    EXPECT_EQ(made.count("mknodat"), 300) << "the 50 others carry a label";
    EXPECT_EQ(made.count("write"), 350);
    // Opened are copies, labelled files and folders, contents, and the few files of a program's start.
    EXPECT_LE(made.count("openat"), 350 + 50 + 31 + 7 + 20);
}

TEST_F(PosixCalls, RemovalTakesOneCallANode) {
    const Trace made = trace(1000);
    ASSERT_EQ(made.status, 0);
    ASSERT_EQ(run("rm -r '" + (folder / "base") + "/top'"), 0);
    const Trace removed = trace(1000, "remove");
    ASSERT_EQ(removed.status, 0);
    EXPECT_EQ(removed.count("unlinkat"), 1001);
    EXPECT_LE(removed.calls, made.calls + 1001 + 10);
    EXPECT_FALSE(isThere(folder / "base/top"));
}

} // namespace orvane::testing
