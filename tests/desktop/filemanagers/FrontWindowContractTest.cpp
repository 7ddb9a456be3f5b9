#include "platform/filemanagers/DesktopFrontWindow.h"
#include "platform/filemanagers/FolderAddress.h"
#include "platform/filemanagers/HandedOverFolder.h"

#include "fakes/FakeFrontWindow.h"
#include "fakes/FakeSystemLog.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

// What every `FrontWindow` promises, run on the fake and on the adapters over a desktop of this test's own making.

namespace orvane::testing {

namespace {

class ScriptedActiveApplication final : public ActiveApplication {
public:
    [[nodiscard]] std::optional<ApplicationWindow> window() override { return active; }
    std::optional<ApplicationWindow> active;
};

class ScriptedFileManager final : public FileManager {
public:
    /// Lets the questions about a window named "hung" come to an end; without that they take 20 s.
    void comesBack() { _back.set_value(); }
    [[nodiscard]] const char *name() const override { return "Scripted"; }
    [[nodiscard]] bool hasClass(const std::string &className) const override { return className == "files"; }
    [[nodiscard]] std::optional<std::string> folder(const ApplicationWindow &window, const Surroundings &,
                                                    const Deadline &) const override {
        if (window.title == "hung") {
            _isBack.wait_for(std::chrono::seconds(20));
        }
        return isFolder(window.title) ? std::optional(window.title) : std::nullopt;
    }

private:
    std::promise<void> _back;
    std::shared_future<void> _isBack = _back.get_future().share();
};

/// A front window and a way to say what the user works in.
class World {
public:
    virtual ~World() = default;
    virtual FrontWindow &front() = 0;
    virtual void showFolder(const std::string &path) = 0;
    virtual void showNoFolder() = 0;
    virtual void activateOther() = 0;
};

class FakeWorld final : public World {
public:
    FrontWindow &front() override { return _front; }
    void showFolder(const std::string &path) override {
        _front.active = true;
        _front.shown = path;
    }
    void showNoFolder() override {
        _front.active = true;
        _front.shown.reset();
    }
    void activateOther() override {
        _front.active = false;
        _front.shown.reset();
    }

private:
    FakeFrontWindow _front;
};

ApplicationWindow windowOf(const char *className, const std::string &title) {
    ApplicationWindow window;
    window.className = className;
    window.title = title;
    return window;
}

class AdapterWorld : public World {
public:
    FrontWindow &front() override { return _front; }
    void showFolder(const std::string &path) override { active.active = windowOf("Files", path); }
    void showNoFolder() override { active.active = windowOf("Files", "trash:///"); }
    void activateOther() override { active.active = windowOf("XTerm", "/"); }

    ScriptedActiveApplication active;
    FakeSystemLog log;
    std::shared_ptr<ScriptedFileManager> fileManager = std::make_shared<ScriptedFileManager>();

private:
    DesktopFrontWindow _front{active, log, {fileManager}, {"/", "/no-such-folder", ""}};
};

/// The decorator with nothing handed over.
class DecoratedWorld final : public AdapterWorld {
public:
    FrontWindow &front() override { return _decorated; }

private:
    HandedOverFolder _decorated{AdapterWorld::front()};
};

using Maker = std::unique_ptr<World> (*)();
class FrontWindowContract : public ::testing::TestWithParam<Maker> {
protected:
    std::unique_ptr<World> _world = GetParam()();
};

TEST_P(FrontWindowContract, TellsTheFolderThatIsShown) {
    _world->showFolder("/usr");
    EXPECT_TRUE(_world->front().fileManagerIsActive());
    EXPECT_EQ(_world->front().folder(), "/usr");
    _world->showFolder("/etc");
    EXPECT_EQ(_world->front().folder(), "/etc");
}

TEST_P(FrontWindowContract, AWindowWithoutALocalFolderIsActiveAndTellsNothing) {
    _world->showNoFolder();
    EXPECT_TRUE(_world->front().fileManagerIsActive());
    EXPECT_EQ(_world->front().folder(), std::nullopt);
}

TEST_P(FrontWindowContract, AnotherApplicationIsNoFileManager) {
    _world->activateOther();
    EXPECT_FALSE(_world->front().fileManagerIsActive());
    EXPECT_EQ(_world->front().folder(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Worlds, FrontWindowContract,
                         ::testing::Values(
                             +[]() -> std::unique_ptr<World> { return std::make_unique<FakeWorld>(); },
                             +[]() -> std::unique_ptr<World> { return std::make_unique<AdapterWorld>(); },
                             +[]() -> std::unique_ptr<World> { return std::make_unique<DecoratedWorld>(); }));

TEST(DesktopFrontWindow, NothingActiveIsNoFileManager) {
    AdapterWorld world;
    EXPECT_FALSE(world.front().fileManagerIsActive());
    EXPECT_EQ(world.front().folder(), std::nullopt);
}

TEST(DesktopFrontWindow, AnAnswerThatDoesNotComeCostsTheLimitAndIsLogged) {
    AdapterWorld world;
    world.active.active = windowOf("files", "hung");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(world.front().folder(), std::nullopt);
    const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    EXPECT_GE(taken.count(), 250);
    EXPECT_LT(taken.count(), 550);
    world.fileManager->comesBack();
    ASSERT_EQ(world.log.entries().size(), 1U);
    EXPECT_EQ(world.log.entries()[0], "The folder of Scripted's front window is not known (no answer in time).");
}

TEST(DesktopFrontWindow, AWindowOfAnotherMachineTellsNothing) {
    AdapterWorld world;
    world.showFolder("/usr");
    world.active.active->isLocal = false;
    EXPECT_TRUE(world.front().fileManagerIsActive());
    EXPECT_EQ(world.front().folder(), std::nullopt);
}

TEST(DesktopFrontWindow, TheDesktopItselfShowsTheDesktopFolder) {
    char pattern[] = "/tmp/orvane-home.XXXXXX";
    const std::string home = ::mkdtemp(pattern);
    ScriptedActiveApplication active;
    FakeSystemLog log;
    DesktopFrontWindow front(active, log, {std::make_shared<ScriptedFileManager>()}, {home, home + "/.config", ""});
    active.active = windowOf("files", "/usr");
    active.active->isDesktop = true;
    EXPECT_EQ(front.folder(), std::nullopt);
    ASSERT_EQ(::mkdir((home + "/Desktop").c_str(), 0700), 0);
    EXPECT_EQ(front.folder(), home + "/Desktop");
    ::rmdir((home + "/Desktop").c_str());
    ::rmdir(home.c_str());
}

TEST(HandedOverFolder, StandsForTheFrontWindowsUntilItIsCleared) {
    FakeFrontWindow behind;
    behind.active = true;
    behind.shown = "/etc";
    HandedOverFolder front(behind);
    EXPECT_TRUE(front.setFolder("/usr"));
    EXPECT_TRUE(front.fileManagerIsActive());
    EXPECT_EQ(front.folder(), "/usr");
    EXPECT_TRUE(behind.journal.empty());
    front.clear();
    EXPECT_EQ(front.folder(), "/etc");
    behind.active = false;
    EXPECT_FALSE(front.fileManagerIsActive());
    EXPECT_TRUE(front.setFolder("/"));
    EXPECT_TRUE(front.fileManagerIsActive());
}

TEST(HandedOverFolder, TakesOnlyExistingFoldersAndThenForgetsTheOneBefore) {
    FakeFrontWindow behind;
    HandedOverFolder front(behind);
    for (const std::string &path : {std::string(), std::string("usr"), std::string("."), std::string("/no-such-folder"),
                                    std::string("/etc/passwd"), std::string("file:///usr"), std::string("/usr\0x", 6)}) {
        EXPECT_TRUE(front.setFolder("/usr"));
        EXPECT_FALSE(front.setFolder(path)) << path;
        EXPECT_FALSE(front.fileManagerIsActive());
        EXPECT_EQ(front.folder(), std::nullopt);
    }
}

TEST(HandedOverFolder, AFolderThatHasGoneIsNothing) {
    char pattern[] = "/tmp/orvane-gone.XXXXXX";
    const std::string path = ::mkdtemp(pattern);
    FakeFrontWindow behind;
    behind.shown = "/etc";
    HandedOverFolder front(behind);
    EXPECT_TRUE(front.setFolder(path));
    ASSERT_EQ(::rmdir(path.c_str()), 0);
    EXPECT_EQ(front.folder(), std::nullopt);
}

} // namespace

} // namespace orvane::testing
