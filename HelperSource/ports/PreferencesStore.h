#pragma once

#include "ports/PropertyList.h"

#include <memory>
#include <optional>
#include <string_view>

namespace orvane {

/// The preferences domain, reached in two ways: through the interface that caches what it read at the last
/// `synchronize()`, and as the file that stands on disk. Main thread only.
class PreferencesStore {
public:
    /// Holds the domain against other programs that write it; destroying it lets go.
    class Lock {
    public:
        virtual ~Lock() = default;
    };

    virtual ~PreferencesStore() = default;
    /// Writes what was set and re-reads the domain from disk. False when a value could not be stored (the file is then as
    /// it was, and the value is dropped) or when the file stands there but cannot be read (the domain then counts as empty).
    virtual bool synchronize() = 0;
    /// The key's value as of the last `synchronize()` or `setAppValue`; nothing when it is absent.
    [[nodiscard]] virtual std::optional<PropertyList> copyAppValue(std::string_view key) = 0;
    /// Sets one key; stored at the next `synchronize()`. Every other key keeps what is on disk at that moment.
    virtual void setAppValue(std::string_view key, const PropertyList &value) = 0;
    /// Whether the file, in the form in which it is kept, can hold this text and give it back the same.
    [[nodiscard]] virtual bool canStoreText(std::string_view text) = 0;
    /// The whole file as a dictionary, read anew; nothing when it is missing, unreadable or no dictionary.
    [[nodiscard]] virtual std::optional<PropertyList> dictionaryWithContentsOfFile() = 0;
    /// Keeps other programs from writing until the result is destroyed; may be nested within one program.
    /// Null when that is impossible or another program holds it for too long.
    [[nodiscard]] virtual std::unique_ptr<Lock> lock() = 0;
    /// Whether the last `lock()` failed because another program held the domain all the time.
    [[nodiscard]] virtual bool isHeldElsewhere() const = 0;
};

} // namespace orvane
