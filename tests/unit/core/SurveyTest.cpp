// What is found out about a preset before anything is made.

#include "Plist.h"

#include "presets/ORVPresetSurvey.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {

namespace {

using test::file;
using test::folder;

/// A tree in which every folder holds the one below it twice, and the lowest these files.
PropertyList doubled(std::size_t levels, const std::vector<PropertyList> &files) {
    PropertyList inner = folder("low", files);
    for (std::size_t level = 0; level < levels; ++level) {
        inner = folder("level", {inner, inner});
    }
    return test::preset("Top", {inner});
}

TEST(PresetSurvey, FindsTheVariablesOfAListThatManyFoldersShare) {
    const PropertyList preset = doubled(40, {file("{Client} plan"), file("{Day}")});
    const ORVPresetSurvey survey(preset.root());
    EXPECT_EQ(survey.variableNames, (std::vector<std::string>{"Client", "Day"}));
    // 2^40 lowest folders with two files each, and 2^41 - 1 folders.
    EXPECT_EQ(survey.tree.nodes(), (std::size_t{1} << 42) - 1);
}

TEST(PresetSurvey, CountsNoFurtherThanTheLargestNumber) {
    const PropertyList preset = doubled(80, {file("a")});
    EXPECT_EQ(ORVPresetSurvey(preset.root()).tree.nodes(), std::numeric_limits<std::size_t>::max());
}

TEST(PresetSurvey, KnowsTheSizesOfLargeFoldersOnly) {
    const std::vector<PropertyList> files(ORVTreeSurvey::LeastLarge, file("a"));
    const PropertyList preset = test::preset("Top", {folder("large", files), folder("small", {file("a")})});
    const ORVPresetSurvey survey(preset.root());
    const auto children = preset.root().find("fileHierarchy")->find("children")->array();
    EXPECT_EQ(survey.tree.sizeOf(children), ORVTreeSurvey::LeastLarge + 3);
    EXPECT_EQ(survey.tree.sizeOf(children[0].find("children")->array()), ORVTreeSurvey::LeastLarge);
    EXPECT_EQ(survey.tree.sizeOf(children[1].find("children")->array()), 0U);
}

} // namespace

} // namespace orvane
