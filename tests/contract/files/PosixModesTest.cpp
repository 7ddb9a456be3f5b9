#include "FilesTestSupport.h"

#include <gtest/gtest.h>

#include <string>

#include <fcntl.h>

// Modes come out exactly as asked for, whatever the umask, the parent folder's bits and its access control list add.

namespace orvane::testing {

namespace {

/// Makes folders and files with every kind of mode below `base`; "" when all have them exactly.
std::string exactModes(const std::string &base, const std::string &content) {
    constexpr unsigned modes[] = {0000, 0007, 0070, 0111, 0400, 0444, 0555, 0640, 0644,
                                  0660, 0664, 0666, 0700, 0750, 0755, 0770, 0775, 0777};
    PosixFileSystem files;
    auto writer = files.beginHierarchy(base);
    if (!writer || !writer->enterFolder("top") || !writer->enterFolder("inner")) {
        return "cannot begin";
    }
    for (const unsigned mode : modes) {
        for (const int label : {0, 4}) {
            const std::string name = std::to_string(mode) + "-" + std::to_string(label);
            if (!writer->makeEmptyFile("e" + name, {label, mode}) ||
                !writer->copyItem("c" + name, *files.contentSource(content), {label, mode}) || !writer->enterFolder("d" + name)) {
                return "cannot make " + name;
            }
            writer->leaveFolder({label, mode});
            for (const char *kind : {"e", "c", "d"}) {
                const std::string path = base + "/top/inner/" + kind + name;
                if (modeOf(path) != mode) {
                    return path + " has " + std::to_string(modeOf(path));
                }
                if (label != 0 && isRoot() && attributeOf(path, "user.xdg.tags") != "Blue") {
                    return path + " has no label";
                }
            }
        }
    }
    if (!writer->copyItem("plain", *files.contentSource(content), {}) || modeOf(base + "/top/inner/plain") != 0644) {
        return "a copy has another mode than its source";
    }
    writer->leaveFolder({0, 0750});
    writer->leaveFolder({0, 0705});
    if (modeOf(base + "/top/inner") != 0750 || modeOf(base + "/top") != 0705) {
        return "folders around have other modes";
    }
    writer->removeEverythingMade();
    return isThere(base + "/top") ? "not removed" : "";
}

class PosixModes : public ::testing::TestWithParam<mode_t> {
protected:
    void SetUp() override {
        putFolder(folder / "base", 0777);
        putFile(folder / "content", "bytes", 0644);
    }
    std::string exact() {
        return asOrdinaryUser([&] {
            ::umask(GetParam());
            return exactModes(folder / "base", folder / "content");
        });
    }

    const TemporaryFolder folder;
};

} // namespace

TEST_P(PosixModes, AreExactInAnOrdinaryFolder) {
    EXPECT_EQ(exact(), "");
}

TEST_P(PosixModes, AreExactForRoot) {
    EXPECT_EQ(inChild([&] {
                  ::umask(GetParam());
                  return exactModes(folder / "base", folder / "content");
              }),
              "");
}

TEST_P(PosixModes, AreExactInASetGroupIDFolder) {
    ASSERT_EQ(::chmod((folder / "base").c_str(), 02777), 0);
    EXPECT_EQ(exact(), "");
}

TEST_P(PosixModes, AreExactUnderADefaultACL) {
    ASSERT_EQ(run("setfacl -d -m u::rwx,g::r-x,o::---,u:1:rwx '" + folder.path() + "/base'"), 0);
    EXPECT_EQ(exact(), "");
}

INSTANTIATE_TEST_SUITE_P(Umask, PosixModes, ::testing::Values(0000, 0002, 0022, 0027, 0077, 0477));

TEST(PosixModesTest, WithoutAModeTheUmaskDecides) {
    const TemporaryFolder folder;
    for (const mode_t umask : {0000U, 0027U}) {
        putFolder(folder / std::to_string(umask));
        EXPECT_EQ(inChild([&]() -> std::string {
                      ::umask(umask);
                      PosixFileSystem files;
                      auto writer = files.beginHierarchy(folder / std::to_string(umask));
                      if (!writer->enterFolder("d") || !writer->makeEmptyFile("e", {}) || !writer->makeEmptyFile("l", {1, {}})) {
                          return "cannot make";
                      }
                      writer->leaveFolder({});
                      return "";
                  }),
                  "");
        EXPECT_EQ(modeOf(folder / (std::to_string(umask) + "/d")), 0777U & ~umask);
        EXPECT_EQ(modeOf(folder / (std::to_string(umask) + "/d/e")), 0666U & ~umask);
        EXPECT_EQ(modeOf(folder / (std::to_string(umask) + "/d/l")), 0666U & ~umask);
    }
}

TEST(PosixModesTest, ACopiedFolderIsWholeUnderAnyUmask) {
    const TemporaryFolder folder;
    putFolder(folder / "store");
    putFolder(folder / "store/inner", 0775);
    putFile(folder / "store/inner/file", "bytes", 0664);
    putFolder(folder / "store/inner/closed", 0555);
    setAttribute(folder / "store/inner", "user.note", "kept");
    const timespec longAgo[] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "store/inner").c_str(), longAgo, 0), 0);
    for (const mode_t umask : {0400U, 0477U, 0277U, 0177U, 0777U}) {
        const std::string work = folder / std::to_string(umask);
        putFolder(work, 0777);
        ASSERT_EQ(asOrdinaryUser([&]() -> std::string {
                      ::umask(umask);
                      PosixFileSystem files;
                      auto writer = files.beginHierarchy(work);
                      return writer->copyItem("copy", *files.contentSource(folder / "store"), {}) ? "" : "not copied";
                  }),
                  "")
            << std::oct << umask;
        EXPECT_EQ(modeOf(work + "/copy"), 0755U) << std::oct << umask;
        EXPECT_EQ(modeOf(work + "/copy/inner"), 0775U) << std::oct << umask;
        EXPECT_EQ(modeOf(work + "/copy/inner/file"), 0664U) << std::oct << umask;
        EXPECT_EQ(modeOf(work + "/copy/inner/closed"), 0555U) << std::oct << umask;
        EXPECT_EQ(contentsOf(work + "/copy/inner/file"), "bytes") << std::oct << umask;
        EXPECT_EQ(attributeOf(work + "/copy/inner", "user.note"), "kept") << std::oct << umask;
        EXPECT_EQ(stateOf(work + "/copy/inner").st_mtim.tv_sec, longAgo[1].tv_sec) << std::oct << umask;
    }
}

TEST(PosixModesTest, TheUpperThreeBitsCanBeGiven) {
    const TemporaryFolder folder;
    PosixFileSystem files;
    auto writer = files.beginHierarchy(folder.path());
    ASSERT_TRUE(writer->enterFolder("d"));
    ASSERT_TRUE(writer->makeEmptyFile("e", {0, 06755}));
    writer->leaveFolder({0, 01777});
    EXPECT_EQ(modeOf(folder / "d"), 01777U);
    EXPECT_EQ(modeOf(folder / "d/e"), 06755U);
}

TEST(PosixModesTest, AskingForTheUmaskLeavesItAsItWas) {
    const mode_t before = ::umask(0027);
    const mode_t told = umaskOfSingleThread();
    const mode_t after = ::umask(before);
    EXPECT_EQ(told, 0027U);
    EXPECT_EQ(after, 0027U);
}

TEST(PosixModesTest, AReadOnlyFolderGetsItsLabel) {
    const TemporaryFolder folder;
    putFolder(folder / "work", 0777);
    EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                  PosixFileSystem files;
                  auto writer = files.beginHierarchy(folder / "work");
                  if (!writer->enterFolder("top") || !writer->enterFolder("d") || !writer->makeEmptyFile("e", {6, 0444})) {
                      return "cannot make";
                  }
                  writer->leaveFolder({6, 0555});
                  writer->leaveFolder({6, 0555});
                  return "";
              }),
              "");
    for (const char *name : {"work/top", "work/top/d", "work/top/d/e"}) {
        EXPECT_EQ(attributeOf(folder / name, "user.xdg.tags"), "Red") << name;
    }
}

TEST(PosixModesTest, AFolderThatWasEnteredAgainIsRemovedWhateverItsMode) {
    const TemporaryFolder folder;
    putFolder(folder / "work", 0777);
    for (const unsigned mode : {0555U, 0111U, 0311U}) { // the last two keep the second way into it from being open for reading
        EXPECT_EQ(asOrdinaryUser([&]() -> std::string {
                      PosixFileSystem files;
                      auto writer = files.beginHierarchy(folder / "work");
                      if (!writer->enterFolder("top") || !writer->enterFolder("d") || !writer->enterFolder("e") ||
                          !writer->makeEmptyFile("f", {})) {
                          return "cannot make";
                      }
                      writer->leaveFolder({0, mode});
                      if (!writer->makeEmptyFile("g", {})) {
                          return "cannot make";
                      }
                      writer->leaveFolder({0, mode});
                      if (!writer->enterFolder("d") || !writer->enterFolder("e")) {
                          return "cannot enter again";
                      }
                      writer->removeEverythingMade();
                      return "";
                  }),
                  "");
        EXPECT_EQ(namesIn(folder / "work"), std::vector<std::string>()) << std::oct << mode;
    }
}

} // namespace orvane::testing
