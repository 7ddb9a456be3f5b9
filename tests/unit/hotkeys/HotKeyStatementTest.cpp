// What users are told of their hot key: by the helper, in the file where other programs find it, and what to do instead.
#include "fakes/FakeHotKeyEvents.h"
#include "hotkeys/HotKeyAdvice.h"
#include "hotkeys/HotKeyNames.h"
#include "platform/posix/PosixHotKeyStatement.h"
#include "unit/hotkeys/KeyDesk.h"
#include "wiring/StatedHotKeys.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane::test {
namespace {

class HotKeyStatement : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = testing::TempDir() + "orvane-statement.XXXXXX";
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder); }
    void writeFile(const std::string &text) const { std::ofstream(folder + "/hot-key", std::ios::binary) << text; }
    /// As the helper holds it.
    [[nodiscard]] FileDescriptor locked() const {
        FileDescriptor file(::open((folder + "/hot-key").c_str(), O_RDONLY | O_CLOEXEC));
        EXPECT_EQ(::flock(file.get(), LOCK_EX | LOCK_NB), 0);
        return file;
    }
    [[nodiscard]] std::optional<std::string> read() const { return PosixHotKeyStatement::ofDirectory(folder); }

    std::string folder;
};

TEST_F(HotKeyStatement, IsThereForOthersWhileItsHelperRuns) {
    EXPECT_EQ(read(), std::nullopt);
    {
        PosixHotKeyStatement statement(folder);
        EXPECT_EQ(read(), std::nullopt);
        statement.say("The key works.\nReally.");
        EXPECT_EQ(read(), "The key works.\nReally.");
        statement.say("The key does not work.");
        EXPECT_EQ(read(), "The key does not work.");
    }
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(HotKeyStatement, AnEmptyOneTakesItBack) {
    PosixHotKeyStatement statement(folder);
    statement.say("The key works.");
    statement.say({});
    EXPECT_EQ(read(), std::nullopt);
    statement.say({});
    statement.say("Again.");
    EXPECT_EQ(read(), "Again.");
}

TEST_F(HotKeyStatement, IsThereAlsoAtTheMomentInWhichAnotherTakesItsPlace) {
    PosixHotKeyStatement statement(folder);
    statement.say("The key works.");
    std::atomic<bool> isOver = false;
    std::thread reader([&] {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        for (int round = 0; round < 20'000; ++round) {
            const auto found = read();
            if (std::chrono::steady_clock::now() >= deadline) {
                ADD_FAILURE() << "no more than " << round << " rounds in time";
                break;
            }
            if (found != "The key works." && found != "The key does not work.") {
                ADD_FAILURE() << "in round " << round << ": " << found.value_or("(none)");
                break;
            }
        }
        isOver = true;
    });
    while (!isOver) {
        statement.say("The key does not work.");
        statement.say("The key works.");
    }
    reader.join();
}

TEST_F(HotKeyStatement, OfAHelperThatIsGoneDoesNotCount) {
    const pid_t child = ::fork();
    if (child == 0) {
        PosixHotKeyStatement(folder).say("The key works.");
        PosixHotKeyStatement statement(folder);
        statement.say("The key works.");
        ::kill(::getpid(), SIGKILL);
    }
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    ASSERT_TRUE(std::filesystem::exists(folder + "/hot-key"));
    EXPECT_EQ(read(), std::nullopt);
    writeFile(std::to_string(::getpid()) + "\nThe key works.\n");
    EXPECT_EQ(read(), std::nullopt) << "its number is another process's";
    const FileDescriptor held = locked();
    EXPECT_EQ(read(), "The key works.");
}

TEST_F(HotKeyStatement, WhateverElseIsInTheFileIsNone) {
    for (const char *const text : {"", "\n", "12", "12\n\n\n"}) {
        writeFile(text);
        const FileDescriptor held = locked();
        EXPECT_EQ(read(), std::nullopt) << text;
    }
}

TEST_F(HotKeyStatement, AFolderThatIsMissingIsNoError) {
    PosixHotKeyStatement statement(folder + "/missing");
    statement.say("The key works.");
    EXPECT_EQ(PosixHotKeyStatement::ofDirectory(folder + "/missing"), std::nullopt);
}

class StatedHotKeysTest : public testing::Test {
protected:
    EventStatus take(std::uint32_t keyCode) {
        return keys.registerEventHotKey(keyCode, 0x1200, {FourCharacterCode("SGHk"), 1}, keys.getEventDispatcherTarget(), 0, reference);
    }

    FakeHotKeyEvents events;
    std::vector<std::string> statements;
    StatedHotKeys keys{events, [this](const std::string &statement) { statements.push_back(statement); }};
    EventHotKeyRef reference = nullptr;
};

TEST_F(StatedHotKeysTest, SaysThatAKeyWorksAndNothingOnceItIsGivenBack) {
    ASSERT_EQ(take(4), EventNoError);
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(keys.unregisterEventHotKey(reference), EventNoError);
    ASSERT_EQ(statements.size(), 2U);
    EXPECT_TRUE(statements[0].ends_with(" works.")) << statements[0];
    EXPECT_EQ(statements[1], "");
}

TEST_F(StatedHotKeysTest, SaysWhyAKeyIsRefusedAndWhatToDo) {
    events.takenElsewhere.insert({4, 0x1200});
    ASSERT_EQ(take(4), EventHotKeyExistsError);
    ASSERT_EQ(statements.size(), 1U);
    EXPECT_NE(statements[0].find("does not work: another program has it."), std::string::npos) << statements[0];
    EXPECT_NE(statements[0].find("'orvane menu'"), std::string::npos) << statements[0];
}

TEST_F(StatedHotKeysTest, GoesByTheKeysNumberWhereTheListOfNamesIsMissing) {
    KeyDesk desk;
    desk.assertions.raises = true;
    ASSERT_EQ(take(0x2a), EventNoError);
    EXPECT_EQ(statements, std::vector<std::string>{"The hot key ⌃⇧2A works."});
    EXPECT_EQ(desk.assertions.failures,
              std::vector<std::string>{"+[SGKeyCombo _keyCodesDictionary] SGKeyCombo:109 Contents of SGKeyCodes is nil"});
}

TEST(HotKeyNames, AreTheCombinationsOwnWhereTheListIsThere) {
    KeyDesk desk;
    desk.assertions.raises = true;
    desk.setNewKeyCodes();
    desk.useLayout({{0, u"a"}});
    const SGKeyCombo ofReturn(36, 0x100);
    EXPECT_EQ(ORVKeyName(ofReturn), "Return");
    EXPECT_EQ(ORVHotKeyName(ofReturn), "⌘Return");
    EXPECT_TRUE(ORVKeyHasOwnName(ofReturn));
    const SGKeyCombo ofLetter(0, 0x100);
    EXPECT_EQ(ORVKeyName(ofLetter), ofLetter.keyCodeString());
    EXPECT_EQ(ORVHotKeyName(ofLetter), ofLetter.description());
    EXPECT_FALSE(ORVKeyHasOwnName(ofLetter));
}

TEST(HotKeyNames, AreNumbersWhereItIsMissing) {
    KeyDesk desk;
    desk.assertions.raises = true;
    for (const auto &[code, name] : {std::pair{0, "0"}, {36, "24"}, {0x7f, "7F"}}) {
        const SGKeyCombo combo(code, 0x1000);
        EXPECT_EQ(ORVKeyName(combo), name);
        EXPECT_EQ(ORVHotKeyName(combo), std::string("⌃") + name);
        EXPECT_FALSE(ORVKeyHasOwnName(combo));
    }
    EXPECT_EQ(desk.assertions.failures.size(), 9U);
    EXPECT_EQ(ORVHotKeyName(SGKeyCombo::clearKeyCombo()), SGKeyCombo::clearKeyCombo().description());
}

TEST(HotKeyInstructions, AreThoseOfTheDesktopWithoutSayingThatItGivesNoKeys) {
    EXPECT_TRUE(ORVHotKeyInstructions("KDE").starts_with("Bind a key to the command 'orvane menu': in System Settings"));
    EXPECT_EQ(ORVHotKeyAdvice("ubuntu:GNOME"), "This desktop gives programs no hot keys of their own. " + ORVHotKeyInstructions("GNOME"));
    EXPECT_NE(ORVHotKeyInstructions(""), ORVHotKeyInstructions("sway"));
}

} // namespace
} // namespace orvane::test
