#include "ports/Sentence.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace orvane {
namespace {

/// A language in which every known text comes in capitals, so that it shows what was looked up.
class Capitals final : public SentenceLanguage {
public:
    [[nodiscard]] std::string text(const char *english) override { return capitals(english); }
    [[nodiscard]] std::string error(int error) override { return "ERROR " + std::to_string(error); }
    [[nodiscard]] std::string composed(const std::string &english) override { return "[" + english + "]"; }

private:
    static std::string capitals(std::string text) {
        for (char &each : text) {
            each = each >= 'a' && each <= 'z' ? static_cast<char>(each - 'a' + 'A') : each;
        }
        return text;
    }
};

std::string inCapitals(const Sentence &sentence) {
    Capitals language;
    return sentence.in(language);
}

static_assert(!std::is_constructible_v<Sentence, const char *> && !std::is_constructible_v<Sentence, const char *, std::vector<Sentence>>,
              "what is put together when the program runs may be gone before the sentence is");

TEST(Sentence, OfNothingIsEmpty) {
    EXPECT_TRUE(Sentence().isEmpty());
    EXPECT_EQ(Sentence().english(), "");
    EXPECT_FALSE(Sentence(forTranslation("it is a folder")).isEmpty());
    EXPECT_FALSE(Sentence::ofError(ENOENT).isEmpty());
}

TEST(Sentence, IsTranslatedButForTheNamesInIt) {
    const Sentence sentence(forTranslation("the contents of '%1' are not in the file"), {std::string("a folder")});
    EXPECT_EQ(sentence.english(), "the contents of 'a folder' are not in the file");
    EXPECT_EQ(inCapitals(sentence), "THE CONTENTS OF 'a folder' ARE NOT IN THE FILE");
}

TEST(Sentence, HoldsOthers) {
    const Sentence sentence(forTranslation("%1: left out: %2"), {std::string("in/pipe"), Sentence(forTranslation("a FIFO"))});
    EXPECT_EQ(sentence.english(), "in/pipe: left out: a FIFO");
    EXPECT_EQ(inCapitals(sentence), "in/pipe: LEFT OUT: A FIFO");
    EXPECT_EQ(inCapitals(Sentence::withReason(std::string("x"), sentence)), "x: in/pipe: LEFT OUT: A FIFO");
}

TEST(Sentence, TellsErrorsInTheLanguageOfItsReader) {
    const Sentence sentence(forTranslation("it cannot be stored: %1"), {Sentence::ofError(ENOSPC)});
    EXPECT_EQ(sentence.english(), std::string("it cannot be stored: ") + std::strerror(ENOSPC));
    EXPECT_EQ(inCapitals(sentence), "IT CANNOT BE STORED: ERROR " + std::to_string(ENOSPC));
}

TEST(Sentence, HandsOnWhatWasPutTogetherElsewhere) {
    const Sentence sentence = Sentence::ofComposed("line 3: a tag is not well-formed");
    EXPECT_EQ(sentence.english(), "line 3: a tag is not well-formed");
    EXPECT_EQ(inCapitals(sentence), "[line 3: a tag is not well-formed]");
}

TEST(Sentence, KeepsNamesThatLookLikeArguments) {
    const Sentence sentence(forTranslation("'%1' and '%2'"), {std::string("%2"), std::string("100 %1", 6)});
    EXPECT_EQ(sentence.english(), "'%2' and '100 %1'");
}

TEST(Sentence, LeavesArgumentsThatAreNotThere) {
    EXPECT_EQ(textWithArguments("%1 %2 %0 % %", {"a"}), "a %2 %0 % %");
    EXPECT_EQ(textWithArguments("", {"a"}), "");
}

} // namespace
} // namespace orvane
