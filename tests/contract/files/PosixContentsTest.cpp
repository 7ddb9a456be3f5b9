#include "FilesTestSupport.h"
#include "platform/posix/PosixWriting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace orvane::testing {

namespace {

class PosixContents : public ::testing::Test {
protected:
    void SetUp() override { writer = files.beginHierarchy(folder.path()); }
    bool copy(const std::string &source, const std::string &name, const ItemAttributes &attributes = {}) {
        const ContentSource *const content = files.contentSource(folder / source);
        return content != nullptr && writer->copyItem(name, *content, attributes);
    }

    const TemporaryFolder folder;
    PosixFileSystem files;
    std::unique_ptr<HierarchyWriter> writer;
};

std::string patternOf(std::size_t size) {
    std::string bytes(size, '\0');
    unsigned state = 1;
    for (char &byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

bool sameTime(const timespec &left, const timespec &right) {
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

} // namespace

TEST_F(PosixContents, EverySizeIsCopiedByteForByte) {
    for (const std::size_t size : {0U, 1U, 4096U, 131071U, 131072U, 131073U, 1000000U, 9000000U}) {
        const std::string name = "source " + std::to_string(size);
        const std::string bytes = patternOf(size);
        putFile(folder / name, bytes);
        ASSERT_TRUE(copy(name, "copy"));
        EXPECT_TRUE(contentsOf(folder / "copy") == bytes) << size;
        ASSERT_TRUE(writer->enterFolder("folder " + std::to_string(size)));
        ASSERT_TRUE(writer->enterFolder("inner"));
        ASSERT_TRUE(copy(name, "copy"));
        writer->leaveFolder({});
        writer->leaveFolder({});
        EXPECT_TRUE(contentsOf(folder / ("folder " + std::to_string(size) + "/inner/copy")) == bytes) << size;
        ASSERT_EQ(::unlink((folder / "copy").c_str()), 0);
    }
}

TEST_F(PosixContents, ModeTimesAndAttributesAreKept) {
    for (const std::size_t size : {10U, 200000U}) {
        putFile(folder / "source", patternOf(size), 0751);
        setAttribute(folder / "source", "user.note", "remember");
        setAttribute(folder / "source", "user.empty", "");
        const timespec times[2] = {{1000000001, 123456789}, {1100000002, 987654321}};
        ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "source").c_str(), times, 0), 0);
        files.forgetContents();
        ASSERT_TRUE(copy("source", "copy"));
        const struct stat state = stateOf(folder / "copy");
        EXPECT_EQ(state.st_mode & 07777U, 0751U);
        EXPECT_TRUE(sameTime(state.st_mtim, times[1]));
        EXPECT_TRUE(sameTime(state.st_atim, times[0]));
        EXPECT_EQ(attributeOf(folder / "copy", "user.note"), "remember");
        EXPECT_EQ(attributeOf(folder / "copy", "user.empty"), "");
        ASSERT_EQ(::unlink((folder / "copy").c_str()), 0);
    }
}

TEST_F(PosixContents, AttributesReachACopyThatItsOwnerMayNotWrite) {
    putFolder(folder / "work", 0777);
    putFile(folder / "source", "x");
    setAttribute(folder / "source", "user.note", "remember");
    ASSERT_EQ(::chmod((folder / "source").c_str(), 0444), 0);
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  PosixFileSystem own;
                  auto ownWriter = own.beginHierarchy(folder / "work");
                  return ownWriter->copyItem("copy", *own.contentSource(folder / "source"), {6, {}}) ? "" : "not copied";
              }),
              "");
    EXPECT_EQ(modeOf(folder / "work/copy"), 0444U);
    EXPECT_EQ(attributeOf(folder / "work/copy", "user.note"), "remember");
    EXPECT_EQ(attributeOf(folder / "work/copy", "user.xdg.tags"), "Red");
}

TEST_F(PosixContents, AllPermissionBitsSurviveTheUmask) {
    putFile(folder / "open", "x", 0666);
    ASSERT_TRUE(copy("open", "copy of open"));
    ASSERT_TRUE(copy("open", "given", {0, 0777}));
    EXPECT_EQ(modeOf(folder / "copy of open"), 0666U);
    EXPECT_EQ(modeOf(folder / "given"), 0777U);
}

TEST_F(PosixContents, ALabelIsMergedIntoACopiedFinderInformation) {
    putFile(folder / "source", "x");
    std::string information = "TYPECREA" + std::string(24, '\x07');
    information[8] = '\xFF';
    information[9] = '\xFF';
    setAttribute(folder / "source", "user.com.apple.FinderInfo", information);
    setAttribute(folder / "source", "user.xdg.tags", "Blue,film");
    ASSERT_TRUE(copy("source", "plain"));
    ASSERT_TRUE(copy("source", "labelled", {2, {}}));
    EXPECT_EQ(attributeOf(folder / "plain", "user.com.apple.FinderInfo"), information);
    EXPECT_EQ(attributeOf(folder / "plain", "user.xdg.tags"), "Blue,film");
    information[9] = '\xF5';
    EXPECT_EQ(attributeOf(folder / "labelled", "user.com.apple.FinderInfo"), information);
    EXPECT_EQ(attributeOf(folder / "labelled", "user.xdg.tags"), "film,Green");
}

TEST_F(PosixContents, AnUnreadableFileIsNoSource) {
    putFile(folder / "secret", "x", 0600);
    putFolder(folder / "closed", 0700);
    putFile(folder / "closed/file", "x");
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  // Where this user owns them it is the mode that keeps it out; elsewhere these calls are refused.
                  ::chmod((folder / "secret").c_str(), 0000);
                  ::chmod((folder / "closed").c_str(), 0000);
                  PosixFileSystem own;
                  const bool none = own.contentSource(folder / "secret") == nullptr && own.contentSource(folder / "closed/file") == nullptr;
                  return none && own.contentSource(folder / "closed") == nullptr ? "" : "a source";
              }),
              "");
}

TEST_F(PosixContents, ASocketOrFIFOOrDeviceIsNoSourceAndDoesNotHang) {
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0666), 0);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, (folder / "socket").c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    putLink(folder / "to fifo", "fifo");
    EXPECT_EQ(inChild([&]() -> std::string {
                  ::alarm(10);
                  for (const char *name : {"fifo", "to fifo", "socket"}) {
                      if (files.contentSource(folder / name) != nullptr) {
                          return name;
                      }
                  }
                  return files.contentSource("/dev/null") == nullptr ? "" : "/dev/null";
              }),
              "");
    ::close(socket);
}

TEST_F(PosixContents, ALinkToAFolderIsNoSourceEvenWithASlashAtItsEnd) {
    putFolder(folder / "store");
    putLink(folder / "link", "store");
    EXPECT_EQ(files.contentSource(folder / "link"), nullptr);
    EXPECT_EQ(files.contentSource(folder / "link/"), nullptr);
    EXPECT_NE(files.contentSource(folder / "store/"), nullptr);
}

TEST_F(PosixContents, ASparseFileKeepsItsHoles) {
    const int file = ::open((folder / "sparse").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    ASSERT_GE(file, 0);
    ASSERT_EQ(::pwrite(file, "begin", 5, 0), 5);
    ASSERT_EQ(::pwrite(file, "middle", 6, 50 << 20), 6);
    ASSERT_EQ(::ftruncate(file, 100 << 20), 0);
    ::close(file);
    ASSERT_TRUE(copy("sparse", "copy"));
    const struct stat state = stateOf(folder / "copy");
    EXPECT_EQ(state.st_size, 100 << 20);
    EXPECT_LT(state.st_blocks * 512, 1 << 20);
    EXPECT_TRUE(contentsOf(folder / "copy") == contentsOf(folder / "sparse"));
}

TEST_F(PosixContents, TwoGigabytesOfHoleAreCopiedAtOnceAndInNoMemory) {
    const off_t size = off_t{2} << 30;
    putFile(folder / "large", "");
    ASSERT_EQ(::truncate((folder / "large").c_str(), size), 0);
    const auto begin = std::chrono::steady_clock::now();
    rusage before{};
    ::getrusage(RUSAGE_SELF, &before);
    ASSERT_TRUE(copy("large", "copy"));
    rusage after{};
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 4096) << "kilobytes";
    EXPECT_EQ(stateOf(folder / "copy").st_size, size);
    EXPECT_EQ(stateOf(folder / "copy").st_blocks, 0);
}

TEST_F(PosixContents, AFileThatShrankMeanwhileIsCopiedAsItIs) {
    putFile(folder / "large", patternOf(300000));
    ASSERT_NE(files.contentSource(folder / "large"), nullptr);
    ASSERT_EQ(::truncate((folder / "large").c_str(), 1000), 0);
    ASSERT_TRUE(copy("large", "copy"));
    EXPECT_TRUE(contentsOf(folder / "copy") == patternOf(1000));
}

TEST_F(PosixContents, MoreLargeFilesThanDescriptorsAreKeptAreCopied) {
    ASSERT_TRUE(writer->enterFolder("top"));
    const std::size_t before = openDescriptors();
    std::size_t most = 0;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 100; ++i) {
            const std::string name = "large " + std::to_string(i);
            if (round == 0) {
                putFile(folder / name, patternOf(140000 + static_cast<std::size_t>(i)));
            }
            ASSERT_TRUE(copy(name, name + " " + std::to_string(round)));
            most = std::max(most, openDescriptors());
        }
    }
    EXPECT_LE(most, before + 64);
    EXPECT_TRUE(contentsOf(folder / "top/large 7 1") == patternOf(140007));
    files.forgetContents();
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(PosixContents, FilesOfManyMegabytesInAllAreCopiedThoughNotAllAreKeptInMemory) {
    for (int i = 0; i < 80; ++i) {
        putFile(folder / ("s" + std::to_string(i)), std::string(130000, static_cast<char>('0' + i)));
    }
    for (int i = 0; i < 80; ++i) {
        ASSERT_TRUE(copy("s" + std::to_string(i), "c" + std::to_string(i)));
        EXPECT_TRUE(contentsOf(folder / ("c" + std::to_string(i))) == std::string(130000, static_cast<char>('0' + i)));
    }
}

TEST_F(PosixContents, AFileThatTellsNoSizeIsCopiedWhole) {
    const std::string version = contentsOf("/proc/version"); // the kernel makes up its bytes when they are read
    ASSERT_EQ(stateOf("/proc/version").st_size, 0);
    ASSERT_FALSE(version.empty());
    putLink(folder / "link", "/proc/version");
    ASSERT_TRUE(copy("link", "copy"));
    EXPECT_EQ(contentsOf(folder / "copy"), version);
}

TEST_F(PosixContents, AFolderKeepsModesTimesAttributesAndLinks) {
    putFolder(folder / "store");
    putFolder(folder / "store/closed", 0700);
    putFile(folder / "store/closed/tool", "#!", 0755);
    setAttribute(folder / "store/closed/tool", "user.note", "a");
    setAttribute(folder / "store/closed", "user.note", "b");
    putLink(folder / "store/dangling", "../nowhere");
    putLink(folder / "store/folder link", "closed");
    ASSERT_EQ(::chmod((folder / "store/closed").c_str(), 0500), 0);
    const timespec times[2] = {{1000000001, 5}, {1100000002, 6}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "store/closed").c_str(), times, 0), 0);
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "store").c_str(), times, 0), 0);
    ASSERT_TRUE(copy("store", "copy"));
    EXPECT_EQ(modeOf(folder / "copy"), 0755U);
    EXPECT_EQ(modeOf(folder / "copy/closed"), 0500U);
    EXPECT_EQ(modeOf(folder / "copy/closed/tool"), 0755U);
    EXPECT_TRUE(sameTime(stateOf(folder / "copy/closed").st_mtim, times[1]));
    EXPECT_TRUE(sameTime(stateOf(folder / "copy").st_mtim, times[1]));
    EXPECT_EQ(attributeOf(folder / "copy/closed/tool", "user.note"), "a");
    EXPECT_EQ(attributeOf(folder / "copy/closed", "user.note"), "b");
    EXPECT_TRUE(S_ISLNK(stateOf(folder / "copy/dangling").st_mode));
    EXPECT_TRUE(S_ISLNK(stateOf(folder / "copy/folder link").st_mode));
}

TEST_F(PosixContents, SetIDBitsOfAnotherOwnerOrGroupAreNotKept) {
    struct stat status {};
    status.st_uid = ::geteuid();
    status.st_gid = ::getegid();
    status.st_mode = S_IFREG | 07751;
    EXPECT_EQ(modeOfCopy(status), 07751U);
    ++status.st_uid;
    EXPECT_EQ(modeOfCopy(status), 01751U);
    --status.st_uid;
    ++status.st_gid;
    EXPECT_EQ(modeOfCopy(status), 01751U);
    status.st_mode = S_IFREG | 0640;
    EXPECT_EQ(modeOfCopy(status), 0640U);
}

TEST_F(PosixContents, SetIDAndStickyBitsAreKept) {
    for (const std::size_t size : {10U, 200000U}) {
        putFile(folder / "tool", patternOf(size));
        ASSERT_EQ(::chmod((folder / "tool").c_str(), 06755), 0);
        files.forgetContents();
        const std::string copied = "copy " + std::to_string(size);
        ASSERT_TRUE(copy("tool", copied));
        EXPECT_EQ(modeOf(folder / copied), 06755U) << size;
    }
    putFolder(folder / "team");
    putFolder(folder / "team/drop");
    ASSERT_EQ(::chmod((folder / "team/drop").c_str(), 01770), 0);
    ASSERT_EQ(::chmod((folder / "team").c_str(), 02775), 0);
    ASSERT_TRUE(copy("team", "copied team"));
    EXPECT_EQ(modeOf(folder / "copied team"), 02775U);
    EXPECT_EQ(modeOf(folder / "copied team/drop"), 01770U);
}

TEST_F(PosixContents, AFolderThatCannotBeCopiedWholeIsNotCopiedAtAll) {
    putFolder(folder / "store");
    putFolder(folder / "store/a");
    putFile(folder / "store/a/readable", "x");
    putFile(folder / "store/a/secret", "x", isRoot() ? 0600 : 0000);
    putFolder(folder / "store/b", 0500);
    putFolder(folder / "work", 0777);
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  PosixFileSystem own;
                  auto ownWriter = own.beginHierarchy(folder / "work");
                  if (!ownWriter->enterFolder("top") || !ownWriter->makeEmptyFile("before", {})) {
                      return "cannot begin";
                  }
                  if (ownWriter->copyItem("copy", *own.contentSource(folder / "store"), {})) {
                      return "copied";
                  }
                  return ownWriter->lastError() == EACCES && ownWriter->makeEmptyFile("after", {}) ? "" : "wrong error";
              }),
              "");
    EXPECT_EQ(namesIn(folder / "work/top"), (std::vector<std::string>{"after", "before"}));
}

TEST_F(PosixContents, AFolderCopiedIntoItselfFailsAndEnds) {
    putFolder(folder / "store");
    putFile(folder / "store/file", "x");
    auto inside = files.beginHierarchy(folder / "store");
    ASSERT_TRUE(inside->enterFolder("top"));
    EXPECT_FALSE(inside->copyItem("copy", *files.contentSource(folder / "store"), {}));
    EXPECT_EQ(inside->lastError(), ELOOP);
    inside->leaveFolder({});
    EXPECT_EQ(namesIn(folder / "store"), (std::vector<std::string>{"file", "top"}));
    EXPECT_EQ(namesIn(folder / "store/top"), std::vector<std::string>());
}

TEST_F(PosixContents, AContentThatWasReplacedBeforeItIsOpenedAgainIsNotCopied) {
    // Too large to be kept in memory, and more than may be open.
    for (const char *const name : {"a", "b", "c", "d", "e"}) {
        putFile(folder / name, std::string(300'000, *name));
    }
    EXPECT_EQ(inChild([&]() -> std::string {
                  const rlimit few = {16, 16};
                  ::setrlimit(RLIMIT_NOFILE, &few);
                  for (const char *const name : {"a", "b", "c", "d", "e"}) {
                      if (!copy(name, std::string("copy of ") + name)) {
                          return std::string(name) + ": " + std::to_string(writer->lastError());
                      }
                  }
                  putFile(folder / "new", std::string(200'000, 'n'), 0600);
                  std::filesystem::rename(folder / "new", folder / "a");
                  return copy("a", "second copy of a") ? "copied" : std::to_string(writer->lastError());
              }),
              std::to_string(ESTALE));
    EXPECT_FALSE(std::filesystem::exists(folder / "second copy of a"));
    EXPECT_EQ(contentsOf(folder / "copy of a"), std::string(300'000, 'a'));
}

TEST_F(PosixContents, ADeepFolderOfContentsIsCopiedWithFewDescriptors) {
    auto maker = files.beginHierarchy(folder / "store");
    for (int i = 0; i < 2000; ++i) {
        ASSERT_TRUE(maker->enterFolder("level"));
    }
    ASSERT_TRUE(maker->makeEmptyFile("end", {}));
    for (int i = 0; i < 2000; ++i) {
        maker->leaveFolder({});
    }
    EXPECT_EQ(inChild([&]() -> std::string {
                  const rlimit few = {256, 256};
                  ::setrlimit(RLIMIT_NOFILE, &few);
                  return copy("store", "copy") ? "" : "errno " + std::to_string(writer->lastError());
              }),
              "");
    EXPECT_EQ(run("test $(find '" + folder.path() + "/copy' -mindepth 1 | wc -l) = 2001"), 0);
}

TEST(WriteContents, WritesEverythingAndTellsFailure) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    EXPECT_TRUE(writeContents(ends[1], "text"));
    std::array<char, 8> bytes{};
    EXPECT_EQ(::read(ends[0], bytes.data(), bytes.size()), 4);
    EXPECT_STREQ(bytes.data(), "text");
    EXPECT_FALSE(writeContents(ends[0], "text"));
    EXPECT_EQ(errno, EBADF);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(WriteContents, GoesOnWhereAWriteTookAPart) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    const std::string bytes = patternOf(1'000'000); // more than a pipe holds
    std::string got;
    std::thread reader([&] {
        std::array<char, 4096> part{};
        for (ssize_t size = 1; size > 0;) {
            size = ::read(ends[0], part.data(), part.size());
            got.append(part.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        }
    });
    EXPECT_TRUE(writeContents(ends[1], bytes));
    ::close(ends[1]);
    reader.join();
    EXPECT_TRUE(got == bytes);
    ::close(ends[0]);
}

} // namespace orvane::testing
