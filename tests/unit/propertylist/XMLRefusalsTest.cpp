// What the XML reader refuses, each with a reason. A refused file is unreadable, never empty.

#include "platform/propertylist/PropertyListFiles.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace orvane {
namespace {

bool isRefused(const std::string &text) {
    std::string why;
    const bool refused = !readPropertyList(text, nullptr, &why).has_value();
    EXPECT_EQ(refused, !why.empty()) << text;
    return refused;
}

struct Refusal {
    const char *name;
    std::string text;
};
std::ostream &operator<<(std::ostream &out, const Refusal &refusal) {
    return out << refusal.text;
}

class XMLRefusals : public testing::TestWithParam<Refusal> {};
TEST_P(XMLRefusals, AreUnreadable) {
    EXPECT_TRUE(isRefused(GetParam().text));
}
TEST_P(XMLRefusals, AreUnreadableInsideADocumentToo) {
    EXPECT_TRUE(
        isRefused("<plist><dict><key>before</key><true/><key>k</key>" + GetParam().text + "<key>after</key><true/></dict></plist>"));
}

std::string nameOf(const testing::TestParamInfo<Refusal> &info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Values, XMLRefusals,
    testing::Values(
        Refusal{"EmptyInteger", "<integer></integer>"}, Refusal{"EmptyIntegerTag", "<integer/>"},
        Refusal{"LetterInteger", "<integer>1a</integer>"}, Refusal{"TwoIntegers", "<integer>1 2</integer>"},
        Refusal{"SignOnly", "<integer>-</integer>"}, Refusal{"TwoSigns", "<integer>--1</integer>"},
        Refusal{"HexWithoutDigits", "<integer>0x</integer>"}, Refusal{"HexWithLetterG", "<integer>0x1G</integer>"},
        Refusal{"IntegerWithFraction", "<integer>1.5</integer>"}, Refusal{"IntegerWithUnderscore", "<integer>1_000</integer>"},
        Refusal{"IntegerAbove64Bits", "<integer>18446744073709551616</integer>"},
        Refusal{"IntegerBelow64Bits", "<integer>-9223372036854775809</integer>"},
        Refusal{"HexAbove64Bits", "<integer>0x10000000000000000</integer>"}, Refusal{"EmptyReal", "<real></real>"},
        Refusal{"EmptyRealTag", "<real/>"}, Refusal{"CommaReal", "<real>1,5</real>"}, Refusal{"HexReal", "<real>0x1p3</real>"},
        Refusal{"RealWithTail", "<real>1.5x</real>"}, Refusal{"ExponentWithoutDigits", "<real>1e</real>"},
        Refusal{"PointOnly", "<real>.</real>"}, Refusal{"NanWithTail", "<real>nan(1)</real>"},
        Refusal{"RealWithTwoSigns", "<real>+-1</real>"}, Refusal{"EmptyDate", "<date></date>"}, Refusal{"EmptyDateTag", "<date/>"},
        Refusal{"DateWithoutZ", "<date>2001-01-01T00:00:00</date>"}, Refusal{"DateWithZone", "<date>2001-01-01T00:00:00+01:00</date>"},
        Refusal{"DayOnly", "<date>2001-01-01</date>"}, Refusal{"DateWithFraction", "<date>2001-01-01T00:00:00.5Z</date>"},
        Refusal{"Month13", "<date>2001-13-01T00:00:00Z</date>"}, Refusal{"Month0", "<date>2001-00-01T00:00:00Z</date>"},
        Refusal{"February30", "<date>2001-02-30T00:00:00Z</date>"}, Refusal{"NoLeapYear", "<date>1900-02-29T00:00:00Z</date>"},
        Refusal{"Hour24", "<date>2001-01-01T24:00:00Z</date>"}, Refusal{"Second60", "<date>2001-01-01T00:00:60Z</date>"},
        Refusal{"ShortYear", "<date>201-01-01T00:00:00Z</date>"}, Refusal{"DateWithTail", "<date>2001-01-01T00:00:00Zx</date>"},
        Refusal{"DataWithOtherCharacters", "<data>aGV*bG8=</data>"}, Refusal{"DataWithoutPadding", "<data>aGVsbG8</data>"},
        Refusal{"DataOfOneCharacter", "<data>a</data>"}, Refusal{"DataBehindPadding", "<data>aGVsbA==aGVs</data>"},
        Refusal{"DataWithTooMuchPadding", "<data>aGVsbG8==</data>"}, Refusal{"PaddingOnly", "<data>=</data>"},
        Refusal{"BooleanWithText", "<true>x</true>"}, Refusal{"BooleanWithElement", "<true><true/></true>"},
        Refusal{"UnknownElement", "<text>x</text>"}, Refusal{"UnknownEmptyElement", "<null/>"},
        Refusal{"UpperCaseElement", "<STRING>x</STRING>"},
        Refusal{"LongUnknownElement", "<stringstringstringstringstringstring>x</string>"}, Refusal{"Prefix", "<p:string>x</p:string>"},
        Refusal{"OtherClosingTag", "<string>x</key>"}, Refusal{"LongerClosingTag", "<string>x</strings>"},
        Refusal{"BlankInClosingTag", "<string>x</ string>"}, Refusal{"ElementInString", "<string>a<string>b</string></string>"},
        Refusal{"ArrayClosedAsDictionary", "<array></dict>"}, Refusal{"KeyInArray", "<array><key>a</key></array>"},
        Refusal{"TextInArray", "<array>x</array>"}, Refusal{"CDATAInArray", "<array><![CDATA[ ]]></array>"},
        Refusal{"ReferenceInArray", "<array>&#32;</array>"}, Refusal{"KeyWithoutValue", "<dict><key>a</key></dict>"},
        Refusal{"TwoKeys", "<dict><key>a</key><key>b</key><true/></dict>"}, Refusal{"ValueWithoutKey", "<dict><true/></dict>"},
        Refusal{"TwoValues", "<dict><key>a</key><true/><true/></dict>"}, Refusal{"TextInDictionary", "<dict>x<key>a</key><true/></dict>"},
        Refusal{"UnknownEntity", "<string>&nbsp;</string>"}, Refusal{"UpperCaseEntity", "<string>&AMP;</string>"},
        Refusal{"BareAmpersand", "<string>a & b</string>"}, Refusal{"UnendedReference", "<string>&amp</string>"},
        Refusal{"EmptyReference", "<string>&;</string>"}, Refusal{"EmptyNumber", "<string>&#;</string>"},
        Refusal{"EmptyHexNumber", "<string>&#x;</string>"}, Refusal{"UpperCaseX", "<string>&#X41;</string>"},
        Refusal{"ReferenceToNUL", "<string>&#0;</string>"}, Refusal{"ReferenceToControl", "<string>&#1;</string>"},
        Refusal{"ReferenceToSurrogate", "<string>&#xD800;</string>"}, Refusal{"ReferenceToNoncharacter", "<string>&#xFFFE;</string>"},
        Refusal{"ReferenceBeyondUnicode", "<string>&#x110000;</string>"},
        Refusal{"HugeReference", "<string>&#99999999999999999999;</string>"}, Refusal{"NUL", std::string("<string>a\0b</string>", 20)},
        Refusal{"NULBetweenElements", std::string("<array>\0</array>", 16)}, Refusal{"LoneContinuationByte", "<string>\x80</string>"},
        Refusal{"OverlongSlash", "<string>\xC0\xAF</string>"}, Refusal{"OverlongThreeBytes", "<string>\xE0\x80\xAF</string>"},
        Refusal{"EncodedSurrogate", "<string>\xED\xA0\x80</string>"}, Refusal{"BeyondUnicode", "<string>\xF4\x90\x80\x80</string>"},
        Refusal{"CutOffSequence", "<string>\xE6\x9D</string>"}, Refusal{"Latin1InUTF8", "<string>caf\xE9</string>"},
        Refusal{"BadUTF8InAttributesName", "<string a\xFF=\"1\">x</string>"},
        Refusal{"Latin1InAttributesName", "<string caf\xE9=\"1\">x</string>"},
        Refusal{"BadUTF8InComment", "<string><!-- \xFF -->x</string>"}, Refusal{"AttributeWithoutQuotes", "<string a=1>x</string>"},
        Refusal{"AttributeWithoutValue", "<string a>x</string>"}, Refusal{"AttributesTogether", "<string a=\"1\"b=\"2\">x</string>"},
        Refusal{"LessThanInAttribute", "<string a=\"<\">x</string>"}, Refusal{"SlashInTag", "<string / >x</string>"},
        Refusal{"BlankBeforeName", "< string>x</string>"}, Refusal{"UnendedComment", "<!-- <true/>"},
        Refusal{"UnendedCDATA", "<string><![CDATA[x</string>"}),
    nameOf);

TEST(XMLRefusals, WholeDocuments) {
    const std::vector<std::string> documents{"",
                                             " \n",
                                             "<",
                                             "<plist",
                                             "<plist>",
                                             "<plist/>",
                                             "<plist></plist>",
                                             "<plist version=\"1.0\"> <!-- x --> </plist>",
                                             "<plist><true/>",
                                             "<plist><true/></plist",
                                             "<plist><true/><true/></plist>",
                                             "<true/><true/>",
                                             "<plist><true/></plist><true/>",
                                             "<plist><true/></plist>x",
                                             "<plist><true/>x</plist>",
                                             "<plist>x<true/></plist>",
                                             "x<plist><true/></plist>",
                                             "<true/></plist>",
                                             "</plist>",
                                             "<plist><plist><true/></plist></plist>",
                                             "<plist><true/></array></plist>",
                                             "<plist><true/></plist>\n<?xml version=\"1.0\"?>",
                                             "<key>a</key>",
                                             "<plist><key>a</key></plist>",
                                             "<!-- only a comment -->",
                                             "<?xml version=\"1.0\"?>",
                                             "<?xml version=\"1.0\" encoding=\"UTF-8\"",
                                             "<!DOCTYPE plist>",
                                             "<plist><true/></plist><!DOCTYPE plist>",
                                             "<!DOCTYPE plist><!DOCTYPE plist><true/>",
                                             "<html><body/></html>",
                                             "{ a = 1; }",
                                             "(a, b)",
                                             "\"text\"",
                                             "a",
                                             "{\"json\": true}",
                                             std::string("\0\0\0\0", 4),
                                             "<plist><array><?xml version=\"1.0\"?></array></plist>",
                                             "<plist><array><plist><true/></plist></array></plist>",
                                             "<plists><true/></plists>",
                                             "<plistx/>"};
    for (const std::string &document : documents) {
        EXPECT_TRUE(isRefused(document)) << document;
    }
}

TEST(XMLRefusals, DeclarationsOfEntities) {
    EXPECT_TRUE(isRefused("<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><string>x</string></plist>"));
    EXPECT_TRUE(isRefused("<!DOCTYPE plist [<!ENTITY % a \"b\"> %a;]><plist><string>x</string></plist>"));
    EXPECT_TRUE(isRefused("<!DOCTYPE plist [<!ENTITY a SYSTEM \"/etc/passwd\">]><plist><string>&a;</string></plist>"));
    EXPECT_TRUE(isRefused("<!DOCTYPE plist [%a;]><plist><string>x</string></plist>"));
    EXPECT_TRUE(isRefused("<!DOCTYPE plist [<plist><string>x</string></plist>"));
}

TEST(XMLRefusals, Encodings) {
    EXPECT_TRUE(isRefused("<?xml version=\"1.0\" encoding=\"EBCDIC-CP-US\"?><true/>"));
    EXPECT_TRUE(isRefused("<?xml version=\"1.0\" encoding=\"\"?><true/>"));
    EXPECT_TRUE(isRefused("<?xml version=\"1.0\" encoding=\"windows-1252\"?><true/>"));
    EXPECT_TRUE(isRefused("<?xml version=\"1.0\" encoding=\"UTF-16\"?><true/>"));
    EXPECT_TRUE(isRefused("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><true/>"));
    EXPECT_TRUE(isRefused("<?xml version=\"1.0\" encoding=\"US-ASCII\"?><string>\xC3\xA9</string>"));
    EXPECT_TRUE(isRefused(std::string("\xFF\xFE\0\0<\0\0\0", 8)));
    EXPECT_TRUE(isRefused(std::string("\0\0\xFE\xFF\0\0\0<", 8)));
    EXPECT_TRUE(isRefused(std::string("\xFF\xFE<\0t\0r\0u\0e\0/\0>", 15))); // half a unit is missing
    EXPECT_TRUE(isRefused(std::string("\xFF\xFE<\0s\0>\0\x3D\xD8<\0/\0s\0>\0", 18)));
}

TEST(XMLRefusals, TheReasonNamesTheLine) {
    std::string why;
    EXPECT_FALSE(readPropertyList("<plist>\n<dict>\n<key>a</key>\n</dict>\n</plist>\n", nullptr, &why));
    EXPECT_NE(why.find("line 4"), std::string::npos) << why;
    EXPECT_NE(why.find("\"a\""), std::string::npos) << why;
}

TEST(XMLRefusals, TheReasonIsALineOfText) {
    const std::vector<std::pair<std::string, std::string>> reasons{
        {"{ a = 1; }", "line 1: this is no property list"},
        {"\n\nx<plist/>", "line 3: this is no property list"},
        {"<?xml version=\"1.0\" encoding=\"a\nb\x7F\"?><true/>", "line 2: unknown encoding \"a?b?\""},
        {"<plist><caf\xE9><true/></plist>", "line 1: unknown element <caf?>"},
        {"<integer>1\n2</integer>", "line 2: \"1?2\" is no integer of 64 bits"},
        {"<plist><dict><key>" + std::string(59, 'k') + "\xC3\xA9" + "more</key></dict></plist>",
         "line 1: the key \"" + std::string(59, 'k') + "\xC3\xA9...\" has no value"}};
    for (const auto &[document, reason] : reasons) {
        std::string why;
        EXPECT_FALSE(readPropertyList(document, nullptr, &why));
        EXPECT_EQ(why, reason);
    }
}

TEST(XMLRefusals, ADocumentCutOffAnywhere) {
    const std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"x\">\n"
        "<plist version=\"1.0\">\n<dict>\n\t<key>a</key>\n\t<array>\n\t\t<string>x &amp; \xC3\xA9</string>\n\t\t<true/>\n"
        "\t\t<integer>12</integer>\n\t\t<real>1.5</real>\n\t\t<date>2001-01-01T00:00:00Z</date>\n\t\t<data>aGVsbG8=</data>\n"
        "\t\t<string><![CDATA[x]]><!-- y --></string>\n\t</array>\n\t<key>b</key>\n\t<dict/>\n</dict>\n</plist>";
    ASSERT_TRUE(readPropertyList(document + "\n"));
    ASSERT_TRUE(readPropertyList(document));
    for (std::size_t size = 0; size < document.size(); ++size) {
        EXPECT_TRUE(isRefused(document.substr(0, size))) << size;
    }
}

TEST(XMLRefusals, ADocumentWithOneBitTurnedNeverCrashes) {
    const std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!DOCTYPE plist [<!ELEMENT a ANY>]><plist><dict><key>a</key><array><string>&#65;"
        "\xC3\xA9</string><real>1e5</real><data>aGVs</data></array></dict></plist>";
    std::size_t accepted = 0;
    for (std::size_t bit = 0; bit < document.size() * 8; ++bit) {
        std::string damaged = document;
        damaged[bit / 8] = static_cast<char>(static_cast<unsigned char>(damaged[bit / 8]) ^ (1U << (bit % 8)));
        std::string why;
        const auto list = readPropertyList(damaged, nullptr, &why);
        EXPECT_EQ(list.has_value(), why.empty());
        accepted += list ? 1U : 0U;
    }
    EXPECT_LT(accepted, document.size() * 8); // turned bits in names and texts leave readable lists, those in tags do not
}

} // namespace
} // namespace orvane
