#include "presets/ORVEndlessTemplates.h"

#include "unit/core/Plist.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace orvane::test {
namespace {

std::optional<std::string> endless(const PropertyList &preset) {
    return ORVFindEndlessTemplate(preset.root());
}

TEST(EndlessTemplates, AreNoneInAnOrdinaryPreset) {
    EXPECT_EQ(endless(preset("{Client}_{Job}", {file("{Client}.txt"), folder("{a", {file("b}")}), file("\\{x\\}")})), std::nullopt);
}

TEST(EndlessTemplates, IncludeTheFolderName) {
    EXPECT_EQ(endless(preset("Job {")), "Job {");
    EXPECT_EQ(endless(preset("{Job\\}")), "{Job\\}");
}

TEST(EndlessTemplates, AreFoundInTheOrderOfTheTree) {
    EXPECT_EQ(endless(preset("x", {folder("d", {file("inner {")}), file("outer {")})), "inner {");
    EXPECT_EQ(endless(preset("x", {file("outer {"), folder("d", {file("inner {")})})), "outer {");
    EXPECT_EQ(endless(preset("top {", {file("outer {")})), "top {");
}

TEST(EndlessTemplates, AreToldAsTheyStandInThePreset) {
    EXPECT_EQ(endless(preset("x", {file("a:b {")})), "a:b {");
}

TEST(EndlessTemplates, DoNotCountWhereTheEngineDoesNotLook) {
    // The top node's own name, the contents of a file, and other keys.
    EXPECT_EQ(endless(dict({{"label", text("label {")},
                            {"directoryName", text("x")},
                            {"fileHierarchy", dict({{"filename", text("ignored {")},
                                                    {"children", list({dict({{"filename", text("file")},
                                                                             {"contentFilename", text("content {")},
                                                                             {"children", list({file("below a file {")})}})})}})}})),
              std::nullopt);
}

TEST(EndlessTemplates, AreLookedForInPresetsOfWrongTypes) {
    for (const PropertyList &wrong : {text("x"), list({}), yes(), number(1), PropertyList(), dict({})}) {
        EXPECT_EQ(endless(wrong), std::nullopt);
        EXPECT_EQ(endless(dict({{"directoryName", wrong}, {"fileHierarchy", wrong}})), std::nullopt);
        EXPECT_EQ(endless(dict({{"fileHierarchy", dict({{"children", wrong}})}})), std::nullopt);
        EXPECT_EQ(endless(dict({{"fileHierarchy", dict({{"children", list({wrong, file("x {")})}})}})), "x {");
    }
}

TEST(EndlessTemplates, AreFoundSoonInContentsThatManyFoldersShare) {
    // 200 levels of two folders each with the same contents: 2^200 items.
    PropertyListBuilder builder;
    PropertyListValue children = builder.array({});
    for (int level = 0; level < 200; ++level) {
        const std::vector<PropertyListEntry> entries{
            {"filename", builder.string("d")}, {"isFolder", PropertyListValue::ofBoolean(true)}, {"children", children}};
        const PropertyListValue node = builder.dictionary(entries);
        const std::vector<PropertyListValue> two{node, node};
        children = builder.array(two);
    }
    const std::vector<PropertyListEntry> hierarchy{{"children", children}};
    const std::vector<PropertyListEntry> whole{{"fileHierarchy", builder.dictionary(hierarchy)}};
    EXPECT_EQ(endless(builder.finish(builder.dictionary(whole))), std::nullopt);
}

TEST(EndlessTemplates, AreFoundAtAnyDepth) {
    PropertyListBuilder builder;
    PropertyListValue node = builder.adopt(file("deep {"));
    for (int level = 0; level < 100000; ++level) {
        const std::vector<PropertyListValue> one{node};
        const std::vector<PropertyListEntry> entries{{"isFolder", PropertyListValue::ofBoolean(true)}, {"children", builder.array(one)}};
        node = builder.dictionary(entries);
    }
    const std::vector<PropertyListEntry> whole{{"fileHierarchy", node}};
    EXPECT_EQ(endless(builder.finish(builder.dictionary(whole))), "deep {");
}

} // namespace
} // namespace orvane::test
