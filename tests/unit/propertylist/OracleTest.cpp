// Second opinions: libplist and Python's plistlib read what is written here, and what they write is read here.

#include "platform/propertylist/PropertyListFiles.h"
#include "unit/propertylist/RandomLists.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <plist/plist.h>

namespace orvane {
namespace {

using Node = std::unique_ptr<void, void (*)(plist_t)>;

/// Compares value by value what both libraries made of one file.
void expectSame(const PropertyListValue &mine, plist_t other) {
    ASSERT_NE(other, nullptr);
    switch (mine.type()) {
    case PropertyListType::Dictionary:
        ASSERT_EQ(plist_get_node_type(other), PLIST_DICT);
        ASSERT_EQ(plist_dict_get_size(other), mine.dictionary().size());
        for (const PropertyListEntry &entry : mine.dictionary()) {
            expectSame(entry.value, plist_dict_get_item(other, std::string(entry.key).c_str()));
        }
        break;
    case PropertyListType::Array:
        ASSERT_EQ(plist_get_node_type(other), PLIST_ARRAY);
        ASSERT_EQ(plist_array_get_size(other), mine.array().size());
        for (std::uint32_t i = 0; i < mine.array().size(); ++i) {
            expectSame(mine.array()[i], plist_array_get_item(other, i));
        }
        break;
    case PropertyListType::String: {
        ASSERT_EQ(plist_get_node_type(other), PLIST_STRING);
        std::uint64_t size = 0;
        const char *text = plist_get_string_ptr(other, &size);
        EXPECT_EQ(std::string_view(text, size), mine.string());
        break;
    }
    case PropertyListType::Data: {
        ASSERT_EQ(plist_get_node_type(other), PLIST_DATA);
        std::uint64_t size = 0;
        const char *bytes = plist_get_data_ptr(other, &size);
        EXPECT_EQ(std::string_view(bytes, size), mine.data());
        break;
    }
    case PropertyListType::Integer: {
        ASSERT_EQ(plist_get_node_type(other), PLIST_UINT);
        std::uint64_t number = 0;
        plist_get_uint_val(other, &number);
        EXPECT_EQ(number, static_cast<std::uint64_t>(mine.integer()));
        break;
    }
    case PropertyListType::Boolean: {
        ASSERT_EQ(plist_get_node_type(other), PLIST_BOOLEAN);
        std::uint8_t flag = 0;
        plist_get_bool_val(other, &flag);
        EXPECT_EQ(flag != 0, mine.boolean());
        break;
    }
    case PropertyListType::Real: {
        ASSERT_EQ(plist_get_node_type(other), PLIST_REAL);
        double number = 0;
        plist_get_real_val(other, &number);
        EXPECT_DOUBLE_EQ(number, mine.real());
        break;
    }
    case PropertyListType::Date: {
        ASSERT_EQ(plist_get_node_type(other), PLIST_DATE);
        std::int32_t seconds = 0;
        std::int32_t microseconds = 0;
        plist_get_date_val(other, &seconds, &microseconds);
        EXPECT_EQ(static_cast<double>(seconds), mine.real());
        break;
    }
    case PropertyListType::UID: {
        ASSERT_EQ(plist_get_node_type(other), PLIST_UID);
        std::uint64_t number = 0;
        plist_get_uid_val(other, &number);
        EXPECT_EQ(number, static_cast<std::uint64_t>(mine.integer()));
        break;
    }
    default:
        FAIL() << "a type that the generator does not make";
    }
}

/// libplist 2.2 writes neither infinities nor numbers that only fit unsigned the way they were read.
RandomListKinds sharedKinds(bool uids) {
    RandomListKinds kinds;
    kinds.infinities = false;
    kinds.largeUnsigned = false;
    kinds.uids = uids;
    return kinds;
}

TEST(Oracle, LibplistReadsOurBinaryFilesTheSame) {
    for (std::uint64_t seed = 0; seed < 300; ++seed) {
        std::mt19937_64 random(seed);
        const PropertyList list = randomList(random, sharedKinds(true));
        const auto bytes = writeBinaryPropertyList(list.root());
        ASSERT_TRUE(bytes);
        plist_t other = nullptr;
        plist_from_bin(bytes->data(), static_cast<std::uint32_t>(bytes->size()), &other);
        const Node owned(other, plist_free);
        expectSame(list.root(), other);
        ASSERT_FALSE(HasFailure()) << seed;
    }
}

TEST(Oracle, LibplistReadsOurXMLFilesTheSame) {
    for (std::uint64_t seed = 0; seed < 300; ++seed) {
        std::mt19937_64 random(seed);
        const PropertyList list = randomList(random, sharedKinds(false));
        const auto text = writeXMLPropertyList(list.root());
        ASSERT_TRUE(text);
        plist_t other = nullptr;
        plist_from_xml(text->data(), static_cast<std::uint32_t>(text->size()), &other);
        const Node owned(other, plist_free);
        expectSame(list.root(), other);
        ASSERT_FALSE(HasFailure()) << seed << *text;
    }
}

TEST(Oracle, WeReadLibplistsBinaryFilesTheSame) {
    for (std::uint64_t seed = 0; seed < 300; ++seed) {
        std::mt19937_64 random(seed);
        const auto ours = writeBinaryPropertyList(randomList(random, sharedKinds(true)).root());
        ASSERT_TRUE(ours);
        plist_t other = nullptr;
        plist_from_bin(ours->data(), static_cast<std::uint32_t>(ours->size()), &other);
        const Node owned(other, plist_free);
        char *bytes = nullptr;
        std::uint32_t size = 0;
        plist_to_bin(other, &bytes, &size);
        const std::unique_ptr<char, void (*)(void *)> theirs(bytes,
                                                             std::free); // libplist's function for it has another name in each version
        std::string why;
        const auto list = readPropertyList(std::string_view(bytes, size), nullptr, &why);
        ASSERT_TRUE(list) << why;
        expectSame(list->root(), other);
        ASSERT_FALSE(HasFailure()) << seed;
    }
}

class PlistlibOracle : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (std::filesystem::temp_directory_path() / "orvane-oracle-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        _folder = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(_folder); }

    static int run(const std::string &arguments) { return std::system(("python3 " ORVANE_PLISTLIB_SCRIPT " " + arguments).c_str()); }
    static std::string contents(const std::filesystem::path &path) {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }
    void put(const std::string &name, const std::string &bytes) const { std::ofstream(_folder / name, std::ios::binary) << bytes; }

    std::filesystem::path _folder;
};

TEST_F(PlistlibOracle, BothFormsOfEachOfItsListsReadTheSame) {
    ASSERT_EQ(run("write " + _folder.string()), 0);
    for (int i = 0; i < 100; ++i) {
        std::string why;
        const auto xml = readPropertyList(contents(_folder / (std::to_string(i) + ".xml.plist")), nullptr, &why);
        ASSERT_TRUE(xml) << i << why;
        const auto binary = readPropertyList(contents(_folder / (std::to_string(i) + ".binary.plist")), nullptr, &why);
        ASSERT_TRUE(binary) << i << why;
        ASSERT_EQ(xml->root().find("items")->array().size(), 20U);
        ASSERT_TRUE(xml->root().equals(binary->root())) << i;
    }
}

TEST_F(PlistlibOracle, ItReadsBothFormsOfOurListsTheSame) {
    for (std::uint64_t seed = 0; seed < 100; ++seed) {
        std::mt19937_64 random(seed);
        RandomListKinds kinds;
        kinds.uids = false; // plistlib has no UIDs in XML
        const PropertyList list = randomList(random, kinds);
        put(std::to_string(seed) + ".xml.plist", writeXMLPropertyList(list.root()).value_or(""));
        put(std::to_string(seed) + ".binary.plist", writeBinaryPropertyList(list.root()).value_or(""));
    }
    EXPECT_EQ(run("read " + _folder.string()), 0);
}

} // namespace
} // namespace orvane
