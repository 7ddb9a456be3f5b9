// Whatever is written reads back equal, in both forms.

#include "platform/propertylist/PropertyListFiles.h"
#include "unit/propertylist/RandomLists.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace orvane {
namespace {

PropertyList reread(const std::optional<std::string> &bytes, PropertyListFormat expected) {
    EXPECT_TRUE(bytes.has_value());
    PropertyListFormat format{};
    std::string why;
    const auto list = readPropertyList(bytes.value_or(""), &format, &why);
    EXPECT_TRUE(list.has_value()) << why;
    EXPECT_EQ(format, expected);
    return list.value_or(PropertyList());
}

TEST(RoundTrip, RandomListsThroughXML) {
    for (std::uint64_t seed = 0; seed < 500; ++seed) {
        std::mt19937_64 random(seed);
        const PropertyList list = randomList(random, {});
        const auto text = writeXMLPropertyList(list.root());
        const PropertyList again = reread(text, PropertyListFormat::XML);
        ASSERT_TRUE(again.root().equals(list.root())) << seed << *text;
        ASSERT_EQ(writeXMLPropertyList(again.root()), text) << seed;
    }
}

TEST(RoundTrip, RandomListsThroughTheBinaryForm) {
    for (std::uint64_t seed = 0; seed < 500; ++seed) {
        std::mt19937_64 random(seed);
        RandomListKinds kinds;
        kinds.binaryOnly = true;
        const PropertyList list = randomList(random, kinds);
        const PropertyList again = reread(writeBinaryPropertyList(list.root()), PropertyListFormat::Binary);
        ASSERT_TRUE(again.root().equals(list.root())) << seed;
    }
}

TEST(RoundTrip, RandomListsFromXMLToBinaryAndBack) {
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        std::mt19937_64 random(seed);
        const PropertyList list = randomList(random, {});
        const PropertyList xml = reread(writeXMLPropertyList(list.root()), PropertyListFormat::XML);
        const PropertyList binary = reread(writeBinaryPropertyList(xml.root()), PropertyListFormat::Binary);
        const PropertyList back = reread(writeXMLPropertyList(binary.root()), PropertyListFormat::XML);
        ASSERT_TRUE(back.root().equals(list.root())) << seed;
    }
}

TEST(RoundTrip, UTF16AndLatin1TextTurnBothWays) {
    const std::string text = "a\xC3\xA9";
    const std::string wide = text + "\xE6\x9D\xB1\xF0\x9F\x8E\xAC";
    for (const auto encoding : {PropertyListEncoding::UTF16LittleEndian, PropertyListEncoding::UTF16BigEndian}) {
        const auto bytes = encodedPropertyListText(wide, encoding);
        ASSERT_TRUE(bytes);
        EXPECT_EQ(bytes->size(), 10U);
        EXPECT_EQ(decodedPropertyListText(*bytes, encoding), wide);
    }
    EXPECT_EQ(encodedPropertyListText(text, PropertyListEncoding::Latin1), "a\xE9");
    EXPECT_EQ(decodedPropertyListText("a\xE9", PropertyListEncoding::Latin1), text);
    EXPECT_FALSE(encodedPropertyListText(wide, PropertyListEncoding::Latin1));
    EXPECT_FALSE(encodedPropertyListText(text, PropertyListEncoding::ASCII));
}

} // namespace
} // namespace orvane
