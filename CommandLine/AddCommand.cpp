#include "Command.h"
#include "CommandSupport.h"
#include "Options.h"
#include "PresetStorage.h"
#include "ResourceFolder.h"

#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetFile.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include <cerrno>
#include <cstring>
#include <unordered_map>
#include <unordered_set>

namespace orvane {

namespace {

constexpr const char *Title = "Preset not added";
constexpr mode_t ScriptMode = 0755;
constexpr mode_t UsualContentMode = 0644;

/// The adding of one preset file.
class Addition {
public:
    Addition(const ORVPackedPreset &parts, const std::string &supportPath)
        : _parts(parts), _contents(stringByAppendingPathComponent(supportPath, ORVFileContentFolder)),
          _scripts(stringByAppendingPathComponent(supportPath, ORVScriptsFolder)) {}

    /// Puts contents and script where presets look for them. False, with the reason in `problem`, when one cannot be stored.
    [[nodiscard]] bool storeResources(std::string &problem) {
        std::unordered_map<std::string_view, const ORVPackedContent *> packed;
        for (const ORVPackedContent &content : _parts.contents) {
            packed.emplace(content.name, &content);
        }
        const std::vector<std::string> used = ORVContentNamesOfPreset(_parts.preset.root());
        for (const std::string &name : used) {
            const auto content = packed.find(name);
            if (!(content == packed.end() ? keepContentName(name) : storeContent(*content->second, problem))) {
                return false;
            }
            packed.erase(name);
        }
        for (const auto &[name, content] : packed) {
            warn("the content file '" + std::string(name) + "' is not used by the preset: left out");
        }
        return storeScript(problem);
    }

    /// The preset with the names that its resources have got.
    [[nodiscard]] PropertyList preset() const { return ORVPresetWithResources(_parts.preset, _names); }
    void flush() {
        _contents.flush();
        _scripts.flush();
    }
    void keep() {
        _contents.keep();
        _scripts.keep();
    }

private:
    bool storeContent(const ORVPackedContent &content, std::string &problem) {
        const std::string safe = ORVSafeFileName(content.name);
        const auto stored = _contents.addBytes(safe.empty() ? "Content" : safe, content.data, content.mode.value_or(UsualContentMode));
        if (!stored) {
            problem = "the content file '" + content.name + "' cannot be stored: " + std::strerror(errno);
            return false;
        }
        if (*stored != content.name) {
            _names.contents.emplace(content.name, *stored);
        }
        return true;
    }

    /// A name without contents in the file stays, as far as it is one.
    bool keepContentName(const std::string &name) {
        warn("the contents of '" + name + "' are not in the file");
        std::string safe = ORVSafeFileName(name);
        if (safe != name) {
            _names.contents.emplace(name, std::move(safe));
        }
        return true;
    }

    bool storeScript(std::string &problem) {
        const std::string name = ORVTextValue(_parts.preset.root().find("scriptFile"));
        const bool isPacked = _parts.script && _parts.script->name == name;
        if (_parts.script && !isPacked) {
            warn("the script '" + _parts.script->name + "' is not the preset's: left out");
        }
        if (name.empty()) {
            return true;
        }
        const std::string safe = ORVSafeFileName(name);
        if (!isPacked) {
            warn("the script '" + name + "' is not in the file");
            _names.script = safe == name ? std::nullopt : std::optional(safe);
            return true;
        }
        const auto stored = _scripts.addBytes(safe.empty() ? "Script" : safe, _parts.script->data, ScriptMode);
        if (!stored) {
            problem = "the script '" + name + "' cannot be stored: " + std::strerror(errno);
            return false;
        }
        _names.script = *stored == name ? std::nullopt : stored;
        writeStandardError("orvane: the script '" + printable(*stored) + "' will run after each creation with this preset\n");
        return true;
    }

    const ORVPackedPreset &_parts;
    ResourceFolder _contents;
    ResourceFolder _scripts;
    ORVRenamedResources _names;
};

} // namespace

const char AddCommandHelp[] = "Usage: orvane add FILE\n"
                              "\n"
                              "Adds the preset that 'orvane export' wrote to FILE (\"-\" is standard input) to the user's\n"
                              "presets, its contents and its script included. Nothing that is there is overwritten:\n"
                              "what has the same name and differs gets a new name, in the preset, too.\n"
                              "A script will run after each creation: look at it when FILE comes from somebody else.\n"
                              "\n"
                              "Prints the new preset's index and label.\n"
                              "\n"
                              "Exit status: 0 added, 1 not added, 2 wrong usage.\n";

ExitStatus runAddCommand(CommandContext &context, const CommandArguments &arguments) {
    const ParsedOptions words = parseOptions(arguments, {});
    if (!words.error.empty() || words.operands.size() != 1) {
        return usageError("add", !words.error.empty()     ? words.error
                                 : words.operands.empty() ? "no file given"
                                                          : "more than one file given");
    }
    const std::string &file = words.operands.front();
    std::string problem;
    const auto document = readPropertyListFile(file, problem);
    const auto parts = document ? ORVUnpackPreset(*document, problem) : std::nullopt;
    if (!parts) {
        return failure(Title, printable(file + ": " + problem));
    }
    if (refusesNeverEnding(parts->preset.root()) || !readPresets(context)) {
        return ExitStatus::NotMade;
    }
    Addition addition(*parts, ORVApplicationSupportPath(context.folders));
    if (!addition.storeResources(problem)) {
        return failure(Title, printable(problem));
    }
    const auto index = appendPreset(context, addition.preset(), [&] { addition.flush(); });
    if (!index) {
        return ExitStatus::NotMade;
    }
    addition.keep();
    return writeStandardOutput(std::to_string(*index) + "  " + shownLabelOfPreset(parts->preset.root()) + "\n");
}

} // namespace orvane
