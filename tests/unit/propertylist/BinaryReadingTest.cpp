// The binary reader, on files put together by hand.

#include "platform/propertylist/PropertyListFiles.h"
#include "unit/propertylist/RandomLists.h"

#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace orvane {
namespace {

using namespace std::string_literals;

std::string bigEndian(std::uint64_t number, std::size_t size) {
    std::string bytes;
    for (std::size_t i = size; i > 0; --i) {
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(number >> (8 * (i - 1)))));
    }
    return bytes;
}

/// A file of these objects, the first of which is the root, with references of `width` bytes.
std::string fileOf(const std::vector<std::string> &objects, std::size_t width = 1, std::uint64_t top = 0) {
    std::string bytes = "bplist00";
    std::vector<std::uint64_t> offsets;
    for (const std::string &object : objects) {
        offsets.push_back(bytes.size());
        bytes += object;
    }
    const std::uint64_t table = bytes.size();
    for (const std::uint64_t offset : offsets) {
        bytes += bigEndian(offset, 4);
    }
    return bytes + std::string(6, '\0') + bigEndian(4, 1) + bigEndian(width, 1) + bigEndian(objects.size(), 8) + bigEndian(top, 8) +
           bigEndian(table, 8);
}

PropertyList read(const std::vector<std::string> &objects) {
    PropertyListFormat format{};
    std::string why;
    const auto list = readPropertyList(fileOf(objects), &format, &why);
    EXPECT_TRUE(list.has_value()) << why;
    EXPECT_EQ(format, PropertyListFormat::Binary);
    return list.value_or(PropertyList());
}

bool isRefused(const std::string &bytes) {
    std::string why;
    const bool refused = !readPropertyList(bytes, nullptr, &why).has_value();
    EXPECT_EQ(refused, !why.empty());
    return refused;
}

TEST(BinaryReading, Scalars) {
    EXPECT_TRUE(read({"\x09"}).root().boolean());
    EXPECT_EQ(read({"\x08"}).root().type(), PropertyListType::Boolean);
    EXPECT_EQ(read({"\0"s}).root().type(), PropertyListType::Null);
    EXPECT_EQ(read({"\x10\xFF"}).root().integer(), 255);
    EXPECT_EQ(read({"\x11\xFF\xFE"}).root().integer(), 65534);
    EXPECT_EQ(read({"\x12\xFF\xFF\xFF\xFF"}).root().integer(), 4294967295);
    EXPECT_EQ(read({"\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}).root().integer(), -1);
    EXPECT_EQ(read({"\x14"s + std::string(8, '\0') + bigEndian(5, 8)}).root().integer(), 5);
    EXPECT_EQ(read({"\x14"s + std::string(8, '\xFF') + std::string(8, '\xFF')}).root().integer(), -1);
    EXPECT_EQ(read({"\x22\x3F\xC0\0\0"s}).root().real(), 1.5);
    EXPECT_TRUE(read({"\x22\x3F\xC0\0\0"s}).root().isSinglePrecision());
    EXPECT_EQ(read({"\x23\x3F\xF8\0\0\0\0\0\0"s}).root().real(), 1.5);
    EXPECT_EQ(read({"\x33\x3F\xF8\0\0\0\0\0\0"s}).root().type(), PropertyListType::Date);
    EXPECT_EQ(read({"\x33\x3F\xF8\0\0\0\0\0\0"s}).root().real(), 1.5);
    EXPECT_EQ(read({"\x43"
                    "abc"})
                  .root()
                  .data(),
              "abc");
    EXPECT_EQ(read({"\x53"
                    "abc"})
                  .root()
                  .string(),
              "abc");
    EXPECT_EQ(read({"\x5F\x10\x10"
                    "0123456789abcdef"})
                  .root()
                  .string(),
              "0123456789abcdef");
    EXPECT_EQ(read({"\x62\0\xE9\x67\x71"s}).root().string(), "\xC3\xA9\xE6\x9D\xB1");
    EXPECT_EQ(read({"\x62\xD8\x3C\xDF\xAC"s}).root().string(), "\xF0\x9F\x8E\xAC");
    EXPECT_EQ(read({"\x61\xD8\x3C"s}).root().string(), "\xED\xA0\xBC");
    EXPECT_EQ(read({"\x80\x05"}).root().type(), PropertyListType::UID);
    EXPECT_EQ(read({"\x81\x01\x02"}).root().integer(), 258);
}

TEST(BinaryReading, IntegersThatOnlyFitUnsigned) {
    const PropertyList list = read({"\x14"s + std::string(8, '\0') + std::string(8, '\xFF')});
    EXPECT_TRUE(list.root().isUnsigned());
    EXPECT_EQ(static_cast<std::uint64_t>(list.root().integer()), std::numeric_limits<std::uint64_t>::max());
}

TEST(BinaryReading, Containers) {
    const PropertyList list = read({"\xD2\x01\x02\x03\x04"s,
                                    "\x51"
                                    "a",
                                    "\x51"
                                    "b",
                                    "\xA2\x01\x05"s, "\xC1\x05"s, "\x09"});
    ASSERT_EQ(list.root().dictionary().size(), 2U);
    EXPECT_EQ(list.root().find("a")->array()[0].string(), "a");
    EXPECT_TRUE(list.root().find("a")->array()[1].boolean());
    EXPECT_EQ(list.root().find("b")->type(), PropertyListType::Set);
    EXPECT_TRUE(read({"\xA0"}).root().isArray());
    EXPECT_TRUE(read({"\xD0"}).root().isDictionary());
}

TEST(BinaryReading, SharedObjectsStayShared) {
    const PropertyList list = read({"\xA2\x01\x01"s, "\xA1\x02"s, "\x09"});
    EXPECT_EQ(list.root().array()[0].storage(), list.root().array()[1].storage());
}

TEST(BinaryReading, OfADoubleKeyTheLastValueWins) {
    const PropertyList list = read({"\xD2\x01\x02\x03\x04"s,
                                    "\x51"
                                    "a",
                                    "\x51"
                                    "a",
                                    "\x10\x01", "\x10\x02"});
    ASSERT_EQ(list.root().dictionary().size(), 1U);
    EXPECT_EQ(list.root().find("a")->integer(), 2);
}

TEST(BinaryReading, ContainersThatHoldThemselvesAreRefused) {
    EXPECT_TRUE(isRefused(fileOf({"\xA1\0"s})));
    EXPECT_TRUE(isRefused(fileOf({"\xA1\x01"s, "\xD1\x02\0"s,
                                  "\x51"
                                  "a"})));
    EXPECT_TRUE(isRefused(fileOf({"\xA1\x01"s, "\xA1\x02"s, "\xC1\x01"s})));
    EXPECT_TRUE(isRefused(fileOf({"\xD1\0\x01"s, "\x09"})));
}

TEST(BinaryReading, ListsThatStandForTooManyValuesAreRefused) {
    const auto doubled = [](std::size_t levels) {
        std::vector<std::string> objects;
        for (std::size_t i = 0; i < levels; ++i) {
            objects.push_back("\xA2" + bigEndian(i + 1, 1) + bigEndian(i + 1, 1));
        }
        objects.emplace_back("\x09");
        return fileOf(objects);
    };
    EXPECT_FALSE(isRefused(doubled(20)));
    EXPECT_FALSE(isRefused(doubled(25)));
    EXPECT_TRUE(isRefused(doubled(26)));
    EXPECT_TRUE(isRefused(doubled(200)));
}

TEST(BinaryReading, ObjectsThatOverlapAreRefused) {
    // 40 arrays whose references are the very same bytes, each starting a byte later.
    std::string bytes = "bplist00";
    const std::string body(200, '\xA8');
    bytes += "\xAF\x10\x28";
    for (char i = 1; i <= 40; ++i) {
        bytes += i;
    }
    const std::size_t first = bytes.size();
    for (int i = 0; i < 40; ++i) {
        bytes += "\xAF\x10\x80";
    }
    bytes += std::string(300, '\x29');
    const std::size_t leaf = bytes.size();
    bytes += "\x09";
    const std::size_t table = bytes.size();
    bytes += bigEndian(8, 2);
    for (std::size_t i = 0; i < 40; ++i) {
        bytes += bigEndian(first + 3 * i, 2);
    }
    bytes += bigEndian(leaf, 2) + std::string(6, '\0') + "\x02\x01" + bigEndian(42, 8) + bigEndian(0, 8) + bigEndian(table, 8);
    EXPECT_TRUE(isRefused(bytes));
}

TEST(BinaryReading, AFileTwiceOverOrWithMoreBehindItsTableIsRefused) {
    const std::string file = fileOf({"\xA1\x01"s, "\x09"});
    ASSERT_FALSE(isRefused(file));
    const std::string trailer = file.substr(file.size() - 32);
    EXPECT_TRUE(isRefused(file + file));
    EXPECT_TRUE(isRefused(file + trailer));
    EXPECT_TRUE(isRefused(file + "rubbish" + trailer));
    EXPECT_TRUE(isRefused(file.substr(0, file.size() - 32) + '\0' + trailer));
}

TEST(BinaryReading, MalformedObjectsAreRefused) {
    const std::vector<std::string> objects{"\x01"s,
                                           "\x07"s,
                                           "\x0C"s,
                                           "\x0F"s,
                                           "\x15"s + std::string(32, '\0'),
                                           "\x20\0"s,
                                           "\x21\0\0"s,
                                           "\x24"s + std::string(16, '\0'),
                                           "\x32\0\0\0\0"s,
                                           "\x30\0"s,
                                           "\x52"
                                           "a",
                                           "\x51\x80",
                                           "\x61\0"s,
                                           "\x5F\x51"
                                           "a",
                                           "\x5F\x14"s + std::string(17, '\0'),
                                           "\x5F\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF",
                                           "\x4F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF",
                                           "\x88"s + std::string(9, '\0'),
                                           "\x70"s,
                                           "\x90"s,
                                           "\xB0"s,
                                           "\xE0"s,
                                           "\xF0"s,
                                           "\xA1\x01"s,
                                           "\xA2\0"s,
                                           "\xAF\x13\x40\0\0\0\0\0\0\0"s,
                                           "\x14"s + std::string(8, '\x01') + std::string(8, '\0'),
                                           "\x14"s + std::string(8, '\xFF') + std::string(8, '\0')};
    for (const std::string &object : objects) {
        EXPECT_TRUE(isRefused(fileOf({object}))) << testing::PrintToString(object);
        EXPECT_TRUE(isRefused(fileOf({"\xA1\x01"s, object}))) << testing::PrintToString(object);
    }
    EXPECT_TRUE(isRefused(fileOf({"\xD1\x01\x02"s, "\x10\x01", "\x09"}))); // a number for a key
}

TEST(BinaryReading, MalformedTrailersAreRefused) {
    const std::string good = fileOf({"\xA1\x01"s, "\x09"});
    ASSERT_FALSE(isRefused(good));
    const auto with = [&](std::size_t fromEnd, std::uint64_t number, std::size_t size) {
        std::string bytes = good;
        return bytes.replace(bytes.size() - fromEnd, size, bigEndian(number, size));
    };
    const std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();
    EXPECT_TRUE(isRefused(with(26, 0, 1)));
    EXPECT_TRUE(isRefused(with(26, 9, 1)));
    EXPECT_TRUE(isRefused(with(25, 0, 1)));
    EXPECT_TRUE(isRefused(with(25, 9, 1)));
    for (const std::uint64_t number : {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{1000}, std::uint64_t{1} << 62U, huge}) {
        EXPECT_TRUE(isRefused(with(24, number, 8))) << number;
    }
    EXPECT_TRUE(isRefused(with(16, 2, 8)));
    EXPECT_TRUE(isRefused(with(16, huge, 8)));
    for (const std::uint64_t number : {std::uint64_t{0}, std::uint64_t{7}, std::uint64_t{8}, std::uint64_t{good.size()}, huge}) {
        EXPECT_TRUE(isRefused(with(8, number, 8))) << number;
    }
    EXPECT_TRUE(isRefused("bplist01" + good.substr(8)));
    EXPECT_TRUE(isRefused("bplist00"));
    EXPECT_TRUE(isRefused("bplist"));
}

TEST(BinaryReading, AFileCutOffAnywhereIsRefused) {
    std::mt19937_64 random(7);
    RandomListKinds kinds;
    kinds.binaryOnly = true;
    const auto bytes = writeBinaryPropertyList(randomList(random, kinds).root());
    ASSERT_TRUE(bytes);
    ASSERT_GT(bytes->size(), 200U);
    for (std::size_t size = 0; size < bytes->size(); ++size) {
        EXPECT_TRUE(isRefused(bytes->substr(0, size))) << size;
    }
}

TEST(BinaryReading, AFileWithOneBitTurnedNeverCrashes) {
    std::mt19937_64 random(11);
    const auto bytes = writeBinaryPropertyList(randomList(random, {}).root());
    ASSERT_TRUE(bytes);
    std::size_t refused = 0;
    for (std::size_t bit = 0; bit < bytes->size() * 8; ++bit) {
        std::string damaged = *bytes;
        damaged[bit / 8] = static_cast<char>(static_cast<unsigned char>(damaged[bit / 8]) ^ (1U << (bit % 8)));
        refused += readPropertyList(damaged) ? 0U : 1U;
    }
    EXPECT_GT(refused, 0U);
}

} // namespace
} // namespace orvane
