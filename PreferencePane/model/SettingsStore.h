#pragma once

#include "CounterList.h"
#include "EditHistory.h"
#include "GeneralSettings.h"
#include "PresetDocument.h"
#include "PropertyListTextForm.h"
#include "RecoveryFile.h"
#include "SettingsMerge.h"

#include "ports/DistributedNotifications.h"
#include "ports/PreferencesStore.h"
#include "ports/Sentence.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace orvane {

/// The models' way to the preferences and back.
///
/// Saving writes what was edited and nothing else, under the preferences' lock and on top of what stands there at that moment; what
/// another program changed meanwhile is merged in, or asked about. Every other key stays. Unsaved edits are kept in a file of their
/// own, from which they can be taken after a crash. Main thread only.
class SettingsStore {
public:
    struct Ports {
        PreferencesStore &preferences;
        DistributedNotifications &notifications;
        RecoveryFile &recovery;
        PropertyListTextForm &form;
    };
    struct Models {
        EditHistory &history;
        PresetDocument &presets;
        CounterList &counters;
        GeneralSettings &general;
    };
    enum class State : std::uint8_t {
        Loaded,    ///< from the file, or from its absence
        Unreadable ///< the file stands there and cannot be read, or holds no list of presets: nothing is ever written
    };
    enum class Outcome : std::uint8_t {
        Done,       ///< saved, read, or restored
        Unchanged,  ///< there was nothing to do
        Conflicts,  ///< nothing was written or changed: see `conflicts()`
        Unreadable, ///< the preferences cannot be read (any more); nothing was written
        InUse,      ///< another program holds them for too long
        Failed      ///< they cannot be written; see `problem()`
    };

    /// Borrows all of them.
    SettingsStore(const Ports &ports, const Models &models);
    SettingsStore(const SettingsStore &) = delete;
    SettingsStore &operator=(const SettingsStore &) = delete;

    // Loading and saving ------------------------------------------------------------------------------------------

    /// Reads the preferences into the models, which forget everything else. `Done` or `Unreadable`, with empty models then.
    Outcome load();
    [[nodiscard]] State state() const { return _state; }
    /// Takes over what other programs have changed since the last reading: to be called when they say so, or the window comes to
    /// the front. Edits that were not saved stay, and can be undone as before; so can what is taken over.
    Outcome reload();
    /// Stores the edits, and posts the change notification when something was written.
    Outcome save();
    /// Why the last call could not read or write; empty when it could.
    [[nodiscard]] const Sentence &problem() const { return _problem; }
    [[nodiscard]] bool isModified() const { return _models.history.isModified(); }
    /// Whether the preferences can hold this text, as people type or paste it.
    [[nodiscard]] bool canStoreText(std::string_view text) { return _ports.preferences.canStoreText(text); }

    /// What the last `reload()`, `save()` or `recover()` wants to know. Decide on each and call it again: decisions hold as long as
    /// both sides stay as they are.
    [[nodiscard]] const std::vector<MergeConflict> &conflicts() const { return _conflicts; }
    void decide(std::size_t conflict, MergeSide side);

    // Unsaved edits -----------------------------------------------------------------------------------------------

    /// Brings the file of unsaved edits up to date; cheap when nothing has changed since. To be called some seconds after an edit.
    /// False when it cannot be written.
    bool updateRecovery();
    /// Whether unsaved edits of an earlier run were found by `load()`. There may be those of several runs, the latest first; they
    /// stay in the file until each is restored or discarded.
    [[nodiscard]] bool offersRecovery() const { return !_offers.empty(); }
    /// Makes the unsaved edits again, on what there is now, in one step.
    Outcome recover();
    void discardRecovery();

private:
    /// The preferences as they stand on disk.
    struct Disk {
        bool exists = false;
        bool hasPresets = false;
        PropertyList presets;
        PropertyList counters;
        PropertyList settings; ///< a dictionary of the general settings' keys
    };
    struct Placed {
        PropertyList record;
        ItemID item = NoItem; ///< the preset in the document, if it is there
    };

    [[nodiscard]] std::optional<Disk> _read();
    Outcome _takeOver(const Disk &disk);
    [[nodiscard]] bool _settingsConflict(const Disk &disk);
    [[nodiscard]] MergeDecision _decision() const;
    [[nodiscard]] std::vector<MergeableRecord> _mine();
    std::vector<ItemID> _apply(const std::vector<Placed> &presets, const char *name);
    void _rememberBase(const PropertyList &presets, const std::vector<std::pair<ItemID, std::size_t>> &origins);
    Outcome _write(const Disk &disk);
    Outcome _fail(Outcome outcome, Sentence problem);
    [[nodiscard]] Sentence _unstorableText(const PropertyList &presets, const Disk &disk);
    void _readRecovery();
    [[nodiscard]] PropertyList _unsavedEdits();

    Ports _ports;
    Models _models;
    State _state = State::Loaded;
    Sentence _problem;
    PropertyList _base;                               ///< the presets as of the last reading or writing
    std::unordered_map<ItemID, std::size_t> _origins; ///< which of them a preset is
    std::vector<MergeConflict> _conflicts;
    std::vector<std::pair<MergeConflict, MergeSide>> _decisions;
    std::vector<PropertyList> _offers;
    std::optional<std::uint64_t> _recoveredRevision; ///< the history's when the file of unsaved edits was written
};

} // namespace orvane
