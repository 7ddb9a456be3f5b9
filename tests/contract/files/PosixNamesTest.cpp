#include "FilesTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace orvane::testing {

/// Names of every kind that a Linux file system takes byte for byte.
class PosixNames : public ::testing::TestWithParam<std::string> {};

TEST_P(PosixNames, AreMadeAndRemovedByteForByte) {
    const TemporaryFolder folder;
    PosixFileSystem files;
    auto writer = files.beginHierarchy(folder.path());
    ASSERT_TRUE(writer->enterFolder(GetParam()));
    ASSERT_TRUE(writer->makeEmptyFile(GetParam(), {6, 0640}));
    ASSERT_TRUE(writer->enterFolder(GetParam() + "2"));
    writer->leaveFolder({1, 0750});
    writer->leaveFolder({2, 0711});
    const std::string top = folder / GetParam();
    std::vector<std::string> expected = {GetParam(), GetParam() + "2"};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(namesIn(top), expected);
    EXPECT_EQ(modeOf(top), 0711U);
    EXPECT_EQ(modeOf(top + "/" + GetParam()), 0640U);
    EXPECT_EQ(modeOf(top + "/" + GetParam() + "2"), 0750U);
    writer->removeEverythingMade();
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>());
}

INSTANTIATE_TEST_SUITE_P(All, PosixNames,
                         ::testing::Values(" ", "  leading and trailing  ", std::string(254, 'x'), "new\nline\ttab\x01\x7f",
                                           "\xff\xfe invalid \xc3", "\xed\xa0\x80", "e\xcc\x81", "\xc3\xa9",
                                           "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d \xe2\x80\xae"
                                           "txt",
                                           "\xf0\x9f\x8e\xac\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x9a\x80", "-rf", "~", "~root", "%d %s %@",
                                           "...", ".hidden", "a:b", "*?[x]", "\\", "$(x)`y`", "COM1"));

TEST(PosixNamesTest, NamesThatDifferInCaseOnlyAreTwo) {
    const TemporaryFolder folder;
    PosixFileSystem files;
    auto writer = files.beginHierarchy(folder.path());
    ASSERT_TRUE(writer->makeEmptyFile("Name", {0, 0600}));
    ASSERT_TRUE(writer->makeEmptyFile("name", {0, 0640}));
    ASSERT_TRUE(writer->enterFolder("NAME"));
    writer->leaveFolder({});
    EXPECT_EQ(namesIn(folder.path()), (std::vector<std::string>{"NAME", "Name", "name"}));
    EXPECT_EQ(modeOf(folder / "Name"), 0600U);
    EXPECT_EQ(modeOf(folder / "name"), 0640U);
}

TEST(PosixNamesTest, ComposedAndDecomposedNamesAreTwo) {
    const TemporaryFolder folder;
    PosixFileSystem files;
    auto writer = files.beginHierarchy(folder.path());
    ASSERT_TRUE(writer->makeEmptyFile("\xc3\xa9", {}));
    ASSERT_TRUE(writer->makeEmptyFile("e\xcc\x81", {}));
    EXPECT_EQ(namesIn(folder.path()).size(), 2U);
}

TEST(PosixNamesTest, AnEmptiedFileThatCannotBeOpenedFails) {
    const TemporaryFolder folder;
    putFolder(folder / "work", 0777);
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  PosixFileSystem files;
                  auto writer = files.beginHierarchy(folder / "work");
                  if (!writer || !writer->makeEmptyFile("x", {0, 0400})) {
                      return "cannot make";
                  }
                  return !writer->makeEmptyFile("x", {}) && writer->lastError() == EACCES ? "" : "not refused";
              }),
              "");
}

TEST(PosixNamesTest, AFileOfOursThatWasReplacedIsNotEmptied) {
    const TemporaryFolder folder;
    putFile(folder / "precious", "precious");
    PosixFileSystem files;
    auto writer = files.beginHierarchy(folder.path());
    for (const char *name : {"symbolic", "hard"}) {
        ASSERT_TRUE(writer->makeEmptyFile(name, {}));
        ASSERT_EQ(::unlink((folder / name).c_str()), 0);
    }
    putLink(folder / "symbolic", "precious");
    ASSERT_EQ(::link((folder / "precious").c_str(), (folder / "hard").c_str()), 0);
    EXPECT_FALSE(writer->makeEmptyFile("symbolic", {}));
    EXPECT_FALSE(writer->makeEmptyFile("hard", {}));
    EXPECT_EQ(contentsOf(folder / "precious"), "precious");
}

} // namespace orvane::testing
