#include "presets/ORVPresetChecker.h"

#include "fakes/FakeFileSystem.h"
#include "fakes/FakeFinderInformation.h"
#include "fakes/FakeTextCase.h"
#include "unit/presetfiles/Presets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

namespace orvane {
namespace {

constexpr const char *Support = "/data/Orvane";

class Checker : public testing::Test {
protected:
    /// The problems of a preset, a line each.
    std::vector<std::string> linesOf(const PropertyListValue &preset, const PropertyListValue &allPresets = {}) {
        ORVStoredResources resources(fileSystem, finderInformation, Support,
                                     [this](const std::string &path, std::size_t bytes) -> std::optional<std::string> {
                                         const FakeNode *node = fileSystem.node(path);
                                         return node == nullptr ? std::nullopt : std::optional(node->contents.substr(0, bytes));
                                     });
        ORVPresetChecker checker(resources, textCase);
        checker.rememberLabels(allPresets);
        problems = checker.checkPreset(preset);
        std::vector<std::string> lines;
        for (const ORVPresetProblem &problem : problems) {
            lines.push_back(ORVTextOfPlace(problem.place, preset) + ": " + ORVNameOfSeverity(problem.severity) + ": " + problem.text());
        }
        return lines;
    }
    /// Expects exactly one problem, whose line starts so.
    void expectOne(const PropertyListValue &preset, const std::string &start) {
        const auto lines = linesOf(preset);
        ASSERT_EQ(lines.size(), 1U) << testing::PrintToString(lines);
        EXPECT_EQ(lines.front().substr(0, start.size()), start);
    }
    /// The same for a preset with that one node.
    void expectOneOfNode(const PropertyListValue &node, const std::string &start) {
        expectOne(plist.preset("Top", {node}), "fileHierarchy/children[0]" + start);
    }

    test::PresetMaker plist;
    FakeFileSystem fileSystem;
    FakeFinderInformation finderInformation;
    FakeTextCase textCase;
    std::vector<ORVPresetProblem> problems;
};

TEST_F(Checker, FindsNothingInASoundPreset) {
    fileSystem.addFile("/data/Orvane/File Content/a.txt");
    fileSystem.addScript("/data/Orvane/Scripts/run.sh", "#!/bin/sh\n");
    fileSystem.addScript("/bin/sh", "\x7f"
                                    "ELF");
    const auto preset = plist.preset("{AutoJob} {Client}",
                                     {plist.folder("{Client} \\{x\\}", {plist.file("b", {{"contentFilename", plist.text("a.txt")},
                                                                                         {"permissions", plist.text("755")},
                                                                                         {"color", plist.text("red")}})})},
                                     {{"scriptFile", plist.text("run.sh")}});
    EXPECT_EQ(linesOf(preset), std::vector<std::string>{});
}

TEST_F(Checker, FindsAPresetThatIsNoDictionary) {
    expectOne(plist.text("x"), ": error: the preset is a string");
}

TEST_F(Checker, FindsAMissingEmptyBlankOrImpossibleFolderName) {
    expectOne(plist.dictionary({{"label", plist.text("L")}}), "directoryName: error: the top-level folder has no name");
    expectOne(plist.preset(""), "directoryName: error: the top-level folder has no name");
    expectOne(plist.preset("  "), "directoryName: warning: the name consists of blanks only");
    expectOne(plist.preset(".."), "directoryName: error: nothing can be named '..'");
}

TEST_F(Checker, FindsTemplatesWhoseScanNeverEnds) {
    expectOne(plist.preset("Job {"), "directoryName: error: the name 'Job {' ends in \"{\"");
    EXPECT_TRUE(problems.front().neverEnds);
    expectOneOfNode(plist.file("{a\\}"), " \"{a\\}\"/filename: error: the name '{a\\}' ends in \"}\" with a backslash");
    EXPECT_TRUE(problems.front().neverEnds);
}

TEST_F(Checker, LetsTemplatesPassThatOnlyLookAsIfTheirScanNeverEnded) {
    EXPECT_TRUE(linesOf(plist.preset("a{")).empty()) << "shorter than any key";
    for (const char *name : {"{ab", "ab\\{", "{ab}\\}", "{}", "a}"}) {
        linesOf(plist.preset(name));
        EXPECT_TRUE(std::none_of(problems.begin(), problems.end(), [](const auto &problem) { return problem.neverEnds; })) << name;
    }
}

TEST_F(Checker, FindsAnUnclosedKey) {
    expectOne(plist.preset("{ab"), "directoryName: warning: a \"{\" in '{ab' has no closing \"}\"");
}

TEST_F(Checker, FindsMissingEmptyBlankAndImpossibleFileNames) {
    expectOneOfNode(plist.dictionary({}), "/filename: error: the name is empty");
    expectOneOfNode(plist.file(""), "/filename: error: the name is empty");
    expectOneOfNode(plist.file("  "), " \"  \"/filename: warning: the name consists of blanks only");
    expectOneOfNode(plist.file("."), " \".\"/filename: error: nothing can be named '.'");
    expectOneOfNode(plist.text("x"), ": error: the item is a string, not a dictionary");
}

TEST_F(Checker, FindsNamesThatAreTooLongWithoutTheirVariables) {
    EXPECT_TRUE(linesOf(plist.preset(std::string(255, 'x'))).empty());
    expectOne(plist.preset(std::string(256, 'x')), "directoryName: error: the name is 256 bytes long");
    EXPECT_TRUE(linesOf(plist.preset("{" + std::string(300, 'v') + "}" + std::string(255, 'x'))).empty());
    expectOne(plist.preset("{v}" + std::string(256, 'x')), "directoryName: error: the name is 256 bytes long without its variables");
}

TEST_F(Checker, FindsControlCharactersAndNUL) {
    expectOne(plist.preset("a\nb"), "directoryName: warning: the name holds a control character");
    expectOne(plist.preset(std::string("a\0b", 3)), "directoryName: error: the name holds a NUL character");
}

TEST_F(Checker, FindsHalvesOfSurrogatePairs) {
    expectOneOfNode(plist.file("a\xED\xA0\xBDz"), " \"a\xED\xA0\xBDz\"/filename: warning: the name holds half of a surrogate pair");
    expectOne(plist.preset("\xED\xB8\x80"), "directoryName: warning: the name holds half of a surrogate pair");
    EXPECT_TRUE(linesOf(plist.preset("\xED\x95\x9C \xF0\x9F\x98\x80", {plist.file("\xED\x9F\xBF")})).empty())
        << "a Korean letter, a face, and the last letter before the surrogates";
}

TEST_F(Checker, NotesSeparatorsInFileNamesAndWarnsOfThemInTheFolderName) {
    expectOneOfNode(plist.file("a/b:c"), " \"a/b:c\"/filename: note: \":\" and \"/\" become \"_\": the name will be 'a_b_c'");
    expectOne(plist.preset("a/b"), "directoryName: warning: \":\" and \"/\" become \"_\": the folder is made as 'a_b'");
}

TEST_F(Checker, FindsKeysWithSeparatorsThatAreNotReplacedInFileNames) {
    const auto lines = linesOf(plist.preset("Top", {plist.file("{a/b}")}));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].find("fileHierarchy/children[0] \"{a/b}\"/filename: warning: the variable 'a/b' is asked for as 'a_b'"), 0U);
    EXPECT_NE(lines[1].find("note: \":\" and \"/\" become"), std::string::npos);
    EXPECT_TRUE(linesOf(plist.preset("{a/b}")).empty()) << "in the folder's name it is replaced";
}

TEST_F(Checker, FindsEscapedKeysThatAreReplacedAllTheSame) {
    expectOneOfNode(plist.folder("{v}", {plist.file("x\\{v\\}")}),
                    " \"{v}\"/children[0] \"x\\{v\\}\"/filename: warning: 'v' is a variable of this preset");
}

TEST_F(Checker, NotesBackslashesThatStayInNamesForWantOfVariables) {
    expectOneOfNode(plist.file("\\{a\\}"), " \"\\{a\\}\"/filename: note: the preset uses no variables");
}

TEST_F(Checker, WarnsOfBackslashesThatAreTakenAwayTwiceFromTheFolderName) {
    expectOne(plist.preset("{v}\\\\\\{"), "directoryName: warning: backslashes before braces");
}

TEST_F(Checker, FindsDuplicateSiblings) {
    const auto content = plist.text("c");
    fileSystem.addFile("/data/Orvane/File Content/c");
    expectOne(plist.preset("T", {plist.folder("a", {}), plist.folder("a", {})}),
              "fileHierarchy/children[1] \"a\"/filename: warning: 'a' is also the name of children[0]: both become one folder");
    expectOne(plist.preset("T", {plist.folder("a", {}), plist.file("a")}),
              "fileHierarchy/children[1] \"a\"/filename: error: 'a' is also the name of children[0]: the creation will fail");
    expectOne(plist.preset("T", {plist.file("a"), plist.folder("a", {})}),
              "fileHierarchy/children[1] \"a\"/filename: error: 'a' is also the name of children[0]: the creation will fail");
    expectOne(plist.preset("T", {plist.file("a", {{"contentFilename", content}}), plist.file("a")}),
              "fileHierarchy/children[1] \"a\"/filename: error: 'a' is also the name of children[0]: they become one empty file");
    expectOne(plist.preset("T", {plist.file("a"), plist.file("a")}), "fileHierarchy/children[1] \"a\"/filename: warning: 'a' is also");
    EXPECT_TRUE(linesOf(plist.preset("T", {plist.folder("a", {plist.file("a")}), plist.file("b")})).empty());
}

TEST_F(Checker, ComparesSiblingsAsTheyWillBeNamed) {
    const auto lines = linesOf(plist.preset("T", {plist.file("a_b"), plist.file("a/b")}));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_NE(lines[1].find("warning: 'a_b' is also the name of children[0]"), std::string::npos);
}

TEST_F(Checker, WarnsOfSiblingsThatDifferOnlyInCase) {
    expectOne(plist.preset("T", {plist.file("É"), plist.file("é")}),
              "fileHierarchy/children[1] \"é\"/filename: warning: the name differs only in case from that of children[0]");
}

TEST_F(Checker, FindsWrongTypesAtEveryKey) {
    const auto number = PropertyListValue::ofInteger(7);
    const auto list = plist.list({});
    const auto soundPreset = [&](test::PresetMaker::Entries entries) {
        for (const char *key : {"label", "directoryName"}) {
            if (std::none_of(entries.begin(), entries.end(), [&](const auto &entry) { return entry.key == key; })) {
                entries.push_back({key, plist.text("x")});
            }
        }
        return plist.dictionary(entries);
    };
    expectOne(soundPreset({{"label", number}}), "label: warning: is an integer, not a string: it is read as '7'");
    expectOne(soundPreset({{"directoryName", number}}), "directoryName: warning: is an integer");
    expectOne(soundPreset({{"fileHierarchy", list}}), "fileHierarchy: error: is an array, not a dictionary");
    expectOne(soundPreset({{"scriptFile", list}}), "scriptFile: error: is an array, not a string: it counts as absent");
    expectOne(soundPreset({{"fileHierarchy", plist.dictionary({{"children", number}})}}),
              "fileHierarchy/children: error: is an integer, not an array");
    expectOneOfNode(plist.dictionary({{"filename", number}}), " \"7\"/filename: warning: is an integer");
    expectOneOfNode(plist.file("f", {{"isFolder", plist.text("YES")}}),
                    " \"f\"/isFolder: warning: is a string, not a boolean: it is read as 'true'");
    expectOneOfNode(plist.file("f", {{"isFolder", list}}), " \"f\"/isFolder: warning: is an array, not a boolean: it is read as 'false'");
    expectOneOfNode(plist.file("f", {{"children", plist.text("x")}}), " \"f\"/children: error: is a string, not an array");
    expectOneOfNode(plist.file("f", {{"color", list}}), " \"f\"/color: error: is an array");
    expectOneOfNode(plist.file("f", {{"permissions", PropertyListValue::ofInteger(755)}}), " \"f\"/permissions: warning: is an integer");
    expectOneOfNode(plist.file("f", {{"contentFilename", list}}), " \"f\"/contentFilename: error: is an array");
}

TEST_F(Checker, FindsUnknownColors) {
    expectOneOfNode(plist.file("f", {{"color", plist.text("Red")}}), " \"f\"/color: warning: 'Red' is no label colour");
    EXPECT_TRUE(linesOf(plist.preset("T", {plist.file("f", {{"color", plist.text("")}})})).empty());
}

TEST_F(Checker, FindsPermissionsThatAreNotThreeOctalDigits) {
    expectOneOfNode(plist.file("f", {{"permissions", plist.text("0755")}}), " \"f\"/permissions: warning: '0755' is not three digits long");
    expectOneOfNode(plist.file("f", {{"permissions", plist.text("7a5")}}),
                    " \"f\"/permissions: warning: '7a5' is not three octal digits: the mode will be 007");
    expectOneOfNode(plist.file("f", {{"permissions", plist.text("999")}}),
                    " \"f\"/permissions: warning: '999' is not three octal digits: the mode will be 000");
}

TEST_F(Checker, FindsContentFilesThatCannotBeUsed) {
    const std::string store = "/data/Orvane/File Content/";
    fileSystem.addFile(store + "secret").readable = false;
    fileSystem.addLink(store + "dangling", "nowhere");
    finderInformation.addItem(store + "dangling");
    fileSystem.addFolder(store + "folder");
    fileSystem.addLink(store + "tofolder", "folder");
    fileSystem.addSpecial(store + "fifo");
    const auto expectContent = [&](const char *name, const std::string &text) {
        expectOneOfNode(plist.file("f", {{"contentFilename", plist.text(name)}}), " \"f\"/contentFilename: error: " + text);
    };
    expectContent("missing", "there is no content file 'missing'");
    expectContent("secret", "the content file 'secret' is not readable");
    expectContent("dangling", "the content file 'dangling' is a link that leads nowhere");
    expectContent("tofolder", "the content file 'tofolder' is a link to a folder");
    expectContent("fifo", "the content file 'fifo' is not readable, or no ordinary file");
    EXPECT_TRUE(linesOf(plist.preset("T", {plist.file("f", {{"contentFilename", plist.text("folder")}})})).empty());
}

TEST_F(Checker, FindsNamesThatClashWithAFolderThatIsCopied) {
    fileSystem.addFolder("/data/Orvane/File Content/tree");
    fileSystem.addFile("/data/Orvane/File Content/letter");
    const auto copied = plist.file("a", {{"contentFilename", plist.text("tree")}});
    const auto filled = plist.file("a", {{"contentFilename", plist.text("letter")}});
    const auto lineOf = [&](const PropertyListValue &first, const PropertyListValue &second) {
        const auto lines = linesOf(plist.preset("T", {first, second}));
        return lines.size() == 1 ? lines.front().substr(lines.front().find(": ") + 2) : testing::PrintToString(lines);
    };
    const std::string also = "'a' is also the name of children[0]";
    EXPECT_EQ(lineOf(copied, plist.folder("a", {})),
              "warning: " + also + ", a folder that is copied: both become one folder, in which a file that both hold is empty");
    for (const PropertyListValue &second : {plist.file("a"), filled, copied}) {
        EXPECT_EQ(lineOf(copied, second), "error: " + also + ": the creation will fail");
    }
    EXPECT_EQ(lineOf(plist.folder("a", {}), copied), "error: " + also + ": the creation will fail");
    for (const PropertyListValue &first : {plist.file("a"), filled}) {
        EXPECT_EQ(lineOf(first, copied), "error: " + also + ": they become one empty file");
    }
}

TEST_F(Checker, WarnsOfContentNamesThatArePaths) {
    fileSystem.addFile("/data/Orvane/File Content/a/b");
    fileSystem.addFile("/data/Orvane/x");
    expectOneOfNode(plist.file("f", {{"contentFilename", plist.text("a/b")}}), " \"f\"/contentFilename: warning: 'a/b' is a path");
    expectOneOfNode(plist.file("f", {{"contentFilename", plist.text("../x")}}), " \"f\"/contentFilename: warning: '../x' leads out");
}

TEST_F(Checker, FindsContentsOfFoldersAndChildrenOfFiles) {
    expectOneOfNode(plist.folder("f", {}, {{"contentFilename", plist.text("x")}}),
                    " \"f\"/contentFilename: warning: a folder takes no content file");
    expectOneOfNode(plist.file("f", {{"children", plist.list({plist.file("g"), plist.file("h")})}}),
                    " \"f\"/children: error: a file has no contents of its own: 2 items will not be made");
}

TEST_F(Checker, FindsScriptsThatCannotRun) {
    const std::string scripts = "/data/Orvane/Scripts/";
    fileSystem.addFile(scripts + "plain", "#!/bin/sh\n");
    fileSystem.addScript(scripts + "text", "echo\n");
    fileSystem.addScript(scripts + "lost", "#! /no/such -x\n");
    fileSystem.addScript(scripts + "elf", "\x7f"
                                          "ELF...");
    fileSystem.addFolder(scripts + "folder");
    const auto withScript = [&](const char *name) { return plist.preset("T", {}, {{"scriptFile", plist.text(name)}}); };
    expectOne(withScript("missing"), "scriptFile: error: there is no script 'missing'");
    expectOne(withScript("plain"), "scriptFile: error: the script 'plain' is not executable");
    expectOne(withScript("text"), "scriptFile: warning: the script 'text' starts neither");
    expectOne(withScript("lost"), "scriptFile: error: the interpreter in the first line of the script 'lost'");
    expectOne(withScript("folder"), "scriptFile: error: 'folder' is a folder");
    EXPECT_TRUE(linesOf(withScript("elf")).empty());
    EXPECT_TRUE(linesOf(withScript("")).empty());
}

TEST_F(Checker, FindsMissingEmptyAndDuplicateLabels) {
    expectOne(plist.dictionary({{"directoryName", plist.text("T")}}), "label: warning: the preset has no label");
    expectOne(plist.dictionary({{"label", plist.text("")}, {"directoryName", plist.text("T")}}), "label: warning: the label is empty");
    const auto preset = plist.preset("T");
    EXPECT_TRUE(linesOf(preset, plist.list({preset})).empty());
    EXPECT_EQ(linesOf(preset, plist.list({preset, preset})), std::vector<std::string>{"label: warning: 2 presets have the label 'Label'"});
}

TEST_F(Checker, NotesUnknownKeysAtEveryLevel) {
    expectOne(plist.preset("T", {}, {{"x", plist.text("")}}), "x: note: the key 'x' is not known");
    expectOneOfNode(plist.file("f", {{"Color", plist.text("")}}), " \"f\"/Color: note: the key 'Color' is not known");
}

TEST_F(Checker, WarnsOfVariablesThatDifferOnlyInCase) {
    expectOne(plist.preset("{Job}", {plist.file("{job}")}),
              "fileHierarchy/children[0] \"{job}\"/filename: warning: the variables 'Job' and 'job' differ only in case and are two");
}

TEST_F(Checker, WarnsOfVariablesThatTheScriptCannotTellApart) {
    fileSystem.addScript("/data/Orvane/Scripts/s", "\x7f"
                                                   "ELF");
    const auto tree = std::vector<PropertyListValue>{plist.file("{job no}{job_no}")};
    expectOne(plist.preset("T", tree, {{"scriptFile", plist.text("s")}}),
              "fileHierarchy/children[0] \"{job no}{job_no}\"/filename: warning: the variables 'job no' and 'job_no' both reach the script "
              "as P_JOB_NO");
    EXPECT_TRUE(linesOf(plist.preset("T", tree)).empty()) << "without a script nobody cares";
}

TEST_F(Checker, StandsDeepAndWideTreesInLinearTime) {
    PropertyListValue chain = plist.file("leaf");
    for (int i = 0; i < 5000; ++i) {
        chain = plist.folder("d", {chain});
    }
    std::vector<PropertyListValue> wide{chain};
    for (int i = 0; i < 100000; ++i) {
        wide.push_back(plist.file("f" + std::to_string(i)));
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(linesOf(plist.preset("T", wide)).empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

TEST_F(Checker, GivesUpOnTreesThatShareTheirBranchesEndlessly) {
    PropertyListValue node = plist.file("leaf");
    for (int i = 0; i < 64; ++i) {
        node = plist.folder("d" + std::to_string(i), {node, node});
    }
    expectOne(plist.preset("T", {node}), "fileHierarchy: error: the tree has more than 2000000 items");
    EXPECT_TRUE(problems.front().neverEnds);
}

TEST_F(Checker, OpensNoMoreContentFilesAtATimeThanThereAreDescriptorsFor) {
    std::vector<PropertyListValue> files;
    for (int i = 0; i < 1000; ++i) {
        fileSystem.addFile("/data/Orvane/File Content/c" + std::to_string(i));
        files.push_back(plist.file("f" + std::to_string(i), {{"contentFilename", plist.text("c" + std::to_string(i))}}));
    }
    EXPECT_TRUE(linesOf(plist.preset("T", files)).empty());
    EXPECT_GE(fileSystem.calls("forgetContents").size(), 7U);
}

} // namespace
} // namespace orvane
