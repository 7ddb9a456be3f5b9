#pragma once

#include "platform/posix/PosixPreferencesEdit.h"
#include "platform/posix/PosixPreferencesFile.h"
#include "platform/posix/PosixPreferencesLock.h"
#include "platform/posix/PosixPreferencesReplacement.h"
#include "ports/PreferencesStore.h"
#include "ports/SystemLog.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace orvane {

/// The preferences domain as a property-list file, XML or binary. Main thread only.
///
/// Saving holds the lock, takes the file as it stands on disk then, changes the keys that were set and nothing else, and
/// replaces the file as a whole; symbolic links to it stay links. A missing file is made, as XML and for the user alone. A
/// file that cannot be read, or that this process may not write, is never replaced: the log says why, once for each state
/// of the file that cannot be read, and each time that saving is refused. A file whose identity has not changed is not read again.
class PosixPreferencesStore final : public PreferencesStore {
public:
    /// How long a program waits for another one that holds the domain, unless told.
    static constexpr std::chrono::milliseconds LockLimit{10'000};

    /// The file's path, and that of a lock file which every program that writes the domain must use. With a limit of zero nothing
    /// waits: whoever calls comes back later, so that a window stays alive meanwhile; the log then has one line for all these attempts.
    PosixPreferencesStore(std::string path, std::string lockPath, SystemLog &log, std::chrono::milliseconds lockLimit = LockLimit);
    PosixPreferencesStore(const PosixPreferencesStore &) = delete;
    PosixPreferencesStore &operator=(const PosixPreferencesStore &) = delete;
    ~PosixPreferencesStore() override;

    /// Has `lock` ask, while it waits, whether somebody wants it to end.
    void setGivesUp(std::function<bool()> givesUp) { _givesUp = std::move(givesUp); }

    bool synchronize() override;
    [[nodiscard]] std::optional<PropertyList> copyAppValue(std::string_view key) override;
    void setAppValue(std::string_view key, const PropertyList &value) override;
    /// Any valid text in a binary file; in XML (which a missing file will be) not those characters that XML 1.0 excludes.
    [[nodiscard]] bool canStoreText(std::string_view text) override;
    [[nodiscard]] std::optional<PropertyList> dictionaryWithContentsOfFile() override;
    /// Waits as long as the limit says. The result may outlive the store.
    [[nodiscard]] std::unique_ptr<Lock> lock() override;
    [[nodiscard]] bool isHeldElsewhere() const override { return _lock->isHeldElsewhere(); }

private:
    class Held;
    enum class Saving : std::uint8_t { Done, Again, Failed };

    void _refresh();
    [[nodiscard]] bool _isReadable();
    [[nodiscard]] bool _save(const PosixPreferencesChanges &changes);
    [[nodiscard]] Saving _saveOnce(PosixPreferencesChanges changes);
    [[nodiscard]] Saving _replace(const std::string &target, const FileDescriptor &old, const PosixPreferencesEdit &edit);
    void _dropEqual(PosixPreferencesChanges &changes) const;
    Saving _refuse(const std::string &why);
    void _complain(const std::string &what, const std::string &why);

    std::string _path;
    SystemLog &_log;
    std::shared_ptr<PosixPreferencesLock> _lock;
    std::chrono::milliseconds _lockLimit;
    std::function<bool()> _givesUp;
    bool _isWaiting = false;            ///< for the lock, as the log knows already
    PosixPreferencesDocument _document; ///< as of the last `synchronize()`
    PosixPreferencesChanges _pending;
    std::string _complaint; ///< the last one about reading, so that it is not repeated
};

} // namespace orvane
