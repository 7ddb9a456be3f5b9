#pragma once

#include "CounterList.h"
#include "GeneralSettings.h"
#include "LoginItem.h"
#include "PresetDocument.h"
#include "PropertyListTexts.h"
#include "RecoveryFile.h"
#include "SettingsStore.h"

#include "fakes/FakeDistributedNotifications.h"
#include "fakes/FakePreferencesStore.h"
#include "unit/presetfiles/Presets.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvane::test {

class FakeLoginItem final : public LoginItem {
public:
    bool enabled = false;
    bool refuses = false;
    [[nodiscard]] bool isEnabled() override { return enabled; }
    [[nodiscard]] bool setEnabled(bool isEnabled) override {
        enabled = refuses ? enabled : isEnabled;
        return !refuses;
    }
};

class FakeRecoveryFile final : public RecoveryFile {
public:
    std::optional<std::string> bytes;
    int writes = 0;
    bool refuses = false;
    [[nodiscard]] std::optional<std::string> read() override { return bytes; }
    bool write(std::string_view text) override {
        ++writes;
        if (!refuses) {
            bytes = std::string(text);
        }
        return !refuses;
    }
    void remove() override { bytes = std::nullopt; }
};

/// One run of the settings program.
struct SettingsRun {
    SettingsRun(PreferencesStore &preferences, DistributedNotifications &notifications, RecoveryFile &recovery, LoginItem &loginItem)
        : general(history, loginItem), store({preferences, notifications, recovery, form}, {history, presets, counters, general}) {}

    EditHistory history;
    PresetDocument presets{history};
    CounterList counters{history};
    GeneralSettings general;
    PropertyListTexts form;
    SettingsStore store;

    [[nodiscard]] ItemID preset(std::size_t index) const { return presets.presetAt(index); }
    [[nodiscard]] std::vector<std::string> labels() const {
        std::vector<std::string> result;
        for (std::size_t i = 0; i < presets.numberOfPresets(); ++i) {
            result.push_back(presets.label(presets.presetAt(i)));
        }
        return result;
    }
};

/// Preferences in memory, and runs of the settings program over them.
class SettingsTest : public testing::Test {
protected:
    using Outcome = SettingsStore::Outcome;

    void onDisk(PresetMaker::Entries entries) { preferences.disk = make.document(make.dictionary(entries)); }
    void presetsOnDisk(const std::vector<PropertyListValue> &presets) {
        onDisk({{"ORVPresets", make.list(presets)}, {"ORVShowMenubar", PropertyListValue::ofBoolean(true)}});
    }
    /// Another program changes one key.
    void changeOnDisk(std::string_view key, const PropertyListValue &value) { preferences.writeToDisk(key, make.document(value)); }
    [[nodiscard]] PropertyListValue diskValue(std::string_view key) const {
        const PropertyListValue *value = preferences.disk ? preferences.disk->root().find(key) : nullptr;
        return value == nullptr ? PropertyListValue() : *value;
    }
    [[nodiscard]] std::vector<std::string> labelsOnDisk() const {
        std::vector<std::string> labels;
        const PropertyListValue presets = diskValue("ORVPresets");
        for (const PropertyListValue &preset : presets.array()) {
            labels.emplace_back(preset.find("label")->string());
        }
        return labels;
    }
    PropertyListValue labelled(std::string_view label, std::string_view directoryName = "{Name}") {
        return make.dictionary({{"label", make.text(label)}, {"directoryName", make.text(directoryName)}});
    }
    void start() {
        run.reset();
        run = std::make_unique<SettingsRun>(preferences, notifications, recovery, loginItem);
        loaded = run->store.load();
    }

    PresetMaker make;
    FakePreferencesStore preferences;
    FakeDistributedNotifications notifications;
    FakeRecoveryFile recovery;
    FakeLoginItem loginItem;
    std::unique_ptr<SettingsRun> run;
    Outcome loaded = Outcome::Failed;
};

} // namespace orvane::test
