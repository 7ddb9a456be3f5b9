// Configuration files, read whole or not at all.

#include "ProcessTestTools.h"

#include "platform/posix/PosixSmallFile.h"

#include <future>

namespace orvane {
namespace {

class PosixSmallFileTest : public testing::Test {
protected:
    test::TestFolder folder{test::memoryFolder()};
};

TEST_F(PosixSmallFileTest, GivesTheBytesOfAnOrdinaryFile) {
    const std::string bytes("a=1\n\0b", 6);
    EXPECT_EQ(contentsOfSmallFile(folder.write("file", bytes), 100), bytes);
    EXPECT_EQ(contentsOfSmallFile(folder.write("empty", ""), 100), "");
}

TEST_F(PosixSmallFileTest, FollowsLinks) {
    std::filesystem::create_symlink(folder.write("file", "text"), folder.path("link"));
    EXPECT_EQ(contentsOfSmallFile(folder.path("link"), 100), "text");
}

TEST_F(PosixSmallFileTest, TakesAsManyBytesAsItMayAndNoMore) {
    const std::string file = folder.write("file", std::string(100, 'x'));
    EXPECT_EQ(contentsOfSmallFile(file, 100), std::string(100, 'x'));
    EXPECT_EQ(contentsOfSmallFile(file, 99), std::nullopt);
}

TEST_F(PosixSmallFileTest, GivesNothingForWhatIsNoOrdinaryFile) {
    EXPECT_EQ(contentsOfSmallFile(folder.path("nothing"), 100), std::nullopt);
    EXPECT_EQ(contentsOfSmallFile(folder.path(""), 100), std::nullopt);
    EXPECT_EQ(contentsOfSmallFile("/dev/zero", 100), std::nullopt);
}

TEST_F(PosixSmallFileTest, DoesNotWaitForTheWriterOfAFifo) {
    ASSERT_EQ(::mkfifo(folder.path("fifo").c_str(), 0600), 0);
    auto read = std::async(std::launch::async, [&] { return contentsOfSmallFile(folder.path("fifo"), 100); });
    ASSERT_EQ(read.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_EQ(read.get(), std::nullopt);
}

} // namespace
} // namespace orvane
