#include "presets/ORVImportedNames.h"

#include "presets/ORVNameTemplate.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include "unit/core/Desk.h"
#include "unit/presetfiles/Presets.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace orvane {
namespace {

/// The engine itself, to compare with.
class ImportedNames : public testing::Test {
protected:
    const ORVPresetManager &engine() const { return *_desk.manager; }

    /// Names that the engine gives for the templates, each row filled by the function.
    template <typename Value> std::vector<std::string> made(const std::vector<std::string> &templates, const Value &valueOf) {
        test::PresetMaker plist;
        std::vector<PropertyListValue> children;
        for (std::size_t i = 1; i < templates.size(); ++i) {
            children.push_back(plist.file(templates[i]));
        }
        std::vector<PromptValueRow> rows;
        for (const std::string &name : engine().variableNamesOfPreset(plist.preset(templates[0], children))) {
            rows.push_back({name, valueOf(name)});
        }
        variables = rows.size();
        std::vector<std::string> names;
        for (std::size_t i = 0; i < templates.size(); ++i) {
            std::string name = engine().replaceBracketedKeysReplace(templates[i], rows);
            if (i == 0) { // as the driver does: the finished name passes through once more
                name = engine().replaceBracketedKeysReplace(name, rows);
            }
            names.push_back(ORVPresetManager::cleanFilesystemEntities(name));
        }
        return names;
    }
    static std::string nothing(const std::string &) { return ""; }

    std::size_t variables = 0;

private:
    test::Desk _desk;
};

std::string randomName(std::mt19937 &random, std::string_view alphabet, std::size_t longest) {
    std::string name;
    for (std::size_t length = 1 + random() % longest; length > 0; --length) {
        name += alphabet[random() % alphabet.size()];
    }
    return name;
}

TEST_F(ImportedNames, AreTheirOwnTemplatesWhereNothingLooksLikeAVariable) {
    const std::vector<std::string> names{"Top", "a}b", "{unclosed", "\\{a\\}", "plain", "a{"};
    const auto imported = ORVImportNames(names, {});
    EXPECT_EQ(imported.templates, names);
    EXPECT_TRUE(imported.problems.empty());
}

TEST_F(ImportedNames, GetAVariableWhereNamesWithKeysWouldAskForThem) {
    const std::vector<std::string> names{"Top", "{a}", "ab{", "x\\{b}", "{y\\}"};
    const auto imported = ORVImportNames(names, {});
    EXPECT_EQ(imported.templates[0], "Top{Suffix}");
    ASSERT_EQ(imported.problems.size(), 1U);
    EXPECT_EQ(imported.problems[0].arguments, std::vector<std::string>{"Suffix"});
    EXPECT_EQ(made(imported.templates, nothing), names);
    EXPECT_EQ(variables, 1U);
}

TEST_F(ImportedNames, NameTheAddedVariableLikeNothingThatIsThere) {
    const std::vector<std::string> names{"{Suffix}", "x"};
    const auto imported = ORVImportNames(names, {});
    EXPECT_EQ(imported.templates[0], "\\{Suffix\\}{Suffix 2}");
    EXPECT_EQ(made(imported.templates, nothing), names);
}

TEST_F(ImportedNames, TakeTheAddedVariableInFrontWhereABackslashIsLast) {
    const std::vector<std::string> names{"Top\\", "{a}"};
    const auto imported = ORVImportNames(names, {});
    EXPECT_EQ(imported.templates[0], "{Prefix}Top\\");
    EXPECT_EQ(made(imported.templates, nothing), names);
}

TEST_F(ImportedNames, TurnTextsIntoVariablesLongestFirst) {
    const auto imported = ORVImportNames({"Acme Ltd", "Acme", "{Acme}"}, {{"Acme", "Client"}, {"Acme Ltd", "Company"}});
    EXPECT_EQ(imported.templates, (std::vector<std::string>{"{Company}", "{Client}", "\\{{Client}\\}"}));
    EXPECT_TRUE(imported.problems.empty());
}

TEST_F(ImportedNames, NeverTurnTextsInsideOfVariables) {
    const auto imported = ORVImportNames({"Acme", "Client"}, {{"Acme", "Client"}, {"Client", "Name"}});
    EXPECT_EQ(imported.templates, (std::vector<std::string>{"{Client}", "{Name}"}));
}

TEST_F(ImportedNames, DoubleTheBackslashBeforeAVariable) {
    const auto imported = ORVImportNames({"Acme", "x\\Acme"}, {{"Acme", "Client"}});
    EXPECT_EQ(imported.templates[1], "x\\\\{Client}");
    EXPECT_TRUE(imported.problems.empty());
    EXPECT_EQ(made(imported.templates, [](const std::string &) { return "New"; }), (std::vector<std::string>{"New", "x\\New"}));
}

TEST_F(ImportedNames, KeepTextsThatStandBehindBackslashesOnly) {
    const std::vector<std::string> names{"Top", "x\\Acme"};
    const auto imported = ORVImportNames(names, {{"Acme", "Client"}});
    EXPECT_EQ(imported.templates, names);
    EXPECT_EQ(imported.problems.size(), 1U);
}

TEST_F(ImportedNames, SayWhichCannotBeGivenBack) {
    const auto imported = ORVImportNames({"Acme", "{Client}", "a:b"}, {{"Acme", "Client"}});
    ASSERT_EQ(imported.problems.size(), 2U);
    EXPECT_EQ(imported.problems[0].name, 1U);
    EXPECT_EQ(imported.problems[0].arguments, (std::vector<std::string>{"{Client}", "Acme"}));
    EXPECT_EQ(imported.problems[1].arguments, (std::vector<std::string>{"a:b", "a_b"}));
}

TEST_F(ImportedNames, SayWhenTheFolderIsMadeUnderAnotherNameThanItIsOpened) {
    const auto imported = ORVImportNames({"a\\{", "Acme"}, {{"Acme", "Client"}});
    ASSERT_EQ(imported.problems.size(), 1U);
    EXPECT_EQ(imported.problems[0].name, 0U);
    EXPECT_EQ(made(imported.templates, [](const std::string &) { return "Acme"; }), (std::vector<std::string>{"a\\{", "Acme"}));
}

TEST_F(ImportedNames, ComeBackExactlyWhateverTheyHold) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 5000; ++round) {
        std::vector<std::string> names;
        for (std::size_t count = 1 + random() % 4; count > 0; --count) {
            names.push_back(randomName(random, "{}\\ax", 7));
        }
        const auto imported = ORVImportNames(names, {});
        for (const std::string &each : imported.templates) {
            ASSERT_TRUE(ORVPresetManager::scanEnds(each)) << each;
        }
        ASSERT_EQ(made(imported.templates, nothing), names) << testing::PrintToString(imported.templates);
    }
}

TEST_F(ImportedNames, ComeBackExactlyWithVariablesOrAreTold) {
    std::mt19937 random(7062024);
    int exact = 0;
    for (int round = 0; round < 5000; ++round) {
        std::vector<std::string> names;
        for (std::size_t count = 1 + random() % 4; count > 0; --count) {
            names.push_back(randomName(random, "{}\\ABx", 7));
        }
        const auto imported = ORVImportNames(names, {{"A", "x"}, {"B", "y"}});
        for (const std::string &each : imported.templates) {
            ASSERT_TRUE(ORVPresetManager::scanEnds(each)) << each;
        }
        const auto result = made(imported.templates, [](const std::string &name) { return name == "x" ? "A" : name == "y" ? "B" : ""; });
        for (std::size_t i = 0; i < names.size(); ++i) {
            bool isTold = false;
            for (const ORVImportedNameProblem &problem : imported.problems) {
                isTold = isTold || (problem.name == i && problem.arguments.size() == 2);
            }
            ASSERT_TRUE(isTold || result[i] == names[i]) << names[i] << " as " << imported.templates[i] << " gave " << result[i];
            exact += result[i] == names[i] ? 1 : 0;
        }
    }
    EXPECT_GT(exact, 10000) << "nearly all";
}

TEST_F(ImportedNames, AreScannedAsTheEngineDoes) {
    std::mt19937 random(42);
    for (int round = 0; round < 5000; ++round) {
        const std::string text = randomName(random, "{}\\a\xC3\xA9", 9);
        const ORVTemplateScan scan = ORVScanTemplate(text);
        ASSERT_EQ(scan.ending == ORVScanEnding::Ends, ORVPresetManager::scanEnds(text)) << text;
        if (scan.ending == ORVScanEnding::Ends) {
            std::vector<std::string> names;
            for (const ORVTemplateKey &key : scan.keys) {
                names.push_back(key.name);
            }
            ASSERT_EQ(names, engine().findBracketedKeys(text)) << text;
        }
        const std::vector<PromptValueRow> rows{{"a", "1"}, {"a{", "{a}"}, {"\xC3", "x"}};
        ASSERT_EQ(ORVFillTemplate(text, rows), engine().replaceBracketedKeysReplace(text, rows)) << text;
        ASSERT_EQ(ORVUnescapeBraces(ORVEscapeBraces(text)), text);
    }
}

TEST_F(ImportedNames, RefuseVariableNamesThatWouldNotWork) {
    for (const char *name : {"", "a{", "}", "a\\", "a:b", "a/b"}) {
        EXPECT_FALSE(ORVIsVariableName(name)) << name;
    }
    EXPECT_TRUE(ORVIsVariableName("Job no 1"));
}

} // namespace
} // namespace orvane
