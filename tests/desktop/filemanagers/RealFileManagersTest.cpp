#include "FileManagerProgram.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include <unistd.h>

// The front window of one real file manager, named by ORVANE_TEST_FILEMANAGER, on a desktop of its own.

namespace orvane::testing {

namespace {

class RealFileManager : public ::testing::Test {
protected:
    void SetUp() override {
        const char *name = std::getenv("ORVANE_TEST_FILEMANAGER");
        _name = name != nullptr ? name : "";
        std::string pattern = std::string(std::getenv("DESKTOP_SCRATCH")) + "/XXXXXX";
        _top = ::mkdtemp(pattern.data());
        _program = std::make_unique<FileManagerProgram>(recipeFor(_name));
    }
    void TearDown() override {
        _program.reset();
        std::error_code error;
        std::filesystem::remove_all(_top, error);
    }
    std::string folder(const std::string &name) {
        const std::string path = _top + "/" + name;
        std::filesystem::create_directories(path);
        return path;
    }
    /// Opens a window and waits until it can be read. Programs tell the accessibility bus of the new active window a moment after
    /// the window manager knows it, so that a window with the same title, `previous`, may still be answered.
    xcb_window_t opened(const std::string &path, const std::string &previous = {}) {
        const xcb_window_t window = _program->open(path);
        EXPECT_NE(window, 0U) << _name << " opened no window for " << path;
        EXPECT_EQ(_asked.becomes(path, previous), "");
        return window;
    }

    std::string _name;
    std::string _top;
    std::unique_ptr<FileManagerProgram> _program;
    AskedFrontWindow _asked;
};

std::chrono::milliseconds duration(const std::function<void()> &action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
}

TEST_F(RealFileManager, TellsItsFolderWhateverItsName) {
    std::string previous;
    for (const char *name : {"plain", "with space", "n\u00e4\u00efve \u65e5\u672c", "per%20cent", "ha#sh?q", "100%", "a&b/inside", "x_y"}) {
        const std::string path = folder(name);
        ASSERT_NE(_program->open(path), 0U) << path;
        EXPECT_TRUE(_asked.front().fileManagerIsActive());
        EXPECT_EQ(_asked.becomes(path, previous), "");
        previous = path;
    }
}

TEST_F(RealFileManager, TellsTheFolderOfTheActiveOneOfSeveralWindows) {
    const std::string one = folder("a/Same");
    const std::string two = folder("b/Same");
    const xcb_window_t first = opened(one);
    const xcb_window_t second = opened(two, one);
    ASSERT_NE(first, second);
    _program->activate(first);
    EXPECT_EQ(_asked.becomes(one, two), "");
    _program->activate(second);
    EXPECT_EQ(_asked.becomes(two, one), "");
}

TEST_F(RealFileManager, TellsTheFolderOfTheFrontTab) {
    const std::string one = folder("a/Same");
    const std::string two = folder("b/Same");
    opened(one);
    _program->key("ctrl+t");
    // The new tab may show the same folder, or home.
    (void)waitUntil([&] { return false; }, std::chrono::milliseconds(700));
    _program->typeLocation(two);
    ASSERT_TRUE(waitUntil([&] { return _asked.front().folder() == two; })) << _asked.becomes(two);
    _program->key("ctrl+Prior");
    EXPECT_EQ(_asked.becomes(one, two), "");
    _program->key("ctrl+Next");
    EXPECT_EQ(_asked.becomes(two, one), "");
}

TEST_F(RealFileManager, FollowsTheUserToAnotherFolder) {
    const std::string deep = folder("up/down");
    opened(deep);
    _program->key("alt+Up");
    EXPECT_EQ(_asked.becomes(_top + "/up", deep), "");
}

TEST_F(RealFileManager, IsNotActiveWhileAnotherApplicationIs) {
    opened(folder("plain"));
    QProcess other;
    other.start(QStringLiteral("xterm"), {});
    EXPECT_TRUE(waitUntil([&] { return !_asked.front().fileManagerIsActive(); }));
    EXPECT_EQ(_asked.front().folder(), std::nullopt);
    other.kill();
    other.waitForFinished(5000);
}

TEST_F(RealFileManager, HasNoFolderOnceItsWindowsAreClosed) {
    opened(folder("plain"));
    _program->close();
    EXPECT_TRUE(waitUntil([&] { return !_asked.front().fileManagerIsActive(); }));
    EXPECT_EQ(_asked.front().folder(), std::nullopt);
}

TEST_F(RealFileManager, HasNoFolderThatIsGone) {
    const std::string path = folder("gone");
    opened(path);
    std::filesystem::remove_all(path);
    const auto answer = _asked.front().folder();
    EXPECT_NE(answer, path);
    // Some go to the parent folder by themselves.
    EXPECT_TRUE(!answer || std::filesystem::is_directory(*answer)) << *answer;
}

TEST_F(RealFileManager, TypingALocationWithoutEnteringItTellsNoOtherFolder) {
    const std::string shown = folder("a/Same");
    const std::string typed = folder("b/Same");
    opened(shown);
    _program->key("ctrl+l");
    _program->key("ctrl+a");
    outputOf(QStringLiteral("xdotool"),
             {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("5"), QString::fromStdString(typed)});
    EXPECT_FALSE(waitUntil([&] { return _asked.front().folder() == typed; }, std::chrono::milliseconds(1500)));
}

TEST_F(RealFileManager, HungCostsNoMoreThanTheLimitAndStartsNothing) {
    const xcb_window_t window = opened(folder("plain"));
    const long pid = _program->pidOf(window);
    ASSERT_GT(pid, 0);
    ASSERT_EQ(::kill(static_cast<pid_t>(pid), SIGSTOP), 0);
    // What the file manager itself had begun to start comes and goes first.
    std::set<long> before;
    ASSERT_TRUE(waitUntil([&] {
        const auto now = processesOfDesktop();
        (void)waitUntil([] { return false; }, std::chrono::milliseconds(500));
        before = processesOfDesktop();
        return !before.empty() && before == now;
    }));
    auto fastest = std::chrono::milliseconds::max();
    for (int attempt = 0; attempt < 5; ++attempt) {
        std::optional<std::string> answer;
        const auto taken = duration([&] { answer = _asked.front().folder(); });
        EXPECT_EQ(answer, std::nullopt);
        // Nothing else can be promised on a machine that is busy with other things.
        EXPECT_LT(taken.count(), 1000);
        fastest = std::min(fastest, taken);
    }
    EXPECT_LE(fastest.count(), 300);
    EXPECT_TRUE(_asked.front().fileManagerIsActive());
    for (const long process : processesOfDesktop()) {
        EXPECT_TRUE(before.contains(process)) << "started: "
                                              << outputOf(QStringLiteral("ps"), {QStringLiteral("-fp"), QString::number(process)});
    }
    ASSERT_EQ(::kill(static_cast<pid_t>(pid), SIGCONT), 0);
    EXPECT_EQ(_asked.becomes(_top + "/plain"), "");
}

} // namespace

} // namespace orvane::testing
