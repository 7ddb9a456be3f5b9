// What saving keeps: bytes, types, links, owner, mode and attributes.

#include "contract/preferences/PreferencesHome.h"

#include <algorithm>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace orvane {
namespace {

bool save(PreferencesHome &home, const std::string &value = "42") {
    PosixPreferencesStore store = home.store();
    store.setAppValue("ORVAutomaticVars", counters("AutoJob", value));
    return store.synchronize();
}

const std::string Counter = "<dict>\n\t\t<key>AutoJob</key>\n\t\t<string>42</string>\n\t</dict>";

TEST(SavingPreferences, LeavesEveryOtherByteOfAnXMLFile) {
    PreferencesHome home;
    const std::string before = "\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?>\r\n<!-- mine -->\n<plist version=\"1.0\">\r\n<dict>\n"
                               "  <key>n</key> <integer>0x1F</integer> <real>1.50</real>";
    const std::string good = before.substr(0, before.find(" <real>")) +
                             "<key>r</key><real>1.50</real><key>d</key><date>2001-01-01T00:00:00Z</date>"
                             "<key>b</key><data> aGVs bG8= </data><key>u</key><dict><key>CF$UID</key><integer>3</integer></dict>\n  "
                             "<key>ORVAutomaticVars</key> ";
    const std::string after = "\n  <key>x&#65;</key><string><![CDATA[<&>]]></string>\n</dict>\n</plist>\n<!-- end -->\n";
    home.put(good + "<dict/>" + after);
    ASSERT_TRUE(home.onDisk());
    EXPECT_TRUE(save(home));
    EXPECT_EQ(home.contents(), good + Counter + after);
    EXPECT_EQ(home.leftovers(), 0U);
    EXPECT_TRUE(home.log.lines.empty());
}

TEST(SavingPreferences, KnowsWhichTextsTheFormOfTheFileCanHold) {
    PreferencesHome home;
    const std::string_view withNul("a\0b", 3);
    for (const std::string_view good : {"", "a\tb\r\n", "ä日😀", "\x7F", "\uFFFD"}) {
        EXPECT_TRUE(home.store().canStoreText(good)) << good;
    }
    for (const std::string_view bad : {std::string_view("\x01"), withNul, std::string_view("\x1F"), std::string_view("\uFFFE"),
                                       std::string_view("\uFFFF"), std::string_view("\xFF"), std::string_view("\xED\xA0\x80")}) {
        EXPECT_FALSE(home.store().canStoreText(bad));
    }
    PropertyListBuilder builder;
    home.put(writeBinaryPropertyList(builder.dictionary({})).value_or(""));
    PosixPreferencesStore store = home.store();
    ASSERT_TRUE(store.synchronize());
    EXPECT_TRUE(store.canStoreText("\x01"));
    EXPECT_TRUE(store.canStoreText(withNul));
    EXPECT_FALSE(store.canStoreText("\xFF"));
}

TEST(SavingPreferences, PutsANewKeyBehindTheLast) {
    PreferencesHome home;
    home.put("<plist><dict>\n\t<key>a</key>\n\t<true/>\n\t<!-- end -->\n</dict></plist>");
    EXPECT_TRUE(save(home));
    EXPECT_EQ(home.contents(), "<plist><dict>\n\t<key>a</key>\n\t<true/>\n\t<key>ORVAutomaticVars</key>\n\t" + Counter +
                                   "\n\t<!-- end -->\n</dict></plist>");
}

TEST(SavingPreferences, PutsANewKeyIntoAnEmptyDictionary) {
    for (const auto &[before, after] : {std::pair<std::string, std::string>{"<plist><dict/></plist>\n", "</dict></plist>\n"},
                                        {"<plist><dict></dict></plist>\n", "</dict></plist>\n"},
                                        {"<plist><dict>\n</dict></plist>\n", "\n</dict></plist>\n"}}) {
        PreferencesHome home;
        home.put(before);
        EXPECT_TRUE(save(home));
        EXPECT_EQ(home.contents(), "<plist><dict>\n\t<key>ORVAutomaticVars</key>\n\t" + Counter + "\n" + after);
    }
}

TEST(SavingPreferences, ReplacesTheLastOfADoubleKey) {
    PreferencesHome home;
    home.put("<dict><key>ORVAutomaticVars</key><string>1</string><key>ORVAutomaticVars</key><string>2</string></dict>");
    EXPECT_TRUE(save(home));
    EXPECT_EQ(home.contents(), "<dict><key>ORVAutomaticVars</key><string>1</string><key>ORVAutomaticVars</key>" + Counter + "</dict>");
}

TEST(SavingPreferences, KeepsOtherEncodings) {
    for (const auto encoding :
         {PropertyListEncoding::UTF16LittleEndian, PropertyListEncoding::UTF16BigEndian, PropertyListEncoding::Latin1}) {
        PreferencesHome home;
        const bool latin = encoding == PropertyListEncoding::Latin1;
        const std::string head = std::string(latin ? "" : "\xEF\xBB\xBF") + "<?xml version=\"1.0\" encoding=\"" +
                                 (latin ? "ISO-8859-1" : "UTF-16") + "\"?>\n<dict><key>caf\xC3\xA9</key><string>\xC3\xA9</string>";
        home.put(*encodedPropertyListText(head + "</dict>", encoding));
        EXPECT_TRUE(save(home, "\xE6\x9D\xB1"));
        const std::string value = latin ? "&#26481;" : "\xE6\x9D\xB1";
        EXPECT_EQ(decodedPropertyListText(home.contents(), encoding),
                  head + "\n\t<key>ORVAutomaticVars</key>\n\t<dict>\n\t\t<key>AutoJob</key>\n\t\t<string>" + value +
                      "</string>\n\t</dict></dict>");
    }
}

TEST(SavingPreferences, KeepsTheBinaryFormAndEveryTypeInIt) {
    PreferencesHome home;
    PropertyListBuilder builder;
    const std::vector<PropertyListValue> items{PropertyListValue::ofReal(static_cast<double>(0.1F), true),
                                               PropertyListValue::ofReal(0.1),
                                               PropertyListValue::ofDate(1.25),
                                               PropertyListValue::ofUID(7),
                                               PropertyListValue::ofUnsigned(~0ULL),
                                               builder.data(std::string("\0\xFF", 2)),
                                               builder.string("\xED\xA0\x80"),
                                               PropertyListValue()};
    const std::vector<PropertyListEntry> entries{{"foreign", builder.array(items)},
                                                 {"set", PropertyListValue::viewOfSet(builder.array(items).array())}};
    const PropertyListValue root = builder.dictionary(entries);
    home.put(*writeBinaryPropertyList(root));
    EXPECT_TRUE(save(home));
    PropertyListFormat format{};
    const auto list = readPropertyList(home.contents(), &format, nullptr);
    ASSERT_TRUE(list);
    EXPECT_EQ(format, PropertyListFormat::Binary);
    ASSERT_EQ(list->root().dictionary().size(), 3U);
    EXPECT_TRUE(list->root().find("foreign")->equals(*root.find("foreign")));
    EXPECT_TRUE(list->root().find("foreign")->array()[0].isSinglePrecision());
    EXPECT_TRUE(list->root().find("set")->equals(*root.find("set")));
    EXPECT_EQ(list->root().find("ORVAutomaticVars")->find("AutoJob")->string(), "42");
}

TEST(SavingPreferences, WritesNothingWhenTheValueIsThere) {
    PreferencesHome home;
    home.put("<dict><key>ORVAutomaticVars</key><dict><key>AutoJob</key><string>42</string></dict></dict>");
    struct stat before {};
    struct stat after {};
    ASSERT_EQ(::stat(home.file.c_str(), &before), 0);
    EXPECT_TRUE(save(home));
    ASSERT_EQ(::stat(home.file.c_str(), &after), 0);
    EXPECT_EQ(PosixPreferencesIdentity::of(before), PosixPreferencesIdentity::of(after));
}

TEST(SavingPreferences, MakesAMissingFileForTheUserAlone) {
    PreferencesHome home;
    home.file = home.folder / "a" / "b" / "domain.plist";
    EXPECT_TRUE(save(home));
    struct stat status {};
    ASSERT_EQ(::stat(home.file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    ASSERT_EQ(::stat((home.folder / "a").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
    EXPECT_EQ(home.onDisk()->root().find("ORVAutomaticVars")->find("AutoJob")->string(), "42");
    ASSERT_EQ(::stat((home.folder / "run").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
}

TEST(SavingPreferences, KeepsModeAndExtendedAttributes) {
    PreferencesHome home;
    home.put("<dict/>");
    ASSERT_EQ(::chmod(home.file.c_str(), 0640), 0);
    ASSERT_EQ(::setxattr(home.file.c_str(), "user.note", "kept", 4, 0), 0) << "this test needs a file system with user attributes";
    EXPECT_TRUE(save(home));
    struct stat status {};
    ASSERT_EQ(::stat(home.file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    char value[8] = {};
    EXPECT_EQ(::getxattr(home.file.c_str(), "user.note", value, sizeof value), 4);
    EXPECT_STREQ(value, "kept");
}

TEST(SavingPreferences, KeepsEveryOneOfManyExtendedAttributes) {
    PreferencesHome home;
    home.put("<dict/>");
    constexpr int Many = 20; // names of 600 bytes in all, and one value of 1,000
    for (int i = 0; i < Many; ++i) {
        const std::string name = "user.orvane-test-attribute-" + std::to_string(100 + i);
        const std::string value(i == 0 ? 1000 : 2, static_cast<char>('a' + i));
        ASSERT_EQ(::setxattr(home.file.c_str(), name.c_str(), value.data(), value.size(), 0), 0);
    }
    EXPECT_TRUE(save(home));
    for (int i = 0; i < Many; ++i) {
        const std::string name = "user.orvane-test-attribute-" + std::to_string(100 + i);
        std::string value(2000, '\0');
        const ssize_t size = ::getxattr(home.file.c_str(), name.c_str(), value.data(), value.size());
        EXPECT_EQ(value.substr(0, static_cast<std::size_t>(std::max<ssize_t>(size, 0))),
                  std::string(i == 0 ? 1000 : 2, static_cast<char>('a' + i)));
    }
}

TEST(SavingPreferences, FollowsLinksAndLeavesThem) {
    PreferencesHome home;
    std::filesystem::create_directory(home.folder / "dotfiles");
    const auto target = home.folder / "dotfiles" / "real.plist";
    std::ofstream(target) << "<dict><key>a</key><true/></dict>";
    std::filesystem::create_symlink("../dotfiles/second.plist", home.file);
    std::filesystem::create_symlink("real.plist", home.folder / "dotfiles" / "second.plist");
    EXPECT_TRUE(save(home));
    EXPECT_TRUE(std::filesystem::is_symlink(home.file));
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(target)));
    EXPECT_EQ(home.onDisk()->root().dictionary().size(), 2U);
    EXPECT_EQ(home.leftovers(), 0U);
}

TEST(SavingPreferences, MakesTheTargetOfADanglingLink) {
    PreferencesHome home;
    std::filesystem::create_symlink("../dotfiles/real.plist", home.file);
    EXPECT_TRUE(save(home));
    EXPECT_TRUE(std::filesystem::is_symlink(home.file));
    EXPECT_TRUE(std::filesystem::exists(home.folder / "dotfiles" / "real.plist"));
    EXPECT_TRUE(home.onDisk()->root().find("ORVAutomaticVars"));
}

TEST(SavingPreferences, RemovesWhatAKilledProgramLeft) {
    PreferencesHome home;
    home.put("<dict/>");
    std::ofstream(home.file.parent_path() / ".orvane-preferences-0.tmp") << "half";
    EXPECT_TRUE(save(home));
    EXPECT_EQ(home.leftovers(), 0U);
}

TEST(SavingPreferences, LeavesTheTemporaryFileOfALiveProgramAlone) {
    PreferencesHome home;
    home.put("<dict/>");
    PosixPreferencesReplacement other;
    ASSERT_TRUE(other.begin(home.file.string()));
    EXPECT_TRUE(save(home));
    EXPECT_EQ(home.leftovers(), 1U);
    EXPECT_TRUE(std::filesystem::exists(home.file.parent_path() / ".orvane-preferences-0.tmp"));
}

TEST(SavingPreferences, ATextThatXMLCannotHoldIsRefused) {
    PreferencesHome home;
    home.put("<dict/>");
    EXPECT_FALSE(save(home, std::string(1, '\0')));
    EXPECT_FALSE(save(home, "\xFF"));
    EXPECT_EQ(home.contents(), "<dict/>");
    EXPECT_EQ(home.log.lines.size(), 2U);
}

TEST(ReadingPreferences, AnUnchangedFileIsNotReadAgain) {
    PreferencesHome home;
    home.put("<dict><key>a</key><string>1</string></dict>");
    PosixPreferencesStore store = home.store();
    const auto storage = [&store] {
        EXPECT_TRUE(store.synchronize());
        return store.copyAppValue("a")->root().storage();
    };
    // A file changed a moment ago is read each time; once it has been left alone for a while, no more.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    bool kept = false;
    while (!kept && std::chrono::steady_clock::now() < deadline) {
        const auto first = store.synchronize() ? store.copyAppValue("a") : std::nullopt; // holds the memory, so that it is not used again
        kept = first->root().storage() == storage();
    }
    EXPECT_TRUE(kept);
    home.put("<dict><key>a</key><string>2</string></dict>");
    EXPECT_TRUE(store.synchronize());
    EXPECT_EQ(store.copyAppValue("a")->root().string(), "2");
}

} // namespace
} // namespace orvane
