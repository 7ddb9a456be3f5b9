// Folders for one user's data, made with their parents.

#include "FilesTestSupport.h"

#include "platform/posix/PosixPrivateFolder.h"

#include <cerrno>

#include <gtest/gtest.h>

namespace orvane::testing {
namespace {

class PosixPrivateFolders : public ::testing::Test {
protected:
    static unsigned modeOf(const std::string &path) {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
    }

    TemporaryFolder folder;
    std::vector<std::string> made;
};

TEST_F(PosixPrivateFolders, WhatIsMissingIsMadeForItsOwnerAndTold) {
    ASSERT_EQ(::mkdir((folder / "there").c_str(), 0755), 0);
    EXPECT_TRUE(makePrivateFolders(folder / "there/a/b/c", &made));
    EXPECT_EQ(made, (std::vector<std::string>{folder / "there/a", folder / "there/a/b", folder / "there/a/b/c"}));
    for (const std::string &each : made) {
        EXPECT_EQ(modeOf(each), 0700U) << each;
    }
    EXPECT_EQ(modeOf(folder / "there"), 0755U);
}

TEST_F(PosixPrivateFolders, WhatIsThereWillDo) {
    ASSERT_EQ(::mkdir((folder / "there").c_str(), 0755), 0);
    EXPECT_TRUE(makePrivateFolders(folder / "there", &made));
    EXPECT_TRUE(makePrivateFolders("/", &made));
    EXPECT_EQ(made, std::vector<std::string>{});
    EXPECT_EQ(modeOf(folder / "there"), 0755U);
}

TEST_F(PosixPrivateFolders, MaskDoesNotKeepTheirOwnerOut) {
    EXPECT_EQ(asOrdinaryUser([] {
                  const TemporaryFolder own;
                  ::umask(0777);
                  return std::string(makePrivateFolders(own / "a/b") && modeOf(own / "a/b") == 0700 ? "" : "not made");
              }),
              "");
}

TEST_F(PosixPrivateFolders, WhatIsInTheWayIsTheReason) {
    ASSERT_EQ(::mknod((folder / "file").c_str(), S_IFREG | 0600, 0), 0);
    EXPECT_FALSE(makePrivateFolders(folder / "file/a/b", &made));
    EXPECT_EQ(errno, ENOTDIR);
    ASSERT_EQ(::symlink("nowhere", (folder / "link").c_str()), 0);
    EXPECT_FALSE(makePrivateFolders(folder / "link/a", &made));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(made, std::vector<std::string>{});
}

TEST_F(PosixPrivateFolders, WhatWasMadeBeforeItFailedIsToldToo) {
    const std::string tooLong(256, 'x'); // one more than a name may have (NAME_MAX of Linux)
    EXPECT_FALSE(makePrivateFolders(folder / "a" + "/" + tooLong, &made));
    EXPECT_EQ(errno, ENAMETOOLONG);
    EXPECT_EQ(made, std::vector<std::string>{folder / "a"});
}

} // namespace
} // namespace orvane::testing
