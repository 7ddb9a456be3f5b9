#include "presets/ORVPresetManager.h"

#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetManager_walk.h"
#include "presets/ORVPropertyListReading.h"
#include "presets/ORVUTF16.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>
#include <utility>

// Creation of file nodes: names, modes, and the making of a hierarchy from its base on.

namespace orvane {

namespace {

constexpr const char *ErrorDomain = "ORVPresetManager";
constexpr std::size_t PermissionUnits = 3;

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// What substitution or cleaning could change.
constexpr auto SpecialCharacters = [] {
    std::array<bool, 256> table{};
    for (const char c : {'{', '}', '\\', ':', '/'}) {
        table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}();

bool isSpecial(char c) {
    return SpecialCharacters[static_cast<unsigned char>(c)];
}

/// Alerts name the item alone; the log has the system's reason, too. An entry for which there is no memory is lost: whoever
/// has failed must still come to take away what was made.
void logFailure(SystemLog &log, std::string_view message, int error) {
    try {
        const std::string reason = error != 0 ? ' ' + ORVTextOfSystemError(error) + '.' : std::string();
        log.log("ORV creation error: " + std::string(message) + reason);
    } catch (const std::bad_alloc &) {
        return;
    }
}

} // namespace

std::string ORVPresetManager::cleanFilesystemEntities(std::string_view name) {
    std::string result(name);
    for (char &c : result) {
        if (c == ':' || c == '/') {
            c = '_';
        }
    }
    return result;
}

void ORVPresetManager::_putNameOf(const PropertyListValue *filename, std::span<const PromptValueRow> rows, std::string &name) const {
    std::string storage;
    const std::string_view text = ORVTextView(filename, storage);
    if (std::none_of(text.begin(), text.end(), isSpecial)) { // as most are: nothing to substitute or to clean
        name = text;
    } else {
        name = cleanFilesystemEntities(replaceBracketedKeysReplace(text, rows));
    }
}

std::optional<unsigned> ORVPresetManager::modeOfPermissions(std::string_view permissions) {
    // Three units are 3 to 9 bytes long.
    if (permissions.size() < PermissionUnits || permissions.size() > 3 * PermissionUnits ||
        ORVUTF16Length(permissions) != PermissionUnits) {
        return std::nullopt;
    }
    // What C's "%o" conversion reads (C17, 7.21.6.2): white space, a sign, octal digits.
    while (!permissions.empty() && isSpace(permissions.front())) {
        permissions.remove_prefix(1);
    }
    const bool negative = permissions.starts_with('-');
    if (negative || permissions.starts_with('+')) {
        permissions.remove_prefix(1);
    }
    unsigned mode = 0;
    for (; !permissions.empty() && permissions.front() >= '0' && permissions.front() <= '7'; permissions.remove_prefix(1)) {
        mode = mode * 8 + static_cast<unsigned>(permissions.front() - '0');
    }
    constexpr unsigned ModeBits = 07777;
    return (negative ? 0U - mode : mode) & ModeBits;
}

bool ORVPresetManager::createFileNodeAtBasePathWithReplacePairs(const PropertyListValue &node, std::string_view basePath,
                                                                std::span<const PromptValueRow> replacePairs) {
    return _createNode(node, basePath, replacePairs, nullptr);
}

bool ORVPresetManager::_createNode(const PropertyListValue &node, std::string_view basePath, std::span<const PromptValueRow> replacePairs,
                                   const ORVTreeSurvey *survey) {
    _failedHierarchy.reset();
    const bool isFolder = ORVBoolValue(node.find("isFolder"));
    std::string topName;
    _putNameOf(node.find("filename"), replacePairs, topName);
    if (topName.empty()) {
        return false;
    }
    const std::string topPath = stringByAppendingPathComponent(basePath, topName);
    // Folders that are missing on the way are made for a folder, but not for a file.
    errno = 0;
    std::unique_ptr<HierarchyWriter> writer =
        isFolder || _ports.fileSystem.fileExists(basePath) ? _ports.fileSystem.beginHierarchy(basePath.empty() ? "." : basePath) : nullptr;
    if (!writer) {
        const int error = errno;
        const std::string message = isFolder ? "Unable to create directory " + topPath + "." : "Unable to create file '" + topPath + "'.";
        logFailure(_ports.log, message, error);
        _setFileCreationError(message);
        return false;
    }
    CreationRun run{*this, replacePairs, topPath, survey};
    CreationWalk walk(run, *writer, stringByAppendingPathComponent(basePath, ""));
    bool ranOutOfMemory = false;
    const bool made = _makeOrRunOutOfMemory(walk, node, ranOutOfMemory);
    const bool wasStopped = !made && writer->lastError() == EINTR;
    if (!made && !wasStopped && run.isInDoubt()) {
        return _createNodeAgain(node, basePath, replacePairs, std::move(writer));
    }
    if (!wasStopped) {
        run.logEmptied();
    }
    if (!made) {
        if (ranOutOfMemory) {
            _setFileCreationError("Unable to create directory " + topPath + ".");
            logFailure(_ports.log, "Unable to create directory " + topPath + ".", ENOMEM);
        }
        if (walk.failure().message) {
            _setFileCreationError(*walk.failure().message);
        }
        if (!wasStopped && !walk.failure().entry().empty()) {
            logFailure(_ports.log, walk.failure().entry(), walk.failure().error);
        }
        _failedHierarchy = std::move(writer);
        _failedPath = topPath;
    }
    writer.reset();
    _ports.fileSystem.forgetContents();
    return made;
}

/// Want of memory is a failure like any other: what has been made is taken away.
bool ORVPresetManager::_makeOrRunOutOfMemory(CreationWalk &walk, const PropertyListValue &node, bool &ranOut) {
    try {
        return walk.make({&node, 1});
    } catch (const std::bad_alloc &) {
        ranOut = true;
        return false;
    }
}

/// What two threads could not decide, one does.
bool ORVPresetManager::_createNodeAgain(const PropertyListValue &node, std::string_view basePath,
                                        std::span<const PromptValueRow> replacePairs, std::unique_ptr<HierarchyWriter> writer) {
    writer->removeEverythingMade();
    writer.reset();
    _ports.fileSystem.forgetContents();
    if (_ports.progress != nullptr) {
        _ports.progress->startedOver();
    }
    return _createNode(node, basePath, replacePairs, nullptr);
}

const std::string &ORVPresetManager::applicationSupportPath() {
    if (!_applicationSupport) {
        _applicationSupport = ORVApplicationSupportPath(_ports.folders);
    }
    return *_applicationSupport;
}

void ORVPresetManager::_setFileCreationError(std::string message) {
    _fileCreationError = ORVError{ErrorDomain, 0, {{LocalizedDescriptionKey, std::move(message)}}};
}

} // namespace orvane
