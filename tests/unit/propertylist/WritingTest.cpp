// The writers' layout and what they refuse.

#include "platform/propertylist/PropertyListFiles.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(Writing, XMLIsLaidOutAsApplesToolsDo) {
    PropertyListBuilder builder;
    const std::vector<PropertyListValue> items{PropertyListValue::ofBoolean(true),
                                               PropertyListValue::ofInteger(-3),
                                               PropertyListValue::ofReal(0.1),
                                               PropertyListValue::ofDate(0),
                                               builder.data(std::string(60, 'x')),
                                               PropertyListValue::ofUID(4),
                                               builder.array({}),
                                               builder.dictionary({})};
    const std::vector<PropertyListEntry> entries{{"a&b", builder.string("<\r>")}, {"list", builder.array(items)}};
    EXPECT_EQ(writeXMLPropertyList(builder.dictionary(entries)),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
              "<plist version=\"1.0\">\n<dict>\n\t<key>a&amp;b</key>\n\t<string>&lt;&#13;&gt;</string>\n\t<key>list</key>\n\t<array>\n"
              "\t\t<true/>\n\t\t<integer>-3</integer>\n\t\t<real>0.1</real>\n\t\t<date>2001-01-01T00:00:00Z</date>\n\t\t<data>\n"
              "\t\teHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4\n\t\teHh4eHh4eHh4eHh4eHh4\n\t\t</data>\n"
              "\t\t<dict>\n\t\t\t<key>CF$UID</key>\n\t\t\t<integer>4</integer>\n\t\t</dict>\n\t\t<array/>\n\t\t<dict/>\n\t</array>\n"
              "</dict>\n</plist>\n");
}

TEST(Writing, XMLRefusesWhatItCannotHold) {
    PropertyListBuilder builder;
    std::string why;
    EXPECT_FALSE(writeXMLPropertyList({}, &why));
    EXPECT_FALSE(why.empty());
    EXPECT_FALSE(writeXMLPropertyList(PropertyListValue::viewOfSet({})));
    EXPECT_FALSE(writeXMLPropertyList(builder.string(std::string(1, '\0'))));
    EXPECT_FALSE(writeXMLPropertyList(builder.string("\xFF")));
    EXPECT_FALSE(writeXMLPropertyList(builder.string("\xED\xA0\x80")));
    EXPECT_FALSE(writeXMLPropertyList(PropertyListValue::ofDate(std::numeric_limits<double>::quiet_NaN())));
    EXPECT_FALSE(writeXMLPropertyList(PropertyListValue::ofDate(1e30)));
}

TEST(Writing, XMLDatesLoseTheirFractions) {
    EXPECT_EQ(writeXMLPropertyListFragment(PropertyListValue::ofDate(1.75), 0, false), "<date>2001-01-01T00:00:01Z</date>");
    EXPECT_EQ(writeXMLPropertyListFragment(PropertyListValue::ofDate(-0.25), 0, false), "<date>2000-12-31T23:59:59Z</date>");
    EXPECT_EQ(writeXMLPropertyListFragment(PropertyListValue::ofDate(-63113904001.0), 0, false), "<date>0000-12-31T23:59:59Z</date>");
}

TEST(Writing, XMLReals) {
    const auto text = [](double value) { return writeXMLPropertyListFragment(PropertyListValue::ofReal(value), 0, false).value_or("-"); };
    EXPECT_EQ(text(1), "<real>1</real>");
    EXPECT_EQ(text(-0.0), "<real>-0</real>");
    EXPECT_EQ(text(std::nan("")), "<real>nan</real>");
    EXPECT_EQ(text(-std::nan("")), "<real>nan</real>");
    EXPECT_EQ(text(std::numeric_limits<double>::infinity()), "<real>+infinity</real>");
    EXPECT_EQ(text(-std::numeric_limits<double>::infinity()), "<real>-infinity</real>");
}

TEST(Writing, XMLInASCIIWritesEverythingElseAsReferences) {
    EXPECT_EQ(escapedPropertyListText("\xC3\xA9<\xF0\x9F\x8E\xAC", true), "&#233;&lt;&#127916;");
    EXPECT_EQ(escapedPropertyListText("\xC3\xA9", false), "\xC3\xA9");
}

TEST(Writing, BinaryStoresEqualValuesOnce) {
    PropertyListBuilder builder;
    const std::string text(1000, 'x');
    const std::vector<PropertyListValue> items{builder.string(text), builder.string(text), builder.data(text), builder.data(text)};
    const auto bytes = writeBinaryPropertyList(builder.array(items));
    ASSERT_TRUE(bytes);
    EXPECT_LT(bytes->size(), 2100U);
    const auto list = readPropertyList(*bytes);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->root().array().size(), 4U);
    EXPECT_TRUE(list->root().equals(builder.array(items)));
}

TEST(Writing, BinaryKeepsTypesThatAreEqualAsNumbersApart) {
    PropertyListBuilder builder;
    const std::vector<PropertyListValue> items{PropertyListValue::ofInteger(1),
                                               PropertyListValue::ofBoolean(true),
                                               PropertyListValue::ofReal(1),
                                               PropertyListValue::ofReal(1, true),
                                               PropertyListValue::ofDate(1),
                                               PropertyListValue::ofUID(1),
                                               PropertyListValue::ofUnsigned(~0ULL),
                                               PropertyListValue::ofInteger(-1),
                                               PropertyListValue::ofReal(0.0),
                                               PropertyListValue::ofReal(-0.0),
                                               builder.string("x"),
                                               builder.data("x")};
    const auto list = readPropertyList(writeBinaryPropertyList(builder.array(items)).value_or(""));
    ASSERT_TRUE(list);
    ASSERT_TRUE(list->root().equals(builder.array(items)));
    EXPECT_FALSE(list->root().array()[2].isSinglePrecision());
    EXPECT_TRUE(list->root().array()[3].isSinglePrecision());
    EXPECT_TRUE(list->root().array()[6].isUnsigned());
    EXPECT_TRUE(std::signbit(list->root().array()[9].real()));
}

TEST(Writing, BinaryKeepsSharedContainersShared) {
    PropertyListBuilder builder;
    PropertyListValue value = builder.string("leaf");
    for (int i = 0; i < 25; ++i) {
        const std::vector<PropertyListValue> both{value, value};
        value = builder.array(both);
    }
    const auto bytes = writeBinaryPropertyList(value);
    ASSERT_TRUE(bytes);
    EXPECT_LT(bytes->size(), 300U);
    EXPECT_TRUE(readPropertyList(*bytes));
}

TEST(Comparing, WhatSharesMoreThanCanBeWalkedIsComparedAllTheSame) {
    PropertyListBuilder builder;
    const auto make = [&](const char *leaf) {
        PropertyListValue value = builder.string(leaf);
        for (int i = 0; i < 60; ++i) { // walked as a tree, 2^60 leaves
            const std::vector<PropertyListValue> both{value, value};
            value = i % 2 == 0 ? builder.array(both) : builder.dictionary(std::vector<PropertyListEntry>{{"a", value}, {"b", value}});
        }
        return value;
    };
    const PropertyListValue one = make("leaf");
    const PropertyListValue other = make("leaf");
    EXPECT_TRUE(one.equals(other));
    EXPECT_FALSE(one.equals(make("another")));
    // A difference that stands in front of all that is shared, and is come upon last.
    const auto behind = [&](std::int64_t number, const PropertyListValue &shared) {
        return builder.array(std::vector<PropertyListValue>{PropertyListValue::ofInteger(number), shared});
    };
    EXPECT_TRUE(behind(1, one).equals(behind(1, other)));
    EXPECT_FALSE(behind(1, one).equals(behind(2, other)));
}

TEST(Writing, BinaryRefusesTextThatIsNoUTF8) {
    PropertyListBuilder builder;
    std::string why;
    EXPECT_FALSE(writeBinaryPropertyList(builder.string("\xFF"), &why));
    EXPECT_FALSE(why.empty());
}

} // namespace
} // namespace orvane
