#include "PosixSupportFolder.h"

#include "TemporaryFolder.h"

#include "platform/posix/PosixFinderInformation.h"
#include "presets/ORVPropertyListReading.h"
#include "unit/presetfiles/Presets.h"

#include <cerrno>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

bool diskFails = false;

} // namespace

/// In place of the C library's.
extern "C" int syncfs(int file) noexcept {
    if (diskFails) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_syncfs, file));
}

namespace orvane {
namespace {

class Contents : public testing::Test {
protected:
    test::TemporaryFolder folder;
    PosixFinderInformation finderInformation;
    PosixSupportFolder store{folder / "Orvane", finderInformation};
    test::PresetMaker make;
    Sentence problem;
};

TEST_F(Contents, CopiesAContentFileIntoTheStore) {
    EXPECT_EQ(store.addContent(folder.write("in/brief.txt", "text", 0640), problem), "brief.txt");
    EXPECT_EQ(folder.read("Orvane/File Content/brief.txt"), "text");
    EXPECT_EQ(folder.mode("Orvane/File Content/brief.txt"), 0640U);
    EXPECT_EQ(store.pathOfContent("brief.txt"), folder / "Orvane/File Content/brief.txt");
}

TEST_F(Contents, OtherContentsOfTheSameNameGetAFreeOneAndEqualOnesAreUsed) {
    const std::string file = folder.write("in/brief.txt", "first");
    EXPECT_EQ(store.addContent(file, problem), "brief.txt");
    EXPECT_EQ(store.addContent(file, problem), "brief.txt");
    folder.write("in/brief.txt", "second");
    EXPECT_EQ(store.addContent(file, problem), "brief 2.txt");
    EXPECT_EQ(folder.read("Orvane/File Content/brief.txt"), "first");
    EXPECT_EQ(folder.count("Orvane/File Content"), 2U);
}

TEST_F(Contents, AFileThatIsInTheStoreIsUsedAsItIs) {
    const std::string file = folder.write("Orvane/File Content/brief.txt", "text");
    EXPECT_EQ(store.addContent(file, problem), "brief.txt");
    EXPECT_EQ(folder.count("Orvane/File Content"), 1U);
}

TEST_F(Contents, AScriptBecomesExecutableForWhoCanReadIt) {
    EXPECT_EQ(store.addScript(folder.write("in/run.sh", "#!/bin/sh\n", 0640), problem), "run.sh");
    EXPECT_EQ(folder.mode("Orvane/Scripts/run.sh"), 0750U);
    EXPECT_EQ(folder.mode("in/run.sh"), 0640U);
    EXPECT_EQ(store.pathOfScript("run.sh"), folder / "Orvane/Scripts/run.sh");
}

TEST_F(Contents, AScriptThatIsThereAlreadyIsMadeExecutableInItsPlace) {
    const std::string file = folder.write("Orvane/Scripts/run.sh", "#!/bin/sh\n", 0644);
    EXPECT_EQ(store.addScript(file, problem), "run.sh");
    EXPECT_EQ(folder.mode("Orvane/Scripts/run.sh"), 0755U);
    EXPECT_EQ(folder.count("Orvane/Scripts"), 1U);
}

TEST_F(Contents, WhatIsNoFileIsRefusedAndLeavesNothing) {
    std::filesystem::create_directories(folder / "in/dir");
    ASSERT_EQ(::mkfifo((folder / "in/fifo").c_str(), 0600), 0);
    for (const char *name : {"in/dir", "in/fifo", "in/none"}) {
        problem = {};
        EXPECT_EQ(store.addContent(folder / name, problem), std::nullopt) << name;
        EXPECT_FALSE(problem.isEmpty()) << name;
    }
    EXPECT_FALSE(folder.has("Orvane"));
}

TEST_F(Contents, ImportsAFolderWithItsContents) {
    folder.write("Film Acme/notes.txt", "text");
    folder.write("Film Acme/Raw/empty.txt", "");
    const auto incoming = store.importFolder({folder / "Film Acme", "", {{"Acme", "Client"}}, true}, problem);
    ASSERT_TRUE(incoming.has_value()) << problem.english();
    const PropertyListValue &preset = incoming->preset.root();
    EXPECT_EQ(ORVTextValue(preset.find("label")), "Film Acme");
    EXPECT_EQ(ORVTextValue(preset.find("directoryName")), "Film {Client}");
    EXPECT_EQ(preset.find("fileHierarchy")->find("children")->array().size(), 2U);
    EXPECT_EQ(folder.read("Orvane/File Content/notes.txt"), "text");
    EXPECT_TRUE(incoming->warnings.empty());
}

TEST_F(Contents, AnImportWithoutContentsStoresNothing) {
    folder.write("Film/notes.txt", "text");
    const auto incoming = store.importFolder({folder / "Film", "Label"}, problem);
    ASSERT_TRUE(incoming.has_value());
    EXPECT_EQ(ORVTextValue(incoming->preset.root().find("label")), "Label");
    EXPECT_FALSE(folder.has("Orvane"));
    EXPECT_EQ(store.importFolder({folder / "none", ""}, problem), std::nullopt);
}

TEST_F(Contents, APresetGoesThroughAFileToAnotherStore) {
    folder.write("Orvane/File Content/a.txt", "contents", 0600);
    folder.write("Orvane/Scripts/run.sh", "#!/bin/sh\n", 0755);
    const auto preset = make.document(
        make.preset("{A}", {make.file("x", {{"contentFilename", make.text("a.txt")}})}, {{"scriptFile", make.text("run.sh")}}));
    std::vector<Sentence> warnings;
    ASSERT_TRUE(store.writePresetFile(preset, folder / "out.orvpreset", false, warnings, problem)) << problem.english();
    EXPECT_TRUE(warnings.empty());
    folder.write("Other/File Content/a.txt", "something else");
    PosixSupportFolder other(folder / "Other", finderInformation);
    const auto incoming = other.readPresetFile(folder / "out.orvpreset", problem);
    ASSERT_TRUE(incoming.has_value()) << problem.english();
    EXPECT_EQ(incoming->script, "run.sh");
    const PropertyListValue &node = incoming->preset.root().find("fileHierarchy")->find("children")->array()[0];
    EXPECT_EQ(ORVTextValue(node.find("contentFilename")), "a 2.txt");
    EXPECT_EQ(folder.read("Other/File Content/a 2.txt"), "contents");
    EXPECT_EQ(folder.read("Other/File Content/a.txt"), "something else");
    EXPECT_EQ(folder.mode("Other/Scripts/run.sh"), 0755U);
}

TEST_F(Contents, WhatDoesNotReachTheDiskIsRefusedAndLeavesNothing) {
    folder.write("Film/notes.txt", "text");
    const std::string file = folder.write("in/brief.txt", "text");
    folder.write("Orvane/File Content/a.txt", "contents");
    const auto preset = make.document(make.preset("{A}", {make.file("x", {{"contentFilename", make.text("a.txt")}})}));
    std::vector<Sentence> warnings;
    ASSERT_TRUE(store.writePresetFile(preset, folder / "out.orvpreset", false, warnings, problem)) << problem.english();
    PosixSupportFolder other(folder / "Other", finderInformation);
    diskFails = true;
    EXPECT_EQ(other.addContent(file, problem), std::nullopt);
    EXPECT_EQ(std::exchange(problem, {}).english(), "Input/output error");
    EXPECT_EQ(other.addScript(file, problem), std::nullopt);
    EXPECT_EQ(std::exchange(problem, {}).english(), "Input/output error");
    EXPECT_EQ(other.importFolder({folder / "Film", "", {}, true}, problem), std::nullopt);
    EXPECT_EQ(std::exchange(problem, {}).english(), "Input/output error");
    EXPECT_EQ(other.readPresetFile(folder / "out.orvpreset", problem), std::nullopt);
    EXPECT_EQ(problem.english(), folder / "Other: Input/output error");
    diskFails = false;
    EXPECT_FALSE(folder.has("Other"));
}

TEST_F(Contents, AnExportReplacesAFileOnlyWhenAsked) {
    const auto preset = make.document(make.preset("{A}"));
    std::vector<Sentence> warnings;
    folder.write("out", "mine");
    EXPECT_FALSE(store.writePresetFile(preset, folder / "out", false, warnings, problem));
    EXPECT_EQ(folder.read("out"), "mine");
    EXPECT_TRUE(store.writePresetFile(preset, folder / "out", true, warnings, problem));
    EXPECT_NE(folder.read("out"), "mine");
    EXPECT_FALSE(store.writePresetFile(preset, folder.path(), true, warnings, problem));
}

TEST_F(Contents, WhatIsMissingInAnExportIsWarnedOf) {
    const auto preset = make.document(make.preset("{A}", {make.file("x", {{"contentFilename", make.text("gone")}})}));
    std::vector<Sentence> warnings;
    EXPECT_TRUE(store.writePresetFile(preset, folder / "out", false, warnings, problem));
    EXPECT_EQ(warnings.size(), 1U);
}

TEST_F(Contents, WhatIsNoPresetFileIsRefusedAndLeavesNothing) {
    folder.write("odd", "odd");
    EXPECT_EQ(store.readPresetFile(folder / "odd", problem), std::nullopt);
    EXPECT_FALSE(problem.isEmpty());
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    EXPECT_EQ(store.readPresetFile(folder / "fifo", problem), std::nullopt); // and nobody waits for it
    EXPECT_EQ(problem.english(), "it is no ordinary file");
    EXPECT_EQ(store.readPresetFile(folder / "none", problem), std::nullopt);
    EXPECT_FALSE(folder.has("Orvane"));
}

} // namespace
} // namespace orvane
