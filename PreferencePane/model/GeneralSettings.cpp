#include "GeneralSettings.h"

#include "presets/ORVPropertyListReading.h"

#include <charconv>

namespace orvane {

namespace {

const std::string ShowMenubarKey = "ORVShowMenubar";
const std::string HotKeyCodeKey = "ORVHotKeyCode";
const std::string HotKeyFlagsKey = "ORVHotKeyFlags";

PropertyList ofInteger(std::int64_t number) {
    return {nullptr, PropertyListValue::ofInteger(number)};
}

/// The integer that a number or a decimal text stands for; 0 for anything else.
std::int64_t integerOf(const std::optional<PropertyList> &value) {
    if (!value) {
        return 0;
    }
    if (value->root().type() == PropertyListType::Boolean) {
        return value->root().boolean() ? 1 : 0;
    }
    std::string text = ORVTextValue(&value->root());
    text.erase(0, text.find_first_not_of(" \t\n\v\f\r"));
    std::int64_t number = 0;
    (void)std::from_chars(text.data() + (text.starts_with('+') ? 1 : 0), text.data() + text.size(), number);
    return number;
}

/// Only what is a setting here.
PropertyList settingsOf(const PropertyList &preferences) {
    PropertyListBuilder builder;
    std::vector<PropertyListEntry> entries;
    const PropertyListValue root = builder.adopt(preferences);
    for (const std::string &key : GeneralSettings::keys()) {
        if (const PropertyListValue *value = root.find(key)) {
            entries.push_back({key, *value});
        }
    }
    return builder.finish(builder.dictionary(entries));
}

} // namespace

GeneralSettings::GeneralSettings(EditHistory &history, LoginItem &loginItem)
    : _history(history), _loginItem(loginItem), _values(history, [this](const std::string &) { _tell(); }) {}

const std::vector<std::string> &GeneralSettings::keys() {
    static const std::vector<std::string> all{ShowMenubarKey, HotKeyCodeKey, HotKeyFlagsKey};
    return all;
}

void GeneralSettings::_tell() {
    const std::vector<GeneralSettingsObserver *> observers = _observers;
    for (GeneralSettingsObserver *observer : observers) {
        observer->generalSettingsDidChange();
    }
}

bool GeneralSettings::showsMenubar() const {
    const auto value = _values.value(ShowMenubarKey);
    return value ? ORVBoolValue(&value->root()) : !_fileExists;
}

void GeneralSettings::setShowsMenubar(bool shows) {
    const EditHistory::Step step(_history, shows ? "Show in Menu Bar" : "Hide from Menu Bar");
    if (shows != showsMenubar()) {
        _values.set(ShowMenubarKey, PropertyList(nullptr, PropertyListValue::ofBoolean(shows)));
    }
}

StoredHotKey GeneralSettings::hotKey() const {
    return {integerOf(_values.value(HotKeyCodeKey)), integerOf(_values.value(HotKeyFlagsKey))};
}

void GeneralSettings::setHotKey(const StoredHotKey &hotKey) {
    const StoredHotKey before = this->hotKey();
    const EditHistory::Step step(_history, "Change Shortcut");
    if (before.code != hotKey.code) {
        _values.set(HotKeyCodeKey, ofInteger(hotKey.code));
    }
    if (before.flags != hotKey.flags) {
        _values.set(HotKeyFlagsKey, ofInteger(hotKey.flags));
    }
}

bool GeneralSettings::setStartsAtLogin(bool starts) {
    const bool stored = _loginItem.setEnabled(starts);
    _tell();
    return stored;
}

void GeneralSettings::load(const PropertyList &preferences, bool exists) {
    _fileExists = exists;
    _values.load(settingsOf(preferences));
}

void GeneralSettings::rebase(const PropertyList &preferences, bool exists) {
    _fileExists = exists;
    _values.rebase(settingsOf(preferences));
    _tell();
}

void GeneralSettings::commit(const PropertyList &preferences, bool exists) {
    _fileExists = exists;
    _values.commit(settingsOf(preferences));
}

std::vector<std::pair<std::string, PropertyList>> GeneralSettings::changes(const PropertyList &preferences, bool exists) const {
    std::vector<std::pair<std::string, PropertyList>> result;
    for (const auto &[key, override] : _values.overrides()) {
        const PropertyListValue *there = preferences.root().find(key);
        const auto value = _values.value(key);
        if (value && (there == nullptr || !there->equals(value->root()))) {
            result.emplace_back(key, *value);
        }
    }
    if (!exists && !_values.overrides().contains(ShowMenubarKey)) {
        result.emplace_back(ShowMenubarKey, PropertyList(nullptr, PropertyListValue::ofBoolean(showsMenubar())));
    }
    return result;
}

} // namespace orvane
