#include "PresetPacking.h"

#include "platform/posix/FileDescriptor.h"
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

std::optional<std::string> bytesOfPresetFile(const ORVPackedPreset &parts, Sentence &why) {
    const PropertyList packed = ORVPackPreset(parts);
    std::string english;
    auto bytes = firstTextThatDoesNot(propertylist::isXMLText, packed.root()) ? writeBinaryPropertyList(packed.root(), &english)
                                                                              : writeXMLPropertyList(packed.root(), &english);
    if (!bytes) {
        why = Sentence::ofComposed(std::move(english));
    }
    return bytes;
}

/// Reads a regular file whole, links followed; nothing, with the reason in `why`, for anything else.
std::optional<PresetPartsReader::File> PresetPartsReader::_readResource(const std::string &path, Sentence &why) {
    const FileDescriptor file(uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        why = Sentence::ofError(errno);
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode) || status.st_size > LargestContent) {
        why = S_ISDIR(status.st_mode)   ? forTranslation("it is a folder")
              : S_ISREG(status.st_mode) ? forTranslation("it is larger than 1 GiB")
                                        : forTranslation("it is no ordinary file");
        return std::nullopt;
    }
    File result{std::string(static_cast<std::size_t>(status.st_size), '\0'), status.st_mode & 0777U};
    std::size_t done = 0;
    while (done < result.bytes.size()) {
        const ssize_t count = uninterrupted([&] { return ::read(file.get(), &result.bytes[done], result.bytes.size() - done); });
        if (count < 0) {
            why = Sentence::ofError(errno);
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

const PresetPartsReader::File *PresetPartsReader::_read(std::string_view folder, const std::string &name, FixedText warning) {
    Sentence why;
    auto file = _readResource(stringByAppendingPathComponent(stringByAppendingPathComponent(_supportPath, folder), name), why);
    if (!file) {
        _warn({warning, {name, why}});
        return nullptr;
    }
    return &_files.emplace_back(std::move(*file));
}

PresetAddition::PresetAddition(const ORVPackedPreset &parts, const std::string &supportPath, PackingWarning warn,
                               const std::function<bool()> &shouldStop)
    : _parts(parts), _supportPath(supportPath), _warn(std::move(warn)),
      _contents(stringByAppendingPathComponent(supportPath, ORVFileContentFolder), shouldStop),
      _scripts(stringByAppendingPathComponent(supportPath, ORVScriptsFolder), shouldStop) {}

bool PresetAddition::storeResources(Sentence &problem) {
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
        _warn({forTranslation("the content file '%1' is not used by the preset: left out"), {std::string(name)}});
    }
    return _storeScript(problem);
}

bool PresetAddition::flush(Sentence &problem) {
    const bool flushed = _contents.flush() && _scripts.flush();
    if (!flushed) {
        problem = Sentence::withReason(_supportPath, Sentence::ofError(errno));
    }
    return flushed;
}

void PresetAddition::keep() {
    _contents.keep();
    _scripts.keep();
}

bool PresetAddition::_storeContent(const ORVPackedContent &content, Sentence &problem) {
    const std::string safe = ORVSafeFileName(content.name);
    const auto stored = _contents.addBytes(safe.empty() ? "Content" : safe, content.data, content.mode.value_or(UsualContentMode));
    if (!stored) {
        problem = {forTranslation("the content file '%1' cannot be stored: %2"), {content.name, Sentence::ofError(errno)}};
        return false;
    }
    if (*stored != content.name) {
        _names.contents.emplace(content.name, *stored);
    }
    return true;
}

/// A name without contents in the file stays, as far as it is one.
void PresetAddition::_keepContentName(const std::string &name) {
    _warn({forTranslation("the contents of '%1' are not in the file"), {name}});
    std::string safe = ORVSafeFileName(name);
    if (safe != name) {
        _names.contents.emplace(name, std::move(safe));
    }
}

bool PresetAddition::_storeScript(Sentence &problem) {
    const std::string name = ORVTextValue(_parts.preset.root().find("scriptFile"));
    const bool isPacked = _parts.script && _parts.script->name == name;
    if (_parts.script && !isPacked) {
        _warn({forTranslation("the script '%1' is not the preset's: left out"), {_parts.script->name}});
    }
    if (name.empty()) {
        return true;
    }
    const std::string safe = ORVSafeFileName(name);
    if (!isPacked) {
        _warn({forTranslation("the script '%1' is not in the file"), {name}});
        _names.script = safe == name ? std::nullopt : std::optional(safe);
        return true;
    }
    _script = _scripts.addBytes(safe.empty() ? "Script" : safe, _parts.script->data, ScriptMode);
    if (!_script) {
        problem = {forTranslation("the script '%1' cannot be stored: %2"), {name, Sentence::ofError(errno)}};
        return false;
    }
    _names.script = *_script == name ? std::nullopt : _script;
    return true;
}

} // namespace orvane
