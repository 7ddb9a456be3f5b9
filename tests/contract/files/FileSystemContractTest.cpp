#include "FilesTestSupport.h"
#include "fakes/FakeFileSystem.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <string>
#include <vector>

// What every `FileSystem` and `HierarchyWriter` promises, run on the one in memory and on the real one, so that the one in
// memory cannot drift.

namespace orvane::testing {

namespace {

/// A file system and a way to put things into it and look at them, under one folder.
class World {
public:
    virtual ~World() = default;
    virtual FileSystem &fileSystem() = 0;
    virtual std::string root() = 0;
    virtual void file(const std::string &path, const std::string &contents, unsigned mode) = 0;
    virtual void folder(const std::string &path) = 0;
    virtual void link(const std::string &path, const std::string &target) = 0;
    virtual void special(const std::string &path) = 0;
    virtual std::vector<std::string> names(const std::string &path) = 0;
    virtual std::string contents(const std::string &path) = 0;
    virtual unsigned mode(const std::string &path) = 0;
    virtual int label(const std::string &path) = 0;
};

class FakeWorld final : public World {
public:
    FakeWorld() { _fileSystem.addFolder("/world"); }
    FileSystem &fileSystem() override { return _fileSystem; }
    std::string root() override { return "/world"; }
    void file(const std::string &path, const std::string &contents, unsigned mode) override { _fileSystem.addFile(path, contents, mode); }
    void folder(const std::string &path) override { _fileSystem.addFolder(path); }
    void link(const std::string &path, const std::string &target) override { _fileSystem.addLink(path, target); }
    void special(const std::string &path) override { _fileSystem.addSpecial(path); }
    std::vector<std::string> names(const std::string &path) override { return _fileSystem.node(path)->names(); }
    std::string contents(const std::string &path) override { return _fileSystem.node(path)->contents; }
    unsigned mode(const std::string &path) override { return _fileSystem.node(path)->mode; }
    int label(const std::string &path) override { return _fileSystem.node(path)->label; }

private:
    FakeFileSystem _fileSystem;
};

class PosixWorld final : public World {
public:
    FileSystem &fileSystem() override { return _fileSystem; }
    std::string root() override { return _folder.path(); }
    void file(const std::string &path, const std::string &contents, unsigned mode) override { putFile(path, contents, mode); }
    void folder(const std::string &path) override { putFolder(path); }
    void link(const std::string &path, const std::string &target) override { putLink(path, target); }
    void special(const std::string &path) override { ASSERT_EQ(::mkfifo(path.c_str(), 0644), 0); }
    std::vector<std::string> names(const std::string &path) override { return namesIn(path); }
    std::string contents(const std::string &path) override { return contentsOf(path); }
    unsigned mode(const std::string &path) override { return modeOf(path); }
    int label(const std::string &path) override {
        const auto information = attributeOf(path, "user.com.apple.FinderInfo");
        return information && information->size() == 32 ? ((*information)[9] >> 1) & 7 : 0;
    }

private:
    TemporaryFolder _folder;
    PosixFileSystem _fileSystem;
};

using MakeWorld = std::unique_ptr<World> (*)();

class FileSystemContract : public ::testing::TestWithParam<MakeWorld> {
protected:
    std::string at(const std::string &name) { return world->root() + "/" + name; }
    std::unique_ptr<HierarchyWriter> begin() { return world->fileSystem().beginHierarchy(world->root()); }
    FileSystem &files() { return world->fileSystem(); }

    std::unique_ptr<World> world = GetParam()();
};

using Names = std::vector<std::string>;

} // namespace

TEST_P(FileSystemContract, NothingExistsUntilItIsThere) {
    EXPECT_FALSE(files().fileExists(at("x")));
    world->file(at("x"), "", 0644);
    world->folder(at("y"));
    EXPECT_TRUE(files().fileExists(at("x")));
    EXPECT_TRUE(files().fileExists(at("y")));
    EXPECT_FALSE(files().fileExists(at("x/z")));
}

TEST_P(FileSystemContract, ADanglingLinkCountsAsNothingAndALinkToSomethingAsSomething) {
    world->link(at("dangling"), at("nowhere"));
    world->file(at("x"), "", 0644);
    world->link(at("good"), "x");
    EXPECT_FALSE(files().fileExists(at("dangling")));
    EXPECT_TRUE(files().fileExists(at("good")));
}

TEST_P(FileSystemContract, AFileIsExecutableByItsMode) {
    world->file(at("plain"), "", 0644);
    world->file(at("script"), "", 0755);
    world->folder(at("folder"));
    EXPECT_FALSE(files().isExecutableFile(at("plain")));
    EXPECT_TRUE(files().isExecutableFile(at("script")));
    EXPECT_TRUE(files().isExecutableFile(at("folder"))); // one may pass through it
    EXPECT_FALSE(files().isExecutableFile(at("missing")));
}

TEST_P(FileSystemContract, ContentSourcesAreFilesFoldersAndLinksToFiles) {
    world->file(at("file"), "bytes", 0644);
    world->folder(at("folder"));
    world->link(at("to file"), "file");
    world->link(at("to link"), "to file");
    EXPECT_NE(files().contentSource(at("file")), nullptr);
    EXPECT_NE(files().contentSource(at("folder")), nullptr);
    EXPECT_NE(files().contentSource(at("to link")), nullptr);
}

TEST_P(FileSystemContract, WhatCannotBeCopiedIsNoContentSource) {
    world->folder(at("folder"));
    world->link(at("to folder"), "folder");
    world->link(at("dangling"), "nowhere");
    world->link(at("cycle 1"), "cycle 2");
    world->link(at("cycle 2"), "cycle 1");
    world->special(at("fifo"));
    for (const char *name : {"to folder", "dangling", "cycle 1", "fifo", "missing"}) {
        EXPECT_EQ(files().contentSource(at(name)), nullptr) << name;
    }
}

TEST_P(FileSystemContract, AContentSourceIsKeptUntilContentsAreForgotten) {
    world->file(at("file"), "old", 0644);
    const ContentSource *const source = files().contentSource(at("file"));
    ASSERT_NE(source, nullptr);
    world->file(at("file"), "new", 0644);
    EXPECT_EQ(files().contentSource(at("file")), source);
    files().forgetContents();
    auto writer = begin();
    ASSERT_TRUE(writer->copyItem("copy", *files().contentSource(at("file")), {}));
    EXPECT_EQ(world->contents(at("copy")), "new");
}

TEST_P(FileSystemContract, AMissingContentIsLookedForAgainOnlyAfterForgetting) {
    EXPECT_EQ(files().contentSource(at("late")), nullptr);
    world->file(at("late"), "", 0644);
    files().forgetContents();
    EXPECT_NE(files().contentSource(at("late")), nullptr);
}

TEST_P(FileSystemContract, MakesAHierarchyInOrder) {
    auto writer = begin();
    ASSERT_NE(writer, nullptr);
    ASSERT_TRUE(writer->enterFolder("top"));
    ASSERT_TRUE(writer->enterFolder("inner"));
    ASSERT_TRUE(writer->makeEmptyFile("a", {}));
    writer->leaveFolder({});
    ASSERT_TRUE(writer->makeEmptyFile("b", {}));
    writer->leaveFolder({});
    EXPECT_EQ(world->names(world->root()), Names({"top"}));
    EXPECT_EQ(world->names(at("top")), Names({"b", "inner"}));
    EXPECT_EQ(world->names(at("top/inner")), Names({"a"}));
    EXPECT_EQ(world->contents(at("top/b")), "");
}

TEST_P(FileSystemContract, MakesTheBaseAndItsParents) {
    auto writer = files().beginHierarchy(at("p/q/r/"));
    ASSERT_NE(writer, nullptr);
    ASSERT_TRUE(writer->makeEmptyFile("a", {}));
    EXPECT_EQ(world->names(at("p/q/r")), Names({"a"}));
}

TEST_P(FileSystemContract, AFileInTheBasePathGivesNoHierarchyAndLeavesNothing) {
    world->file(at("file"), "x", 0644);
    EXPECT_EQ(files().beginHierarchy(at("file")), nullptr);
    EXPECT_EQ(files().beginHierarchy(at("file/below")), nullptr);
    EXPECT_EQ(world->names(world->root()), Names({"file"}));
}

TEST_P(FileSystemContract, TheBaseMayBeALinkToAFolder) {
    world->folder(at("real"));
    world->link(at("link"), "real");
    auto writer = files().beginHierarchy(at("link"));
    ASSERT_NE(writer, nullptr);
    ASSERT_TRUE(writer->makeEmptyFile("a", {}));
    EXPECT_EQ(world->names(at("real")), Names({"a"}));
}

TEST_P(FileSystemContract, TheBaseIsNeverLeft) {
    auto writer = files().beginHierarchy(at("p/q"));
    writer->leaveFolder({});
    ASSERT_TRUE(writer->makeEmptyFile("a", {}));
    EXPECT_EQ(world->names(at("p/q")), Names({"a"}));
}

TEST_P(FileSystemContract, LabelsAndModesAreGivenToFilesAndFolders) {
    auto writer = begin();
    ASSERT_TRUE(writer->enterFolder("folder"));
    ASSERT_TRUE(writer->makeEmptyFile("file", {6, 0640}));
    ASSERT_TRUE(writer->makeEmptyFile("open", {0, 0666}));
    writer->leaveFolder({2, 0750});
    EXPECT_EQ(world->label(at("folder")), 2);
    EXPECT_EQ(world->mode(at("folder")), 0750U);
    EXPECT_EQ(world->label(at("folder/file")), 6);
    EXPECT_EQ(world->mode(at("folder/file")), 0640U);
    EXPECT_EQ(world->mode(at("folder/open")), 0666U);
}

TEST_P(FileSystemContract, ACopyHasContentsAndModeOfItsSourceUnlessAModeIsGiven) {
    world->file(at("source"), "some bytes", 0751);
    auto writer = begin();
    ASSERT_TRUE(writer->copyItem("copy", *files().contentSource(at("source")), {}));
    ASSERT_TRUE(writer->copyItem("other", *files().contentSource(at("source")), {5, 0600}));
    EXPECT_EQ(world->contents(at("copy")), "some bytes");
    EXPECT_EQ(world->mode(at("copy")), 0751U);
    EXPECT_EQ(world->label(at("copy")), 0);
    EXPECT_EQ(world->contents(at("other")), "some bytes");
    EXPECT_EQ(world->mode(at("other")), 0600U);
    EXPECT_EQ(world->label(at("other")), 5);
}

TEST_P(FileSystemContract, AFolderIsCopiedWithAllBelowIt) {
    world->folder(at("store"));
    world->folder(at("store/inner"));
    world->file(at("store/inner/deep"), "deep bytes", 0600);
    world->file(at("store/flat"), "flat bytes", 0644);
    world->link(at("store/link"), "flat");
    world->special(at("store/fifo"));
    auto writer = begin();
    ASSERT_TRUE(writer->copyItem("copy", *files().contentSource(at("store")), {3, 0710}));
    EXPECT_EQ(world->names(at("copy")), Names({"fifo", "flat", "inner", "link"}));
    EXPECT_EQ(world->contents(at("copy/inner/deep")), "deep bytes");
    EXPECT_EQ(world->mode(at("copy/inner/deep")), 0600U);
    EXPECT_EQ(world->contents(at("copy/flat")), "flat bytes");
    EXPECT_EQ(world->label(at("copy")), 3);
    EXPECT_EQ(world->mode(at("copy")), 0710U);
    writer->removeEverythingMade();
    EXPECT_EQ(world->names(world->root()), Names({"store"}));
    EXPECT_EQ(world->names(at("store")), Names({"fifo", "flat", "inner", "link"}));
}

TEST_P(FileSystemContract, ACopyOverSomethingFailsAndLeavesIt) {
    world->file(at("source"), "new", 0644);
    world->file(at("taken"), "old", 0644);
    world->folder(at("folder"));
    world->link(at("dangling"), "nowhere");
    auto writer = begin();
    for (const char *name : {"taken", "folder", "dangling"}) {
        EXPECT_FALSE(writer->copyItem(name, *files().contentSource(at("source")), {})) << name;
        EXPECT_EQ(writer->lastError(), EEXIST) << name;
    }
    EXPECT_EQ(world->contents(at("taken")), "old");
    EXPECT_EQ(world->names(world->root()), Names({"dangling", "folder", "source", "taken"}));
}

TEST_P(FileSystemContract, AFolderCopyOverSomethingFailsAndLeavesIt) {
    world->folder(at("source"));
    world->file(at("source/a"), "new", 0644);
    world->folder(at("taken"));
    auto writer = begin();
    EXPECT_FALSE(writer->copyItem("taken", *files().contentSource(at("source")), {}));
    EXPECT_EQ(world->names(at("taken")), Names({}));
    ASSERT_TRUE(writer->makeEmptyFile("after", {}));
    EXPECT_EQ(world->names(world->root()), Names({"after", "source", "taken"}));
}

TEST_P(FileSystemContract, AFileThatWasThereBeforeIsNeverEmptied) {
    world->file(at("mine"), "precious", 0644);
    world->link(at("link"), "mine");
    auto writer = begin();
    EXPECT_FALSE(writer->makeEmptyFile("mine", {}));
    EXPECT_EQ(writer->lastError(), EEXIST);
    EXPECT_FALSE(writer->makeEmptyFile("link", {}));
    EXPECT_EQ(world->contents(at("mine")), "precious");
}

TEST_P(FileSystemContract, AFileOfTheSameRunIsEmptied) {
    world->file(at("source"), "bytes", 0755);
    auto writer = begin();
    ASSERT_TRUE(writer->enterFolder("top"));
    ASSERT_TRUE(writer->copyItem("x", *files().contentSource(at("source")), {}));
    EXPECT_FALSE(writer->copyItem("x", *files().contentSource(at("source")), {}));
    EXPECT_TRUE(writer->makeEmptyFile("x", {4, {}}));
    EXPECT_EQ(world->contents(at("top/x")), "");
    EXPECT_EQ(world->mode(at("top/x")), 0755U);
    EXPECT_EQ(world->label(at("top/x")), 4);
    EXPECT_TRUE(writer->makeEmptyFile("x", {0, 0600}));
    EXPECT_EQ(world->mode(at("top/x")), 0600U);
    EXPECT_EQ(world->label(at("top/x")), 4);
}

TEST_P(FileSystemContract, AFileOverAFolderAndAFolderOverAFileFail) {
    auto writer = begin();
    ASSERT_TRUE(writer->enterFolder("folder"));
    ASSERT_TRUE(writer->makeEmptyFile("inside", {}));
    writer->leaveFolder({});
    EXPECT_FALSE(writer->makeEmptyFile("folder", {}));
    ASSERT_TRUE(writer->makeEmptyFile("file", {}));
    EXPECT_FALSE(writer->enterFolder("file"));
    ASSERT_TRUE(writer->makeEmptyFile("still in the base", {}));
    EXPECT_EQ(world->names(world->root()), Names({"file", "folder", "still in the base"}));
    EXPECT_EQ(world->names(at("folder")), Names({"inside"}));
}

TEST_P(FileSystemContract, AFolderThatIsThereIsEnteredAsItIs) {
    world->folder(at("there"));
    world->file(at("there/old"), "old", 0644);
    auto writer = begin();
    ASSERT_TRUE(writer->enterFolder("there"));
    EXPECT_FALSE(writer->makeEmptyFile("old", {}));
    ASSERT_TRUE(writer->makeEmptyFile("new", {}));
    ASSERT_TRUE(writer->enterFolder("below"));
    ASSERT_TRUE(writer->makeEmptyFile("x", {}));
    writer->leaveFolder({});
    writer->leaveFolder({});
    EXPECT_EQ(world->names(at("there")), Names({"below", "new", "old"}));
    writer->removeEverythingMade();
    EXPECT_EQ(world->names(at("there")), Names({"old"}));
    EXPECT_EQ(world->contents(at("there/old")), "old");
}

TEST_P(FileSystemContract, AFolderOfTheSameRunCanBeEnteredAgain) {
    auto writer = begin();
    for (const char *name : {"one", "two"}) {
        ASSERT_TRUE(writer->enterFolder("twice"));
        ASSERT_TRUE(writer->enterFolder("inner"));
        ASSERT_TRUE(writer->makeEmptyFile(name, {}));
        ASSERT_TRUE(writer->makeEmptyFile("both", {}));
        writer->leaveFolder({});
        writer->leaveFolder({});
    }
    EXPECT_EQ(world->names(at("twice/inner")), Names({"both", "one", "two"}));
    writer->removeEverythingMade();
    EXPECT_EQ(world->names(world->root()), Names({}));
}

TEST_P(FileSystemContract, ALinkToAFolderIsNotEntered) {
    world->folder(at("real"));
    world->link(at("link"), "real");
    auto writer = begin();
    EXPECT_FALSE(writer->enterFolder("link"));
    ASSERT_TRUE(writer->makeEmptyFile("a", {}));
    EXPECT_EQ(world->names(at("real")), Names({}));
    EXPECT_EQ(world->names(world->root()), Names({"a", "link", "real"}));
}

TEST_P(FileSystemContract, NamesThatAreNoNamesAreRefused) {
    world->file(at("source"), "", 0644);
    auto writer = begin();
    ASSERT_TRUE(writer->enterFolder("top"));
    const std::vector<std::string> bad = {"", ".", "..", "a/b", "/", "../x", std::string("a\0b", 3)};
    for (const std::string &name : bad) {
        EXPECT_FALSE(writer->enterFolder(name)) << name;
        EXPECT_EQ(writer->lastError(), EINVAL) << name;
        EXPECT_FALSE(writer->makeEmptyFile(name, {})) << name;
        EXPECT_FALSE(writer->copyItem(name, *files().contentSource(at("source")), {})) << name;
    }
    EXPECT_EQ(world->names(at("top")), Names({}));
    EXPECT_EQ(world->names(world->root()), Names({"source", "top"}));
}

TEST_P(FileSystemContract, AName255BytesLongIsTheLongest) {
    auto writer = begin();
    EXPECT_TRUE(writer->makeEmptyFile(std::string(255, 'f'), {}));
    EXPECT_TRUE(writer->enterFolder(std::string(255, 'd')));
    writer->leaveFolder({});
    EXPECT_FALSE(writer->makeEmptyFile(std::string(256, 'f'), {}));
    EXPECT_EQ(writer->lastError(), ENAMETOOLONG);
    EXPECT_FALSE(writer->enterFolder(std::string(256, 'd')));
    EXPECT_EQ(writer->lastError(), ENAMETOOLONG);
}

TEST_P(FileSystemContract, RemovesExactlyWhatItMade) {
    world->folder(at("mine"));
    world->file(at("mine/file"), "precious", 0644);
    world->file(at("source"), "bytes", 0644);
    auto writer = files().beginHierarchy(at("new/base"));
    ASSERT_TRUE(writer->enterFolder("top"));
    ASSERT_TRUE(writer->makeEmptyFile("a", {}));
    ASSERT_TRUE(writer->enterFolder("inner"));
    ASSERT_TRUE(writer->copyItem("b", *files().contentSource(at("source")), {}));
    writer->leaveFolder({0, 0500});
    writer->removeEverythingMade();
    EXPECT_EQ(world->names(world->root()), Names({"mine", "source"}));
    EXPECT_EQ(world->contents(at("mine/file")), "precious");
}

TEST_P(FileSystemContract, AForeignItemKeepsTheFoldersAboveIt) {
    auto writer = begin();
    ASSERT_TRUE(writer->enterFolder("top"));
    ASSERT_TRUE(writer->enterFolder("held"));
    ASSERT_TRUE(writer->makeEmptyFile("ours", {}));
    writer->leaveFolder({});
    ASSERT_TRUE(writer->enterFolder("free"));
    writer->leaveFolder({});
    world->file(at("top/held/foreign"), "theirs", 0644);
    writer->removeEverythingMade();
    EXPECT_EQ(world->names(at("top")), Names({"held"}));
    EXPECT_EQ(world->names(at("top/held")), Names({"foreign"}));
    EXPECT_EQ(world->contents(at("top/held/foreign")), "theirs");
}

TEST_P(FileSystemContract, ManyNamesInOneFolderAndManyDuplicatesAreNoTrouble) {
    auto writer = begin();
    ASSERT_TRUE(writer->enterFolder("top"));
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 20000; ++i) {
            ASSERT_TRUE(writer->makeEmptyFile("file " + std::to_string(i), {}));
        }
    }
    EXPECT_EQ(world->names(at("top")).size(), 20000U);
    writer->removeEverythingMade();
    EXPECT_EQ(world->names(world->root()), Names({}));
}

INSTANTIATE_TEST_SUITE_P(Fake, FileSystemContract,
                         ::testing::Values([]() -> std::unique_ptr<World> { return std::make_unique<FakeWorld>(); }));
INSTANTIATE_TEST_SUITE_P(Posix, FileSystemContract,
                         ::testing::Values([]() -> std::unique_ptr<World> { return std::make_unique<PosixWorld>(); }));

} // namespace orvane::testing
