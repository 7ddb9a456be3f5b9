#include "SettingsStore.h"

#include "presets/ORVPresetManager.h"

#include <algorithm>
#include <array>
#include <limits>
#include <unordered_set>

namespace orvane {

namespace {

constexpr FixedText Unreadable = forTranslation("The preferences file cannot be read. It is left as it is.");
constexpr FixedText NoPresetList = forTranslation("The preferences hold something else than a list of presets. It is left as it is.");
constexpr FixedText InUse = forTranslation("Another program holds the preferences.");
constexpr FixedText Unwritable = forTranslation("The preferences cannot be written.");
constexpr const char *MergeStep = "Changes by Another Program";
constexpr std::size_t Last = std::numeric_limits<std::size_t>::max();

} // namespace

SettingsStore::SettingsStore(const Ports &ports, const Models &models) : _ports(ports), _models(models) {}

SettingsStore::Outcome SettingsStore::_fail(Outcome outcome, Sentence problem) {
    _problem = std::move(problem);
    return outcome;
}

/// Nothing, with `_problem`, when the preferences cannot be read.
std::optional<SettingsStore::Disk> SettingsStore::_read() {
    if (!_ports.preferences.synchronize()) {
        _problem = Unreadable;
        return std::nullopt;
    }
    Disk disk;
    if (auto presets = _ports.preferences.copyAppValue(ORVPresetsKey)) {
        disk.hasPresets = true;
        disk.presets = std::move(*presets);
    }
    if (disk.hasPresets && !disk.presets.root().isArray()) {
        _problem = NoPresetList;
        return std::nullopt;
    }
    disk.counters = _ports.preferences.copyAppValue(ORVAutomaticVarsKey).value_or(PropertyList());
    PropertyListBuilder builder;
    std::vector<PropertyListEntry> settings;
    for (const std::string &key : GeneralSettings::keys()) {
        if (const auto value = _ports.preferences.copyAppValue(key)) {
            settings.push_back({key, builder.adopt(*value)});
        }
    }
    disk.settings = builder.finish(builder.dictionary(settings));
    disk.exists = disk.hasPresets || !settings.empty() || disk.counters.root().isDictionary() ||
                  _ports.preferences.dictionaryWithContentsOfFile().has_value();
    _problem = {};
    return disk;
}

void SettingsStore::_rememberBase(const PropertyList &presets, const std::vector<std::pair<ItemID, std::size_t>> &origins) {
    _base = presets;
    _origins.clear();
    _origins.insert(origins.begin(), origins.end());
}

SettingsStore::Outcome SettingsStore::load() {
    const auto disk = _read();
    const Disk nothing;
    const Disk &found = disk ? *disk : nothing;
    _state = disk ? State::Loaded : State::Unreadable;
    _models.presets.load(found.presets);
    _models.counters.values().load(found.counters);
    _models.general.load(found.settings, found.exists || !disk);
    _models.history.markSaved();
    std::vector<std::pair<ItemID, std::size_t>> origins;
    for (std::size_t index = 0; index < _models.presets.numberOfPresets(); ++index) {
        origins.emplace_back(_models.presets.presetAt(index), index);
    }
    _rememberBase(found.presets, origins);
    _conflicts.clear();
    _decisions.clear();
    _recoveredRevision = std::nullopt;
    _readRecovery();
    return disk ? Outcome::Done : Outcome::Unreadable;
}

// Merging ---------------------------------------------------------------------------------------------------------

void SettingsStore::decide(std::size_t conflict, MergeSide side) {
    if (conflict < _conflicts.size()) {
        _decisions.emplace_back(_conflicts[conflict], side);
    }
}

MergeDecision SettingsStore::_decision() const {
    return [this](const MergeConflict &conflict) -> std::optional<MergeSide> {
        const auto found =
            std::find_if(_decisions.rbegin(), _decisions.rend(), [&](const auto &each) { return each.first.isSame(conflict); });
        return found == _decisions.rend() ? std::nullopt : std::optional(found->second);
    };
}

std::vector<MergeableRecord> SettingsStore::_mine() {
    std::vector<MergeableRecord> mine;
    for (std::size_t index = 0; index < _models.presets.numberOfPresets(); ++index) {
        const ItemID preset = _models.presets.presetAt(index);
        const auto origin = _origins.find(preset);
        mine.push_back({_models.presets.record(preset), origin == _origins.end() ? std::nullopt : std::optional(origin->second)});
    }
    return mine;
}

/// Makes these the document's presets, in one step that is empty when they are. Returns their ids.
std::vector<ItemID> SettingsStore::_apply(const std::vector<Placed> &presets, const char *name) {
    PresetDocument &document = _models.presets;
    const EditHistory::Step step(_models.history, name);
    std::unordered_set<ItemID> kept;
    std::vector<ItemID> result;
    for (const Placed &placed : presets) {
        const bool isThere = placed.item != NoItem;
        const bool isSame = isThere && document.record(placed.item).root().equals(placed.record.root());
        const bool stays = isSame || (isThere && document.replacePreset(placed.item, placed.record, name));
        result.push_back(stays ? placed.item : document.insertPreset(placed.record, Last, name));
        kept.insert(result.back());
    }
    std::vector<ItemID> gone;
    for (std::size_t index = 0; index < document.numberOfPresets(); ++index) {
        if (!kept.contains(document.presetAt(index))) {
            gone.push_back(document.presetAt(index));
        }
    }
    document.removePresets(gone);
    for (std::size_t index = 0; index < result.size(); ++index) {
        if (document.presetAt(index) != result[index]) {
            document.movePresets(std::array{result[index]}, index);
        }
    }
    return result;
}

/// General settings that were changed here and there. Those that are decided for the other side are taken over.
bool SettingsStore::_settingsConflict(const Disk &disk) {
    OverlaidDictionary &values = _models.general.values();
    const auto entryOf = [](const PropertyList &list, const std::string &key) {
        const PropertyListValue *value = list.root().find(key);
        return value == nullptr ? PropertyList() : list.at(*value);
    };
    const MergeDecision decide = _decision();
    std::vector<std::string> theirs;
    bool isConflict = false;
    for (const auto &[key, override] : values.overrides()) {
        const PropertyList there = entryOf(disk.settings, key);
        const PropertyList here = values.value(key).value_or(PropertyList());
        if (there.root().equals(entryOf(values.base(), key).root()) || there.root().equals(here.root())) {
            continue;
        }
        MergeConflict conflict{MergeConflict::Kind::Setting, "", key, here, there};
        const auto side = decide(conflict);
        if (!side) {
            _conflicts.push_back(std::move(conflict));
            isConflict = true;
        } else if (*side == MergeSide::Theirs) {
            theirs.push_back(key);
        }
    }
    if (!isConflict && _conflicts.empty()) {
        const EditHistory::Step step(_models.history, MergeStep);
        for (const std::string &key : theirs) {
            const PropertyList there = entryOf(disk.settings, key);
            values.set(key, there.root().type() == PropertyListType::Null ? std::nullopt : std::optional(there));
        }
    }
    return isConflict;
}

/// Brings what stands on disk into the models, and makes it the base. `Done` when they changed through it.
SettingsStore::Outcome SettingsStore::_takeOver(const Disk &disk) {
    const bool wasModified = isModified();
    const std::uint64_t revision = _models.history.revision();
    MergedPresets merged = mergePresets(_base, _mine(), disk.presets, _decision());
    _conflicts = std::move(merged.conflicts);
    if (_settingsConflict(disk) || !_conflicts.empty()) {
        return _fail(Outcome::Conflicts, {});
    }
    std::vector<Placed> presets;
    for (MergedRecord &each : merged.presets) {
        presets.push_back({std::move(each.record), each.mine ? _models.presets.presetAt(*each.mine) : NoItem});
    }
    const std::vector<ItemID> items = _apply(presets, MergeStep);
    std::vector<std::pair<ItemID, std::size_t>> origins;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (merged.presets[i].theirs) {
            origins.emplace_back(items[i], *merged.presets[i].theirs);
        }
    }
    _rememberBase(disk.presets, origins);
    _models.counters.values().rebase(disk.counters);
    _models.general.rebase(disk.settings, disk.exists);
    _decisions.clear();
    if (_models.history.revision() == revision) {
        return Outcome::Unchanged;
    }
    if (wasModified) {
        _models.history.markNeverSaved();
    } else {
        _models.history.markSaved();
    }
    return Outcome::Done;
}

SettingsStore::Outcome SettingsStore::reload() {
    if (_state == State::Unreadable) {
        return load();
    }
    const auto disk = _read();
    return disk ? _takeOver(*disk) : Outcome::Unreadable;
}

// Saving ----------------------------------------------------------------------------------------------------------

SettingsStore::Outcome SettingsStore::save() {
    if (_state == State::Unreadable) {
        return _fail(Outcome::Unreadable, _problem.isEmpty() ? Unreadable : _problem);
    }
    auto lock = _ports.preferences.lock();
    if (!lock) {
        return _ports.preferences.isHeldElsewhere() ? _fail(Outcome::InUse, InUse) : _fail(Outcome::Failed, Unwritable);
    }
    const auto disk = _read();
    if (!disk) {
        return Outcome::Unreadable;
    }
    if (_takeOver(*disk) == Outcome::Conflicts) {
        return Outcome::Conflicts;
    }
    const Outcome outcome = _write(*disk);
    lock.reset(); // before others are told, who may want it
    if (outcome == Outcome::Done) {
        _ports.notifications.post(ORVPresetConfigurationChangedNotification); // without anybody to tell there is nothing to do
    }
    return outcome;
}

/// Stores what the models have and the disk has not.
SettingsStore::Outcome SettingsStore::_write(const Disk &disk) {
    std::vector<std::pair<std::string, PropertyList>> changes;
    const PropertyList presets = _models.presets.propertyList();
    if (disk.hasPresets ? !presets.root().equals(disk.presets.root()) : !presets.root().array().empty()) {
        changes.emplace_back(ORVPresetsKey, presets);
    }
    const OverlaidDictionary &counters = _models.counters.values();
    const PropertyList newCounters = counters.applied(disk.counters);
    if (!counters.overrides().empty() && !newCounters.root().equals(disk.counters.root())) {
        changes.emplace_back(ORVAutomaticVarsKey, newCounters);
    }
    const bool makesFile = !disk.exists && (!changes.empty() || !_models.general.values().overrides().empty());
    const auto settings = _models.general.changes(disk.settings, !makesFile);
    changes.insert(changes.end(), settings.begin(), settings.end());
    if (Sentence problem = _unstorableText(presets, disk); !problem.isEmpty()) {
        return _fail(Outcome::Failed, std::move(problem));
    }
    for (const auto &[key, value] : changes) {
        _ports.preferences.setAppValue(key, value);
    }
    if (!changes.empty() && !_ports.preferences.synchronize()) {
        return _fail(Outcome::Failed, Unwritable);
    }
    std::vector<std::pair<ItemID, std::size_t>> origins;
    for (std::size_t index = 0; index < _models.presets.numberOfPresets(); ++index) {
        origins.emplace_back(_models.presets.presetAt(index), index);
    }
    _rememberBase(presets, origins);
    const Disk written = changes.empty() ? disk : _read().value_or(disk);
    _models.counters.values().commit(written.counters);
    _models.general.commit(written.settings, written.exists);
    _problem = {};
    _models.history.markSaved();
    (void)updateRecovery();
    return changes.empty() ? Outcome::Unchanged : Outcome::Done;
}

/// What the file cannot hold of what is to be stored, in words; empty when it can hold everything. What stands there already, and
/// was not touched, is no hindrance.
Sentence SettingsStore::_unstorableText(const PropertyList &presets, const Disk &disk) {
    std::unordered_set<const void *> untouched;
    for (const PropertyListValue &record : disk.presets.root().array()) {
        untouched.insert(record.storage());
    }
    std::vector<PropertyListValue> open;
    for (const PropertyListValue &record : presets.root().array()) {
        if (!untouched.contains(record.storage())) {
            open.push_back(record);
        }
    }
    for (const auto &[name, override] : _models.counters.values().overrides()) {
        open.push_back(PropertyListValue::viewOfString(name));
        open.push_back(override.value.root());
    }
    while (!open.empty()) {
        const PropertyListValue value = open.back();
        open.pop_back();
        if (value.isString() && !_ports.preferences.canStoreText(value.string())) {
            return {forTranslation("The preferences cannot hold the text '%1'."), {std::string(value.string())}};
        }
        open.insert(open.end(), value.array().begin(), value.array().end());
        for (const PropertyListEntry &entry : value.dictionary()) {
            open.push_back(PropertyListValue::viewOfString(entry.key));
            open.push_back(entry.value);
        }
    }
    return {};
}

} // namespace orvane
