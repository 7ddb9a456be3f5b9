// What every case mapping promises, run on the fake and on the real one; then the real one's whole mapping.

#include "fakes/FakeTextCase.h"
#include "platform/posix/UnistringTextCase.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace orvane {
namespace {

using namespace std::string_literals;

template <typename Kind> class TextCaseContract : public testing::Test {
protected:
    Kind textCase;
};

using TextCases = testing::Types<FakeTextCase, UnistringTextCase>;
TYPED_TEST_SUITE(TextCaseContract, TextCases);

TYPED_TEST(TextCaseContract, AsciiLettersChangeAndNothingElse) {
    EXPECT_EQ(this->textCase.uppercase(""), "");
    EXPECT_EQ(this->textCase.uppercase("project name-2 @[`{z}~"), "PROJECT NAME-2 @[`{Z}~");
    EXPECT_EQ(this->textCase.uppercase("a\0b\x7F\n"s), "A\0B\x7F\n"s);
}

TYPED_TEST(TextCaseContract, OtherScriptsChangeToo) {
    EXPECT_EQ(this->textCase.uppercase("äé"), "ÄÉ");
    EXPECT_EQ(this->textCase.uppercase("д"), "Д");
    EXPECT_EQ(this->textCase.uppercase("ςσ"), "ΣΣ");
    EXPECT_EQ(this->textCase.uppercase("𐐨"), "𐐀");
}

TYPED_TEST(TextCaseContract, OneCharacterMayBecomeSeveral) {
    EXPECT_EQ(this->textCase.uppercase("straße"), "STRASSE");
    EXPECT_EQ(this->textCase.uppercase("ŉ"), "ʼN");
    EXPECT_EQ(this->textCase.uppercase("ﬁn"), "FIN");
}

TYPED_TEST(TextCaseContract, MappingIsThatOfNoLanguage) {
    EXPECT_EQ(this->textCase.uppercase("iı"), "II"); // Turkish would dot the first
}

TYPED_TEST(TextCaseContract, CharactersWithoutCaseStay) {
    EXPECT_EQ(this->textCase.uppercase("1 中文 🎬 e\u0301"), "1 中文 🎬 E\u0301");
}

TYPED_TEST(TextCaseContract, BytesThatAreNoUtf8StayAndTheRestChanges) {
    EXPECT_EQ(this->textCase.uppercase("a\xFFz"), "A\xFFZ");
    EXPECT_EQ(this->textCase.uppercase("\x80\x80ß\xC3"), "\x80\x80SS\xC3");
    EXPECT_EQ(this->textCase.uppercase("\xED\xA0\x80x"), "\xED\xA0\x80X");   // a surrogate
    EXPECT_EQ(this->textCase.uppercase("é\xF0\x9F\x8Eé"), "É\xF0\x9F\x8EÉ"); // a character cut short
    EXPECT_EQ(this->textCase.uppercase("\xC0\xAFq"), "\xC0\xAFQ");           // an overlong form
}

TEST(UnistringTextCase, FullMappingOfSpecialCasing) {
    UnistringTextCase textCase;
    const std::pair<const char *, const char *> table[] = {
        {"ﬃ", "FFI"}, {"ﬆ", "ST"},  {"և", "ԵՒ"},  {"\u0390", "\u0399\u0308\u0301"},
        {"ẖ", "H̱"},   {"ǰ", "J̌"},   {"ᾳ", "ΑΙ"},  {"ᾷ", "Α͂Ι"},
        {"ẞ", "ẞ"},   {"ÿ", "Ÿ"},   {"µ", "Μ"},   {"ſ", "S"},
        {"ǆ", "Ǆ"},   {"ა", "Ა"}, {"ꭰ", "Ꭰ"}, {"𞤢", "𞤀"},
    };
    for (const auto &[lower, upper] : table) {
        EXPECT_EQ(textCase.uppercase(lower), upper) << lower;
    }
}

TEST(UnistringTextCase, ShortWayForAsciiGivesWhatTheLibraryGives) {
    UnistringTextCase textCase;
    std::string all;
    for (int byte = 0; byte < 128; ++byte) {
        all += static_cast<char>(byte);
    }
    EXPECT_EQ(textCase.uppercase(all) + "É", textCase.uppercase(all + "é")); // the right one goes through the library
}

TEST(UnistringTextCase, LocaleOfTheProgramDoesNotMatter) {
    const char *const turkish = std::setlocale(LC_ALL, "tr_TR.UTF-8");
    ::setenv("LC_ALL", "tr_TR.UTF-8", 1); // libunistring reads the name, whether the locale is installed or not
    UnistringTextCase textCase;
    EXPECT_EQ(textCase.uppercase("iß"), "ISS");
    ::unsetenv("LC_ALL");
    if (turkish != nullptr) {
        std::setlocale(LC_ALL, "C");
    }
}

TEST(UnistringTextCase, LongTextTakesTimeInProportion) {
    UnistringTextCase textCase;
    std::string text;
    std::string expected;
    for (int i = 0; i < 200'000; ++i) {
        text += "ä\xFF";
        expected += "Ä\xFF";
    }
    EXPECT_EQ(textCase.uppercase(text), expected); // a square cost would not end within the test's time limit
}

} // namespace
} // namespace orvane
