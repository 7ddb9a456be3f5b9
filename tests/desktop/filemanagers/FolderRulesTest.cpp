#include "platform/filemanagers/BoundedWork.h"
#include "platform/filemanagers/FileManager.h"
#include "platform/filemanagers/FolderAddress.h"
#include "platform/filemanagers/PathBar.h"
#include "platform/filemanagers/PathBarFileManager.h"
#include "platform/filemanagers/UserDirectories.h"
#include "platform/filemanagers/WindowTitle.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

// The rules by which an answer is put together and believed, without a desktop.

namespace orvane::testing {

namespace {

TEST(Locations, FileURIsKeepTheirBytes) {
    EXPECT_EQ(pathOfLocation("file:///data/with%20space", ""), "/data/with space");
    EXPECT_EQ(pathOfLocation("file:///per%2520cent/ha%23sh%3Fq/", ""), "/per%20cent/ha#sh?q");
    EXPECT_EQ(pathOfLocation("file:///%ff%FE", ""), "/\xff\xfe");
    EXPECT_EQ(pathOfLocation("file://localhost/x", ""), "/x");
    EXPECT_EQ(pathOfLocation("file:///", ""), "/");
    EXPECT_EQ(pathOfLocation("/plain/per%20cent//", ""), "/plain/per%20cent");
}

TEST(Locations, WhatIsNotWellFormedOrNotHereIsNothing) {
    for (const char *location :
         {"", "relative", "file:", "file://", "file://other/x", "file:///a%2", "file:///a%zz", "file:///a%00b", "file:///a%2Fb",
          "trash:///", "recent:///", "computer:///", "x-nautilus-search://0/", "http://host/x", "file:/x"}) {
        EXPECT_EQ(pathOfLocation(location, "/run/user/1"), std::nullopt) << location;
    }
}

TEST(Locations, SftpIsWhereTheVirtualFileSystemShowsIt) {
    EXPECT_EQ(pathOfLocation("sftp://me@host.example:2241/a%20b/", "/run/user/1"),
              "/run/user/1/gvfs/sftp:host=host.example,port=2241,user=me/a b");
    EXPECT_EQ(pathOfLocation("sftp://host/x", "/run/user/1"), "/run/user/1/gvfs/sftp:host=host/x");
    EXPECT_EQ(pathOfLocation("sftp://host/x", ""), std::nullopt);
    EXPECT_EQ(pathOfLocation("sftp://ho,st/x", "/run/user/1"), std::nullopt);
    EXPECT_EQ(pathOfLocation("sftp://[::1]/x", "/run/user/1"), std::nullopt);
}

TEST(Locations, ReadableURLsAreReadAsKDEWritesThem) {
    EXPECT_EQ(pathOfReadableURL("file:///data/t/with space"), "/data/t/with space");
    EXPECT_EQ(pathOfReadableURL("file:///data/per%2520cent"), "/data/per%20cent");
    EXPECT_EQ(pathOfReadableURL("file:///data/ha%23sh%3Fq/"), "/data/ha#sh?q");
    EXPECT_EQ(pathOfReadableURL("file:///n\u00e4\u00efve \u65e5\u672c"), "/n\u00e4\u00efve \u65e5\u672c");
    for (const char *url : {"", "trash:/", "remote:/", "sftp://user@host/data", "file://host/x", "/plain"}) {
        EXPECT_EQ(pathOfReadableURL(url), std::nullopt) << url;
    }
}

TEST(Locations, AReadableURLGivesItsPathAgain) {
    for (const char *path : {"/", "/a b", "/per%20cent", "/ha#sh?q", "/n\u00e4\u00efve", "/100%", "/a&b=c;d", "/x:y"}) {
        EXPECT_EQ(pathOfReadableURL(readableURL(path)), path);
    }
    EXPECT_EQ(readableURL("/a&b c"), "file:///a&b c");
}

TEST(Titles, TheLastComponentMustBeWhatTheTitleSays) {
    const TitleRule thunar = {" - ", true, false, "thunar", nullptr, "File System"};
    EXPECT_TRUE(titleAgreesWithPath(thunar, "Same - Thunar", "/a/Same", "/home/u"));
    EXPECT_TRUE(titleAgreesWithPath(thunar, "two - parts - Thunar", "/a/two - parts", "/home/u"));
    EXPECT_TRUE(titleAgreesWithPath(thunar, "/a/Same - Thunar", "/a/Same/", "/home/u"));
    EXPECT_TRUE(titleAgreesWithPath(thunar, "File System - Thunar", "/", "/home/u"));
    EXPECT_FALSE(titleAgreesWithPath(thunar, "Same - Thunar", "/a/Sam", "/home/u"));
    EXPECT_FALSE(titleAgreesWithPath(thunar, "Same - Thunar", "/Same/other", "/home/u"));
    EXPECT_FALSE(titleAgreesWithPath(thunar, "/b/Same - Thunar", "/a/Same", "/home/u"));
    EXPECT_FALSE(titleAgreesWithPath(thunar, "Same - Thunar", "/", "/home/u"));
    EXPECT_FALSE(titleAgreesWithPath(thunar, "", "/a", "/home/u"));
}

TEST(Titles, HomeMayBeCalledByItsOwnName) {
    const TitleRule nemo = {nullptr, false, true, "nemo", "Home", nullptr};
    EXPECT_TRUE(titleAgreesWithPath(nemo, "Home", "/home/u", "/home/u/"));
    EXPECT_TRUE(titleAgreesWithPath(nemo, "Home", "/data/Home", "/home/u"));
    EXPECT_FALSE(titleAgreesWithPath(nemo, "Home", "/home/v", "/home/u"));
    EXPECT_TRUE(titleAgreesWithPath(nemo, "/", "/", "/home/u"));
}

TEST(Titles, AFullPathIsTakenOnlyWhereTheFileManagerShowsThem) {
    const TitleRule nemo = {nullptr, false, true, nullptr, nullptr, nullptr};
    const TitleRule thunar = {" - ", true, false, nullptr, nullptr, nullptr};
    EXPECT_EQ(fullPathInTitle(nemo, "a - /data/t/a"), "/data/t/a");
    EXPECT_EQ(fullPathInTitle(nemo, "a - /data/t/b"), std::nullopt);
    EXPECT_EQ(fullPathInTitle(nemo, "/"), std::nullopt);
    EXPECT_EQ(fullPathInTitle(thunar, "/data/t/a - b - Thunar"), "/data/t/a - b");
    EXPECT_EQ(fullPathInTitle(thunar, "trash:/// - Thunar"), std::nullopt);
    EXPECT_EQ(fullPathInTitle({}, "/data"), std::nullopt);
}

TEST(PathBars, ThePathEndsAtTheCheckedButton) {
    EXPECT_EQ(pathOfPathBar({{"c", "", false}, {"b", "", true}, {"a", "", false}, {"", "", false}}, PathBarOrder::DeepestFirst), "/a/b");
    EXPECT_EQ(pathOfPathBar({{"/", "", false}, {"a", "", true}, {"b", "", false}}, PathBarOrder::RootFirst), "/a");
    EXPECT_EQ(pathOfPathBar({{"/", "", true}}, PathBarOrder::DeepestFirst), "/");
}

TEST(PathBars, OtherRowsAreNone) {
    const auto order = PathBarOrder::DeepestFirst;
    EXPECT_EQ(pathOfPathBar({}, order), std::nullopt);
    EXPECT_EQ(pathOfPathBar({{"a", "", false}, {"", "", false}}, order), std::nullopt) << "none is checked";
    EXPECT_EQ(pathOfPathBar({{"a", "", true}, {"", "", true}}, order), std::nullopt) << "two are checked";
    EXPECT_EQ(pathOfPathBar({{"a", "", true}, {"/ on host", "", false}}, order), std::nullopt) << "another machine";
    EXPECT_EQ(pathOfPathBar({{"", "Show Places", true}}, order), std::nullopt) << "a switch";
    EXPECT_EQ(pathOfPathBar({{"a/b", "", true}, {"", "", false}}, order), std::nullopt) << "no name of a folder";
    EXPECT_EQ(pathOfPathBar({{"b", "", true}, {"", "", false}, {"", "", false}}, order), std::nullopt) << "a gap";
    EXPECT_EQ(pathOfPathBar({{"..", "", true}, {"", "", false}}, order), std::nullopt);
}

TEST(PathBars, CommonTailsCountComponents) {
    EXPECT_EQ(commonTail("/data/t/a/Same", {"Disk", "data", "t", "a", "Same"}), 4U);
    EXPECT_EQ(commonTail("/data/t/b/Same", {"Disk", "data", "t", "a", "Same"}), 1U);
    EXPECT_EQ(commonTail("/", {"Disk"}), 0U);
    EXPECT_EQ(commonTail("/Disk", {"Disk"}), 1U);
    EXPECT_EQ(commonTail("/a", {}), 0U);
}

TEST(PathBars, TwoDifferentAnswersAreNone) {
    const TitleRule rule;
    EXPECT_EQ(theOnlyFolder({"/usr"}, rule, "usr", "/home/u"), "/usr");
    EXPECT_EQ(theOnlyFolder({"/usr", "/usr"}, rule, "usr", "/home/u"), "/usr");
    EXPECT_EQ(theOnlyFolder({"/a/usr", "/usr"}, rule, "usr", "/home/u"), std::nullopt);
    EXPECT_EQ(theOnlyFolder({"/usr"}, rule, "other", "/home/u"), std::nullopt);
    EXPECT_EQ(theOnlyFolder({"/no-such-folder"}, rule, "no-such-folder", "/home/u"), std::nullopt);
    EXPECT_EQ(theOnlyFolder({"/etc/passwd"}, rule, "passwd", "/home/u"), std::nullopt);
}

TEST(Desktop, TheLastValidLineNamesIt) {
    EXPECT_EQ(desktopDirectoryInText("# x\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n", "/home/u"), "/home/u/Schreibtisch");
    EXPECT_EQ(desktopDirectoryInText(" XDG_DESKTOP_DIR = \"/abs/a\\\"b\"", "/home/u"), "/abs/a\"b");
    EXPECT_EQ(desktopDirectoryInText("XDG_DESKTOP_DIR=\"$HOME/\"", "/home/u"), "/home/u");
    EXPECT_EQ(desktopDirectoryInText("XDG_DESKTOP_DIR=\"/a\"\nXDG_DESKTOP_DIR=\"/b\"\nXDG_DESKTOP_DIR=\"bad\"", "/home/u"), "/b");
    for (const char *text : {"", "XDG_DESKTOP_DIR", "XDG_DESKTOP_DIR=/a", "XDG_DESKTOP_DIR=\"/a", "XDG_DESKTOP_DIR=\"$HOMEX/a\"",
                             "XDG_MUSIC_DIR=\"/a\"", "#XDG_DESKTOP_DIR=\"/a\""}) {
        EXPECT_EQ(desktopDirectoryInText(text, "/home/u"), "") << text;
    }
    EXPECT_EQ(desktopDirectory("/no-such-folder", "/home/u"), "/home/u/Desktop");
}

TEST(Classes, EachWindowBelongsToOneFileManager) {
    const auto all = allFileManagers();
    const auto nameOf = [&all](const char *className) {
        ApplicationWindow window;
        window.className = className;
        const auto fileManager = fileManagerOf(window, all);
        return std::string(fileManager ? fileManager->name() : "none");
    };
    EXPECT_EQ(nameOf("Thunar"), "Thunar");
    EXPECT_EQ(nameOf("org.gnome.Nautilus"), "Nautilus");
    EXPECT_EQ(nameOf("dolphin"), "Dolphin");
    EXPECT_EQ(nameOf("org.kde.dolphin"), "Dolphin");
    EXPECT_EQ(nameOf("Nemo-desktop"), "Nemo");
    EXPECT_EQ(nameOf("Caja"), "Caja");
    EXPECT_EQ(nameOf("pcmanfm-qt"), "PCManFM-Qt");
    EXPECT_EQ(nameOf("Pcmanfm"), "PCManFM");
    EXPECT_EQ(nameOf("XTerm"), "none");
    EXPECT_EQ(nameOf(""), "none");
}

TEST(BoundedWorks, GiveWhatTheWorkGives) {
    BoundedWork work;
    EXPECT_EQ(work.run(Deadline(std::chrono::seconds(10)), [] { return std::optional<std::string>("x"); }), "x");
    EXPECT_EQ(work.run(Deadline(std::chrono::seconds(10)), []() -> std::optional<std::string> { throw std::runtime_error("no"); }),
              std::nullopt);
    EXPECT_FALSE(work.isBusy());
}

TEST(BoundedWorks, WhatTheWorkOwnsGoesAwayOnItsThread) {
    struct Owned {
        explicit Owned(std::thread::id &ended) : _ended(ended) {}
        Owned(const Owned &) = delete;
        Owned &operator=(const Owned &) = delete;
        ~Owned() { _ended = std::this_thread::get_id(); }
        std::thread::id &_ended;
    };
    std::thread::id ended;
    BoundedWork work;
    BoundedWork::Work owning = [owned = std::make_shared<Owned>(ended)] { return std::optional<std::string>("x"); };
    EXPECT_EQ(work.run(Deadline(std::chrono::seconds(10)), std::move(owning)), "x");
    EXPECT_NE(ended, std::thread::id());
    EXPECT_NE(ended, std::this_thread::get_id());
}

TEST(BoundedWorks, WorkThatHangsIsLeftAloneAndNothingNewBegunUntilItEnds) {
    BoundedWork work;
    const auto isFree = std::make_shared<std::atomic<bool>>(false);
    const auto begun = std::make_shared<std::atomic<int>>(0);
    const auto hang = [isFree, begun]() -> std::optional<std::string> {
        ++*begun;
        isFree->wait(false);
        return "late";
    };
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(work.run(Deadline(std::chrono::milliseconds(50)), hang), std::nullopt);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
    EXPECT_TRUE(work.isBusy());
    EXPECT_EQ(work.run(Deadline(std::chrono::seconds(10)), hang), std::nullopt);
    EXPECT_EQ(*begun, 1);
    *isFree = true;
    isFree->notify_all();
    while (work.isBusy()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(work.run(Deadline(std::chrono::seconds(10)), [] { return std::optional<std::string>("new"); }), "new");
}

} // namespace

} // namespace orvane::testing
