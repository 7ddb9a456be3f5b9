#include "XDGAutostart.h"

#include "TemporaryFolder.h"

namespace orvane {
namespace {

constexpr const char *Name = "org.orvane.Helper.desktop";
constexpr const char *Entry = "[Desktop Entry]\nType=Application\nName=Orvane\nExec=orvane-helper\n";

class Autostart : public testing::Test {
protected:
    std::string user(std::string_view text) { return folder.write(std::string("user/autostart/") + Name, text); }
    std::string system(std::string_view text) { return folder.write(std::string("system/autostart/") + Name, text); }
    std::string userText() { return folder.read(std::string("user/autostart/") + Name); }

    test::TemporaryFolder folder;
    XDGAutostart item{folder / "user", {folder / "none", folder / "system"}, Name, Entry};
};

TEST_F(Autostart, IsOffWithoutAnyFile) {
    EXPECT_FALSE(item.isEnabled());
    EXPECT_TRUE(item.setEnabled(false));
    EXPECT_FALSE(folder.has("user"));
}

TEST_F(Autostart, IsSwitchedOnWithAFileOfItsOwn) {
    EXPECT_TRUE(item.setEnabled(true));
    EXPECT_TRUE(item.isEnabled());
    EXPECT_EQ(userText(), "[Desktop Entry]\nHidden=false\nType=Application\nName=Orvane\nExec=orvane-helper\n");
    EXPECT_EQ(folder.count("user/autostart"), 1U);
}

TEST_F(Autostart, TheSystemsFileIsHiddenByTheUsers) {
    system(Entry);
    EXPECT_TRUE(item.isEnabled());
    EXPECT_TRUE(item.setEnabled(false));
    EXPECT_FALSE(item.isEnabled());
    EXPECT_NE(userText().find("\nHidden=true\n"), std::string::npos);
    EXPECT_EQ(folder.read(std::string("system/autostart/") + Name), Entry);
    EXPECT_TRUE(item.setEnabled(true));
    EXPECT_TRUE(item.isEnabled());
}

TEST_F(Autostart, TheUsersFileStandsBeforeTheSystems) {
    system(Entry);
    user("[Desktop Entry]\nHidden=true\n");
    EXPECT_FALSE(item.isEnabled());
}

TEST_F(Autostart, EveryOtherLineStays) {
    user("# mine\n[Desktop Entry]\n  Hidden = true \nX-Own=1\n[Desktop Action a]\nHidden=true\n");
    EXPECT_TRUE(item.setEnabled(true));
    EXPECT_EQ(userText(), "# mine\n[Desktop Entry]\nHidden=false\nX-Own=1\n[Desktop Action a]\nHidden=true\n");
}

TEST_F(Autostart, GNOMEsSwitchCountsAndIsSetWhereItStands) {
    user("[Desktop Entry]\nX-GNOME-Autostart-enabled=false\n");
    EXPECT_FALSE(item.isEnabled());
    EXPECT_TRUE(item.setEnabled(true));
    EXPECT_EQ(userText(), "[Desktop Entry]\nHidden=false\nX-GNOME-Autostart-enabled=true\n");
}

TEST_F(Autostart, AFileWithoutGroupGetsOne) {
    user("# empty\n");
    EXPECT_TRUE(item.isEnabled());
    EXPECT_TRUE(item.setEnabled(false));
    EXPECT_EQ(userText(), "# empty\n[Desktop Entry]\nHidden=true\n");
    EXPECT_FALSE(item.isEnabled());
}

TEST_F(Autostart, ALinkStaysALink) {
    const std::string target = folder.write("dotfiles/helper.desktop", Entry);
    std::filesystem::create_directories(folder / "user/autostart");
    std::filesystem::create_symlink(target, folder / (std::string("user/autostart/") + Name));
    EXPECT_TRUE(item.setEnabled(false));
    EXPECT_NE(folder.read("dotfiles/helper.desktop").find("Hidden=true"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / (std::string("user/autostart/") + Name)));
}

TEST_F(Autostart, WhereItCannotBeStoredItSaysSo) {
    folder.write("user", "a file");
    EXPECT_FALSE(item.setEnabled(true));
    EXPECT_FALSE(item.isEnabled());
}

TEST_F(Autostart, FoldersComeFromTheEnvironment) {
    ::setenv("XDG_CONFIG_HOME", "/c", 1);
    ::setenv("XDG_CONFIG_DIRS", "/a:relative:/b", 1);
    EXPECT_EQ(XDGAutostart::configurationFolderOfEnvironment("/home/me"), "/c");
    EXPECT_EQ(XDGAutostart::systemFoldersOfEnvironment(), (std::vector<std::string>{"/a", "/b"}));
    ::setenv("XDG_CONFIG_HOME", "relative", 1);
    ::unsetenv("XDG_CONFIG_DIRS");
    EXPECT_EQ(XDGAutostart::configurationFolderOfEnvironment("/home/me"), "/home/me/.config");
    EXPECT_EQ(XDGAutostart::systemFoldersOfEnvironment(), std::vector<std::string>{"/etc/xdg"});
}

} // namespace
} // namespace orvane
