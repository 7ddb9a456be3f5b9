#include "PosixRecoveryFile.h"

#include "TemporaryFolder.h"

#include <thread>

#include <unistd.h>

namespace orvane {
namespace {

class OnDisk : public testing::Test {
protected:
    test::TemporaryFolder folder;
    PosixRecoveryFile file{folder / "state/orvane/unsaved"};
};

TEST_F(OnDisk, GivesBackWhatWasWrittenLast) {
    EXPECT_EQ(file.read(), std::nullopt);
    const std::string large(1'000'003, 'x');
    ASSERT_TRUE(file.write(large));
    EXPECT_EQ(file.read(), large);
    ASSERT_TRUE(file.write(std::string_view("a\0b", 3)));
    EXPECT_EQ(file.read(), std::string("a\0b", 3));
    file.remove();
    EXPECT_EQ(file.read(), std::nullopt);
}

TEST_F(OnDisk, IsReadableForTheUserAloneAndLeavesNothingBesideIt) {
    ASSERT_TRUE(file.write("a"));
    ASSERT_TRUE(file.write("b"));
    EXPECT_EQ(folder.mode("state/orvane/unsaved"), 0600U);
    EXPECT_EQ(folder.mode("state/orvane"), 0700U);
    EXPECT_EQ(folder.count("state/orvane"), 1U);
}

TEST_F(OnDisk, IsWrittenBesideWhatAKilledProgramOfTheSameNumberHasLeft) {
    const std::string start = "state/orvane/.orvane-" + std::to_string(::getpid());
    for (const char *end : {".part", "-0", "-1"}) {
        folder.write(start + end, "left");
    }
    ASSERT_TRUE(file.write("a"));
    EXPECT_EQ(file.read(), "a");
    EXPECT_EQ(folder.read(start + "-0"), "left");
    EXPECT_EQ(folder.count("state/orvane"), 4U);
}

TEST_F(OnDisk, FollowsNoLink) {
    const std::string secret = folder.write("other", "theirs");
    std::filesystem::create_directories(folder / "state/orvane");
    ASSERT_EQ(::symlink(secret.c_str(), (folder / "state/orvane/unsaved").c_str()), 0);
    EXPECT_EQ(file.read(), std::nullopt);
    ASSERT_TRUE(file.write("mine"));
    EXPECT_EQ(folder.read("other"), "theirs");
    EXPECT_EQ(file.read(), "mine");
}

TEST_F(OnDisk, AFIFOInItsPlaceIsNotWaitedFor) {
    std::filesystem::create_directories(folder / "state/orvane");
    ASSERT_EQ(::mkfifo((folder / "state/orvane/unsaved").c_str(), 0600), 0);
    EXPECT_EQ(file.read(), std::nullopt);
}

TEST_F(OnDisk, WhereItsFolderCannotBeMadeWritingFails) {
    folder.write("state", "a file");
    EXPECT_FALSE(file.write("a"));
}

} // namespace
} // namespace orvane
