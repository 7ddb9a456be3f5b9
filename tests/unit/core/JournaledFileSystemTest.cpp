#include "presets/ORVJournaledFileSystem.h"

#include "fakes/FakeCreationJournal.h"
#include "fakes/FakeFileSystem.h"

#include <gtest/gtest.h>

namespace orvane {

namespace {

using Lines = std::vector<std::string>;

class JournaledFileSystem : public testing::Test {
protected:
    JournaledFileSystem() { _files.addFolder("/base"); }

    FakeFileSystem _files;
    FakeCreationJournal _journal;
    ORVJournaledFileSystem _journaled{_files, _journal};
};

TEST_F(JournaledFileSystem, NotesEachItemBeforeItIsMadeAndThatItIsDone) {
    Lines atCalls;
    _files.beforeCall = [&](const std::string &line) {
        if (line.starts_with("enterFolder") || line.starts_with("makeEmptyFile")) {
            atCalls.push_back(_journal.lines.back());
        }
    };
    const auto writer = _journaled.beginHierarchy("/base");
    ASSERT_TRUE(writer->enterFolder("top"));
    ASSERT_TRUE(writer->enterFolder("in"));
    ASSERT_TRUE(writer->makeEmptyFile("file", {}));
    writer->leaveFolder({});
    ASSERT_TRUE(writer->makeEmptyFile("other", {}));
    EXPECT_EQ(atCalls, (Lines{"d 0/top = 1", "d 1/in = 2", "f 2/file", "f 1/other"}));
    EXPECT_EQ(_journal.lines,
              (Lines{"begin /base", "d 0/top = 1", "done", "d 1/in = 2", "done", "f 2/file", "done", "done", "f 1/other", "done"}));
    EXPECT_EQ(_files.listing("/base"), (Lines{"top/", "top/in/", "top/in/file", "top/other"}));
}

TEST_F(JournaledFileSystem, EndsTheEntryWhenTheTopFolderHasBeenLeft) {
    const auto writer = _journaled.beginHierarchy("/base");
    ASSERT_TRUE(writer->enterFolder("top"));
    EXPECT_NE(_journal.lines.back(), "end");
    writer->leaveFolder({});
    EXPECT_EQ(_journal.lines.back(), "end");
}

TEST_F(JournaledFileSystem, EndsTheEntryAfterEverythingWasRemoved) {
    const auto writer = _journaled.beginHierarchy("/base");
    ASSERT_TRUE(writer->enterFolder("top"));
    _files.failItem("bad");
    ASSERT_FALSE(writer->makeEmptyFile("bad", {}));
    EXPECT_EQ(_journal.lines.back(), "done");
    EXPECT_EQ(writer->lastError(), EIO);
    bool wasOpen = false;
    _files.beforeCall = [&](const std::string &) { wasOpen = wasOpen || _journal.lines.back() != "end"; };
    writer->removeEverythingMade();
    EXPECT_TRUE(wasOpen);
    EXPECT_EQ(_journal.lines.back(), "end");
    EXPECT_EQ(_files.listing("/base"), Lines());
}

TEST_F(JournaledFileSystem, DoesNotCountAFolderThatCouldNotBeEntered) {
    const auto writer = _journaled.beginHierarchy("/base");
    ASSERT_TRUE(writer->enterFolder("top"));
    _files.failItem("bad");
    ASSERT_FALSE(writer->enterFolder("bad"));
    ASSERT_TRUE(writer->makeEmptyFile("file", {}));
    EXPECT_EQ(_journal.lines[5], "f 1/file");
}

TEST_F(JournaledFileSystem, GoesOnWithoutAJournalThatDoesNotWork) {
    _journal.works = false;
    const auto writer = _journaled.beginHierarchy("/base");
    ASSERT_TRUE(writer->enterFolder("top"));
    writer->leaveFolder({});
    EXPECT_EQ(_journal.lines, Lines());
    EXPECT_EQ(_files.listing("/base"), Lines{"top/"});
}

TEST_F(JournaledFileSystem, BeginsNoEntryWhereNoHierarchyCanBegin) {
    _files.failCall(1, EIO, "beginHierarchy");
    EXPECT_EQ(_journaled.beginHierarchy("/base"), nullptr);
    EXPECT_EQ(_journal.lines, Lines());
}

} // namespace

} // namespace orvane
