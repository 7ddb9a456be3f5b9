// Files that cannot be read or may not be written: never replaced, one log line says why.

#include "contract/preferences/PreferencesHome.h"

#include <chrono>
#include <csignal>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

namespace orvane {
namespace {

using namespace std::string_literals;

bool save(PreferencesHome &home) {
    PosixPreferencesStore store = home.store();
    store.setAppValue("ORVAutomaticVars", counters("AutoJob", "42"));
    return store.synchronize();
}

void expectRefusedAndKept(const std::string &bytes) {
    PreferencesHome home;
    home.put(bytes);
    EXPECT_FALSE(save(home));
    EXPECT_EQ(home.log.lines.size(), 1U);
    PosixPreferencesStore store = home.store();
    EXPECT_FALSE(store.synchronize());
    EXPECT_FALSE(store.synchronize());
    EXPECT_EQ(home.log.lines.size(), 2U) << "the same state is complained about once";
    EXPECT_FALSE(store.copyAppValue("ORVPresets"));
    EXPECT_FALSE(store.dictionaryWithContentsOfFile());
    EXPECT_EQ(home.contents(), bytes);
    EXPECT_EQ(home.leftovers(), 0U);
}

TEST(DamagedPreferences, AreNeverReplaced) {
    const std::vector<std::string> files{"",
                                         " ",
                                         "<plist><dict><key>a</key>",
                                         "<plist><dict><key>a</key><true/></dict>",
                                         "<plist><array/></plist>",
                                         "<string>x</string>",
                                         "<dict><key>CF$UID</key><integer>1</integer></dict>",
                                         "{ a = b; }",
                                         "bplist00",
                                         "bplist00\xA1\0\x08"s + std::string(6, '\0') + "\x01\x01" + std::string(7, '\0') + "\x01" +
                                             std::string(8, '\0') + std::string(7, '\0') + "\x0A",
                                         "<plist><dict><key>a</key>" + std::string(400'000, '\n')};
    for (const std::string &file : files) {
        SCOPED_TRACE(file.substr(0, 60));
        expectRefusedAndKept(file);
    }
}

TEST(DamagedPreferences, AFileCutOffAtAnyByteIsNeverReplaced) {
    const std::string whole = "<plist version=\"1.0\"><dict><key>ORVAutomaticVars</key><dict/></dict></plist>";
    for (std::size_t size = 0; size < whole.size(); ++size) {
        expectRefusedAndKept(whole.substr(0, size));
    }
}

TEST(DamagedPreferences, WrongTypesAtOurOwnKeyAreReplacedLikeAnyValue) {
    for (const std::string value :
         {"<true/>", "<string>x</string>", "<array><integer>1</integer></array>", "<date>2001-01-01T00:00:00Z</date>"}) {
        PreferencesHome home;
        home.put("<dict><key>ORVAutomaticVars</key>" + value + "<key>ORVPresets</key>" + value + "</dict>");
        EXPECT_TRUE(save(home));
        EXPECT_EQ(home.onDisk()->root().find("ORVAutomaticVars")->find("AutoJob")->string(), "42");
        EXPECT_NE(home.contents().find("<key>ORVPresets</key>" + value), std::string::npos);
    }
}

TEST(DamagedPreferences, AHundredMegabytesAndAMillionLevelsAreChangedLikeAnyFile) {
    PreferencesHome home;
    std::string deep;
    for (int i = 0; i < 1'000'000; ++i) {
        deep += "<array>";
    }
    for (int i = 0; i < 1'000'000; ++i) {
        deep += "</array>";
    }
    const std::string head = "<plist><dict><key>big</key><string>" + std::string(85'000'000, 'x') + "</string><key>deep</key>" + deep;
    home.put(head + "</dict></plist>");
    ASSERT_GE(std::filesystem::file_size(home.file), 100'000'000U);
    EXPECT_TRUE(save(home));
    const std::string after = home.contents();
    EXPECT_TRUE(after.starts_with(head));
    EXPECT_TRUE(after.ends_with("<string>42</string>\n\t</dict></dict></plist>"));
}

TEST(DamagedPreferences, WhatIsNoFileIsLeftAlone) {
    PreferencesHome folder;
    std::filesystem::create_directory(folder.file);
    EXPECT_FALSE(save(folder));
    EXPECT_TRUE(std::filesystem::is_directory(folder.file));

    PreferencesHome fifo;
    ASSERT_EQ(::mkfifo(fifo.file.c_str(), 0600), 0);
    EXPECT_FALSE(save(fifo));
    EXPECT_TRUE(std::filesystem::is_fifo(fifo.file));

    PreferencesHome circle;
    std::filesystem::create_symlink("other", circle.file);
    std::filesystem::create_symlink(circle.file.filename(), circle.file.parent_path() / "other");
    EXPECT_FALSE(save(circle));
    EXPECT_TRUE(std::filesystem::is_symlink(circle.file));
    EXPECT_EQ(folder.log.lines.size() + fifo.log.lines.size() + circle.log.lines.size(), 3U);
}

TEST(RefusedPreferences, AFolderThatMayNotBeWritten) {
    PreferencesHome home;
    home.put("<dict/>");
    std::filesystem::create_directory(home.folder / "run");
    ASSERT_EQ(::chmod(home.file.parent_path().c_str(), 0555), 0);
    EXPECT_EQ(asOrdinaryUser(home.folder, [&] { return save(home) ? 1 : home.log.lines.size() == 1 ? 0 : 2; }), 0);
    EXPECT_EQ(home.contents(), "<dict/>");
    EXPECT_EQ(home.leftovers(), 0U);
}

TEST(RefusedPreferences, AFileThatMayNotBeRead) {
    PreferencesHome home;
    home.put("<dict/>");
    ASSERT_EQ(::chmod(home.file.c_str(), 0), 0);
    EXPECT_EQ(asOrdinaryUser(home.folder, [&] { return save(home) ? 1 : home.log.lines.size() == 1 ? 0 : 2; }), 0);
    ASSERT_EQ(::chmod(home.file.c_str(), 0600), 0);
    EXPECT_EQ(home.contents(), "<dict/>");
}

TEST(RefusedPreferences, AFileThatMayNotBeWritten) {
    PreferencesHome home;
    home.put("<dict/>");
    ASSERT_EQ(::chmod(home.file.c_str(), 0444), 0);
    EXPECT_EQ(asOrdinaryUser(home.folder, [&] { return save(home) ? 1 : home.log.lines.size() == 1 ? 0 : 2; }), 0);
    EXPECT_EQ(home.contents(), "<dict/>");
    EXPECT_EQ(home.leftovers(), 0U);
}

TEST(RefusedPreferences, ADiskThatTakesNoMore) {
    PreferencesHome home;
    const std::string bytes = "<dict><key>a</key><string>" + std::string(100'000, 'x') + "</string></dict>";
    home.put(bytes);
    const int status = asOrdinaryUser(home.folder, [&] {
        std::signal(SIGXFSZ, SIG_IGN); // the limit then shows as a refused write, like a full disk
        const rlimit limit{65536, 65536};
        return ::setrlimit(RLIMIT_FSIZE, &limit) != 0 ? 3 : save(home) ? 1 : home.log.lines.size() == 1 ? 0 : 2;
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(home.contents(), bytes);
    EXPECT_EQ(home.leftovers(), 0U);
}

TEST(RefusedPreferences, ALockThatCannotBeMade) {
    PreferencesHome home;
    home.put("<dict/>");
    std::ofstream(home.folder / "run") << "a file where the lock's folder should be";
    EXPECT_FALSE(save(home));
    EXPECT_EQ(home.contents(), "<dict/>");
    EXPECT_EQ(home.log.lines.size(), 1U);
    EXPECT_TRUE(home.store().synchronize()) << "reading needs no lock";
}

} // namespace
} // namespace orvane
