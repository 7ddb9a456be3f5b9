#include "platform/posix/PosixPreferencesStore.h"

#include "platform/posix/PosixPrivateFolder.h"
#include "platform/propertylist/PropertyListText.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace orvane {

namespace {

/// How often a save starts over because a program that knows no lock changed the file meanwhile.
constexpr int MostAttempts = 8;
/// Smaller files are read once more before they take the old one's place; larger ones rely on the check of what is new.
constexpr off_t LargestChecked = off_t{1} << 20U;

bool readsAs(const PropertyList &expected, int file, std::string &why) {
    PropertyListReport report;
    const std::optional<PropertyList> list = readPropertyList(file, &report);
    why = report.why;
    return list && list->root().equals(expected.root());
}

/// Some file systems that are programs do not show to a descriptor what was written through it: then one that only reads decides.
bool holds(int file, const PropertyList &expected, std::string &why) {
    struct stat status {};
    if (::fstat(file, &status) != 0 || status.st_size > LargestChecked) {
        return true;
    }
    if (::lseek(file, 0, SEEK_SET) == 0 && readsAs(expected, file, why)) {
        return true;
    }
    const FileDescriptor another = openPreferencesFile("/proc/self/fd/" + std::to_string(file));
    if (another && readsAs(expected, another.get(), why)) {
        return true;
    }
    why = "what was written does not read back: " + why;
    return false;
}

} // namespace

class PosixPreferencesStore::Held final : public PreferencesStore::Lock {
public:
    explicit Held(std::shared_ptr<PosixPreferencesLock> lock) : _lock(std::move(lock)) {}
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;
    ~Held() override { _lock->release(); }

private:
    std::shared_ptr<PosixPreferencesLock> _lock;
};

PosixPreferencesStore::PosixPreferencesStore(std::string path, std::string lockPath, SystemLog &log, std::chrono::milliseconds lockLimit)
    : _path(std::move(path)), _log(log), _lock(std::make_shared<PosixPreferencesLock>(std::move(lockPath))), _lockLimit(lockLimit) {}

PosixPreferencesStore::~PosixPreferencesStore() = default;

std::unique_ptr<PreferencesStore::Lock> PosixPreferencesStore::lock() {
    std::string why;
    if (!_lock->acquire(_lockLimit, why, _givesUp)) {
        const bool comesBack = _lock->isHeldElsewhere() && _lockLimit == std::chrono::milliseconds::zero();
        if (!std::exchange(_isWaiting, comesBack)) {
            _complain("cannot be locked", why);
        }
        return nullptr;
    }
    _isWaiting = false;
    return std::make_unique<Held>(_lock);
}

void PosixPreferencesStore::_complain(const std::string &what, const std::string &why) {
    _log.log("The preferences file " + _path + " " + what + ": " + why);
}

PosixPreferencesStore::Saving PosixPreferencesStore::_refuse(const std::string &why) {
    _complain("was not changed", why);
    return Saving::Failed;
}

/// Makes `_document` what stands on disk.
void PosixPreferencesStore::_refresh() {
    if (!isCurrentPreferencesDocument(_document, _path)) {
        _document = {}; // first, so that two big documents are never in memory together
        _document = readPreferencesDocument(_path);
    }
}

/// True when the file could be read. Otherwise the log says why, but not twice about the same state of the file.
bool PosixPreferencesStore::_isReadable() {
    std::string complaint;
    if (_document.state == PosixPreferencesDocument::State::Unreadable) {
        complaint = _document.why + " " + std::to_string(_document.identity.inode) + " " + std::to_string(_document.identity.changed);
    }
    if (std::exchange(_complaint, complaint) != complaint && !complaint.empty()) {
        _complain("is left alone", _document.why);
    }
    return complaint.empty();
}

bool PosixPreferencesStore::synchronize() {
    if (!_pending.empty()) {
        const PosixPreferencesChanges changes = std::exchange(_pending, {});
        if (_save(changes)) {
            return true;
        }
        _refresh();
        return false;
    }
    _refresh();
    return _isReadable();
}

bool PosixPreferencesStore::_save(const PosixPreferencesChanges &changes) {
    const std::unique_ptr<Lock> held = lock();
    if (held == nullptr) {
        return false;
    }
    for (int attempt = 0; attempt < MostAttempts; ++attempt) {
        const Saving saving = _saveOnce(changes);
        if (saving != Saving::Again) {
            return saving == Saving::Done;
        }
        _document.settled = false;
    }
    _refuse("another program changes it all the time");
    return false;
}

void PosixPreferencesStore::_dropEqual(PosixPreferencesChanges &changes) const {
    const PropertyListValue &root = _document.list.root();
    std::erase_if(changes, [&root](const auto &change) {
        const PropertyListValue *value = root.find(change.first);
        return value != nullptr && value->equals(change.second.root());
    });
}

PosixPreferencesStore::Saving PosixPreferencesStore::_saveOnce(PosixPreferencesChanges changes) {
    _refresh();
    if (_document.state == PosixPreferencesDocument::State::Unreadable) {
        return _refuse(_document.why);
    }
    _dropEqual(changes);
    if (changes.empty()) {
        return Saving::Done;
    }
    const std::optional<std::string> target = resolvedPreferencesPath(_path);
    if (!target) {
        return _refuse(std::string("its links lead nowhere: ") + std::strerror(errno));
    }
    FileDescriptor old;
    if (_document.state == PosixPreferencesDocument::State::Dictionary) {
        old = openPreferencesFile(*target);
        if (!old || ::faccessat(AT_FDCWD, target->c_str(), W_OK, AT_EACCESS) != 0) {
            return _refuse(std::string("it may not be written: ") + std::strerror(errno));
        }
    }
    std::string why;
    const std::optional<PosixPreferencesEdit> edit = planPreferencesEdit(_document, changes, old.get(), why);
    if (!edit) {
        return _refuse(why);
    }
    return _replace(*target, old, *edit);
}

PosixPreferencesStore::Saving PosixPreferencesStore::_replace(const std::string &target, const FileDescriptor &old,
                                                              const PosixPreferencesEdit &edit) {
    if (!old && !makePrivateFolders(folderOfPreferencesPath(target))) {
        return _refuse(std::string("its folder cannot be made: ") + std::strerror(errno));
    }
    PosixPreferencesReplacement replacement;
    bool written = replacement.begin(target);
    for (const PosixPreferencesPiece &piece : edit.pieces) {
        written = written && replacement.copy(old.get(), piece.oldBegin, piece.oldEnd) && replacement.write(piece.text);
    }
    struct stat status {};
    if (old && !(::fstat(old.get(), &status) == 0 && PosixPreferencesIdentity::of(status) == _document.identity)) {
        return Saving::Again;
    }
    if (!written || (old && !replacement.takeAttributes(old.get()))) {
        return _refuse(replacement.why());
    }
    std::string why;
    if (!holds(replacement.file(), edit.result, why)) {
        return _refuse(why);
    }
    const auto outcome = replacement.publish(old ? std::optional(_document.identity) : std::nullopt);
    if (outcome == PosixPreferencesReplacement::Outcome::Failed) {
        return _refuse(replacement.why());
    }
    if (outcome == PosixPreferencesReplacement::Outcome::TargetChanged) {
        return Saving::Again;
    }
    _document.list = edit.result;
    _document.state = PosixPreferencesDocument::State::Dictionary;
    _document.sites = {};
    _document.settled = false; // places in the file have moved: the next look reads it anew
    return Saving::Done;
}

std::optional<PropertyList> PosixPreferencesStore::copyAppValue(std::string_view key) {
    const auto pending = std::find_if(_pending.begin(), _pending.end(), [key](const auto &change) { return change.first == key; });
    if (pending != _pending.end()) {
        return pending->second;
    }
    const PropertyListValue *value = _document.list.root().find(key);
    return value == nullptr ? std::nullopt : std::optional(_document.list.at(*value));
}

void PosixPreferencesStore::setAppValue(std::string_view key, const PropertyList &value) {
    const auto pending = std::find_if(_pending.begin(), _pending.end(), [key](const auto &change) { return change.first == key; });
    if (pending != _pending.end()) {
        pending->second = value;
        return;
    }
    _pending.emplace_back(key, value);
}

bool PosixPreferencesStore::canStoreText(std::string_view text) {
    return _document.format == PropertyListFormat::Binary ? propertylist::isUTF8(text) : propertylist::isXMLText(text);
}

std::optional<PropertyList> PosixPreferencesStore::dictionaryWithContentsOfFile() {
    if (isCurrentPreferencesDocument(_document, _path)) {
        return _document.state == PosixPreferencesDocument::State::Missing ? std::nullopt : std::optional(_document.list);
    }
    const PosixPreferencesDocument document = readPreferencesDocument(_path);
    return document.state == PosixPreferencesDocument::State::Dictionary ? std::optional(document.list) : std::nullopt;
}

} // namespace orvane
