// What every preferences store promises: run on the fake and on the real one.

#include "contract/preferences/PreferencesHome.h"
#include "fakes/FakePreferencesStore.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace orvane {
namespace {

/// A store and the file behind it, as another program would change it.
class Subject {
public:
    virtual ~Subject() = default;
    virtual PreferencesStore &store() = 0;
    virtual void writeToDisk(std::string_view key, const PropertyList &value) = 0;
    virtual void damage() = 0;
    virtual std::optional<PropertyList> disk() = 0;
};

class FakeSubject final : public Subject {
public:
    PreferencesStore &store() override { return _store; }
    void writeToDisk(std::string_view key, const PropertyList &value) override { _store.writeToDisk(key, value); }
    void damage() override { _store.unreadable = true; }
    std::optional<PropertyList> disk() override { return _store.unreadable ? std::nullopt : _store.disk; }

private:
    FakePreferencesStore _store;
};

class PosixSubject final : public Subject {
public:
    explicit PosixSubject(bool binary) : _binary(binary), _store(_home.store()) {}
    PreferencesStore &store() override { return _store; }
    void writeToDisk(std::string_view key, const PropertyList &value) override {
        FakePreferencesStore merged;
        merged.disk = _home.onDisk();
        merged.writeToDisk(key, value);
        const PropertyListValue &root = merged.disk->root();
        _home.put(*(_binary ? writeBinaryPropertyList(root) : writeXMLPropertyList(root)));
    }
    void damage() override { _home.put(_binary ? "bplist00 and nothing more" : "<plist><dict>"); }
    std::optional<PropertyList> disk() override { return _home.onDisk(); }

private:
    PreferencesHome _home;
    bool _binary;
    PosixPreferencesStore _store;
};

class PreferencesContract : public testing::TestWithParam<const char *> {
protected:
    void SetUp() override {
        const std::string name = GetParam();
        if (name == "Fake") {
            _subject = std::make_unique<FakeSubject>();
        } else {
            _subject = std::make_unique<PosixSubject>(name == "PosixBinary");
        }
    }
    PreferencesStore &store() { return _subject->store(); }
    std::string valueOf(std::string_view key) {
        const auto value = store().copyAppValue(key);
        return value ? std::string(value->root().string()) : "(absent)";
    }
    std::string onDisk(std::string_view key) {
        const auto list = _subject->disk();
        const PropertyListValue *value = list ? list->root().find(key) : nullptr;
        return value == nullptr ? "(absent)" : std::string(value->string());
    }

    std::unique_ptr<Subject> _subject;
};

TEST_P(PreferencesContract, AMissingFileIsAnEmptyDomain) {
    EXPECT_TRUE(store().synchronize());
    EXPECT_EQ(valueOf("a"), "(absent)");
    EXPECT_FALSE(store().dictionaryWithContentsOfFile());
    EXPECT_FALSE(_subject->disk());
}

TEST_P(PreferencesContract, ValuesAreThoseOfTheLastSynchronize) {
    _subject->writeToDisk("a", text("1"));
    EXPECT_EQ(valueOf("a"), "(absent)");
    EXPECT_TRUE(store().synchronize());
    EXPECT_EQ(valueOf("a"), "1");
    _subject->writeToDisk("a", text("2"));
    EXPECT_EQ(valueOf("a"), "1");
    EXPECT_TRUE(store().synchronize());
    EXPECT_EQ(valueOf("a"), "2");
}

TEST_P(PreferencesContract, TheFileIsReadAnewAndDoesNotChangeTheDomain) {
    _subject->writeToDisk("a", text("1"));
    EXPECT_TRUE(store().synchronize());
    _subject->writeToDisk("a", text("2"));
    const auto file = store().dictionaryWithContentsOfFile();
    ASSERT_TRUE(file);
    EXPECT_EQ(file->root().find("a")->string(), "2");
    EXPECT_EQ(valueOf("a"), "1");
}

TEST_P(PreferencesContract, ASetValueIsSeenAtOnceAndStoredAtSynchronize) {
    _subject->writeToDisk("other", text("kept"));
    EXPECT_TRUE(store().synchronize());
    store().setAppValue("a", text("1"));
    EXPECT_EQ(valueOf("a"), "1");
    EXPECT_EQ(onDisk("a"), "(absent)");
    EXPECT_TRUE(store().synchronize());
    EXPECT_EQ(valueOf("a"), "1");
    EXPECT_EQ(onDisk("a"), "1");
    EXPECT_EQ(onDisk("other"), "kept");
}

TEST_P(PreferencesContract, OfTwoValuesForOneKeyTheLastCounts) {
    store().setAppValue("a", text("1"));
    store().setAppValue("a", text("2"));
    EXPECT_EQ(valueOf("a"), "2");
    EXPECT_TRUE(store().synchronize());
    EXPECT_EQ(onDisk("a"), "2");
}

TEST_P(PreferencesContract, StoringMakesAMissingFile) {
    store().setAppValue("a", text("1"));
    EXPECT_TRUE(store().synchronize());
    EXPECT_EQ(onDisk("a"), "1");
}

TEST_P(PreferencesContract, EveryOtherKeyKeepsWhatIsOnDiskAtThatMoment) {
    _subject->writeToDisk("a", text("1"));
    _subject->writeToDisk("b", text("1"));
    EXPECT_TRUE(store().synchronize());
    _subject->writeToDisk("b", text("2"));
    _subject->writeToDisk("c", text("3"));
    store().setAppValue("a", text("9"));
    EXPECT_TRUE(store().synchronize());
    EXPECT_EQ(onDisk("a"), "9");
    EXPECT_EQ(onDisk("b"), "2");
    EXPECT_EQ(onDisk("c"), "3");
    EXPECT_EQ(valueOf("b"), "2");
}

TEST_P(PreferencesContract, AStoredValueIsNotStoredAgain) {
    store().setAppValue("a", text("1"));
    EXPECT_TRUE(store().synchronize());
    _subject->writeToDisk("a", text("2"));
    EXPECT_TRUE(store().synchronize());
    EXPECT_EQ(onDisk("a"), "2");
}

TEST_P(PreferencesContract, AnUnreadableFileIsNeverReplacedAndTheValueIsDropped) {
    _subject->damage();
    EXPECT_FALSE(store().synchronize());
    store().setAppValue("a", text("1"));
    EXPECT_FALSE(store().synchronize());
    EXPECT_EQ(valueOf("a"), "(absent)");
    EXPECT_FALSE(_subject->disk());
    EXPECT_FALSE(store().dictionaryWithContentsOfFile());
}

TEST_P(PreferencesContract, LocksNest) {
    auto outer = store().lock();
    ASSERT_NE(outer, nullptr);
    auto inner = store().lock();
    ASSERT_NE(inner, nullptr);
    outer.reset();
    store().setAppValue("a", text("1"));
    EXPECT_TRUE(store().synchronize());
    EXPECT_EQ(onDisk("a"), "1");
    inner.reset();
    EXPECT_NE(store().lock(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Stores, PreferencesContract, testing::Values("Fake", "PosixXML", "PosixBinary"),
                         [](const auto &tested) { return std::string(tested.param); });

TEST(FakePreferences, FailTheNthCallAndKeepAJournal) {
    FakePreferencesStore store;
    store.failAt("synchronize", 2);
    store.failAt("lock", 1);
    EXPECT_TRUE(store.synchronize());
    store.setAppValue("a", text("1"));
    EXPECT_FALSE(store.synchronize());
    EXPECT_FALSE(store.disk);
    EXPECT_FALSE(store.copyAppValue("a"));
    EXPECT_EQ(store.lock(), nullptr);
    EXPECT_NE(store.lock(), nullptr);
    EXPECT_EQ(store.locksHeld(), 0);
    const std::vector<std::string> expected{"synchronize", "setAppValue a", "synchronize", "copyAppValue a", "lock", "lock", "unlock"};
    EXPECT_EQ(store.journal, expected);
}

} // namespace
} // namespace orvane
