#include "FilesTestSupport.h"

#include <gtest/gtest.h>

#include "fakes/FakeSystemLog.h"
#include "platform/posix/FileDescriptor.h"

#include <csignal>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

// A disk that is full, closed, or changed by somebody else while a hierarchy is being made.

namespace orvane::testing {

namespace {

bool writeTo(const char *path, const std::string &text) {
    const FileDescriptor file(::open(path, O_WRONLY | O_CLOEXEC));
    return file && ::write(file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

/// For an ordinary user: a user name space in which it is root, and so may mount.
bool becomeRootOfOwnNamespace() {
    const std::string user = "0 " + std::to_string(::geteuid()) + " 1";
    const std::string group = "0 " + std::to_string(::getegid()) + " 1";
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && writeTo("/proc/self/setgroups", "deny") && writeTo("/proc/self/uid_map", user) &&
           writeTo("/proc/self/gid_map", group);
}

/// Runs `work` with a file system of its own of that kind and size mounted at `place`; "" or what went wrong. A name space of its
/// own keeps the mount out of the rest of the system, and it goes away with the child.
std::string onSmallDisk(const std::string &place, const char *options, const std::function<std::string()> &work,
                        const char *kind = "tmpfs") {
    return inChild([&]() -> std::string {
        const bool separated = isRoot() ? ::unshare(CLONE_NEWNS) == 0 : becomeRootOfOwnNamespace();
        if (!separated || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount(kind, place.c_str(), kind, 0, options) != 0) {
            return std::string("cannot mount: ") + std::strerror(errno);
        }
        return work();
    });
}

class PosixDisk : public ::testing::Test {
protected:
    void SetUp() override {
        putFolder(folder / "disk", 0777);
        putFile(folder / "small", std::string(4096, 's'));
        putFile(folder / "large", std::string(300000, 'l'));
    }
    std::string disk() { return folder / "disk"; }

    const TemporaryFolder folder;
    PosixFileSystem files;
};

std::string text(const std::vector<std::string> &names) {
    std::string result;
    for (const std::string &name : names) {
        result += name + ";";
    }
    return result;
}

} // namespace

TEST_F(PosixDisk, WithoutBlocksCopiesFailAndLeaveNothingOfThemselves) {
    EXPECT_EQ(
        onSmallDisk(disk(), "size=64k",
                    [&]() -> std::string {
                        auto writer = files.beginHierarchy(disk());
                        if (writer->copyItem("large", *files.contentSource(folder / "large"), {})) {
                            return "large copied";
                        }
                        if (writer->lastError() != ENOSPC || !namesIn(disk()).empty()) {
                            return "after large: " + std::to_string(writer->lastError()) + text(namesIn(disk()));
                        }
                        int made = 0;
                        while (made < 100 && writer->copyItem("s" + std::to_string(made), *files.contentSource(folder / "small"), {})) {
                            ++made;
                        }
                        if (made == 100 || writer->lastError() != ENOSPC || namesIn(disk()).size() != static_cast<std::size_t>(made)) {
                            return "after small: " + std::to_string(made) + text(namesIn(disk()));
                        }
                        // What the creation does next: an empty file in its place, which needs no block.
                        if (!writer->makeEmptyFile("s" + std::to_string(made), {})) {
                            return "no empty file";
                        }
                        writer->removeEverythingMade();
                        return text(namesIn(disk()));
                    }),
        "");
}

TEST_F(PosixDisk, WithoutInodesEverythingFailsAndRemovalStillWorks) {
    EXPECT_EQ(onSmallDisk(disk(), "size=1m,nr_inodes=16",
                          [&]() -> std::string {
                              auto writer = files.beginHierarchy(disk());
                              int made = 0;
                              while (made < 100 && writer->enterFolder("f") && writer->makeEmptyFile("x", {})) {
                                  ++made;
                              }
                              if (made == 100 || writer->lastError() != ENOSPC) {
                                  return "made " + std::to_string(made);
                              }
                              if (writer->copyItem("y", *files.contentSource(folder / "small"), {}) || writer->lastError() != ENOSPC) {
                                  return "copied without an inode";
                              }
                              writer->removeEverythingMade();
                              return text(namesIn(disk()));
                          }),
              "");
}

TEST_F(PosixDisk, WithoutAttributesLabelsAreLeftOutAndTheLogIsToldOnce) {
    EXPECT_EQ(onSmallDisk(
                  disk(), "mode=0777",
                  [&]() -> std::string {
                      FakeSystemLog log;
                      files.setLog(log);
                      auto writer = files.beginHierarchy(disk());
                      if (!writer->enterFolder("top") || !writer->enterFolder("in") || !writer->makeEmptyFile("e", {3, {}}) ||
                          !writer->copyItem("c", *files.contentSource(folder / "small"), {4, 0640U})) {
                          return "not made: " + std::to_string(writer->lastError());
                      }
                      writer->leaveFolder({5, {}});
                      writer->leaveFolder({});
                      if (!log.entries().empty()) {
                          return "told too early: " + log.entries().front();
                      }
                      writer.reset();
                      writer = files.beginHierarchy(disk());
                      if (!writer->makeEmptyFile("taken away", {3, {}})) {
                          return "not made: " + std::to_string(writer->lastError());
                      }
                      writer->removeEverythingMade();
                      writer.reset();
                      return text(log.entries());
                  },
                  "ramfs"),
              "A label, permissions or times could not be set: 'top/in/e': Operation not supported (2 more like it);");
}

TEST_F(PosixDisk, LabelsThatASecondThreadCouldNotSetAreToldLikeOthers) {
    for (const bool isFolderFirst : {false, true}) { // its label is set by the first thread
        EXPECT_EQ(onSmallDisk(
                      disk(), "mode=0777",
                      [&]() -> std::string {
                          FakeSystemLog log;
                          files.setLog(log);
                          auto writer = files.beginHierarchy(disk());
                          const ContentSource *const content = files.contentSource(folder / "small");
                          bool good = writer->enterFolder("top");
                          const auto makeFolder = [&](const std::string &name) {
                              good = good && writer->enterFolder(name) && writer->makeEmptyFile("e", {isFolderFirst ? 0 : 3, 0640U});
                              writer->leaveFolder({5, {}});
                          };
                          const auto work = [&] {
                              makeFolder("in");
                              for (int i = 0; i < 20; ++i) {
                                  good = good && writer->copyItem(std::to_string(i), *content, {4, {}});
                              }
                              makeFolder("last");
                          };
                          if (writer->finishOnSecondThread(work, [](bool) {}) != TwoThreads::Done || !good) {
                              return "not made: " + std::to_string(writer->lastError());
                          }
                          writer->leaveFolder({});
                          writer.reset();
                          return text(log.entries());
                      },
                      "ramfs"),
                  std::string("A label, permissions or times could not be set: 'top/in") +
                      (isFolderFirst ? "': Operation not supported (21" : "/e': Operation not supported (23") + " more like it);");
    }
}

TEST_F(PosixDisk, WhatCannotBeTakenAwayIsToldToTheLog) {
    FakeSystemLog log;
    files.setLog(log);
    auto writer = files.beginHierarchy(folder.path());
    ASSERT_TRUE(writer->enterFolder("top") && writer->enterFolder("in") && writer->makeEmptyFile("mine", {}));
    putFile(folder / "top/in/foreign", "theirs");
    writer->removeEverythingMade();
    EXPECT_EQ(contentsOf(folder / "top/in/foreign"), "theirs");
    EXPECT_EQ(log.entries(),
              std::vector<std::string>{"Something that was made could not be removed: 'top/in': Directory not empty (1 more like it)"});
    writer = files.beginHierarchy(folder.path());
    ASSERT_TRUE(writer->enterFolder("other") && writer->makeEmptyFile("mine", {}));
    std::filesystem::remove_all(folder / "other"); // somebody else was sooner
    writer->removeEverythingMade();
    EXPECT_EQ(log.entries().size(), 1U);
}

TEST_F(PosixDisk, TwoThreadsWorkOnlyWhereNamesAreKnownToBeToldApart) {
    EXPECT_EQ(onSmallDisk(
                  disk(), "mode=0777",
                  [&]() -> std::string {
                      auto writer = files.beginHierarchy(disk());
                      const bool entered = writer->enterFolder("top");
                      const TwoThreads done = writer->makeOnTwoThreads({}, [](HierarchyWriter &) {});
                      return !entered ? "not made" : done == TwoThreads::Refused ? "refused" : "worked";
                  },
                  "ramfs"),
              "refused");
}

TEST_F(PosixDisk, AReadOnlyDiskRefusesEverything) {
    EXPECT_EQ(onSmallDisk(disk(), "size=1m",
                          [&]() -> std::string {
                              auto writer = files.beginHierarchy(disk());
                              if (::mount("none", disk().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0) {
                                  return "cannot remount";
                              }
                              const bool refused =
                                  !writer->enterFolder("f") && writer->lastError() == EROFS && !writer->makeEmptyFile("x", {}) &&
                                  writer->lastError() == EROFS && !writer->copyItem("x", *files.contentSource(folder / "small"), {}) &&
                                  writer->lastError() == EROFS && !writer->copyItem("x", *files.contentSource(folder / "large"), {});
                              return refused && writer->lastError() == EROFS ? "" : "not refused";
                          }),
              "");
}

TEST_F(PosixDisk, ARefusalInTheMiddleOfAFileLeavesNothingOfIt) {
    EXPECT_EQ(inChild([&]() -> std::string {
                  ::signal(SIGXFSZ, SIG_IGN);
                  const rlimit size = {2000, 2000};
                  ::setrlimit(RLIMIT_FSIZE, &size);
                  auto writer = files.beginHierarchy(disk());
                  for (const char *name : {"small", "large"}) {
                      if (writer->copyItem(name, *files.contentSource(folder / name), {}) || writer->lastError() != EFBIG) {
                          return name;
                      }
                  }
                  return text(namesIn(disk()));
              }),
              "");
}

TEST_F(PosixDisk, AFolderThatMayNotBeWrittenRefusesEverything) {
    putFolder(folder / "closed", 0555);
    giveToOrdinaryUser(folder / "closed");
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  PosixFileSystem own;
                  auto writer = own.beginHierarchy(folder / "closed");
                  if (!writer) {
                      return "no writer";
                  }
                  const bool refused = !writer->enterFolder("f") && writer->lastError() == EACCES && !writer->makeEmptyFile("x", {}) &&
                                       writer->lastError() == EACCES && !writer->copyItem("x", *own.contentSource(folder / "small"), {}) &&
                                       writer->lastError() == EACCES && !writer->copyItem("x", *own.contentSource(folder / "large"), {});
                  return refused && writer->lastError() == EACCES ? "" : "not refused";
              }),
              "");
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  PosixFileSystem own;
                  return own.beginHierarchy(folder / "closed/new") == nullptr && errno == EACCES ? "" : "not refused";
              }),
              "");
}

TEST_F(PosixDisk, AFolderThatMayOnlyBePassedThroughCanBeTheBase) {
    putFolder(folder / "passage", 0333);
    giveToOrdinaryUser(folder / "passage");
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  PosixFileSystem own;
                  auto writer = own.beginHierarchy(folder / "passage");
                  return writer && writer->enterFolder("top") && writer->makeEmptyFile("x", {}) ? "" : "refused";
              }),
              "");
    EXPECT_TRUE(isThere(folder / "passage/top/x"));
}

TEST_F(PosixDisk, AFolderDeletedUnderTheWriterFailsAndHarmsNothing) {
    auto writer = files.beginHierarchy(disk());
    ASSERT_TRUE(writer->enterFolder("top"));
    ASSERT_TRUE(writer->enterFolder("inner"));
    ASSERT_EQ(run("rm -r '" + disk() + "/top'"), 0);
    EXPECT_FALSE(writer->makeEmptyFile("x", {}));
    EXPECT_EQ(writer->lastError(), ENOENT);
    EXPECT_FALSE(writer->copyItem("x", *files.contentSource(folder / "small"), {}));
    EXPECT_FALSE(writer->copyItem("x", *files.contentSource(folder / "large"), {}));
    EXPECT_FALSE(writer->enterFolder("y"));
    writer->leaveFolder({3, 0700});
    writer->leaveFolder({3, 0700});
    putFolder(folder / "disk/top");
    putFile(folder / "disk/top/foreign", "theirs");
    ASSERT_TRUE(writer->makeEmptyFile("beside", {}));
    writer->removeEverythingMade();
    EXPECT_EQ(namesIn(disk()), std::vector<std::string>({"top"}));
    EXPECT_EQ(contentsOf(folder / "disk/top/foreign"), "theirs");
}

TEST_F(PosixDisk, ATopFolderReplacedBySomebodyElsesIsNotEmptied) {
    auto writer = files.beginHierarchy(disk());
    ASSERT_TRUE(writer->enterFolder("top"));
    ASSERT_TRUE(writer->makeEmptyFile("x", {}));
    writer->leaveFolder({});
    ASSERT_EQ(::rename((folder / "disk/top").c_str(), (folder / "moved").c_str()), 0);
    putFolder(folder / "disk/top");
    putFile(folder / "disk/top/x", "theirs");
    writer->removeEverythingMade();
    EXPECT_EQ(contentsOf(folder / "disk/top/x"), "theirs");
    EXPECT_EQ(namesIn(folder / "moved"), std::vector<std::string>({"x"}));
}

TEST_F(PosixDisk, ATopFolderReplacedByALinkIsNotFollowed) {
    putFolder(folder / "precious");
    putFile(folder / "precious/x", "precious");
    auto writer = files.beginHierarchy(disk());
    ASSERT_TRUE(writer->enterFolder("top"));
    ASSERT_TRUE(writer->makeEmptyFile("x", {}));
    ASSERT_EQ(::rename((folder / "disk/top").c_str(), (folder / "moved").c_str()), 0);
    putLink(folder / "disk/top", "../precious");
    ASSERT_TRUE(writer->makeEmptyFile("y", {}));
    writer->leaveFolder({2, 0700});
    writer->removeEverythingMade();
    EXPECT_EQ(namesIn(folder / "precious"), std::vector<std::string>({"x"}));
    EXPECT_EQ(contentsOf(folder / "precious/x"), "precious");
    EXPECT_EQ(modeOf(folder / "precious"), 0755U);
}

TEST_F(PosixDisk, AFolderOfATreeOpenToOthersReplacedByALinkIsNotFollowed) {
    EXPECT_EQ(inChild([&]() -> std::string {
                  ::umask(0);
                  putFolder(folder / "precious");
                  putFile(folder / "precious/x", "precious");
                  PosixFileSystem own;
                  auto writer = own.beginHierarchy(disk());
                  if (!writer->enterFolder("top") || !writer->enterFolder("a") || !writer->enterFolder("b")) {
                      return "cannot make";
                  }
                  if (::rename((folder / "disk/top/a").c_str(), (folder / "moved").c_str()) != 0) {
                      return "cannot move";
                  }
                  putLink(folder / "disk/top/a", "../../precious");
                  if (!writer->makeEmptyFile("x", {0, 0640})) { // goes to where b is now
                      return "cannot go on";
                  }
                  writer->leaveFolder({});
                  writer->leaveFolder({});
                  if (writer->enterFolder("a")) {
                      return "followed a link";
                  }
                  writer->removeEverythingMade();
                  return contentsOf(folder / "precious/x");
              }),
              "precious");
    EXPECT_EQ(modeOf(folder / "moved/b/x"), 0640U);
}

TEST_F(PosixDisk, ATargetThatAppearsBetweenCheckAndCreationStaysWhole) {
    ASSERT_FALSE(files.fileExists(folder / "disk/top"));
    auto writer = files.beginHierarchy(disk());
    putFolder(folder / "disk/top");
    putFile(folder / "disk/top/a", "theirs");
    ASSERT_TRUE(writer->enterFolder("top"));
    EXPECT_FALSE(writer->makeEmptyFile("a", {}));
    EXPECT_FALSE(writer->copyItem("a", *files.contentSource(folder / "small"), {}));
    ASSERT_TRUE(writer->makeEmptyFile("b", {}));
    writer->removeEverythingMade();
    EXPECT_EQ(namesIn(folder / "disk/top"), std::vector<std::string>({"a"}));
    EXPECT_EQ(contentsOf(folder / "disk/top/a"), "theirs");
}

TEST_F(PosixDisk, RemovalOpensFoldersThatWereClosedByTheirModes) {
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  PosixFileSystem own;
                  auto writer = own.beginHierarchy(disk());
                  for (const unsigned mode : {0000U, 0444U, 0555U, 0111U, 0777U, 01777U}) {
                      const std::string name = std::to_string(mode);
                      if (!writer->enterFolder(name) || !writer->enterFolder("inner") || !writer->makeEmptyFile("x", {0, 0000})) {
                          return name;
                      }
                      writer->leaveFolder({0, mode});
                      writer->leaveFolder({0, mode});
                  }
                  writer->removeEverythingMade();
                  return text(namesIn(disk()));
              }),
              "");
}

TEST_F(PosixDisk, NothingCanBeMadeAfterRemoval) {
    auto writer = files.beginHierarchy(disk());
    ASSERT_TRUE(writer->makeEmptyFile("x", {}));
    writer->removeEverythingMade();
    writer->removeEverythingMade();
    EXPECT_FALSE(writer->makeEmptyFile("y", {}));
    EXPECT_FALSE(writer->enterFolder("y"));
    EXPECT_EQ(namesIn(disk()), std::vector<std::string>());
}

} // namespace orvane::testing
