#pragma once

#include "LoginItem.h"
#include "OverlaidDictionary.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvane {

/// Told that a general setting may be another now.
class GeneralSettingsObserver {
public:
    virtual ~GeneralSettingsObserver() = default;
    virtual void generalSettingsDidChange() = 0;
};

/// A key with modifiers as the preferences hold them.
struct StoredHotKey {
    std::int64_t code = 0;  ///< the Mac's virtual key code
    std::int64_t flags = 0; ///< Cocoa modifier mask
    bool operator==(const StoredHotKey &) const = default;
};

/// What stands beside the presets in the preferences, and whether the helper starts at login. Main thread only.
class GeneralSettings {
public:
    /// Borrows both, which must live longer.
    GeneralSettings(EditHistory &history, LoginItem &loginItem);

    /// Whether the helper shows its item in the menu bar: as it reads it, so true without any preferences, and false when only
    /// the key is absent.
    [[nodiscard]] bool showsMenubar() const;
    void setShowsMenubar(bool shows);

    /// Both 0 when none is stored.
    [[nodiscard]] StoredHotKey hotKey() const;
    [[nodiscard]] bool hasHotKey() const { return hotKey() != StoredHotKey(); }
    void setHotKey(const StoredHotKey &hotKey);
    /// A hot key of code 0 without modifiers is none.
    void clearHotKey() { setHotKey({}); }

    /// At once, neither saved with the rest nor undone.
    [[nodiscard]] bool startsAtLogin() { return _loginItem.isEnabled(); }
    [[nodiscard]] bool setStartsAtLogin(bool starts);

    /// For loading and storing: the keys of the preferences that are settings here.
    [[nodiscard]] static const std::vector<std::string> &keys();
    /// Those keys out of the whole preferences. `exists` tells whether there is a preferences file.
    void load(const PropertyList &preferences, bool exists);
    void rebase(const PropertyList &preferences, bool exists);
    void commit(const PropertyList &preferences, bool exists);
    [[nodiscard]] OverlaidDictionary &values() { return _values; }
    /// Keys to be stored with their values, given the whole preferences as they stand on disk. Making the file also stores
    /// whether the menu bar shows the item, because absence would come to mean the opposite.
    [[nodiscard]] std::vector<std::pair<std::string, PropertyList>> changes(const PropertyList &preferences, bool exists) const;

    /// Borrowed; must be removed before it is destroyed.
    void addObserver(GeneralSettingsObserver &observer) { _observers.push_back(&observer); }
    void removeObserver(GeneralSettingsObserver &observer) { std::erase(_observers, &observer); }

private:
    void _tell();

    EditHistory &_history;
    LoginItem &_loginItem;
    bool _fileExists = false;
    std::vector<GeneralSettingsObserver *> _observers;
    OverlaidDictionary _values;
};

} // namespace orvane
