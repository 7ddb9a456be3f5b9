#include "Translation.h"
#include "Terminal.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

namespace orvane {
namespace {

// Nothing here calls `speakUsersLanguage`: these are the texts of programs that translate by themselves, and the English ones.

TEST(Translation, TextsStayAsTheyAreUntilTheUsersLanguageIsAskedFor) {
    ::setenv("LANGUAGE", "de", 1);
    const char *const text = forTranslation("which preset?");
    EXPECT_EQ(localized(text), text);
    EXPECT_STREQ(localized(""), "");
    ::unsetenv("LANGUAGE");
}

TEST(Translation, ArgumentsAreNotLookedInto) {
    EXPECT_EQ(localized("'%1' and '%2', '%1'", {"%2", "%1"}), "'%2' and '%1', '%2'");
    EXPECT_EQ(localized("%1 %", {std::string("a\0b", 3)}), std::string("a\0b %", 5));
}

TEST(Translation, NumbersHaveTheirForms) {
    EXPECT_EQ(localizedCount("%1 file", "%1 files", 0), "0 files");
    EXPECT_EQ(localizedCount("%1 file", "%1 files", 1), "1 file");
    EXPECT_EQ(localizedCount("%1 file in %2", "%1 files in %2", 2, {"a"}), "2 files in a");
}

TEST(Translation, ReasonsFollowAColon) {
    EXPECT_EQ(withReason("a", "b"), "a: b");
}

TEST(Translation, ErrorsAreTheSystemsTextsAndKeptMeanwhile) {
    for (const int error : {EPERM, ENOENT, EACCES, ENOSPC, ELOOP, 4711}) {
        errno = EDOM;
        const std::string expected = std::strerror(error); // the next one takes its place
        EXPECT_EQ(textOfError(error), expected);
    }
    errno = EDOM;
    static_cast<void>(localized("which preset?"));
    EXPECT_EQ(errno, EDOM);
}

TEST(Translation, SentencesOfTheEngineComeOutAsTheyWentIn) {
    constexpr std::array Said = {"it is not a preset file",
                                 "line 3: the file ends inside <plist>",
                                 "line 3: line 4: line 5: line 6: a value without a key",
                                 "reading failed: Input/output error",
                                 "the content file 'a '%1' b' in it has no data, or a mode that is none",
                                 "The hot key works by the desktop portal (Ctrl+Shift+H).",
                                 "line : ",
                                 "line 3: ",
                                 "nobody has said this before",
                                 "%1",
                                 ""};
    for (const char *const text : Said) {
        EXPECT_EQ(localizedSentence(text), text);
    }
}

TEST(Columns, AreCountedAsTerminalsDo) {
    EXPECT_EQ(columnsOf(""), 0U);
    EXPECT_EQ(columnsOf("abc"), 3U);
    EXPECT_EQ(columnsOf("Größe"), 5U);
    EXPECT_EQ(columnsOf("nom\u00A0:"), 5U);
    EXPECT_EQ(columnsOf("e\u0301"), 1U); // a combining mark
    EXPECT_EQ(columnsOf("日本"), 4U);
}

} // namespace
} // namespace orvane
