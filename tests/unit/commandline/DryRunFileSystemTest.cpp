#include "DryRunFileSystem.h"

#include "fakes/FakeFileSystem.h"
#include "platform/posix/PosixFileSystem.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {
namespace {

class DryRun : public testing::Test {
protected:
    void begin() {
        _writer = _dry.beginHierarchy(_base);
        ASSERT_TRUE(_writer->enterFolder("top"));
    }
    /// What the engine does for a file with a content file: each content is asked for once.
    void makeFile(const std::string &name, const std::string &content = {}) {
        if (!content.empty() && !_sources.contains(content)) {
            _sources[content] = _dry.contentSource("/store/" + content);
        }
        const ContentSource *source = content.empty() ? nullptr : _sources.at(content);
        if (source == nullptr || !_writer->copyItem(name, *source, {})) {
            EXPECT_TRUE(_writer->makeEmptyFile(name, {}));
        }
    }
    const TreeItem &last() { return _dry.tree().back(); }

    const std::string _base = testing::TempDir(); ///< the one thing asked of the real system: whether it may be written to
    FakeFileSystem _disk;
    DryRunFileSystem _dry{_disk};
    std::unique_ptr<HierarchyWriter> _writer;
    std::map<std::string, const ContentSource *> _sources;
};

TEST_F(DryRun, ListsWhatWouldBeMadeAndMakesNothing) {
    begin();
    ASSERT_TRUE(_writer->enterFolder("a"));
    _disk.addFile("/store/c.txt", "content");
    makeFile("b", "c.txt");
    ItemAttributes attributes;
    attributes.label = 3;
    attributes.mode = 0750;
    _writer->leaveFolder(attributes);
    makeFile("e");
    _writer->leaveFolder({});
    const Tree &tree = _dry.tree();
    ASSERT_EQ(tree.size(), 4U);
    EXPECT_EQ(tree[1].name, "a");
    EXPECT_EQ(tree[1].label, 3);
    EXPECT_EQ(tree[1].mode, 0750U);
    EXPECT_EQ(tree[2].depth, 2U);
    EXPECT_EQ(tree[2].content, "c.txt");
    EXPECT_EQ(tree[3].depth, 1U);
    for (const TreeItem &item : tree) {
        EXPECT_EQ(item.problem, "");
    }
    EXPECT_EQ(_dry.topPath(), _base + "top");
    EXPECT_FALSE(_dry.wouldFail());
    EXPECT_FALSE(_disk.fileExists(_base + "top"));
    EXPECT_TRUE(_disk.calls("beginHierarchy").empty());
}

TEST_F(DryRun, AMissingContentFileIsAProblemButNoFailure) {
    begin();
    makeFile("b", "missing.txt");
    EXPECT_EQ(last().problem, "the content file 'missing.txt' cannot be read: the file will be empty");
    EXPECT_EQ(last().content, "");
    makeFile("c");
    EXPECT_EQ(last().problem, "");
    EXPECT_FALSE(_dry.wouldFail());
}

TEST_F(DryRun, EveryFileOfAContentIsMarkedNotOnlyTheFirst) {
    begin();
    _disk.addFile("/store/c.txt", "content");
    for (const char *const name : {"a", "b", "c"}) {
        makeFile(name, "c.txt");
        EXPECT_EQ(last().content, "c.txt") << name;
        EXPECT_EQ(last().problem, "") << name;
        makeFile(std::string("no ") + name, "missing.txt");
        EXPECT_EQ(last().content, "") << name;
        EXPECT_EQ(last().problem, "the content file 'missing.txt' cannot be read: the file will be empty") << name;
    }
    makeFile("empty");
    EXPECT_EQ(last().problem, "");
    EXPECT_FALSE(_dry.wouldFail());
}

TEST_F(DryRun, NamesThatNoFileSystemTakesWouldFail) {
    for (const std::string &name : {std::string("."), std::string(".."), std::string(256, 'x'), std::string("a\0b", 3)}) {
        begin();
        makeFile("ok");
        EXPECT_FALSE(_dry.wouldFail());
        makeFile(name);
        EXPECT_NE(last().problem, "");
        EXPECT_TRUE(_dry.wouldFail());
        makeFile("goes on");
        EXPECT_EQ(last().problem, "");
    }
    begin();
    makeFile(std::string(255, 'x'));
    EXPECT_FALSE(_dry.wouldFail());
}

TEST_F(DryRun, DuplicateSiblingsAreMarked) {
    begin();
    _disk.addFile("/store/c.txt", "content");
    makeFile("f");
    makeFile("f", "c.txt");
    EXPECT_EQ(last().problem, "empties the file of the same name above");
    EXPECT_FALSE(_dry.wouldFail());
    ASSERT_TRUE(_writer->enterFolder("d"));
    makeFile("x");
    _writer->leaveFolder({});
    ASSERT_TRUE(_writer->enterFolder("d"));
    EXPECT_EQ(last().problem, "goes into the folder of the same name above");
    makeFile("x");
    EXPECT_EQ(last().problem, "empties the file of the same name above");
    _writer->leaveFolder({});
    EXPECT_FALSE(_dry.wouldFail());
    makeFile("d");
    EXPECT_EQ(last().problem, "a folder of the same name stands above");
    EXPECT_TRUE(_dry.wouldFail());
}

TEST_F(DryRun, AFolderOverAFileWouldFail) {
    begin();
    makeFile("f");
    ASSERT_TRUE(_writer->enterFolder("f"));
    EXPECT_EQ(last().problem, "a file of the same name stands above");
    EXPECT_TRUE(_dry.wouldFail());
}

TEST_F(DryRun, NamesThatDifferInCaseOnlyAreDifferent) {
    begin();
    makeFile("f");
    makeFile("F");
    EXPECT_EQ(last().problem, "");
}

TEST_F(DryRun, WhatStandsInTheWayOnDiskIsMarked) {
    _disk.addFile(_base + "top/f");
    begin();
    EXPECT_EQ(last().problem, "goes into what is already there");
    makeFile("f");
    EXPECT_EQ(last().problem, "something of that name is already there");
    EXPECT_TRUE(_dry.wouldFail());
}

TEST_F(DryRun, AFolderThatTakesNothingIsTold) {
    _writer = _dry.beginHierarchy("/proc");
    ASSERT_TRUE(_writer->enterFolder("top"));
    if (::access("/proc", W_OK) == 0) { // a superuser's permissions say nothing about what the kernel makes there
        EXPECT_EQ(last().problem, "");
    } else {
        EXPECT_TRUE(last().problem.starts_with("nothing can be made in '/proc': ")) << last().problem;
        EXPECT_TRUE(_dry.wouldFail());
    }
}

/// What stands on a real disk before.
class DryRunOnDisk : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "dryrun-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder); }
    /// The problem that entering a top-level folder of that name meets.
    std::string problemOfTop(const std::string &name) {
        writer = dry.beginHierarchy(folder.string());
        EXPECT_TRUE(writer->enterFolder(name));
        return dry.tree().back().problem;
    }

    std::filesystem::path folder;
    PosixFileSystem disk;
    DryRunFileSystem dry{disk};
    std::unique_ptr<HierarchyWriter> writer;
};

TEST_F(DryRunOnDisk, AFileWhereTheTopFolderWouldBeFails) {
    std::ofstream(folder / "file") << "kept";
    EXPECT_EQ(problemOfTop("file"), "something of that name is already there");
    EXPECT_TRUE(dry.wouldFail());
}

TEST_F(DryRunOnDisk, ALinkToNothingWhereTheTopFolderWouldBeFails) {
    std::filesystem::create_symlink("nowhere", folder / "link");
    EXPECT_EQ(problemOfTop("link"), "something of that name is already there");
    EXPECT_TRUE(dry.wouldFail());
}

TEST_F(DryRunOnDisk, AFolderThatIsCopiedCountsAsAFolder) {
    std::filesystem::create_directory(folder / "content");
    EXPECT_EQ(problemOfTop("top"), "");
    const ContentSource *source = dry.contentSource((folder / "content").string());
    ASSERT_NE(source, nullptr);
    ASSERT_TRUE(writer->copyItem("a", *source, {}));
    ASSERT_TRUE(writer->enterFolder("a"));
    EXPECT_EQ(dry.tree().back().problem, "goes into the folder of the same name above");
    writer->leaveFolder({});
    EXPECT_FALSE(dry.wouldFail());
    EXPECT_TRUE(writer->makeEmptyFile("a", {}));
    EXPECT_TRUE(dry.wouldFail());
}

TEST_F(DryRun, EveryHierarchyBeginsAnew) {
    begin();
    makeFile("..");
    begin();
    EXPECT_EQ(_dry.tree().size(), 1U);
    EXPECT_FALSE(_dry.wouldFail());
}

} // namespace
} // namespace orvane
