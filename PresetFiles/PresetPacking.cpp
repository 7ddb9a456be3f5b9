#include "PresetPacking.h"

#include "CommandSupport.h"
#include "Translation.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixContentCopy.h"
#include "platform/propertylist/PropertyListFiles.h"
#include "platform/propertylist/PropertyListText.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <unordered_map>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

constexpr mode_t ScriptMode = 0755;
constexpr mode_t UsualContentMode = 0644;
/// A larger file is no text of a template any more; the whole preset file is made in memory.
constexpr off_t LargestContent = off_t{1} << 30;

/// Where a path leads in the end: the target of a link that exists, else the path.
std::string endOfLinks(const std::string &path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : path;
}

} // namespace

std::optional<std::string_view> firstTextThatDoesNot(const std::function<bool(std::string_view)> &hold, const PropertyListValue &root) {
    std::vector<PropertyListValue> open{root};
    while (!open.empty()) {
        const PropertyListValue value = open.back();
        open.pop_back();
        if (value.isString() && !hold(value.string())) {
            return value.string();
        }
        for (const PropertyListEntry &entry : value.dictionary()) {
            if (!hold(entry.key)) {
                return entry.key;
            }
            open.push_back(entry.value);
        }
        const auto items = value.array();
        open.insert(open.end(), items.begin(), items.end());
    }
    return std::nullopt;
}

std::optional<std::string> bytesOfPresetFile(const ORVPackedPreset &parts, std::string &why) {
    const PropertyList packed = ORVPackPreset(parts);
    return firstTextThatDoesNot(propertylist::isXMLText, packed.root()) ? writeBinaryPropertyList(packed.root(), &why)
                                                                        : writeXMLPropertyList(packed.root(), &why);
}

/// Reads a regular file whole, links followed; nothing, with the reason in `why`, for anything else.
std::optional<PresetPartsReader::File> PresetPartsReader::_readResource(const std::string &path, std::string &why) {
    const FileDescriptor file(uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        why = textOfError(errno);
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode) || status.st_size > LargestContent) {
        why = S_ISDIR(status.st_mode)   ? localized("it is a folder")
              : S_ISREG(status.st_mode) ? localized("it is larger than 1 GiB")
                                        : localized("it is no ordinary file");
        return std::nullopt;
    }
    File result{std::string(static_cast<std::size_t>(status.st_size), '\0'), status.st_mode & 0777U};
    std::size_t done = 0;
    while (done < result.bytes.size()) {
        const ssize_t count = uninterrupted([&] { return ::read(file.get(), &result.bytes[done], result.bytes.size() - done); });
        if (count < 0) {
            why = textOfError(errno);
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    result.bytes.resize(done);
    return result;
}

ORVPackedPreset PresetPartsReader::read(const PropertyList &preset) {
    ORVPackedPreset parts{preset, {}, std::nullopt};
    for (std::string &name : ORVContentNamesOfPreset(preset.root())) {
        if (const File *file = _read(ORVFileContentFolder, name, forTranslation("the content file '%1' is left out: %2"))) {
            parts.contents.push_back({std::move(name), file->bytes, file->mode});
        }
    }
    std::string script = ORVTextValue(preset.root().find("scriptFile"));
    if (!script.empty()) {
        if (const File *file = _read(ORVScriptsFolder, script, forTranslation("the script '%1' is left out: %2"))) {
            parts.script = ORVPackedScript{std::move(script), file->bytes};
        }
    }
    return parts;
}

const PresetPartsReader::File *PresetPartsReader::_read(std::string_view folder, const std::string &name, const char *warning) {
    std::string why;
    auto file = _readResource(stringByAppendingPathComponent(stringByAppendingPathComponent(_supportPath, folder), name), why);
    if (!file) {
        _warn(localized(warning, {name, why}));
        return nullptr;
    }
    return &_files.emplace_back(std::move(*file));
}

PresetAddition::PresetAddition(const ORVPackedPreset &parts, const std::string &supportPath, PackingWarning warn)
    : _parts(parts), _supportPath(supportPath), _warn(std::move(warn)),
      _contents(stringByAppendingPathComponent(supportPath, ORVFileContentFolder)),
      _scripts(stringByAppendingPathComponent(supportPath, ORVScriptsFolder)) {}

bool PresetAddition::storeResources(std::string &problem) {
    std::unordered_map<std::string_view, const ORVPackedContent *> packed;
    for (const ORVPackedContent &content : _parts.contents) {
        packed.emplace(content.name, &content);
    }
    const std::vector<std::string> used = ORVContentNamesOfPreset(_parts.preset.root());
    for (const std::string &name : used) {
        const auto content = packed.find(name);
        if (content == packed.end()) {
            _keepContentName(name);
        } else if (!_storeContent(*content->second, problem)) {
            return false;
        }
        packed.erase(name);
    }
    for (const auto &[name, content] : packed) {
        _warn(localized("the content file '%1' is not used by the preset: left out", {std::string(name)}));
    }
    return _storeScript(problem);
}

bool PresetAddition::flush(std::string &problem) {
    const bool flushed = _contents.flush() && _scripts.flush();
    if (!flushed) {
        problem = withReason(_supportPath, textOfError(errno));
    }
    return flushed;
}

void PresetAddition::keep() {
    _contents.keep();
    _scripts.keep();
}

bool PresetAddition::_storeContent(const ORVPackedContent &content, std::string &problem) {
    const std::string safe = ORVSafeFileName(content.name);
    const auto stored = _contents.addBytes(safe.empty() ? "Content" : safe, content.data, content.mode.value_or(UsualContentMode));
    if (!stored) {
        problem = localized("the content file '%1' cannot be stored: %2", {content.name, textOfError(errno)});
        return false;
    }
    if (*stored != content.name) {
        _names.contents.emplace(content.name, *stored);
    }
    return true;
}

/// A name without contents in the file stays, as far as it is one.
void PresetAddition::_keepContentName(const std::string &name) {
    _warn(localized("the contents of '%1' are not in the file", {name}));
    std::string safe = ORVSafeFileName(name);
    if (safe != name) {
        _names.contents.emplace(name, std::move(safe));
    }
}

bool PresetAddition::_storeScript(std::string &problem) {
    const std::string name = ORVTextValue(_parts.preset.root().find("scriptFile"));
    const bool isPacked = _parts.script && _parts.script->name == name;
    if (_parts.script && !isPacked) {
        _warn(localized("the script '%1' is not the preset's: left out", {_parts.script->name}));
    }
    if (name.empty()) {
        return true;
    }
    const std::string safe = ORVSafeFileName(name);
    if (!isPacked) {
        _warn(localized("the script '%1' is not in the file", {name}));
        _names.script = safe == name ? std::nullopt : std::optional(safe);
        return true;
    }
    _script = _scripts.addBytes(safe.empty() ? "Script" : safe, _parts.script->data, ScriptMode);
    if (!_script) {
        problem = localized("the script '%1' cannot be stored: %2", {name, textOfError(errno)});
        return false;
    }
    _names.script = *_script == name ? std::nullopt : _script;
    return true;
}

bool writeWholeFile(const std::string &path, std::string_view bytes, bool replaces, mode_t mode) {
    const std::string target = replaces ? endOfLinks(path) : path;
    const std::size_t start = target.rfind('/') + 1;
    const std::string above = start == 0 ? "." : target.substr(0, start);
    const std::string name = target.substr(start);
    const FileDescriptor folder(uninterrupted([&] { return ::open(above.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
    std::string hidden;
    FileDescriptor file = folder ? makeHiddenFile(folder.get(), hidden, mode) : FileDescriptor();
    if (!file) {
        return false;
    }
    const bool written = writeContents(file.get(), bytes) && uninterrupted([&] { return ::fsync(file.get()); }) == 0 && file.closeChecked();
    const bool made = written && (replaces ? ::renameat(folder.get(), hidden.c_str(), folder.get(), name.c_str()) == 0
                                           : publishHiddenFile(folder.get(), hidden, name));
    if (!made) {
        const int error = errno;
        ::unlinkat(folder.get(), hidden.c_str(), 0);
        errno = error;
        return false;
    }
    // Some file systems cannot flush a folder, and some folders may not be read; the new file stands there all the same.
    const FileDescriptor readable(uninterrupted([&] { return ::openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (readable) {
        uninterrupted([&] { return ::fsync(readable.get()); });
    }
    return true;
}

} // namespace orvane
