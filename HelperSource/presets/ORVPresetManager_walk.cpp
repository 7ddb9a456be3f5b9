#include "presets/ORVPresetManager_walk.h"

#include "presets/ORVFileHelpers.h"
#include "presets/ORVPropertyListReading.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <new>
#include <system_error>
#include <utility>

namespace orvane {

namespace {

/// From so many nodes on a second thread gains more than its start costs.
constexpr std::size_t LeastForTwoThreads = 80;
/// The same for files of one folder, of which the second thread does no more than a third of the work.
constexpr std::size_t LeastForFinishing = 400;
/// Parts into which a folder is cut, about: enough for both threads to end at the same time.
constexpr std::size_t UsualParts = 64;
/// But a part has at least about so many nodes, so that taking it costs little beside making them.
constexpr std::size_t LeastInPart = 4;
/// A folder that holds more than so many parts is cut itself.
constexpr std::size_t LargestPart = 2;
/// After so many refusals the writer is not asked again: most disks that refuse one folder refuse all, and cutting costs time.
constexpr unsigned MostRefusals = 4;
/// Folders made ahead, at most. Recursion goes no deeper.
constexpr std::size_t MostAhead = 64;

ItemAttributes attributesOf(const ORVNodeEntries &entries) {
    std::string storage;
    ItemAttributes result;
    if (const std::string_view name = ORVTextView(entries.color, storage); !name.empty()) {
        const long label = ORVFinderLabelForColor(name);
        result.label = label == ORVNotFound ? 0 : static_cast<int>(label);
    }
    result.mode = ORVPresetManager::modeOfPermissions(ORVTextView(entries.permissions, storage));
    return result;
}

/// Failures that strike whoever comes last: something has run out. With two threads that is not the same item every time. A folder
/// that was closed for want of descriptors, and could not be opened again, tells so by EBADF.
bool dependsOnOrder(int error) {
    return error == ENOSPC || error == EDQUOT || error == EMFILE || error == ENFILE || error == ENOMEM || error == EMLINK || error == EBADF;
}

/// FNV-1a (Fowler, Noll, Vo) over the name in ASCII lower case.
std::uint64_t hashOfName(std::string_view name) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char c : name) {
        const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        hash = (hash ^ static_cast<unsigned char>(lower)) * 0x100000001B3U;
    }
    return hash;
}

} // namespace

std::string ORVTextOfSystemError(int error) {
    return std::generic_category().message(error);
}

const ContentSource *ORVPresetManager::CreationRun::contentNamed(std::string_view contentFilename) {
    FileSystem &files = manager._ports.fileSystem;
    if (isMadeAmongContents()) {
        files.forgetContents();
        return files.contentSource(stringByAppendingPathComponent(_contentFolder(), contentFilename));
    }
    std::unique_lock lock(_monitor);
    auto known = _contents.find(contentFilename);
    if (known == _contents.end()) {
        known = _contents.try_emplace(std::string(contentFilename)).first;
    }
    const std::string &folder = _contentFolder();
    lock.unlock();
    Content &content = known->second;
    const std::lock_guard contentLock(content.monitor);
    if (!content.source) {
        content.source = files.contentSource(stringByAppendingPathComponent(folder, contentFilename));
    }
    return *content.source;
}

void ORVPresetManager::CreationRun::noteEmptied(Emptied emptied) {
    if (_emptied.count == 0) {
        _emptied.first = std::move(emptied.first);
    }
    _emptied.count += emptied.count;
}

void ORVPresetManager::CreationRun::logEmptied() {
    if (_emptied.count == 0) {
        return;
    }
    try {
        const std::string others = _emptied.count > 1 ? " (" + std::to_string(_emptied.count - 1) + " more like it)" : "";
        manager._ports.log.log("The contents could not be copied, so the file is empty: " + _emptied.first + others);
    } catch (const std::bad_alloc &) { // lost, but what follows must happen
        return;
    }
}

bool ORVPresetManager::CreationRun::isInDoubt() {
    dependsOnOrder = dependsOnOrder || (wasShared && manager._ports.fileSystem.haveContentsChanged());
    return dependsOnOrder;
}

bool ORVPresetManager::CreationRun::isMadeAmongContents() {
    const std::lock_guard lock(_monitor);
    const std::string &contents = _contentFolder();
    return topPath.starts_with(contents) || contents.starts_with(topPath);
}

const std::string &ORVPresetManager::CreationRun::_contentFolder() {
    if (_folder.empty()) {
        _folder = stringByAppendingPathComponent(manager.applicationSupportPath(), ORVFileContentFolder);
    }
    return _folder;
}

bool ORVPresetManager::CreationWalk::make(std::span<const PropertyListValue> nodes) {
    return std::all_of(nodes.begin(), nodes.end(), [this](const PropertyListValue &node) {
        bool isGood = !_isInVain() && _makeNode(node);
        while (isGood && !_open.empty()) {
            isGood = _goOn();
        }
        return isGood;
    });
}

/// One step in the folder whose contents are being made.
bool ORVPresetManager::CreationWalk::_goOn() {
    OpenFolder &folder = _open.back();
    if (folder.left.empty()) {
        return _leave();
    }
    if (folder.isLarge && !folder.wasTried) {
        return _makeOnTwoThreads(folder);
    }
    const PropertyListValue &child = folder.left.front();
    folder.left = folder.left.subspan(1);
    return !_isInVain() && _makeNode(child);
}

/// False when the creation has to be made again, which shows before its outermost folder is left at the latest.
bool ORVPresetManager::CreationWalk::_leave() {
    if (_open.size() == 1 && !_isBesideAnother() && _run.isInDoubt()) {
        return false;
    }
    _writer.leaveFolder(_open.back().attributes);
    _path.resize(_open.back().pathLength);
    _open.pop_back();
    return true;
}

bool ORVPresetManager::CreationWalk::_makeNode(const PropertyListValue &node) {
    const ORVNodeEntries entries(node);
    _run.manager._putNameOf(entries.filename, _run.replacePairs, _name);
    if (_name.empty()) {
        _failure = {std::nullopt, "An item in '" + _path + "' has an empty name."};
        return false; // deliberately without an error of its own: the last one stays
    }
    const bool made = ORVBoolValue(entries.isFolder) ? _enter(entries) : _makeFile(entries);
    if (made && _run.manager._ports.progress != nullptr) {
        _run.manager._ports.progress->advanced(1);
    }
    return made;
}

bool ORVPresetManager::CreationWalk::_enter(const ORVNodeEntries &entries) {
    const std::size_t parentLength = _path.size();
    if (!_writer.enterFolder(_name)) {
        return _fail("Unable to create directory " + stringByAppendingPathComponent(_path, _name) + ".");
    }
    if (!_path.empty() && _path.back() != '/') {
        _path += '/';
    }
    _path += _name;
    const auto children = entries.childNodes();
    _open.push_back({children, attributesOf(entries), parentLength, _isLargeFolder(children)});
    return true;
}

bool ORVPresetManager::CreationWalk::_makeFile(const ORVNodeEntries &entries) {
    const ItemAttributes attributes = attributesOf(entries);
    std::string storage;
    const ContentSource *source = _contentNamed(ORVTextView(entries.contentFilename, storage));
    if (source != nullptr) {
        if (_writer.copyItem(_name, *source, attributes)) {
            return true;
        }
        _noteReason();
        _noteEmptied();
    }
    // Deliberately no message about contents that are missing or cannot be copied: the file is made empty instead.
    return _writer.makeEmptyFile(_name, attributes) ||
           _fail("Unable to create file '" + stringByAppendingPathComponent(_path, _name) + "'.");
}

const ContentSource *ORVPresetManager::CreationWalk::_contentNamed(std::string_view contentFilename) {
    if (contentFilename.empty()) {
        return nullptr;
    }
    if (const auto known = _contents.find(contentFilename); known != _contents.end()) {
        return known->second;
    }
    const ContentSource *source = _run.contentNamed(contentFilename);
    if (!_run.isMadeAmongContents()) {
        _contents.emplace(contentFilename, source);
    }
    return source;
}

bool ORVPresetManager::CreationWalk::_fail(std::string message) {
    _noteReason();
    _failure = {std::move(message), {}, _writer.lastError()};
    return false;
}

void ORVPresetManager::CreationWalk::_noteReason() {
    if (_isBesideAnother() && dependsOnOrder(_writer.lastError())) {
        _run.dependsOnOrder = true;
    }
}

void ORVPresetManager::CreationWalk::_noteEmptied() {
    CreationRun::Emptied one{"'" + stringByAppendingPathComponent(_path, _name) + "': " + ORVTextOfSystemError(_writer.lastError()), 1};
    if (_shared == nullptr) {
        _run.noteEmptied(std::move(one));
        return;
    }
    const std::lock_guard lock(_shared->monitor);
    CreationRun::Emptied &ofPart = _shared->emptied.try_emplace(_part, CreationRun::Emptied{std::move(one.first)}).first->second;
    ++ofPart.count;
}

/// Whether a single thread would never have come here, or the whole creation has to be made again.
bool ORVPresetManager::CreationWalk::_isInVain() const {
    return _run.dependsOnOrder.load(std::memory_order_relaxed) ||
           (_shared != nullptr && _shared->firstFailed.load(std::memory_order_relaxed) < _part);
}

bool ORVPresetManager::CreationWalk::_isLargeFolder(std::span<const PropertyListValue> children) const {
    const bool mayBe =
        _run.survey != nullptr && !_isBesideAnother() && _run.refusals < MostRefusals && (_open.empty() || _open.back().isLarge);
    return mayBe && _run.survey->sizeOf(children) >= LeastForTwoThreads;
}

/// Tries to make all that is in a folder, of which nothing is there yet. False when that failed. True otherwise; nothing is
/// left then, or everything, for this thread to make alone.
bool ORVPresetManager::CreationWalk::_makeOnTwoThreads(OpenFolder &folder) {
    folder.wasTried = true;
    const auto children = folder.left;
    if (_areMostlyFiles(children)) {
        return _makeWhileAnotherFinishes(folder);
    }
    const std::size_t wanted = std::max(_run.survey->sizeOf(children) / UsualParts, LeastInPart);
    SharedParts shared;
    if (children.size() < 2 || !_cut(children, FolderAhead::InCurrent, wanted, shared) || shared.parts.size() < 2 ||
        _run.isMadeAmongContents()) {
        return true;
    }
    const std::string path = _path;
    const TwoThreads result = _writer.makeOnTwoThreads(shared.ahead, [&](HierarchyWriter &writer) {
        try {
            CreationWalk walk(_run, writer, path);
            walk._makeParts(shared);
        } catch (const std::bad_alloc &) {
            _run.dependsOnOrder = true;
        }
    });
    if (result == TwoThreads::Refused) {
        ++_run.refusals;
        return true;
    }
    folder.left = {};
    _failure = std::move(shared.failure);
    for (auto &[part, emptied] : shared.emptied) {
        if (part <= shared.firstFailed) {
            _run.noteEmptied(std::move(emptied));
        }
    }
    _run.wasShared = true;
    _run.dependsOnOrder = _run.dependsOnOrder || result == TwoThreads::Failed;
    return shared.firstFailed == std::numeric_limits<std::size_t>::max() && !_run.dependsOnOrder && _finishAhead(shared);
}

/// Whether most of what is below lies in the folder itself, where two threads would stand in each other's way.
bool ORVPresetManager::CreationWalk::_areMostlyFiles(std::span<const PropertyListValue> children) const {
    const auto files = std::count_if(children.begin(), children.end(),
                                     [](const PropertyListValue &child) { return !ORVBoolValue(ORVNodeEntries(child).isFolder); });
    return static_cast<std::size_t>(files) >= _run.survey->sizeOf(children) / 4 * 3;
}

/// Makes all that is in a folder, as a single thread does it, while another one completes the files. Results are as above.
bool ORVPresetManager::CreationWalk::_makeWhileAnotherFinishes(OpenFolder &folder) {
    if (_run.survey->sizeOf(folder.left) < LeastForFinishing || _run.isMadeAmongContents()) {
        return true;
    }
    CreationWalk walk(_run, _writer, _path);
    walk._isFinishedByAnother = true;
    bool isMade = false;
    const auto work = [&] {
        try {
            isMade = walk.make(folder.left);
        } catch (const std::bad_alloc &) { // a single thread may get by with what there is
            _run.dependsOnOrder = true;
        }
    };
    const auto finished = [this](bool isGood) {
        if (!isGood) {
            _run.dependsOnOrder = true;
        }
    };
    const TwoThreads result = _writer.finishOnSecondThread(std::ref(work), std::ref(finished)); // neither takes memory
    if (result == TwoThreads::Refused) {
        ++_run.refusals;
        return true;
    }
    folder.left = {};
    _failure = std::move(walk._failure);
    _run.wasShared = true;
    _run.dependsOnOrder = _run.dependsOnOrder || result == TwoThreads::Failed;
    return isMade && !_run.dependsOnOrder;
}

/// Takes one part after the other, from the front or from the end, until none is left that a single thread would come to.
void ORVPresetManager::CreationWalk::_makeParts(SharedParts &shared) {
    _shared = &shared;
    const bool isForwards = !shared.isTakenFromFront.exchange(true);
    if (!isForwards && !shared.unchecked.empty() && !_haveDistinctNames(shared.unchecked)) {
        return; // the one that takes them from the front makes them all
    }
    for (std::size_t own = 0; shared.taken++ < shared.parts.size(); ++own) {
        _part = isForwards ? own : shared.parts.size() - 1 - own;
        if (_isInVain()) {
            break;
        }
        if (_makePart(shared, shared.parts[_part])) {
            continue;
        }
        {
            const std::lock_guard lock(shared.monitor);
            if (!_isInVain()) {
                shared.firstFailed = _part;
                shared.failure = std::move(_failure);
            }
        }
        if (isForwards) {
            return;
        }
        _leaveOpenFolders(); // what comes before has to be made all the same, and two make it sooner
    }
    static_cast<void>(_goTo(shared, FolderAhead::InCurrent)); // only upwards
}

/// Back to where a part began that could not be made to its end.
void ORVPresetManager::CreationWalk::_leaveOpenFolders() {
    for (; !_open.empty(); _open.pop_back()) {
        _writer.leaveFolder({});
        _path.resize(_open.back().pathLength);
    }
}

bool ORVPresetManager::CreationWalk::_makePart(const SharedParts &shared, const Part &part) {
    try {
        return _goTo(shared, part.folder) && make(part.nodes);
    } catch (const std::bad_alloc &) { // a single thread may get by with what there is
        _run.dependsOnOrder = true;
        return false;
    }
}

/// Goes to a folder made ahead, or to the one in which they were made.
bool ORVPresetManager::CreationWalk::_goTo(const SharedParts &shared, std::size_t folder) {
    std::vector<std::size_t> way;
    while (_ahead != folder) {
        if (folder != FolderAhead::InCurrent && (_ahead == FolderAhead::InCurrent || folder > _ahead)) { // made after: not above
            way.push_back(folder);
            folder = shared.ahead[folder].parent;
        } else {
            _writer.leaveFolder({});
            _path.resize(_path.rfind('/'));
            _ahead = shared.ahead[_ahead].parent;
        }
    }
    for (; !way.empty(); way.pop_back()) {
        const std::string &name = shared.ahead[way.back()].name;
        if (!_writer.enterFolder(name)) {
            _run.dependsOnOrder = true; // it is not what it was: nothing that two threads could tell
            return false;
        }
        _path.append("/").append(name);
        _ahead = way.back();
    }
    return true;
}

/// Gives the folders made ahead what they get when they are complete, those inside of others first.
bool ORVPresetManager::CreationWalk::_finishAhead(const SharedParts &shared) {
    for (std::size_t i = shared.ahead.size(); i-- > 0;) {
        if (!_goTo(shared, i)) {
            return false;
        }
        _writer.leaveFolder(shared.attributes[i]);
        _path.resize(_path.rfind('/'));
        _ahead = shared.ahead[i].parent;
        if (_run.manager._ports.progress != nullptr) {
            _run.manager._ports.progress->advanced(1);
        }
    }
    return _goTo(shared, FolderAhead::InCurrent);
}

/// Cuts what is in a folder into parts of about the wanted size; a child that is larger by itself is to be made ahead and is cut,
/// too. False when that cannot be: names that two threads would be at odds about, or too many folders ahead. Where nothing is to be
/// made ahead, the names are left to the second thread, so that the first one can begin.
bool ORVPresetManager::CreationWalk::_cut(std::span<const PropertyListValue> children, std::size_t folder, std::size_t wanted,
                                          SharedParts &shared) {
    std::size_t begin = 0;
    std::size_t size = 0;
    const auto endPart = [&](std::size_t end) {
        if (end > begin) {
            shared.parts.push_back({folder, children.subspan(begin, end - begin)});
        }
        begin = end;
        size = 0;
    };
    for (std::size_t i = 0; i < children.size(); ++i) {
        const ORVNodeEntries entries(children[i]);
        const std::size_t inside = ORVBoolValue(entries.isFolder) ? _run.survey->sizeOf(entries.childNodes()) : 0;
        if (inside < LargestPart * wanted) {
            size += 1 + inside;
            if (size >= wanted) {
                endPart(i + 1);
            }
            continue;
        }
        endPart(i);
        begin = i + 1;
        std::string name;
        _run.manager._putNameOf(entries.filename, _run.replacePairs, name);
        const std::size_t ahead = shared.ahead.size();
        shared.ahead.push_back({folder, std::move(name)});
        shared.attributes.push_back(attributesOf(entries));
        if (ahead >= MostAhead || !_cut(entries.childNodes(), ahead, wanted, shared)) {
            return false;
        }
    }
    endPart(children.size());
    if (folder == FolderAhead::InCurrent && shared.ahead.empty()) {
        shared.unchecked = children;
        return true;
    }
    return _haveDistinctNames(children);
}

/// Whether all names differ, in more than the case of ASCII letters. Two of the same hash count as equal.
bool ORVPresetManager::CreationWalk::_haveDistinctNames(std::span<const PropertyListValue> nodes) {
    std::size_t slots = 64;
    while (slots < nodes.size() * 2) {
        slots *= 2;
    }
    std::vector<std::uint64_t> table(slots, 0); // open addressing; 0 where free
    for (const PropertyListValue &node : nodes) {
        _run.manager._putNameOf(ORVNodeEntries(node).filename, _run.replacePairs, _name);
        const std::uint64_t hash = std::max<std::uint64_t>(hashOfName(_name), 1);
        std::size_t slot = hash & (slots - 1);
        for (; table[slot] != 0; slot = (slot + 1) & (slots - 1)) {
            if (table[slot] == hash) {
                return false;
            }
        }
        table[slot] = hash;
    }
    return true;
}

} // namespace orvane
