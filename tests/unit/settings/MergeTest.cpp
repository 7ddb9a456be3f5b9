#include "SettingsMerge.h"

#include "presets/ORVPropertyListReading.h"
#include "unit/presetfiles/Presets.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {
namespace {

using test::PresetMaker;
using List = std::vector<std::string>;
using Kind = MergeConflict::Kind;

class Merge : public testing::Test {
protected:
    PropertyListValue p(std::string_view label, std::string_view name = "n") {
        return make.dictionary({{"label", make.text(label)}, {"directoryName", make.text(name)}});
    }
    void merge(const std::vector<PropertyListValue> &base, const std::vector<std::pair<PropertyListValue, int>> &mine,
               const std::vector<PropertyListValue> &theirs) {
        std::vector<MergeableRecord> records;
        for (const auto &[record, origin] : mine) {
            records.push_back({make.document(record), origin < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(origin))});
        }
        result = mergePresets(make.document(make.list(base)), records, make.document(make.list(theirs)),
                              [this](const MergeConflict &) { return side; });
    }
    [[nodiscard]] List labels() const {
        List labels;
        for (const MergedRecord &each : result.presets) {
            const PropertyListValue &record = each.record.root();
            labels.push_back(ORVTextValue(record.find("label")) + "/" + ORVTextValue(record.find("directoryName")));
        }
        return labels;
    }

    PresetMaker make;
    std::optional<MergeSide> side;
    MergedPresets result;
};

TEST_F(Merge, TakesWhatOnlyOneSideChanged) {
    merge({p("A"), p("B")}, {{p("A", "mine"), 0}, {p("B"), 1}}, {p("A"), p("B", "theirs")});
    EXPECT_EQ(labels(), (List{"A/mine", "B/theirs"}));
    EXPECT_TRUE(result.conflicts.empty());
}

TEST_F(Merge, TheSameChangeOnBothSidesIsNoConflict) {
    merge({p("A")}, {{p("A", "same"), 0}}, {p("A", "same")});
    EXPECT_EQ(labels(), List{"A/same"});
    EXPECT_TRUE(result.conflicts.empty());
}

TEST_F(Merge, DifferentKeysOfOnePresetBothCount) {
    const auto with = [&](std::string_view label, std::string_view script, PresetMaker::Entries more) {
        more.insert(more.begin(), {{"label", make.text(label)}, {"directoryName", make.text("n")}, {"scriptFile", make.text(script)}});
        return make.dictionary(more);
    };
    merge({with("A", "s", {{"gone", make.text("1")}})}, {{with("A", "mine", {{"gone", make.text("1")}, {"x", make.text("new")}}), 0}},
          {with("Theirs", "s", {{"y", make.text("new")}})});
    EXPECT_TRUE(result.conflicts.empty()) << "matched by place and folder name";
    ASSERT_EQ(result.presets.size(), 1U);
    EXPECT_TRUE(result.presets[0].record.root().equals(with("Theirs", "mine", {{"x", make.text("new")}, {"y", make.text("new")}})));
}

TEST_F(Merge, OneKeyChangedOnBothSidesIsAConflict) {
    merge({p("A")}, {{p("A", "mine"), 0}}, {p("A", "theirs")});
    ASSERT_EQ(result.conflicts.size(), 1U);
    EXPECT_EQ(result.conflicts[0].kind, Kind::PresetValue);
    EXPECT_EQ(result.conflicts[0].label, "A");
    EXPECT_EQ(result.conflicts[0].key, "directoryName");
    EXPECT_EQ(result.conflicts[0].mine.root().string(), "mine");
    EXPECT_EQ(result.conflicts[0].theirs.root().string(), "theirs");
    side = MergeSide::Theirs;
    merge({p("A")}, {{p("A", "mine"), 0}}, {p("A", "theirs")});
    EXPECT_TRUE(result.conflicts.empty());
    EXPECT_EQ(labels(), List{"A/theirs"});
}

TEST_F(Merge, ADeletionOfWhatTheOtherLeftAloneCounts) {
    merge({p("A"), p("B"), p("C")}, {{p("A"), 0}, {p("C"), 2}}, {p("A"), p("B")});
    EXPECT_EQ(labels(), List{"A/n"});
    EXPECT_TRUE(result.conflicts.empty());
}

TEST_F(Merge, DeletedHereAndChangedThereIsAConflict) {
    merge({p("A")}, {}, {p("A", "theirs")});
    ASSERT_EQ(result.conflicts.size(), 1U);
    EXPECT_EQ(result.conflicts[0].kind, Kind::PresetDeletedHere);
    side = MergeSide::Theirs;
    merge({p("A")}, {}, {p("A", "theirs")});
    EXPECT_EQ(labels(), List{"A/theirs"});
    side = MergeSide::Mine;
    merge({p("A")}, {}, {p("A", "theirs")});
    EXPECT_TRUE(labels().empty());
}

TEST_F(Merge, ChangedHereAndDeletedThereIsAConflict) {
    merge({p("A")}, {{p("A", "mine"), 0}}, {});
    ASSERT_EQ(result.conflicts.size(), 1U);
    EXPECT_EQ(result.conflicts[0].kind, Kind::PresetDeletedThere);
    side = MergeSide::Mine;
    merge({p("A")}, {{p("A", "mine"), 0}}, {});
    EXPECT_EQ(labels(), List{"A/mine"});
    side = MergeSide::Theirs;
    merge({p("A")}, {{p("A", "mine"), 0}}, {});
    EXPECT_TRUE(labels().empty());
}

TEST_F(Merge, AdditionsOfBothSidesStayBehindTheirNeighbours) {
    merge({p("A"), p("B")}, {{p("A"), 0}, {p("Mine"), -1}, {p("B"), 1}}, {p("Theirs"), p("A"), p("B"), p("Last")});
    EXPECT_EQ(labels(), (List{"Theirs/n", "A/n", "Mine/n", "B/n", "Last/n"}));
}

TEST_F(Merge, TheSameAdditionOnBothSidesIsOne) {
    merge({p("A")}, {{p("A"), 0}, {p("New"), -1}}, {p("A"), p("New")});
    EXPECT_EQ(labels(), (List{"A/n", "New/n"}));
    EXPECT_EQ(result.presets[1].mine, 1U);
    EXPECT_EQ(result.presets[1].theirs, 1U);
}

TEST_F(Merge, AnOrderThatOnlyOneSideChangedCounts) {
    const std::vector<PropertyListValue> base{p("A"), p("B"), p("C")};
    merge(base, {{p("A"), 0}, {p("B"), 1}, {p("C", "mine"), 2}}, {p("C"), p("A"), p("B")});
    EXPECT_EQ(labels(), (List{"C/mine", "A/n", "B/n"}));
    merge(base, {{p("B"), 1}, {p("A"), 0}, {p("C"), 2}}, {p("A"), p("B"), p("C", "theirs")});
    EXPECT_EQ(labels(), (List{"B/n", "A/n", "C/theirs"}));
    EXPECT_TRUE(result.conflicts.empty());
}

TEST_F(Merge, DifferentOrdersAreAConflict) {
    const std::vector<PropertyListValue> base{p("A"), p("B"), p("C")};
    merge(base, {{p("B"), 1}, {p("A"), 0}, {p("C"), 2}}, {p("C"), p("B"), p("A")});
    ASSERT_EQ(result.conflicts.size(), 1U);
    EXPECT_EQ(result.conflicts[0].kind, Kind::PresetOrder);
    side = MergeSide::Theirs;
    merge(base, {{p("B"), 1}, {p("A"), 0}, {p("C"), 2}}, {p("C"), p("B"), p("A")});
    EXPECT_EQ(labels(), (List{"C/n", "B/n", "A/n"}));
}

TEST_F(Merge, APresetThatMovedAndOneThatChangedAreTheSameStill) {
    merge({p("A"), p("B"), p("C")}, {{p("A", "mine"), 0}, {p("B"), 1}, {p("C"), 2}}, {p("B", "theirs"), p("C"), p("A")});
    EXPECT_EQ(labels(), (List{"B/theirs", "C/n", "A/mine"}));
}

TEST_F(Merge, TwinsAreToldApartByTheirPlace) {
    merge({p("A"), p("A")}, {{p("A"), 0}, {p("A", "mine"), 1}}, {p("A", "theirs"), p("A")});
    EXPECT_EQ(labels(), (List{"A/theirs", "A/mine"}));
    EXPECT_TRUE(result.conflicts.empty());
}

TEST_F(Merge, APresetRenamedThereIsKnownByItsTree) {
    const auto tree = [&](std::string_view label, std::string_view name) {
        return make.dictionary(
            {{"label", make.text(label)}, {"directoryName", make.text(name)}, {"fileHierarchy", make.root({make.file("x")})}});
    };
    merge({p("Other"), tree("A", "n")}, {{p("Other"), 0}, {tree("A", "mine"), 1}}, {tree("Theirs", "n"), p("Other")});
    EXPECT_EQ(labels(), (List{"Theirs/mine", "Other/n"}));
    EXPECT_TRUE(result.conflicts.empty());
}

TEST_F(Merge, WhatIsNoPresetIsMergedAsAWhole) {
    merge({make.text("a")}, {{make.text("a"), 0}, {p("New"), -1}}, {make.text("a")});
    ASSERT_EQ(result.presets.size(), 2U);
    EXPECT_EQ(result.presets[0].record.root().string(), "a");
}

} // namespace
} // namespace orvane
