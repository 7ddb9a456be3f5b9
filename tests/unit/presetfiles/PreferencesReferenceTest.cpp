// What docs/preferences.md says of the keys, compared with what the programs know.

#include "unit/core/Plist.h"

#include "hotkeys/HotKeyController.h"
#include "menubar/MenuBarController.h"
#include "platform/posix/UnistringTextCase.h"
#include "presets/ORVPresetChecker.h"
#include "presets/ORVPresetFile.h"
#include "presets/ORVPresetManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>

namespace orvane {

namespace {

using test::dict;
using test::list;
using test::number;
using test::text;
using test::yes;

using Table = std::map<std::string, std::string>; ///< key to type

/// The tables of the document by their headings; lines of the form "| `key` | type | …".
std::map<std::string, Table> tablesOfReference() {
    std::ifstream file(ORVANE_REFERENCE);
    std::map<std::string, Table> tables;
    std::string heading;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("## ")) {
            heading = line.substr(3);
        } else if (line.starts_with("| `")) {
            const std::size_t keyEnd = line.find('`', 3);
            const std::size_t type = line.find("| ", keyEnd) + 2;
            tables[heading][line.substr(3, keyEnd - 3)] = line.substr(type, line.find(" |", type) - type);
        }
    }
    return tables;
}

std::set<std::string> keysOf(const Table &table) {
    std::set<std::string> keys;
    for (const auto &[key, type] : table) {
        keys.insert(key);
    }
    return keys;
}

std::set<std::string> setOf(std::span<const std::string_view> keys) {
    return {keys.begin(), keys.end()};
}

/// A value of each type that the document names.
const std::map<std::string, PropertyList> &samples() {
    static const std::map<std::string, PropertyList> Samples{
        {"array", list({})}, {"boolean", yes()}, {"dictionary", dict({})}, {"integer", number(7)}, {"string", text("755")}};
    return Samples;
}

class NoResources final : public ORVPresetResources {
public:
    ORVContentState stateOfContent(std::string_view /*name*/) override { return ORVContentState::Usable; }
    ORVScriptState stateOfScript(std::string_view /*name*/) override { return ORVScriptState::Usable; }
};

/// Whether the checker finds the value at that key to be of a wrong type.
bool isWrongType(const PropertyList &preset, std::string_view key) {
    NoResources resources;
    UnistringTextCase textCase;
    return std::ranges::any_of(ORVPresetChecker(resources, textCase).checkPreset(preset.root()), [key](const ORVPresetProblem &problem) {
        return problem.place.key == key && std::string_view(problem.format).starts_with("is %1, not %2");
    });
}

PropertyList presetWith(std::string_view key, const PropertyList &value) {
    return dict({{key, value}});
}

PropertyList nodeWith(std::string_view key, const PropertyList &value) {
    return dict({{"fileHierarchy", dict({{"children", list({dict({{key, value}})})}})}});
}

void expectDocumentedTypes(const Table &table, PropertyList (&make)(std::string_view key, const PropertyList &value)) {
    for (const auto &[key, type] : table) {
        for (const auto &[other, value] : samples()) {
            EXPECT_EQ(isWrongType(make(key, value), key), other != type) << key << " as " << other;
        }
    }
}

TEST(PreferencesReference, NamesEveryKeyOfTheRoot) {
    const std::set<std::string> keys{std::string(ORVPresetsKey), std::string(ORVAutomaticVarsKey), std::string(ORVShowMenubarKey),
                                     std::string(ORVHotKeyCodeKey), std::string(ORVHotKeyFlagsKey)};
    EXPECT_EQ(keysOf(tablesOfReference()["The root"]), keys);
}

TEST(PreferencesReference, NamesEveryKeyOfAPresetAndOfANode) {
    EXPECT_EQ(keysOf(tablesOfReference()["A preset"]), setOf(ORVKnownPresetKeys()));
    EXPECT_EQ(keysOf(tablesOfReference()["A node"]), setOf(ORVKnownNodeKeys()));
}

TEST(PreferencesReference, NamesEveryKeyOfAPresetFile) {
    const std::set<std::string> keys{std::string(ORVPresetFileVersionKey), std::string(ORVPresetKey), std::string(ORVFileContentsKey),
                                     std::string(ORVScriptKey)};
    EXPECT_EQ(keysOf(tablesOfReference()["A preset in a file of its own"]), keys);
}

TEST(PreferencesReference, GivesTheTypesThatAreReadWithoutComplaint) {
    expectDocumentedTypes(tablesOfReference()["A preset"], presetWith);
    expectDocumentedTypes(tablesOfReference()["A node"], nodeWith);
}

} // namespace

} // namespace orvane
