#include "SettingsStore.h"

#include <array>
#include <string_view>
#include <utility>

// The file of unsaved edits is a property list whose root dictionary has the keys
//
//     ORVUnsavedVersion  1
//     ORVBase            the presets as they were loaded
//     ORVMine            the presets as they were edited
//     ORVOrigins         for each of these, which of those it was, or -1
//     ORVCounters        for each counter that was edited `value`, `absent` or `from`, the name that it had before
//     ORVSettings        the same for the general settings
//     ORVEarlier         unsaved edits of earlier runs that nobody has decided on yet, in the same form
//
// Restoring them is a merge like any other: the edited presets are mine, and what there is now is theirs.

namespace orvane {

namespace {

constexpr std::string_view VersionKey = "ORVUnsavedVersion";
constexpr std::string_view BaseKey = "ORVBase";
constexpr std::string_view MineKey = "ORVMine";
constexpr std::string_view OriginsKey = "ORVOrigins";
constexpr std::string_view CountersKey = "ORVCounters";
constexpr std::string_view SettingsKey = "ORVSettings";
constexpr std::string_view EarlierKey = "ORVEarlier";
constexpr std::int64_t Version = 1;
constexpr const char *RestoreStep = "Restore Unsaved Edits";

PropertyListValue written(PropertyListBuilder &builder, const OverlaidDictionary::Override &override) {
    using Kind = OverlaidDictionary::Override::Kind;
    std::array<PropertyListEntry, 1> entry{};
    switch (override.kind) {
    case Kind::Value:
        entry[0] = {"value", builder.adopt(override.value)};
        break;
    case Kind::Absent:
        entry[0] = {"absent", PropertyListValue::ofBoolean(true)};
        break;
    case Kind::Renamed:
        entry[0] = {"from", builder.string(override.from)};
        break;
    }
    return builder.dictionary(entry);
}

PropertyListValue written(PropertyListBuilder &builder, const OverlaidDictionary &values) {
    std::vector<PropertyListEntry> entries;
    for (const auto &[key, override] : values.overrides()) {
        entries.push_back({key, written(builder, override)});
    }
    return builder.dictionary(entries);
}

/// Makes the edits again, as part of an open step.
void restore(OverlaidDictionary &values, const PropertyList &edits, const PropertyListValue *list) {
    if (list == nullptr) {
        return;
    }
    std::vector<std::pair<std::string, std::string>> renamed;
    for (const PropertyListEntry &entry : list->dictionary()) {
        const std::string key(entry.key);
        if (const PropertyListValue *value = entry.value.find("value")) {
            values.set(key, edits.at(*value));
        } else if (const PropertyListValue *from = entry.value.find("from")) {
            renamed.emplace_back(from->string(), key);
        }
    }
    for (const auto &[from, to] : renamed) {
        values.rename(from, to); // before what it had been called goes
    }
    for (const PropertyListEntry &entry : list->dictionary()) {
        if (entry.value.find("absent") != nullptr) {
            values.set(std::string(entry.key), std::nullopt);
        }
    }
}

bool areUnsavedEdits(const PropertyListValue &root) {
    const PropertyListValue *version = root.find(VersionKey);
    const PropertyListValue *mine = root.find(MineKey);
    const PropertyListValue *origins = root.find(OriginsKey);
    return version != nullptr && version->integer() == Version && root.find(BaseKey) != nullptr && mine != nullptr && mine->isArray() &&
           origins != nullptr && origins->array().size() == mine->array().size();
}

} // namespace

PropertyList SettingsStore::_unsavedEdits() {
    PropertyListBuilder builder;
    std::vector<PropertyListValue> records;
    std::vector<PropertyListValue> origins;
    for (const MergeableRecord &each : _mine()) {
        records.push_back(builder.adopt(each.record));
        origins.push_back(PropertyListValue::ofInteger(each.base ? static_cast<std::int64_t>(*each.base) : -1));
    }
    std::vector<PropertyListValue> earlier;
    for (const PropertyList &offer : _offers) {
        earlier.push_back(builder.adopt(offer));
    }
    const PropertyListValue base = _base.root().isArray() ? builder.adopt(_base) : builder.array({});
    const std::array<PropertyListEntry, 7> root{{{VersionKey, PropertyListValue::ofInteger(Version)},
                                                 {BaseKey, base},
                                                 {MineKey, builder.array(records)},
                                                 {OriginsKey, builder.array(origins)},
                                                 {CountersKey, written(builder, _models.counters.values())},
                                                 {SettingsKey, written(builder, _models.general.values())},
                                                 {EarlierKey, builder.array(earlier)}}};
    return builder.finish(builder.dictionary(root));
}

bool SettingsStore::updateRecovery() {
    if (_state == State::Unreadable) {
        return true; // there is nothing that could be edited, and what the file holds stays
    }
    if (!isModified() && _offers.empty()) {
        _ports.recovery.remove();
        _recoveredRevision = std::nullopt;
        return true;
    }
    if (_recoveredRevision == _models.history.revision()) {
        return true;
    }
    PropertyList edits;
    if (isModified()) {
        edits = _unsavedEdits();
    } else { // saved meanwhile: only what is still offered stays
        PropertyListBuilder builder;
        std::vector<PropertyListValue> earlier;
        for (const PropertyList &offer : _offers) {
            earlier.push_back(builder.adopt(offer));
        }
        const std::array<PropertyListEntry, 1> root{{{EarlierKey, builder.array(earlier)}}};
        edits = builder.finish(builder.dictionary(root));
    }
    const auto bytes = _ports.form.bytesOf(edits);
    if (!bytes || !_ports.recovery.write(*bytes)) {
        return false;
    }
    _recoveredRevision = _models.history.revision();
    return true;
}

void SettingsStore::_readRecovery() {
    _offers.clear();
    const auto bytes = _ports.recovery.read();
    const auto edits = bytes ? _ports.form.read(*bytes) : std::nullopt;
    if (!edits) {
        return;
    }
    if (areUnsavedEdits(edits->root())) {
        _offers.push_back(*edits);
    }
    if (const PropertyListValue *earlier = edits->root().find(EarlierKey)) {
        for (const PropertyListValue &each : earlier->array()) {
            if (areUnsavedEdits(each)) {
                _offers.push_back(edits->at(each));
            }
        }
    }
}

SettingsStore::Outcome SettingsStore::recover() {
    if (_offers.empty()) {
        return Outcome::Unchanged;
    }
    if (_state == State::Unreadable) {
        return Outcome::Unreadable;
    }
    const PropertyList edits = _offers.front();
    const PropertyListValue &root = edits.root();
    const auto records = root.find(MineKey)->array();
    const auto origins = root.find(OriginsKey)->array();
    std::vector<MergeableRecord> mine;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::int64_t origin = origins[i].integer();
        mine.push_back({edits.at(records[i]), origin < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(origin))});
    }
    MergedPresets merged = mergePresets(edits.at(*root.find(BaseKey)), mine, _models.presets.propertyList(), _decision());
    _conflicts = std::move(merged.conflicts);
    if (!_conflicts.empty()) {
        return _fail(Outcome::Conflicts, {});
    }
    std::vector<Placed> presets;
    for (MergedRecord &each : merged.presets) {
        presets.push_back({std::move(each.record), each.theirs ? _models.presets.presetAt(*each.theirs) : NoItem});
    }
    {
        const EditHistory::Step step(_models.history, RestoreStep);
        (void)_apply(presets, RestoreStep);
        restore(_models.counters.values(), edits, root.find(CountersKey));
        restore(_models.general.values(), edits, root.find(SettingsKey));
    }
    _decisions.clear();
    _offers.erase(_offers.begin());
    _recoveredRevision = std::nullopt;
    return Outcome::Done;
}

void SettingsStore::discardRecovery() {
    if (!_offers.empty()) {
        _offers.erase(_offers.begin());
        _recoveredRevision = std::nullopt;
        (void)updateRecovery();
    }
}

} // namespace orvane
