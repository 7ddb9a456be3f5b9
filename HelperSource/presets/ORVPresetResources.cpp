#include "presets/ORVPresetResources.h"

#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetManager.h"

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

/// Content sources keep their files open; this many at a time stay well below the usual limit of 1,024 descriptors.
constexpr std::size_t MostSourcesHeld = 128;
/// Linux reads an interpreter line within the first 256 bytes (include/uapi/linux/binfmts.h, BINPRM_BUF_SIZE).
constexpr std::size_t HeadSize = 256;

} // namespace

ORVStoredResources::ORVStoredResources(FileSystem &fileSystem, FinderInformation &finderInformation, std::string supportPath,
                                       HeadReader readHead)
    : _fileSystem(fileSystem), _finderInformation(finderInformation), _supportPath(std::move(supportPath)), _readHead(std::move(readHead)) {
}

ORVStoredResources::~ORVStoredResources() {
    if (_sourcesHeld > 0) {
        _fileSystem.forgetContents();
    }
}

ORVContentState ORVStoredResources::stateOfContent(std::string_view name) {
    const auto [entry, isNew] = _contents.try_emplace(std::string(name), ORVContentState::Usable);
    if (isNew) {
        const std::string store = stringByAppendingPathComponent(_supportPath, ORVFileContentFolder);
        entry->second = _lookUpContent(stringByAppendingPathComponent(store, name));
    }
    return entry->second;
}

ORVContentState ORVStoredResources::_lookUpContent(const std::string &path) {
    if (_sourcesHeld == MostSourcesHeld) {
        _fileSystem.forgetContents();
        _sourcesHeld = 0;
    }
    ++_sourcesHeld;
    if (_fileSystem.contentSource(path) != nullptr) {
        return _fileSystem.fileExists(path + "/.") ? ORVContentState::UsableFolder : ORVContentState::Usable;
    }
    if (!_fileSystem.fileExists(path)) {
        return _finderInformation.hasItem(path) ? ORVContentState::DeadLink : ORVContentState::Missing;
    }
    return _fileSystem.fileExists(path + "/.") ? ORVContentState::LinkToFolder : ORVContentState::Unusable;
}

ORVScriptState ORVStoredResources::stateOfScript(std::string_view name) {
    const std::string path = stringByAppendingPathComponent(stringByAppendingPathComponent(_supportPath, ORVScriptsFolder), name);
    if (!_fileSystem.fileExists(path)) {
        return ORVScriptState::Missing;
    }
    if (_fileSystem.fileExists(path + "/.")) {
        return ORVScriptState::Folder;
    }
    if (!_fileSystem.isExecutableFile(path)) {
        return ORVScriptState::NotExecutable;
    }
    const auto head = _readHead ? _readHead(path, HeadSize) : std::nullopt;
    return head ? _stateOfInterpreterLine(*head) : ORVScriptState::Usable;
}

ORVScriptState ORVStoredResources::_stateOfInterpreterLine(std::string_view head) {
    std::string interpreter;
    const ORVScriptState state = ORVScriptStateOfHead(head, interpreter);
    if (interpreter.empty() || _fileSystem.isExecutableFile(interpreter)) {
        return state;
    }
    return ORVScriptState::InterpreterMissing;
}

ORVScriptState ORVScriptStateOfHead(std::string_view head, std::string &interpreter) {
    if (head.starts_with("\x7f"
                         "ELF")) {
        return ORVScriptState::Usable;
    }
    if (!head.starts_with("#!")) {
        return ORVScriptState::NoInterpreterLine;
    }
    std::string_view line = head.substr(2, head.find('\n') - 2);
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    interpreter = line.substr(0, line.find_first_of(std::string_view(" \t\0", 3)));
    return interpreter.empty() ? ORVScriptState::InterpreterMissing : ORVScriptState::Usable;
}

} // namespace orvane
