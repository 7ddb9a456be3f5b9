#include "FilesTestSupport.h"

#include "platform/posix/PosixFinderInformation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/xattr.h>

// Hierarchies deeper than descriptors and paths reach.

namespace orvane::testing {

namespace {

/// Descriptor of the folder `levels` below `top`, all of that name; -1 when there are not so many.
int openLevel(const std::string &top, const std::string &name, int levels) {
    int folder = ::open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < levels && folder >= 0; ++i) {
        const int next = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        ::close(folder);
        folder = next;
    }
    return folder;
}

std::string makeChain(const std::string &base, const std::string &name, int levels, rlim_t descriptors, mode_t umask) {
    const rlimit few = {descriptors, descriptors};
    ::setrlimit(RLIMIT_NOFILE, &few);
    ::umask(umask);
    PosixFileSystem files;
    auto writer = files.beginHierarchy(base);
    for (int i = 0; i < levels; ++i) {
        if (!writer->enterFolder(name)) {
            return "level " + std::to_string(i) + " failed with " + std::to_string(writer->lastError());
        }
    }
    if (!writer->makeEmptyFile("end", {6, 0640})) {
        return "no file at the end";
    }
    for (int i = 0; i < levels; ++i) {
        if (!writer->makeEmptyFile("on the way back", {})) {
            return "way back failed at " + std::to_string(levels - i);
        }
        writer->leaveFolder({i % 100 == 0 ? 3 : 0, i % 3 == 0 ? std::optional(0750U) : std::nullopt});
    }
    for (const int level : {1, 2, 7, 8, 9, levels / 2, levels - 1, levels}) {
        const int folder = openLevel(base, name, level);
        struct stat status {};
        if (folder < 0 || ::fstat(folder, &status) != 0 || ::faccessat(folder, "on the way back", F_OK, 0) != 0) {
            return "level " + std::to_string(level) + " is not there";
        }
        if ((levels - level) % 3 == 0 && (status.st_mode & 07777U) != 0750) {
            return "level " + std::to_string(level) + " has a wrong mode";
        }
        ::close(folder);
    }
    writer->removeEverythingMade();
    return isThere(base + "/" + name) ? "not removed" : "";
}

/// Chains of every depth up to `most`, each with copies of all contents at its end.
std::string copyAtEveryDepth(const std::string &base, const std::vector<std::string> &contents, int most, rlim_t descriptors) {
    const rlimit few = {descriptors, descriptors};
    ::setrlimit(RLIMIT_NOFILE, &few);
    for (int levels = 1; levels <= most; ++levels) {
        PosixFileSystem files;
        auto writer = files.beginHierarchy(base);
        bool isGood = writer->enterFolder(std::to_string(levels));
        for (int i = 1; i < levels; ++i) {
            isGood = isGood && writer->enterFolder("level");
        }
        for (std::size_t i = 0; i < contents.size(); ++i) {
            const ContentSource *const source = files.contentSource(contents[i]);
            isGood = isGood && source != nullptr && writer->copyItem(std::to_string(i), *source, {});
        }
        if (!isGood || !writer->makeEmptyFile("end", {})) {
            return "failed at " + std::to_string(levels) + " levels with " + std::to_string(writer->lastError());
        }
        for (int i = 0; i < levels; ++i) {
            writer->leaveFolder({});
        }
    }
    return "";
}

class PosixDepth : public ::testing::TestWithParam<mode_t> {
protected:
    const TemporaryFolder folder;
};

} // namespace

TEST_P(PosixDepth, ThreeThousandLevelsFitUnder1024Descriptors) {
    EXPECT_EQ(inChild([&] { return makeChain(folder.path(), "level", 3000, 1024, GetParam()); }), "");
}

TEST_P(PosixDepth, AThousandLevelsFitUnder32Descriptors) {
    EXPECT_EQ(inChild([&] { return makeChain(folder.path(), "level", 1000, 32, GetParam()); }), "");
}

TEST_P(PosixDepth, AtEveryDepthThereAreDescriptorsLeftForContents) {
    putFolder(folder / "made", 0777);
    std::vector<std::string> contents;
    for (int i = 0; i < 8; ++i) { // small ones, which are kept in memory, and large ones, which are kept open
        contents.push_back(folder / ("content " + std::to_string(i)));
        putFile(contents.back(), std::string(i % 2 == 0 ? 10 : 200000, 'x'));
    }
    EXPECT_EQ(inChild([&] {
                  ::umask(GetParam());
                  return copyAtEveryDepth(folder / "made", contents, 100, 32);
              }),
              "");
}

TEST_P(PosixDepth, PathsBeyondPATH_MAXAreMadeAndRemoved) {
    EXPECT_EQ(inChild([&] { return makeChain(folder.path(), std::string(20, 'n'), 500, 1024, GetParam()); }), "");
    EXPECT_EQ(inChild([&] { return makeChain(folder.path(), std::string(255, 'n'), 100, 1024, GetParam()); }), "");
}

INSTANTIATE_TEST_SUITE_P(Umask, PosixDepth, ::testing::Values(0022, 0000));

TEST(PosixDepthTest, TheBaseMayLieBeyondPATH_MAX) {
    const TemporaryFolder folder;
    std::string base = folder.path();
    for (int i = 0; i < 60; ++i) {
        base += "/" + std::string(200, static_cast<char>('a' + i % 26));
    }
    PosixFileSystem files;
    EXPECT_FALSE(files.fileExists(base));
    auto first = files.beginHierarchy(base);
    ASSERT_NE(first, nullptr);
    ASSERT_TRUE(first->makeEmptyFile("script", {0, 0755}));
    EXPECT_TRUE(files.fileExists(base));
    EXPECT_TRUE(files.isExecutableFile(base + "/script"));
    EXPECT_FALSE(files.isExecutableFile(base + "/missing"));
    EXPECT_NE(files.contentSource(base + "/script"), nullptr);
    EXPECT_NE(files.contentSource(base), nullptr);

    auto second = files.beginHierarchy(base);
    ASSERT_NE(second, nullptr);
    ASSERT_TRUE(second->enterFolder("top"));
    second->leaveFolder({});
    EXPECT_TRUE(files.fileExists(base + "/top"));

    PosixFinderInformation information;
    std::uint16_t flags = 1;
    EXPECT_TRUE(information.hasItem(base + "/top"));
    EXPECT_EQ(information.writeFlags(base + "/top", 0x000C), 0);
    EXPECT_EQ(information.readFlags(base + "/top", flags), 0);
    EXPECT_EQ(flags, 0x000C);

    second->removeEverythingMade();
    EXPECT_FALSE(files.fileExists(base + "/top"));
    first->removeEverythingMade();
    EXPECT_EQ(namesIn(folder.path()), std::vector<std::string>());
}

TEST(PosixDepthTest, TheWorkingFolderMayBeTheBase) {
    const TemporaryFolder folder;
    EXPECT_EQ(inChild([&]() -> std::string {
                  if (::chdir(folder.path().c_str()) != 0) {
                      return "cannot go there";
                  }
                  PosixFileSystem files;
                  auto here = files.beginHierarchy(".");
                  auto below = files.beginHierarchy("new/./sub");
                  return here && below && here->makeEmptyFile("a", {}) && below->makeEmptyFile("b", {}) ? "" : "failed";
              }),
              "");
    EXPECT_TRUE(isThere(folder / "a"));
    EXPECT_TRUE(isThere(folder / "new/sub/b"));
}

TEST(PosixDepthTest, AFolderWhoseLabelCannotBeSetForWantOfDescriptorsHasItsModeAllTheSame) {
    const TemporaryFolder folder;
    putFolder(folder / "base");
    EXPECT_EQ(inChild([&]() -> std::string {
                  const rlimit few = {32, 32};
                  ::setrlimit(RLIMIT_NOFILE, &few);
                  constexpr int Levels = 20;
                  std::vector<int> taken;
                  const auto takeAllDescriptors = [&taken] {
                      for (int one = ::dup(0); one >= 0; one = ::dup(0)) {
                          taken.push_back(one);
                      }
                  };
                  PosixFileSystem files;
                  auto writer = files.beginHierarchy(folder / "base");
                  for (int i = 0; i < Levels; ++i) {
                      if (!writer->enterFolder("d")) {
                          return "cannot make";
                      }
                  }
                  for (int i = 0; i < Levels; ++i) {
                      takeAllDescriptors();
                      writer->leaveFolder({3, 0711});
                  }
                  std::for_each(taken.begin(), taken.end(), ::close);
                  int labels = 0;
                  std::string path = folder / "base";
                  for (int i = 0; i < Levels; ++i) {
                      path += "/d";
                      struct stat status {};
                      if (::stat(path.c_str(), &status) != 0 || (status.st_mode & 07777U) != 0711) {
                          return "level " + std::to_string(i) + " has a wrong mode";
                      }
                      labels += ::listxattr(path.c_str(), nullptr, 0) > 0 ? 1 : 0;
                  }
                  return labels < Levels ? "" : "every label could be set, so nothing was seen";
              }),
              "");
}

TEST(PosixDepthTest, AFolderMovedAwayOnTheWayBackIsNotTakenForAnother) {
    const TemporaryFolder folder;
    putFolder(folder / "base", 0777);
    putFolder(folder / "elsewhere");
    EXPECT_EQ(inChild([&]() -> std::string {
                  const rlimit few = {32, 32};
                  ::setrlimit(RLIMIT_NOFILE, &few);
                  ::umask(0);
                  PosixFileSystem files;
                  auto writer = files.beginHierarchy(folder / "base");
                  std::string path = folder / "base";
                  for (int i = 0; i < 100; ++i) {
                      if (!writer->enterFolder("d")) {
                          return "cannot make";
                      }
                  }
                  if (::rename((folder / "base/d/d/d").c_str(), (folder / "elsewhere/d").c_str()) != 0) {
                      return "cannot move";
                  }
                  for (int i = 0; i < 98; ++i) {
                      writer->leaveFolder({});
                  }
                  if (writer->makeEmptyFile("astray", {})) {
                      return "made a file in another folder";
                  }
                  writer->leaveFolder({});
                  writer->leaveFolder({});
                  return writer->makeEmptyFile("home", {}) ? "" : "the base was lost";
              }),
              "");
    EXPECT_FALSE(isThere(folder / "elsewhere/astray"));
    EXPECT_TRUE(isThere(folder / "base/home"));
}

} // namespace orvane::testing
