#include "FilesTestSupport.h"

#include "platform/posix/PosixFinderAttributes.h"
#include "platform/posix/PosixFinderInformation.h"
#include "ports/FinderLabel.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <string>

namespace orvane::testing {

namespace {

constexpr const char *Information = "user.com.apple.FinderInfo";
constexpr const char *Netatalk = "user.org.netatalk.Metadata";
constexpr const char *AfpInfo = "user.DosStream.AFP_AfpInfo:$DATA";
constexpr const char *Tags = "user.xdg.tags";

std::string bigEndian(std::uint32_t value, std::size_t size) {
    std::string bytes;
    for (std::size_t i = size; i-- > 0;) {
        bytes += static_cast<char>(value >> (8 * i));
    }
    return bytes;
}

std::string informationWith(std::uint16_t flags) {
    return "ABCDEFGH" + bigEndian(flags, 2) + "0123456789abcdefghijkl";
}

/// An AppleDouble header with another entry before the Finder information, which lies behind a gap.
std::string netatalkWith(std::uint16_t flags) {
    std::string blob = bigEndian(0x00051607, 4) + bigEndian(0x00020000, 4) + std::string(16, '\0') + bigEndian(2, 2);
    blob += bigEndian(4, 4) + bigEndian(60, 4) + bigEndian(5, 4);
    blob += bigEndian(9, 4) + bigEndian(80, 4) + bigEndian(32, 4);
    blob.resize(80, '.');
    return blob + informationWith(flags) + "tail";
}

std::string afpInfoWith(std::uint16_t flags) {
    return std::string("AFP\0", 4) + bigEndian(0x00010000, 4) + std::string(8, '\0') + informationWith(flags) + std::string(12, 'z');
}

class PosixFinder : public ::testing::Test {
protected:
    void SetUp() override {
        putFile(folder / "file", "");
        putFolder(folder / "folder");
    }
    std::uint16_t flags(const std::string &name) {
        std::uint16_t value = 0xDEAD;
        EXPECT_EQ(information.readFlags(folder / name, value), 0);
        return value;
    }
    void label(const std::string &name, int number) {
        EXPECT_EQ(information.writeFlags(folder / name, finderFlagsWithLabel(flags(name), number)), 0);
    }

    const TemporaryFolder folder;
    PosixFinderInformation information;
};

} // namespace

TEST_F(PosixFinder, AnItemWithoutFlagsHasNone) {
    EXPECT_EQ(flags("file"), 0);
    EXPECT_EQ(flags("folder"), 0);
}

TEST_F(PosixFinder, LabelTwoOnAllBitsGivesFFF5AndLabelZeroOnTheLabelBitsGivesNone) {
    for (const char *name : {"file", "folder"}) {
        setAttribute(folder / name, Information, informationWith(0xFFFF));
        label(name, 2);
        EXPECT_EQ(flags(name), 0xFFF5);
        EXPECT_EQ(attributeOf(folder / name, Information), informationWith(0xFFF5));
        setAttribute(folder / name, Information, informationWith(0x000E));
        label(name, 0);
        EXPECT_EQ(attributeOf(folder / name, Information), informationWith(0x0000));
    }
}

TEST_F(PosixFinder, NewInformationIs32BytesWithTheLabelInTheTenth) {
    label("folder", 6);
    EXPECT_EQ(attributeOf(folder / "folder", Information), std::string(9, '\0') + '\x0C' + std::string(22, '\0'));
}

TEST_F(PosixFinder, ShortInformationIsFilledUpAndLongIsKept) {
    setAttribute(folder / "file", Information, "ABCD");
    label("file", 1);
    EXPECT_EQ(attributeOf(folder / "file", Information), "ABCD" + std::string(5, '\0') + '\x02' + std::string(22, '\0'));
    setAttribute(folder / "folder", Information, informationWith(0) + "more");
    label("folder", 1);
    EXPECT_EQ(attributeOf(folder / "folder", Information), informationWith(2) + "more");
}

TEST_F(PosixFinder, ARecordOfNetatalkIsKeptInStep) {
    setAttribute(folder / "folder", Netatalk, netatalkWith(0xFFFF));
    EXPECT_EQ(flags("folder"), 0xFFFF);
    label("folder", 2);
    EXPECT_EQ(attributeOf(folder / "folder", Netatalk), netatalkWith(0xFFF5));
    EXPECT_EQ(attributeOf(folder / "folder", Information), informationWith(0xFFF5));
}

TEST_F(PosixFinder, ARecordOfSambaIsKeptInStep) {
    setAttribute(folder / "folder", AfpInfo, afpInfoWith(0x0400));
    EXPECT_EQ(flags("folder"), 0x0400);
    label("folder", 7);
    EXPECT_EQ(attributeOf(folder / "folder", AfpInfo), afpInfoWith(0x040E));
    EXPECT_EQ(attributeOf(folder / "folder", Information), informationWith(0x040E));
}

TEST_F(PosixFinder, TheInformationItselfIsBelievedBeforeTheRecords) {
    setAttribute(folder / "file", Netatalk, netatalkWith(0x0002));
    setAttribute(folder / "file", Information, informationWith(0x0004));
    EXPECT_EQ(flags("file"), 0x0004);
}

TEST_F(PosixFinder, DamagedRecordsAreLeftAlone) {
    std::string farAway = netatalkWith(0xFFFF);
    farAway.replace(42, 4, "\xFF\xFF\xFF\xF0");
    std::string tooMany = netatalkWith(0xFFFF).substr(0, 50);
    tooMany.replace(24, 2, "\xFF\xFF");
    tooMany.replace(38, 4, bigEndian(8, 4));
    for (const std::string &blob : {std::string(), std::string("x"), netatalkWith(1).substr(0, 26), netatalkWith(1).substr(0, 100),
                                    "\x01" + netatalkWith(1).substr(1), farAway, tooMany}) {
        setAttribute(folder / "file", Netatalk, blob);
        setAttribute(folder / "file", AfpInfo, blob);
        label("file", 3);
        EXPECT_EQ(attributeOf(folder / "file", Netatalk), blob);
        EXPECT_EQ(attributeOf(folder / "file", AfpInfo), blob);
        EXPECT_EQ(flags("file"), 0x0006);
    }
}

TEST_F(PosixFinder, RecordsAreNeverAdded) {
    label("folder", 3);
    EXPECT_EQ(attributeOf(folder / "folder", Netatalk), std::nullopt);
    EXPECT_EQ(attributeOf(folder / "folder", AfpInfo), std::nullopt);
}

TEST_F(PosixFinder, TheColourIsATagAmongTheOthers) {
    setAttribute(folder / "file", Tags, "film,Red,2026,Gray,red");
    label("file", 5);
    EXPECT_EQ(attributeOf(folder / "file", Tags), "film,2026,red,Yellow");
    label("file", 0);
    EXPECT_EQ(attributeOf(folder / "file", Tags), "film,2026,red");
}

TEST_F(PosixFinder, LabelZeroRemovesTheLastTagAndAddsNone) {
    label("file", 5);
    EXPECT_EQ(attributeOf(folder / "file", Tags), "Yellow");
    label("file", 0);
    EXPECT_EQ(attributeOf(folder / "file", Tags), std::nullopt);
    label("folder", 0);
    EXPECT_EQ(attributeOf(folder / "folder", Tags), std::nullopt);
}

TEST(PosixFinderTags, AreMergedByColourName) {
    EXPECT_EQ(tagsWithLabel("", 0), "");
    EXPECT_EQ(tagsWithLabel("", 1), "Gray");
    EXPECT_EQ(tagsWithLabel("Gray,Green,Purple,Blue,Yellow,Red,Orange", 4), "Blue");
    EXPECT_EQ(tagsWithLabel("a,,b,", 7), "a,b,Orange");
    EXPECT_EQ(tagsWithLabel("Redwood, Red ,RED", 0), "Redwood, Red ,RED");
}

TEST_F(PosixFinder, MissingItemsAndLinksAreReported) {
    putLink(folder / "dangling", "nowhere");
    std::uint16_t value = 77;
    EXPECT_FALSE(information.hasItem(folder / "missing"));
    EXPECT_EQ(information.readFlags(folder / "missing", value), ENOENT);
    EXPECT_EQ(value, 77);
    EXPECT_EQ(information.writeFlags(folder / "missing", 0), ENOENT);
    EXPECT_TRUE(information.hasItem(folder / "dangling"));
    EXPECT_EQ(flags("dangling"), 0);
    EXPECT_EQ(information.writeFlags(folder / "dangling", 2), EPERM);
    EXPECT_FALSE(information.hasItem(std::string("/\0x", 3)));
}

TEST_F(PosixFinder, AnItemThatMayNotBeWrittenIsReported) {
    putFile(folder / "closed", "", 0444);
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string { return information.writeFlags(folder / "closed", 2) == EACCES ? "" : "not refused"; }),
              "");
}

TEST_F(PosixFinder, AFileSystemWithoutAttributesIsReported) {
    std::uint16_t value = 77;
    EXPECT_EQ(information.readFlags("/proc/self/status", value), EOPNOTSUPP);
    EXPECT_EQ(value, 77);
}

TEST_F(PosixFinder, TheWriterKeepsOtherBitsOfAFolderThatWasThere) {
    setAttribute(folder / "folder", Information, informationWith(0xFFFF));
    setAttribute(folder / "folder", Tags, "film");
    PosixFileSystem files;
    auto writer = files.beginHierarchy(folder.path());
    ASSERT_TRUE(writer->enterFolder("folder"));
    writer->leaveFolder({2, {}});
    EXPECT_EQ(attributeOf(folder / "folder", Information), informationWith(0xFFF5));
    EXPECT_EQ(attributeOf(folder / "folder", Tags), "film,Green");
}

} // namespace orvane::testing
