#include "unit/core/Plist.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <limits>

namespace orvane::test {
namespace {

TEST(PropertyList, ValuesAreSmall) {
    EXPECT_EQ(sizeof(PropertyListValue), 16U);
    EXPECT_EQ(sizeof(PropertyListEntry), 32U);
}

TEST(PropertyList, FindsEntriesByExactKey) {
    const PropertyList value = dict({{"a", number(1)}, {"A", number(2)}});
    EXPECT_EQ(value.root().find("A")->integer(), 2);
    EXPECT_EQ(value.root().find("b"), nullptr);
    EXPECT_EQ(number(1).root().find("a"), nullptr);
}

TEST(PropertyList, GivesEmptyAnswersForOtherTypes) {
    const PropertyListValue integer = PropertyListValue::ofInteger(3);
    EXPECT_TRUE(integer.string().empty());
    EXPECT_TRUE(integer.data().empty());
    EXPECT_TRUE(integer.array().empty());
    EXPECT_TRUE(integer.dictionary().empty());
    EXPECT_FALSE(integer.boolean());
    EXPECT_EQ(PropertyListValue::ofBoolean(true).integer(), 0);
    EXPECT_EQ(PropertyListValue::ofReal(2.5).integer(), 0);
}

TEST(PropertyList, ComparesByValueWithoutRegardToTheOrderOfEntries) {
    EXPECT_TRUE(dict({{"a", text("x")}, {"b", list({yes()})}}).root().equals(dict({{"b", list({yes()})}, {"a", text("x")}}).root()));
    EXPECT_FALSE(dict({{"a", text("x")}}).root().equals(dict({{"a", text("y")}}).root()));
    EXPECT_FALSE(dict({{"a", text("x")}}).root().equals(dict({{"b", text("x")}}).root()));
    EXPECT_FALSE(list({yes()}).root().equals(list({yes(), yes()}).root()));
    EXPECT_FALSE(number(1).root().equals(real(1).root()));
    EXPECT_FALSE(text("1").root().equals(data("1").root()));
    EXPECT_FALSE(PropertyListValue::ofInteger(-1).equals(PropertyListValue::ofUnsigned(std::numeric_limits<std::uint64_t>::max())));
}

TEST(PropertyList, ComparesLargeDictionaries) {
    std::vector<std::pair<std::string_view, PropertyList>> forwards;
    std::vector<std::string> keys;
    for (int i = 0; i < 100; ++i) {
        keys.push_back(std::to_string(i));
    }
    for (int i = 0; i < 100; ++i) {
        forwards.emplace_back(keys[static_cast<std::size_t>(i)], number(i));
    }
    auto backwards = forwards;
    std::reverse(backwards.begin(), backwards.end());
    EXPECT_TRUE(dict(forwards).root().equals(dict(backwards).root()));
    backwards[50].second = number(-1);
    EXPECT_FALSE(dict(forwards).root().equals(dict(backwards).root()));
}

TEST(PropertyList, AdoptedPartsOutliveTheirDocument) {
    PropertyListBuilder builder;
    PropertyList whole;
    {
        const PropertyList part = dict({{"deep", text("value that is long enough not to be anywhere else")}});
        whole = builder.finish(builder.array(std::vector{builder.adopt(part)}));
    }
    EXPECT_EQ(whole.root().array()[0].find("deep")->string(), "value that is long enough not to be anywhere else");
}

TEST(PropertyList, OfAnyDepthIsComparedAndFreed) {
    PropertyListBuilder builder;
    PropertyListValue value = PropertyListValue::ofBoolean(true);
    for (int i = 0; i < 1'000'000; ++i) {
        value = builder.array({&value, 1});
    }
    PropertyListBuilder other;
    PropertyListValue same = PropertyListValue::ofBoolean(true);
    for (int i = 0; i < 1'000'000; ++i) {
        same = other.array({&same, 1});
    }
    EXPECT_TRUE(builder.finish(value).root().equals(same));
}

TEST(PropertyList, ArenaGivesAlignedMemoryOfAnySize) {
    PropertyListArena arena;
    for (const std::size_t size : {1UL, 15UL, 4095UL, 70000UL, 3000000UL, 1UL}) {
        (void)arena.allocateText(1);
        void *memory = arena.allocate(size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % alignof(std::max_align_t), 0U);
        std::fill_n(static_cast<char *>(memory), size, 'x');
    }
}

} // namespace
} // namespace orvane::test
