// Where the user's folders are, by the environment.

#include "platform/posix/PosixUserFolders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <pwd.h>
#include <string>
#include <unistd.h>

namespace orvane {
namespace {

class PosixUserFoldersTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char *name : {"HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
            const char *const value = std::getenv(name);
            _before[name] = value == nullptr ? std::nullopt : std::optional<std::string>(value);
            ::unsetenv(name);
        }
        ::setenv("HOME", "/homes/ann", 1);
    }
    void TearDown() override {
        for (const auto &[name, value] : _before) {
            value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
        }
    }

    PosixUserFolders folders;

private:
    std::map<std::string, std::optional<std::string>> _before;
};

TEST_F(PosixUserFoldersTest, DefaultsAreInsideTheHomeFolder) {
    EXPECT_EQ(folders.homeDirectory(), "/homes/ann");
    EXPECT_EQ(folders.applicationSupportDirectory(), "/homes/ann/.local/share");
    EXPECT_EQ(folders.stateDirectory(), "/homes/ann/.local/state/orvane");
    EXPECT_EQ(folders.preferencesFile(), "/homes/ann/Library/Preferences/org.orvane.ORVPrefPane.plist");
}

TEST_F(PosixUserFoldersTest, XdgVariablesMoveThem) {
    ::setenv("XDG_DATA_HOME", "/data", 1);
    ::setenv("XDG_STATE_HOME", "/state", 1);
    EXPECT_EQ(folders.applicationSupportDirectory(), "/data");
    EXPECT_EQ(folders.stateDirectory(), "/state/orvane");
    EXPECT_EQ(folders.preferencesFile(), "/homes/ann/Library/Preferences/org.orvane.ORVPrefPane.plist");
}

TEST_F(PosixUserFoldersTest, RelativeAndEmptyXdgVariablesAreIgnored) {
    for (const char *value : {"", "data", "./data", "~/data", "../data"}) {
        ::setenv("XDG_DATA_HOME", value, 1);
        ::setenv("XDG_STATE_HOME", value, 1);
        EXPECT_EQ(folders.applicationSupportDirectory(), "/homes/ann/.local/share") << value;
        EXPECT_EQ(folders.stateDirectory(), "/homes/ann/.local/state/orvane") << value;
    }
}

TEST_F(PosixUserFoldersTest, WithoutAnAbsoluteHomeTheUserDatabaseTells) {
    const passwd *const entry = ::getpwuid(::getuid());
    const std::string expected = entry != nullptr ? entry->pw_dir : "/";
    ::unsetenv("HOME");
    EXPECT_EQ(folders.homeDirectory(), expected);
    for (const char *value : {"", "ann", "~"}) {
        ::setenv("HOME", value, 1);
        EXPECT_EQ(folders.homeDirectory(), expected) << value;
    }
}

TEST_F(PosixUserFoldersTest, SlashesAtTheEndDoNotCount) {
    ::setenv("HOME", "/homes/ann//", 1);
    ::setenv("XDG_DATA_HOME", "/data/", 1);
    EXPECT_EQ(folders.homeDirectory(), "/homes/ann");
    EXPECT_EQ(folders.applicationSupportDirectory(), "/data");
}

TEST_F(PosixUserFoldersTest, RootAsHomeGivesNoDoubleSlash) {
    ::setenv("HOME", "/", 1);
    EXPECT_EQ(folders.homeDirectory(), "/");
    EXPECT_EQ(folders.applicationSupportDirectory(), "/.local/share");
}

} // namespace
} // namespace orvane
