#include "PosixSupportFolder.h"

#include "FolderImport.h"
#include "FolderWalk.h"
#include "PresetPacking.h"
#include "PropertyListFile.h"
#include "ResourceFolder.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixNewFile.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetFile.h"
#include "presets/ORVPresetManager.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {

namespace {

/// Execute bits for all who may read.
mode_t executable(mode_t mode) {
    return mode | ((mode & 0444U) >> 2U);
}

/// Whether a file is an entry of the folder, so that its name alone leads to it.
bool isDirectlyIn(const std::string &folder, const std::string &path) {
    struct stat there {};
    struct stat parent {};
    const std::string above = stringByDeletingLastPathComponent(path);
    return ::stat(folder.c_str(), &there) == 0 && ::stat(above.empty() ? "." : above.c_str(), &parent) == 0 &&
           there.st_dev == parent.st_dev && there.st_ino == parent.st_ino;
}

} // namespace

PosixSupportFolder::PosixSupportFolder(std::string supportPath, FinderInformation &finderInformation)
    : _supportPath(std::move(supportPath)), _finderInformation(finderInformation) {}

std::string PosixSupportFolder::pathOfContent(std::string_view name) const {
    return stringByAppendingPathComponent(stringByAppendingPathComponent(_supportPath, ORVFileContentFolder), name);
}

std::string PosixSupportFolder::pathOfScript(std::string_view name) const {
    return stringByAppendingPathComponent(stringByAppendingPathComponent(_supportPath, ORVScriptsFolder), name);
}

std::optional<std::string> PosixSupportFolder::_add(const std::string &folder, const std::string &path, bool isScript, Sentence &problem) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        problem = Sentence::ofError(errno);
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        problem = S_ISDIR(status.st_mode) ? forTranslation("it is a folder") : forTranslation("it is no ordinary file");
        return std::nullopt;
    }
    const std::string name = lastPathComponent(path);
    const mode_t mode = isScript ? executable(status.st_mode & 0777U) : status.st_mode & 0777U;
    if (isDirectlyIn(folder, path)) {
        if (mode != (status.st_mode & 0777U) && ::fchmod(file.get(), mode) != 0) {
            problem = Sentence::ofError(errno);
            return std::nullopt;
        }
        return name;
    }
    const std::string safe = ORVSafeFileName(name);
    if (safe.empty() || !isUTF8(safe)) {
        problem = forTranslation("its name cannot be used");
        return std::nullopt;
    }
    ResourceFolder store(folder);
    auto stored = store.addFile(safe, file.get(), mode);
    if (!stored || !store.flush()) {
        problem = Sentence::ofError(errno);
        return std::nullopt;
    }
    store.keep();
    return stored;
}

std::optional<std::string> PosixSupportFolder::addContent(const std::string &path, Sentence &problem) {
    return _add(stringByAppendingPathComponent(_supportPath, ORVFileContentFolder), path, false, problem);
}

std::optional<std::string> PosixSupportFolder::addScript(const std::string &path, Sentence &problem) {
    return _add(stringByAppendingPathComponent(_supportPath, ORVScriptsFolder), path, true, problem);
}

std::optional<IncomingPreset> PosixSupportFolder::importFolder(const FolderImportRequest &request, Sentence &problem) {
    FolderImportOptions options;
    options.folder = request.folder;
    options.name = lastPathComponent(request.folder);
    options.label = request.label.empty() ? options.name : request.label;
    options.variables = request.variables;
    if (options.name.empty() || options.name == "/" || !isUTF8(options.name)) {
        problem = forTranslation("its name cannot be used");
        return std::nullopt;
    }
    ResourceFolder store(stringByAppendingPathComponent(_supportPath, ORVFileContentFolder));
    options.contentStore = request.withContent ? &store : nullptr;
    auto imported = orvane::importFolder(options, _finderInformation, problem);
    if (!imported) {
        return std::nullopt;
    }
    if (!store.flush()) {
        problem = Sentence::ofError(errno);
        return std::nullopt;
    }
    store.keep();
    return IncomingPreset{std::move(imported->preset), {}, std::move(imported->warnings)};
}

std::optional<IncomingPreset> PosixSupportFolder::readPresetFile(const std::string &path, Sentence &problem) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
        problem = forTranslation("it is no ordinary file"); // which a window cannot wait for
        return std::nullopt;
    }
    const auto document = readPropertyListFile(path, problem);
    const auto parts = document ? ORVUnpackPreset(*document, problem) : std::nullopt;
    if (!parts) {
        return std::nullopt;
    }
    IncomingPreset incoming;
    PresetAddition addition(*parts, _supportPath, [&](const Sentence &text) { incoming.warnings.push_back(text); });
    if (!addition.storeResources(problem) || !addition.flush(problem)) {
        return std::nullopt;
    }
    addition.keep();
    incoming.preset = addition.preset();
    incoming.script = addition.script().value_or("");
    return incoming;
}

bool PosixSupportFolder::writePresetFile(const PropertyList &preset, const std::string &path, bool replaces,
                                         std::vector<Sentence> &warnings, Sentence &problem) {
    struct stat status {};
    if (!preset.root().isDictionary() || (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))) {
        problem =
            preset.root().isDictionary() ? forTranslation("it is not an ordinary file") : forTranslation("the preset is no dictionary");
        return false;
    }
    PresetPartsReader reader(_supportPath, [&](const Sentence &text) { warnings.push_back(text); });
    const ORVPackedPreset parts = reader.read(preset);
    const auto bytes = bytesOfPresetFile(parts, problem);
    if (!bytes) {
        return false;
    }
    if (!writeWholeFile(path, *bytes, replaces)) {
        problem = Sentence::ofError(errno);
        return false;
    }
    return true;
}

} // namespace orvane
