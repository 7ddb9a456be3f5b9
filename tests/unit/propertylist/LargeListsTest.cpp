// Size and depth: neither may crash, hang or take more than its due.

#include "platform/propertylist/PropertyListFiles.h"

#include <fcntl.h>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

namespace orvane {
namespace {

std::string repeated(const std::string &text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

constexpr std::size_t Million = 1'000'000;

TEST(LargeLists, AMillionLevelsOfXML) {
    const auto list = readPropertyList("<plist>" + repeated("<array>", Million) + repeated("</array>", Million) + "</plist>");
    ASSERT_TRUE(list);
    std::size_t depth = 0;
    for (PropertyListValue value = list->root(); value.isArray(); value = value.array().empty() ? PropertyListValue() : value.array()[0]) {
        ++depth;
    }
    EXPECT_EQ(depth, Million);
    const auto binary = writeBinaryPropertyList(list->root());
    ASSERT_TRUE(binary);
    const auto again = readPropertyList(*binary);
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->root().equals(list->root()));
}

TEST(LargeLists, AHundredThousandLevelsAreWrittenWithoutEndlessIndents) {
    constexpr std::size_t levels = 100'000;
    const auto list = readPropertyList(repeated("<array>", levels) + repeated("</array>", levels));
    ASSERT_TRUE(list);
    const auto text = writeXMLPropertyList(list->root());
    ASSERT_TRUE(text);
    EXPECT_LT(text->size(), 200 * levels);
    const auto again = readPropertyList(*text);
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->root().equals(list->root()));
}

TEST(LargeLists, AMillionOpenLevelsAreRefused) {
    EXPECT_FALSE(readPropertyList(repeated("<dict><key>a</key>", Million)));
    EXPECT_FALSE(readPropertyList(repeated("<array>", Million) + "</dict>"));
}

TEST(LargeLists, AHundredMegabytesFromAFileOneByOne) {
    const int file = ::memfd_create("list", MFD_CLOEXEC);
    ASSERT_GE(file, 0);
    const std::string entries = repeated("<string>0123456789abcdef0123456789abcdef</string>\n", 20'000);
    const std::string head = "<plist><array>\n";
    const std::string tail = "</array></plist>";
    ASSERT_EQ(::write(file, head.data(), head.size()), static_cast<ssize_t>(head.size()));
    for (std::size_t i = 0; i < 100; ++i) {
        ASSERT_EQ(::write(file, entries.data(), entries.size()), static_cast<ssize_t>(entries.size()));
    }
    ASSERT_EQ(::write(file, tail.data(), tail.size()), static_cast<ssize_t>(tail.size()));
    ASSERT_GE(::lseek(file, 0, SEEK_CUR), off_t{100} * 1000 * 1000);
    ASSERT_EQ(::lseek(file, 0, SEEK_SET), 0);
    std::string why;
    const auto list = readPropertyList(file, nullptr, &why);
    ::close(file);
    ASSERT_TRUE(list) << why;
    EXPECT_EQ(list->root().array().size(), 2'000'000U);
    EXPECT_EQ(list->root().array().back().string(), "0123456789abcdef0123456789abcdef");
}

TEST(LargeLists, OneStringOfAHundredMegabytes) {
    const std::string text(100 * Million, 'x');
    const auto list = readPropertyList("<string>" + text + "</string>");
    ASSERT_TRUE(list);
    EXPECT_EQ(list->root().string(), text);
}

TEST(LargeLists, ManyDistinctKeysTakeLinearTime) {
    std::string text = "<dict>";
    for (std::size_t i = 0; i < 300'000; ++i) {
        text += "<key>k" + std::to_string(i) + "</key><true/>";
    }
    const auto list = readPropertyList(text + "</dict>");
    ASSERT_TRUE(list);
    EXPECT_EQ(list->root().dictionary().size(), 300'000U);
    const auto again = readPropertyList(writeBinaryPropertyList(list->root()).value_or(""));
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->root().equals(list->root()));
}

TEST(LargeLists, APipeIsReadToItsEnd) {
    int ends[2] = {-1, -1};
    ASSERT_EQ(::pipe(ends), 0);
    const std::string text = "<array><string>x</string></array>";
    ASSERT_EQ(::write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    ::close(ends[1]);
    const auto list = readPropertyList(ends[0]);
    ::close(ends[0]);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->root().array().size(), 1U);
}

TEST(LargeLists, ADescriptorThatCannotBeReadIsRefusedWithTheReason) {
    const int folder = ::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    std::string why;
    EXPECT_FALSE(readPropertyList(folder, nullptr, &why));
    ::close(folder);
    EXPECT_NE(why.find("directory"), std::string::npos) << why;
}

} // namespace
} // namespace orvane
