// The places of the root's entries in an XML file.

#include "platform/propertylist/PropertyListFiles.h"

#include <string>

#include <gtest/gtest.h>

namespace orvane {
namespace {

PropertyListReport reportOn(const std::string &text, std::optional<PropertyList> &list) {
    PropertyListReport report;
    report.wantsSites = true;
    list = readPropertyList(text, &report);
    EXPECT_TRUE(list.has_value()) << report.why;
    return report;
}

std::string between(const std::string &text, std::uint64_t begin, std::uint64_t end) {
    return text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
}

TEST(Sites, OfEveryKindOfValue) {
    const std::string text =
        "\xEF\xBB\xBF<?xml version=\"1.0\"?><plist>\n<dict a=\"b\">\n <!-- x --> <key >\xC3\xA9</key> <!-- y --> <dict><key>in</key><true/>"
        "</dict >\n<key>b</key><string>v&amp;w</string><key>c</key><array/>\n<key>\xC3\xA9</key><integer>1</integer>\n</dict>\n</plist>";
    std::optional<PropertyList> list;
    const PropertyListSites sites = reportOn(text, list).sites;
    ASSERT_EQ(sites.entries.size(), 4U);
    EXPECT_EQ(sites.entries[0].key, "\xC3\xA9");
    EXPECT_EQ(between(text, sites.entries[0].keyBegin, sites.entries[0].keyBegin + 6), "<key >");
    EXPECT_EQ(between(text, sites.entries[0].valueBegin, sites.entries[0].valueEnd), "<dict><key>in</key><true/></dict >");
    EXPECT_EQ(between(text, sites.entries[1].valueBegin, sites.entries[1].valueEnd), "<string>v&amp;w</string>");
    EXPECT_EQ(between(text, sites.entries[2].valueBegin, sites.entries[2].valueEnd), "<array/>");
    EXPECT_EQ(between(text, sites.entries[3].valueBegin, sites.entries[3].valueEnd), "<integer>1</integer>");
    EXPECT_EQ(between(text, sites.rootContents, sites.rootContents + 6), "\n <!--");
    EXPECT_FALSE(sites.rootIsEmptyTag);
    EXPECT_EQ(between(text, sites.rootEnd - 7, sites.rootEnd + 9), "</dict>\n</plist>");
}

TEST(Sites, OfAnEmptyRoot) {
    const std::string text = "<plist><dict /></plist>";
    std::optional<PropertyList> list;
    const PropertyListSites sites = reportOn(text, list).sites;
    EXPECT_TRUE(sites.entries.empty());
    EXPECT_TRUE(sites.rootIsEmptyTag);
    EXPECT_EQ(between(text, sites.rootContents, sites.rootEnd), "/>");
}

TEST(Sites, BeyondTheFirstWindow) {
    const std::string big(600'000, 'x');
    const std::string text = "<plist><dict><key>big</key><string>" + big + "</string><key>list</key><array><string>" + big +
                             "</string></array><key>z</key><real>1</real></dict></plist>";
    std::optional<PropertyList> list;
    const PropertyListSites sites = reportOn(text, list).sites;
    ASSERT_EQ(sites.entries.size(), 3U);
    EXPECT_EQ(between(text, sites.entries[1].valueBegin, sites.entries[1].valueEnd), "<array><string>" + big + "</string></array>");
    EXPECT_EQ(between(text, sites.entries[2].valueBegin, sites.entries[2].valueEnd), "<real>1</real>");
}

TEST(Sites, OfTextInAnotherEncodingCountInUTF8) {
    const std::string bytes =
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><dict><key>caf\xE9</key><string>\xE9\xE9</string><key>b</key><true/></dict>";
    std::optional<PropertyList> list;
    const PropertyListSites sites = reportOn(bytes, list).sites;
    const auto text = decodedPropertyListText(bytes, sites.encoding);
    ASSERT_TRUE(text);
    ASSERT_EQ(sites.entries.size(), 2U);
    EXPECT_EQ(between(*text, sites.entries[0].valueBegin, sites.entries[0].valueEnd), "<string>\xC3\xA9\xC3\xA9</string>");
    EXPECT_EQ(between(*text, sites.entries[1].valueBegin, sites.entries[1].valueEnd), "<true/>");
}

} // namespace
} // namespace orvane
