#pragma once

#include "EditHistory.h"

#include "ports/PropertyList.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// A dictionary that other programs change, too, with the edits that were made here laid over it.
///
/// What was not edited always shows what stands on disk, and taking an edit back uncovers that again, whatever it has become
/// meanwhile. Once edits are stored, taking one back brings back what stood there before. Main thread only.
class OverlaidDictionary {
public:
    /// What lies over one key.
    struct Override {
        enum class Kind { Value, Absent, Renamed };
        Kind kind = Kind::Value;
        PropertyList value = {}; ///< of kind `Value`
        std::string from = {};   ///< of kind `Renamed`: the key whose value it shows
    };

    /// Borrows the history, which must live longer. `didChange` is called with each key whose value may be another.
    OverlaidDictionary(EditHistory &history, std::function<void(const std::string &key)> didChange);
    OverlaidDictionary(const OverlaidDictionary &) = delete;
    OverlaidDictionary &operator=(const OverlaidDictionary &) = delete;
    ~OverlaidDictionary();

    /// Takes over what stands on disk and forgets all edits, the history included.
    void load(const PropertyList &dictionary);
    /// Other programs have changed what stands on disk.
    void rebase(const PropertyList &dictionary);
    /// The edits stand on disk now.
    void commit(const PropertyList &dictionary);

    [[nodiscard]] std::optional<PropertyList> value(const std::string &key) const;
    /// All keys that have a value: those on disk in their order, then new ones.
    [[nodiscard]] std::vector<std::string> keys() const;
    /// Sets a value or, without one, takes the key away; part of a step in the history. Nothing when it is the same.
    void set(const std::string &key, const std::optional<PropertyList> &value);
    /// The value moves to another key, whatever it becomes on disk until the edits are stored. A value that stood there is gone.
    void rename(const std::string &from, const std::string &to);

    /// What stands on disk, as far as is known here.
    [[nodiscard]] const PropertyList &base() const { return _base; }
    [[nodiscard]] const std::map<std::string, Override> &overrides() const { return _overrides; }
    /// `dictionary` with the edits laid over it; every other entry as it is.
    [[nodiscard]] PropertyList applied(const PropertyList &dictionary) const;

private:
    class Change;

    [[nodiscard]] std::optional<PropertyList> _resolved(const Override &override, const PropertyList &dictionary) const;
    void _put(const std::string &key, const std::optional<Override> &override, std::size_t epoch);
    void _lay(const std::string &key, std::optional<Override> override);

    EditHistory &_history;
    std::function<void(const std::string &key)> _didChange;
    PropertyList _base;
    std::map<std::string, Override> _overrides;
    /// What stood on disk just before edits were stored, for each time they were. A change knows how many times that had been
    /// when it was made, and so what "as on disk" meant then.
    std::vector<PropertyList> _past;
};

} // namespace orvane
