// What every log promises, run on the fake and on the real one; then the real one's file and its way to syslog.

#include "ProcessTestTools.h"

#include "fakes/FakeSystemLog.h"
#include "platform/posix/PosixSystemLog.h"

#include <algorithm>
#include <future>
#include <mutex>
#include <set>
#include <string_view>
#include <thread>
#include <vector>

#include <syslog.h>

namespace orvane {
namespace {

std::vector<std::string> syslogEntries;
std::mutex syslogMutex;

void rememberForSyslog(const char *text) {
    const std::lock_guard lock(syslogMutex);
    syslogEntries.emplace_back(text);
}

const char *nameForSyslog = "none yet";

/// Stands in for the C library's.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the library's names are reserved ones
extern "C" void openlog(const char *name, int /*options*/, int /*facility*/) {
    nameForSyslog = name;
}

/// Length of a time stamp like "2026-01-02T03:04:05+0100 "; 0 when the text starts with none.
std::size_t lengthOfStamp(std::string_view text) {
    constexpr std::string_view shape = "dddd-dd-ddTdd:dd:ddsdddd ";
    if (text.size() < shape.size()) {
        return 0;
    }
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        const bool isSign = text[i] == '+' || text[i] == '-';
        if (shape[i] == 'd' ? !isDigit : shape[i] == 's' ? !isSign : text[i] != shape[i]) {
            return 0;
        }
    }
    return shape.size();
}

/// Entries of a log file without their time stamps, which start a line each.
std::vector<std::string> entriesOfFile(const std::string &path) {
    const std::string contents = test::contentsOf(path);
    std::vector<std::string> entries;
    for (std::size_t start = 0; start < contents.size();) {
        const std::size_t end = contents.find('\n', start);
        const std::string line = contents.substr(start, end - start);
        if (const std::size_t stamp = lengthOfStamp(line); stamp > 0) {
            entries.push_back(line.substr(stamp));
        } else if (!entries.empty()) {
            entries.back() += "\n" + line; // the entry before goes on
        } else {
            ADD_FAILURE() << "The file starts without a time stamp: " << line;
        }
        if (end == std::string::npos) {
            ADD_FAILURE() << "The file does not end with a line feed";
            break;
        }
        start = end + 1;
    }
    return entries;
}

class FakeLogHarness {
public:
    SystemLog &log() { return _log; }
    std::vector<std::string> entries() { return _log.entries(); }

private:
    FakeSystemLog _log;
};

class PosixLogHarness {
public:
    SystemLog &log() { return _log; }
    std::vector<std::string> entries() { return entriesOfFile(_folder.path("state/orvane/log")); }

private:
    test::TestFolder _folder{test::memoryFolder()};
    PosixSystemLog _log{_folder.path("state/orvane"), rememberForSyslog};
};

template <typename Harness> class SystemLogContract : public testing::Test {
protected:
    Harness harness;
};

using Logs = testing::Types<FakeLogHarness, PosixLogHarness>;
TYPED_TEST_SUITE(SystemLogContract, Logs);

TYPED_TEST(SystemLogContract, EntriesKeepTheirOrderAndText) {
    this->harness.log().log("first");
    this->harness.log().log("");
    this->harness.log().log("ORV script 'ä\t%d.sh' error: 100 %s");
    EXPECT_EQ(this->harness.entries(), (std::vector<std::string>{"first", "", "ORV script 'ä\t%d.sh' error: 100 %s"}));
}

TYPED_TEST(SystemLogContract, LineFeedsInsideAnEntryStay) {
    this->harness.log().log("Script stderr:\noops\n\nagain\n");
    EXPECT_EQ(this->harness.entries(), std::vector<std::string>{"Script stderr:\noops\n\nagain\n"});
}

TYPED_TEST(SystemLogContract, EntriesOfSeveralThreadsAllArriveUnmixed) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < 50; ++i) {
                this->harness.log().log(std::to_string(thread * 50 + i) + std::string(100, '.'));
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    const auto entries = this->harness.entries();
    std::set<std::string> expected;
    for (int i = 0; i < 400; ++i) {
        expected.insert(std::to_string(i) + std::string(100, '.'));
    }
    EXPECT_EQ(entries.size(), 400U);
    EXPECT_EQ(std::set<std::string>(entries.begin(), entries.end()), expected);
}

// The real one only ---------------------------------------------------------------------------------------------------

class PosixSystemLogTest : public testing::Test {
protected:
    void SetUp() override { syslogEntries.clear(); }
    [[nodiscard]] std::string directory() const { return folder.path("state/orvane"); }
    [[nodiscard]] std::string file() const { return directory() + "/log"; }
    [[nodiscard]] std::uintmax_t size(const std::string &path) const { return std::filesystem::file_size(path); }

    test::TestFolder folder{test::memoryFolder()};
    PosixSystemLog log{directory(), rememberForSyslog};
};

mode_t modeOf(const std::string &path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

TEST_F(PosixSystemLogTest, NothingIsMadeBeforeTheFirstEntry) {
    EXPECT_FALSE(std::filesystem::exists(folder.path("state")));
    log.log("x");
    EXPECT_TRUE(std::filesystem::exists(file()));
}

TEST_F(PosixSystemLogTest, FoldersAndFileAreForTheUserAlone) {
    log.log("x");
    EXPECT_EQ(modeOf(folder.path("state")), 0700U);
    EXPECT_EQ(modeOf(directory()), 0700U);
    EXPECT_EQ(modeOf(file()), 0600U);
}

TEST_F(PosixSystemLogTest, ControlCharactersAreShownAsNumbers) {
    log.log(std::string("\x1B[31mred\0\r\x7F\t\xC2\x9B\xC3\xA4", 16));
    const std::vector<std::string> expected{"\\x1B[31mred\\x00\\x0D\\x7F\t\\xC2\\x9B\xC3\xA4"};
    EXPECT_EQ(entriesOfFile(file()), expected);
    EXPECT_EQ(syslogEntries, expected);
}

TEST_F(PosixSystemLogTest, EntryGoesToSyslogAsWell) {
    log.log("100 %s\nsecond line");
    EXPECT_EQ(syslogEntries, std::vector<std::string>{"100 %s\nsecond line"});
}

TEST_F(PosixSystemLogTest, SyslogTakesTheNameOfTheProgramThatRuns) {
    const int mask = ::setlogmask(LOG_MASK(LOG_EMERG)); // so that nothing goes to this machine's log
    PosixSystemLog::writeToSyslog("x");
    ::setlogmask(mask);
    EXPECT_STREQ(nameForSyslog, "contract_processes");
}

TEST_F(PosixSystemLogTest, SyslogGetsTheStartOfALongEntryAndTheFileAllOfIt) {
    std::string text;
    for (int i = 0; i < 6000; ++i) {
        text += "ä";
    }
    log.log("x" + text); // so that the cut would fall into a character
    ASSERT_EQ(syslogEntries.size(), 1U);
    EXPECT_EQ(syslogEntries[0], "x" + text.substr(0, 7998) + "…");
    EXPECT_EQ(entriesOfFile(file()), std::vector<std::string>{"x" + text});
}

TEST_F(PosixSystemLogTest, EntriesAreAppendedToWhatIsThere) {
    std::filesystem::create_directories(directory());
    std::ofstream(file()) << "2026-01-02T03:04:05+0100 before\n";
    log.log("after");
    EXPECT_EQ(entriesOfFile(file()), (std::vector<std::string>{"before", "after"}));
}

TEST_F(PosixSystemLogTest, FileThatWouldGrowBeyondAMebibyteIsRenamedFirst) {
    const std::string entry(1000, 'x');
    for (int i = 0; i < 1100; ++i) {
        log.log(entry);
    }
    EXPECT_LE(size(file()), 1024U * 1024U);
    EXPECT_LE(size(file() + ".1"), 1024U * 1024U);
    EXPECT_EQ(entriesOfFile(file()).size() + entriesOfFile(file() + ".1").size(), 1100U);
}

TEST_F(PosixSystemLogTest, OnlyOneOldFileIsKept) {
    const std::string entry(100'000, 'x');
    for (int i = 0; i < 35; ++i) {
        log.log(entry);
    }
    const std::filesystem::directory_iterator files(directory());
    EXPECT_EQ(std::distance(begin(files), end(files)), 2);
}

TEST_F(PosixSystemLogTest, SingleEntryLargerThanTheLimitIsWrittenWhole) {
    const std::string entry(3 * 1024 * 1024, 'x');
    log.log(entry);
    EXPECT_EQ(entriesOfFile(file()), std::vector<std::string>{entry});
}

TEST_F(PosixSystemLogTest, ProgramsThatShareTheFileLoseNothingWhenItIsRenamed) {
    constexpr int programs = 4;
    std::vector<pid_t> children;
    for (int program = 0; program < programs; ++program) {
        const pid_t child = ::fork();
        if (child == 0) {
            PosixSystemLog own(directory(), [](const char *) {});
            for (int i = 0; i < 100; ++i) {
                own.log(std::string(3500, static_cast<char>('a' + program)));
            }
            ::_exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        ::waitpid(child, nullptr, 0);
    }
    auto entries = entriesOfFile(file()); // 1.4 MB in all: renamed once
    const auto old = entriesOfFile(file() + ".1");
    EXPECT_FALSE(old.empty());
    entries.insert(entries.end(), old.begin(), old.end());
    for (int program = 0; program < programs; ++program) {
        EXPECT_EQ(std::count(entries.begin(), entries.end(), std::string(3500, static_cast<char>('a' + program))), 100);
    }
}

TEST_F(PosixSystemLogTest, LinkInTheFilesPlaceIsNotFollowed) {
    const std::string target = folder.write("target", "untouched");
    std::filesystem::create_directories(directory());
    std::filesystem::create_symlink(target, file());
    log.log("x");
    EXPECT_EQ(test::contentsOf(target), "untouched");
    EXPECT_EQ(syslogEntries.size(), 1U);
}

TEST_F(PosixSystemLogTest, FifoInTheFilesPlaceDoesNotBlock) {
    std::filesystem::create_directories(directory());
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    auto done = std::async(std::launch::async, [&] { log.log("x"); });
    ASSERT_EQ(done.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    EXPECT_EQ(syslogEntries.size(), 1U);
}

TEST_F(PosixSystemLogTest, FolderThatCannotBeMadeCostsOnlyTheFile) {
    folder.write("state", "a file in the folder's place");
    log.log("x");
    EXPECT_EQ(syslogEntries, std::vector<std::string>{"x"});
    EXPECT_EQ(test::contentsOf(folder.path("state")), "a file in the folder's place");
}

} // namespace
} // namespace orvane
