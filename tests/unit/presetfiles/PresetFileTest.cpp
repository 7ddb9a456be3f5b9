#include "presets/ORVPresetFile.h"

#include "platform/propertylist/PropertyListFiles.h"
#include "unit/presetfiles/Presets.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {
namespace {

class PresetFile : public testing::Test {
protected:
    PropertyList preset() {
        return plist.document(
            plist.preset("T",
                         {plist.folder("d", {plist.file("a", {{"contentFilename", plist.text("x")}, {"foreign", plist.text("1")}}),
                                             plist.file("b", {{"contentFilename", plist.text("y")}})}),
                          plist.file("c", {{"contentFilename", plist.text("x")}})},
                         {{"scriptFile", plist.text("s.sh")}, {"foreign", PropertyListValue::ofReal(1.5)}}));
    }
    std::string whyOf(const PropertyListValue &root) {
        Sentence why;
        EXPECT_FALSE(ORVUnpackPreset(plist.document(root), why).has_value());
        return why.english();
    }
    PropertyListValue fileWith(test::PresetMaker::Entries more) {
        more.insert(more.begin(), {{"ORVPresetFileVersion", PropertyListValue::ofInteger(1)}, {"ORVPreset", plist.dictionary({})}});
        return plist.dictionary(more);
    }

    test::PresetMaker plist;
};

TEST_F(PresetFile, ComesBackWholeFromItsXML) {
    const std::string bytes("\0\xFF\n", 3);
    const PropertyList document = ORVPackPreset({preset(), {{"x", bytes, 0755}, {"y", "", 0600}}, ORVPackedScript{"s.sh", "#!/bin/sh\n"}});
    const auto xml = writeXMLPropertyList(document.root());
    ASSERT_TRUE(xml.has_value());
    const auto read = readPropertyList(*xml);
    ASSERT_TRUE(read.has_value());
    Sentence why;
    const auto parts = ORVUnpackPreset(*read, why);
    ASSERT_TRUE(parts.has_value()) << why.english();
    EXPECT_TRUE(parts->preset.root().equals(preset().root()));
    ASSERT_EQ(parts->contents.size(), 2U);
    EXPECT_EQ(parts->contents[0].name, "x");
    EXPECT_EQ(parts->contents[0].data, bytes);
    EXPECT_EQ(parts->contents[0].mode, 0755U);
    EXPECT_EQ(parts->contents[1].mode, 0600U);
    ASSERT_TRUE(parts->script.has_value());
    EXPECT_EQ(parts->script->name, "s.sh");
    EXPECT_EQ(parts->script->data, "#!/bin/sh\n");
}

TEST_F(PresetFile, IsRefusedWhenItIsNoneOrFromALaterVersion) {
    EXPECT_EQ(whyOf(plist.text("x")), "it is not a preset file");
    EXPECT_EQ(whyOf(plist.dictionary({{"ORVPreset", plist.dictionary({})}})), "it is not a preset file");
    const auto ofVersion = [&](std::int64_t version) {
        return plist.dictionary({{"ORVPresetFileVersion", PropertyListValue::ofInteger(version)}, {"ORVPreset", plist.dictionary({})}});
    };
    EXPECT_EQ(whyOf(ofVersion(2)), "it was made by a later version of Orvane");
    EXPECT_EQ(whyOf(ofVersion(0)), "its version is not known");
}

TEST_F(PresetFile, IsRefusedForWrongTypesOfItsOwnKeys) {
    EXPECT_NE(whyOf(fileWith({{"ORVFileContents", plist.list({})}})), "");
    EXPECT_NE(whyOf(fileWith({{"ORVFileContents", plist.dictionary({{"a", plist.text("x")}})}})), "");
    EXPECT_NE(whyOf(fileWith({{"ORVFileContents", plist.dictionary({{"a", plist.dictionary({{"data", plist.text("x")}})}})}})), "");
    EXPECT_NE(whyOf(fileWith({{"ORVFileContents",
                               plist.dictionary({{"a", plist.dictionary({{"data", plist.data("x")}, {"mode", plist.text("8")}})}})}})),
              "");
    EXPECT_NE(whyOf(fileWith({{"ORVScript", plist.text("x")}})), "");
    EXPECT_NE(whyOf(fileWith({{"ORVScript", plist.dictionary({{"data", plist.data("x")}})}})), "");
    EXPECT_NE(whyOf(plist.dictionary({{"ORVPresetFileVersion", PropertyListValue::ofInteger(1)}, {"ORVPreset", plist.list({})}})), "");
}

TEST_F(PresetFile, NeverLetsANameLeaveItsFolder) {
    const std::vector<std::pair<std::string, std::string>> names = {{"a.txt", "a.txt"},
                                                                    {"../../etc/passwd", "passwd"},
                                                                    {"/a/b/", "b"},
                                                                    {"..", ""},
                                                                    {".", ""},
                                                                    {"", ""},
                                                                    {"/", ""},
                                                                    {"a/..", ""},
                                                                    {"a\nb", "a_b"},
                                                                    {std::string("a\0b", 3), "a_b"},
                                                                    {".hidden", ".hidden"}};
    for (const auto &[name, safe] : names) {
        EXPECT_EQ(ORVSafeFileName(name), safe) << name;
    }
    const std::string cut = ORVSafeFileName(std::string(99, 'x') + "\xC3\xA9" + std::string(300, 'y') + ".txt");
    EXPECT_EQ(cut.size(), 200U);
    EXPECT_TRUE(cut.ends_with("y.txt"));
    EXPECT_EQ(ORVSafeFileName(std::string(199, 'x') + "\xC3\xA9").size(), 199U) << "no character is cut in two";
}

TEST_F(PresetFile, NumbersNamesBeforeTheirSuffix) {
    EXPECT_EQ(ORVNumberedFileName("a.txt", 2), "a 2.txt");
    EXPECT_EQ(ORVNumberedFileName("a", 12), "a 12");
    EXPECT_EQ(ORVNumberedFileName(".profile", 2), ".profile 2");
    EXPECT_EQ(ORVNumberedFileName(std::string(255, 'x'), 2).size(), 255U);
}

TEST_F(PresetFile, ListsEachContentNameOnceInTreeOrder) {
    EXPECT_EQ(ORVContentNamesOfPreset(preset().root()), (std::vector<std::string>{"x", "y"}));
}

TEST_F(PresetFile, RenamesResourcesAndKeepsEverythingElse) {
    const PropertyList renamed = ORVPresetWithResources(preset(), {{{"x", "z"}, {"y", ""}}, std::optional<std::string>("t.sh")});
    const auto expected = plist.preset(
        "T",
        {plist.folder("d", {plist.file("a", {{"contentFilename", plist.text("z")}, {"foreign", plist.text("1")}}), plist.file("b")}),
         plist.file("c", {{"contentFilename", plist.text("z")}})},
        {{"scriptFile", plist.text("t.sh")}, {"foreign", PropertyListValue::ofReal(1.5)}});
    EXPECT_TRUE(renamed.root().equals(expected));
    EXPECT_TRUE(ORVPresetWithResources(preset(), {}).root().equals(preset().root()));
}

TEST_F(PresetFile, RenamesAtAnyDepth) {
    PropertyListValue chain = plist.file("leaf", {{"contentFilename", plist.text("x")}});
    for (int i = 0; i < 20000; ++i) {
        chain = plist.folder("d", {chain});
    }
    const PropertyList renamed = ORVPresetWithResources(plist.document(plist.preset("T", {chain})), {{{"x", "z"}}, std::nullopt});
    EXPECT_EQ(ORVContentNamesOfPreset(renamed.root()), std::vector<std::string>{"z"});
}

} // namespace
} // namespace orvane
