// What the XML reader accepts, and what it makes of it.

#include "platform/propertylist/PropertyListFiles.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace orvane {
namespace {

PropertyList read(const std::string &text) {
    std::string why;
    const auto list = readPropertyList(text, nullptr, &why);
    EXPECT_TRUE(list.has_value()) << why << "\n" << text;
    return list.value_or(PropertyList());
}

PropertyList readWrapped(const std::string &inner) {
    return read("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + inner + "</plist>\n");
}

std::string stringOf(const std::string &inner) {
    const PropertyList list = readWrapped(inner);
    EXPECT_TRUE(list.root().isString()) << inner;
    return std::string(list.root().string());
}

std::string utf16(const std::u16string &text, bool bigEndian, bool mark) {
    std::string bytes;
    for (const char16_t unit : (mark ? u"\uFEFF" : u"") + text) {
        const char high = static_cast<char>(unit >> 8U);
        const char low = static_cast<char>(unit & 0xFFU);
        bytes += bigEndian ? std::string{high, low} : std::string{low, high};
    }
    return bytes;
}

TEST(XMLReading, ADocumentAsApplesToolsWriteIt) {
    const PropertyList list = read("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                   "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                   "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
                                   "<plist version=\"1.0\">\n<dict>\n\t<key>a</key>\n\t<integer>1</integer>\n\t<key>b</key>\n"
                                   "\t<array>\n\t\t<string>x</string>\n\t\t<true/>\n\t\t<false/>\n\t</array>\n</dict>\n</plist>\n");
    ASSERT_TRUE(list.root().isDictionary());
    ASSERT_EQ(list.root().dictionary().size(), 2U);
    EXPECT_EQ(list.root().find("a")->integer(), 1);
    const auto items = list.root().find("b")->array();
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].string(), "x");
    EXPECT_TRUE(items[1].boolean());
    EXPECT_EQ(items[2].type(), PropertyListType::Boolean);
    EXPECT_FALSE(items[2].boolean());
}

TEST(XMLReading, ARootWithoutTheWrapper) {
    EXPECT_EQ(read("<string>x</string>").root().string(), "x");
    EXPECT_TRUE(read("<dict/>").root().isDictionary());
    EXPECT_TRUE(read("<?xml version='1.0'?><array></array>").root().isArray());
}

TEST(XMLReading, ScalarRoots) {
    EXPECT_TRUE(readWrapped("<true/>").root().boolean());
    EXPECT_EQ(readWrapped("<integer>7</integer>").root().integer(), 7);
    EXPECT_EQ(readWrapped("<real>0.5</real>").root().real(), 0.5);
}

TEST(XMLReading, EmptyElements) {
    EXPECT_EQ(stringOf("<string/>"), "");
    EXPECT_EQ(stringOf("<string></string>"), "");
    EXPECT_EQ(readWrapped("<data/>").root().type(), PropertyListType::Data);
    EXPECT_TRUE(readWrapped("<data></data>").root().data().empty());
    EXPECT_TRUE(readWrapped("<array/>").root().array().empty());
    EXPECT_TRUE(readWrapped("<dict></dict>").root().dictionary().empty());
    EXPECT_EQ(readWrapped("<dict><key/><true/></dict>").root().dictionary()[0].key, "");
}

TEST(XMLReading, BooleansWithAClosingTag) {
    EXPECT_TRUE(readWrapped("<true></true>").root().boolean());
    EXPECT_EQ(readWrapped("<false></false>").root().type(), PropertyListType::Boolean);
    EXPECT_TRUE(readWrapped("<true> \n</true>").root().boolean());
}

TEST(XMLReading, WhiteSpaceAndAttributesInsideTags) {
    EXPECT_EQ(readWrapped("<dict ><key  >a</key\n><string\t>x</string ></dict >").root().find("a")->string(), "x");
    EXPECT_TRUE(readWrapped("<true />").root().boolean());
    EXPECT_EQ(stringOf("<string xml:space='preserve' b=\"1 > 0\"> x </string>"), " x ");
    EXPECT_EQ(read("<plist version = \"1.0\" xmlns='urn:x' ><integer>1</integer></plist >").root().integer(), 1);
}

TEST(XMLReading, AttributesOfAnyAlphabet) {
    const auto list = readPropertyList("<plist \xE6\x9D\xB1=\"1\" caf\xC3\xA9='2'><true/></plist>");
    ASSERT_TRUE(list);
    EXPECT_TRUE(list->root().boolean());
}

TEST(XMLReading, CommentsAndInstructionsWhereverTheyMayStand) {
    const PropertyList list =
        read("<?xml version=\"1.0\"?><!-- a --><?pi x?><!DOCTYPE plist><!-- b -->\n<plist><!-- c --><dict><!--d-->"
             "<key>a</key><?pi?><!-- <key>no</key> --><integer>1</integer><!----></dict><?x y?></plist><!-- end -->\n");
    EXPECT_EQ(list.root().dictionary().size(), 1U);
    EXPECT_EQ(list.root().find("a")->integer(), 1);
    EXPECT_EQ(stringOf("<string>a<!-- b -->c<?d e?>f</string>"), "acf");
}

TEST(XMLReading, CDATA) {
    EXPECT_EQ(stringOf("<string><![CDATA[<a> & </a>]]></string>"), "<a> & </a>");
    EXPECT_EQ(stringOf("<string>x<![CDATA[]]>y<![CDATA[]]]]><![CDATA[>]]>z</string>"), "xy]]>z");
    EXPECT_EQ(readWrapped("<integer><![CDATA[12]]></integer>").root().integer(), 12);
}

TEST(XMLReading, ReferencesToCharacters) {
    EXPECT_EQ(stringOf("<string>&amp;&lt;&gt;&quot;&apos;</string>"), "&<>\"'");
    EXPECT_EQ(stringOf("<string>&#65;&#x42;&#x1F3AC;&#233;&#x09;</string>"), "AB\xF0\x9F\x8E\xAC\xC3\xA9\t");
    EXPECT_EQ(stringOf("<string>&amp;amp;</string>"), "&amp;");
    EXPECT_EQ(readWrapped("<dict><key>a&amp;b</key><true/></dict>").root().dictionary()[0].key, "a&b");
    EXPECT_EQ(stringOf("<string>a&#13;b</string>"), "a\rb");
    EXPECT_EQ(stringOf("<string>&#x10FFFF;&#xE000;&#xD7FF;</string>"), "\xF4\x8F\xBF\xBF\xEE\x80\x80\xED\x9F\xBF");
}

TEST(XMLReading, LineEndsBecomeLineFeeds) {
    EXPECT_EQ(stringOf("<string>a\r\nb\rc\n\rd</string>"), "a\nb\nc\n\nd");
    EXPECT_EQ(stringOf("<string><![CDATA[a\r\nb]]></string>"), "a\nb");
}

TEST(XMLReading, TextKeepsItsWhiteSpaceAndAlphabet) {
    EXPECT_EQ(stringOf("<string>  a\t\n b  </string>"), "  a\t\n b  ");
    EXPECT_EQ(stringOf("<string>Straße \xE6\x9D\xB1\xE4\xBA\xAC \xF0\x9F\x8E\xAC</string>"),
              "Straße \xE6\x9D\xB1\xE4\xBA\xAC \xF0\x9F\x8E\xAC");
    EXPECT_EQ(stringOf("<string>a]]>b > c</string>"), "a]]>b > c");
}

TEST(XMLReading, ControlCharactersOfApplesWritersPass) {
    EXPECT_EQ(stringOf("<string>a\x01\x1B"
                       "b</string>"),
              "a\x01\x1B"
              "b");
}

struct IntegerCase {
    const char *text;
    std::int64_t value;
};
class XMLIntegers : public testing::TestWithParam<IntegerCase> {};
TEST_P(XMLIntegers, AreRead) {
    const PropertyList list = readWrapped(std::string("<integer>") + GetParam().text + "</integer>");
    EXPECT_EQ(list.root().type(), PropertyListType::Integer);
    EXPECT_FALSE(list.root().isUnsigned());
    EXPECT_EQ(list.root().integer(), GetParam().value);
}
INSTANTIATE_TEST_SUITE_P(XMLReading, XMLIntegers,
                         testing::Values(IntegerCase{"0", 0}, IntegerCase{"-0", 0}, IntegerCase{"+5", 5}, IntegerCase{"-12", -12},
                                         IntegerCase{"0012", 12}, IntegerCase{" 7", 7}, IntegerCase{"7 \n", 7}, IntegerCase{"\t- 7", -7},
                                         IntegerCase{"0x1F", 31}, IntegerCase{"0Xff", 255}, IntegerCase{"-0x10", -16},
                                         IntegerCase{"0x7FFFFFFFFFFFFFFF", std::numeric_limits<std::int64_t>::max()},
                                         IntegerCase{"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
                                         IntegerCase{"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
                                         IntegerCase{"&#49;2", 12}, IntegerCase{"1<!-- 0 -->2", 12}));

TEST(XMLReading, IntegersThatOnlyFitUnsigned) {
    const PropertyList list = readWrapped("<array><integer>9223372036854775808</integer><integer>18446744073709551615</integer>"
                                          "<integer>0xFFFFFFFFFFFFFFFF</integer></array>");
    for (const PropertyListValue &item : list.root().array()) {
        EXPECT_TRUE(item.isUnsigned());
    }
    EXPECT_EQ(static_cast<std::uint64_t>(list.root().array()[0].integer()), 9223372036854775808U);
    EXPECT_EQ(static_cast<std::uint64_t>(list.root().array()[1].integer()), std::numeric_limits<std::uint64_t>::max());
}

struct RealCase {
    const char *text;
    double value;
};
class XMLReals : public testing::TestWithParam<RealCase> {};
TEST_P(XMLReals, AreRead) {
    const PropertyList list = readWrapped(std::string("<real>") + GetParam().text + "</real>");
    EXPECT_EQ(list.root().type(), PropertyListType::Real);
    EXPECT_EQ(list.root().real(), GetParam().value);
    EXPECT_EQ(std::signbit(list.root().real()), std::signbit(GetParam().value));
}
constexpr double Infinite = std::numeric_limits<double>::infinity();
INSTANTIATE_TEST_SUITE_P(
    XMLReading, XMLReals,
    testing::Values(RealCase{"0", 0}, RealCase{"-0.0", -0.0}, RealCase{"1.5", 1.5}, RealCase{"+1.5", 1.5}, RealCase{"-2e3", -2000},
                    RealCase{"1E-2", 0.01}, RealCase{".5", 0.5}, RealCase{"5.", 5}, RealCase{" 1 ", 1}, RealCase{"0.1", 0.1},
                    RealCase{"123456789012345678901234567890", 123456789012345678901234567890.0}, RealCase{"1e400", Infinite},
                    RealCase{"-1e400", -Infinite}, RealCase{"1e-400", 0}, RealCase{"-1e-400", -0.0}, RealCase{"0.000e999", 0},
                    RealCase{"4.9e-324", 4.9e-324}, RealCase{"inf", Infinite}, RealCase{"+inf", Infinite}, RealCase{"-inf", -Infinite},
                    RealCase{"infinity", Infinite}, RealCase{"+Infinity", Infinite}, RealCase{"-INFINITY", -Infinite}));

TEST(XMLReading, NotANumber) {
    EXPECT_TRUE(std::isnan(readWrapped("<real>nan</real>").root().real()));
    EXPECT_TRUE(std::isnan(readWrapped("<real>NaN</real>").root().real()));
}

struct DateCase {
    const char *text;
    double seconds;
};
class XMLDates : public testing::TestWithParam<DateCase> {};
TEST_P(XMLDates, AreRead) {
    const PropertyList list = readWrapped(std::string("<date>") + GetParam().text + "</date>");
    EXPECT_EQ(list.root().type(), PropertyListType::Date);
    EXPECT_EQ(list.root().real(), GetParam().seconds);
}
INSTANTIATE_TEST_SUITE_P(XMLReading, XMLDates,
                         testing::Values(DateCase{"2001-01-01T00:00:00Z", 0}, DateCase{"2001-01-01T00:00:01Z", 1},
                                         DateCase{"2000-12-31T23:59:59Z", -1}, DateCase{"1970-01-01T00:00:00Z", -978307200},
                                         DateCase{"2024-02-29T12:00:00Z", 730900800}, DateCase{"0001-01-01T00:00:00Z", -63113904000.0},
                                         DateCase{"9999-12-31T23:59:59Z", 252423993599.0}, DateCase{"2000-02-29T00:00:00Z", -26524800}));

TEST(XMLReading, Data) {
    const auto data = [](const std::string &text) { return std::string(readWrapped("<data>" + text + "</data>").root().data()); };
    EXPECT_EQ(data("aGVsbG8="), "hello");
    EXPECT_EQ(data("\n\taGVs\n\tbG8=\n\t"), "hello");
    EXPECT_EQ(data("aGVsbG8h"), "hello!");
    EXPECT_EQ(data("aGVsbA=="), "hell");
    EXPECT_EQ(data("aGVsbA= ="), "hell");
    EXPECT_EQ(data("/+8A"), std::string("\xFF\xEF\0", 3));
}

TEST(XMLReading, OfADoubleKeyTheLastValueWinsInTheFirstPlace) {
    const PropertyList list =
        readWrapped("<dict><key>a</key><integer>1</integer><key>b</key><true/><key>a</key><integer>2</integer></dict>");
    ASSERT_EQ(list.root().dictionary().size(), 2U);
    EXPECT_EQ(list.root().dictionary()[0].key, "a");
    EXPECT_EQ(list.root().dictionary()[0].value.integer(), 2);
}

TEST(XMLReading, EqualKeysInNestedDictionariesAreNoDoubles) {
    const PropertyList list = readWrapped("<dict><key>a</key><dict><key>a</key><dict><key>a</key><integer>3</integer></dict></dict>"
                                          "<key>b</key><dict><key>a</key><integer>4</integer></dict></dict>");
    EXPECT_EQ(list.root().find("a")->find("a")->find("a")->integer(), 3);
    EXPECT_EQ(list.root().find("b")->find("a")->integer(), 4);
}

TEST(XMLReading, UIDsAreDictionariesOfOneKey) {
    const PropertyList list = readWrapped("<array><dict><key>CF$UID</key><integer>5</integer></dict><dict><key>CF$UID</key>"
                                          "<integer>-5</integer></dict><dict><key>CF$UID</key><string>5</string></dict></array>");
    EXPECT_EQ(list.root().array()[0].type(), PropertyListType::UID);
    EXPECT_EQ(list.root().array()[0].integer(), 5);
    EXPECT_TRUE(list.root().array()[1].isDictionary());
    EXPECT_TRUE(list.root().array()[2].isDictionary());
}

TEST(XMLReading, AByteOrderMarkOfUTF8) {
    EXPECT_EQ(read("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\"?><string>\xC3\xA9</string>").root().string(), "\xC3\xA9");
}

TEST(XMLReading, BlanksBeforeTheDeclaration) {
    EXPECT_TRUE(read(" \n<?xml version=\"1.0\" encoding=\"UTF-8\"?><true/>").root().boolean());
}

TEST(XMLReading, UTF16OfEitherByteOrderWithAndWithoutAMark) {
    const std::u16string text = u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<plist><string>Stra\u00DFe \U0001F3AC</string></plist>\n";
    for (const bool big : {false, true}) {
        for (const bool mark : {false, true}) {
            EXPECT_EQ(read(utf16(text, big, mark)).root().string(), "Straße \xF0\x9F\x8E\xAC") << big << mark;
        }
    }
    EXPECT_EQ(read(utf16(u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><string>x</string>", false, true)).root().string(), "x");
}

TEST(XMLReading, Latin1AndASCII) {
    EXPECT_EQ(read("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><string>caf\xE9</string>").root().string(), "caf\xC3\xA9");
    EXPECT_EQ(read("<?xml version=\"1.0\" encoding='us-ascii'?><string>cafe&#233;</string>").root().string(), "cafe\xC3\xA9");
}

TEST(XMLReading, ADocumentTypeWithASubsetThatDeclaresNoEntities) {
    EXPECT_TRUE(read("<!DOCTYPE plist SYSTEM \"a>b\" [ <!ELEMENT plist ANY> <!-- ]> --> <!ATTLIST plist version CDATA \"1>0\"> "
                     "]><plist><true/></plist>")
                    .root()
                    .boolean());
}

TEST(XMLReading, IndentationOfAnyLength) {
    for (std::size_t tabs = 0; tabs < 300; ++tabs) { // several blocks of those that are looked at at once, and every rest
        for (const char *const ending : {"", " ", "\n", "\r", "\t\n \t"}) {
            const std::string indent = std::string(tabs, '\t') + ending;
            const PropertyList list =
                read("<plist><array>" + indent + "<string>x</string>" + indent + "<true/>" + indent + "</array></plist>");
            ASSERT_EQ(list.root().array().size(), 2U) << tabs;
            ASSERT_EQ(list.root().array()[0].string(), "x");
        }
    }
}

TEST(XMLReading, TextsAndTagsAcrossTheWindowsEnd) {
    // The window is 64 KiB: whatever stands at its end must be read as anywhere else.
    const std::string element =
        "<key>k</key><string>va&amp;lue</string><key>\xC3\xA9</key><array><true/><date>2001-01-01T00:00:00Z</date></array>";
    const std::string ending = "<dict>" + element + "</dict><integer>12</integer><!-- c --><string><![CDATA[x]]></string>";
    for (std::size_t shift = 0; shift < ending.size() + 8; ++shift) {
        const std::string filler(64U * 1024U - 40 - shift, 'x');
        const PropertyList list = read("<plist><array><string>" + filler + "</string>" + ending + "</array></plist>");
        const auto items = list.root().array();
        ASSERT_EQ(items.size(), 4U) << shift;
        ASSERT_EQ(items[0].string(), filler);
        ASSERT_EQ(items[1].dictionary().size(), 2U);
        ASSERT_EQ(items[1].find("k")->string(), "va&lue");
        ASSERT_EQ(items[1].find("\xC3\xA9")->array().size(), 2U);
        ASSERT_EQ(items[2].integer(), 12);
        ASSERT_EQ(items[3].string(), "x");
    }
}

} // namespace
} // namespace orvane
