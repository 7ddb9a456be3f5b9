#include "Command.h"
#include "CommandSupport.h"
#include "FolderImport.h"
#include "FolderWalk.h"
#include "Interruption.h"
#include "Options.h"
#include "PresetStorage.h"
#include "ResourceFolder.h"
#include "Translation.h"

#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPresetSurvey.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <set>
#include <utility>

namespace orvane {

namespace {

constexpr std::array<OptionRule, 3> Rules = {{{"label", true}, {"variable", true}, {"with-content", false}}};

/// Name of the folder at a path; empty for the root folder and where there is none.
std::string nameOfFolder(const std::string &path) {
    std::string name = lastPathComponent(path);
    if (name.empty() || name == "." || name == "..") {
        const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
        name = real ? lastPathComponent(real.get()) : "";
    }
    return name == "/" ? "" : name;
}

/// TEXT=NAME, split at the last "=". Nothing, and what is wrong in `error`, when it is no such pair.
std::optional<ORVImportVariable> variableOf(const std::string &word, std::string &error) {
    const std::size_t equals = word.rfind('=');
    if (equals == std::string::npos || equals == 0) {
        error = localized("option '--variable' needs TEXT=NAME, not '%1'", {printable(word)});
        return std::nullopt;
    }
    ORVImportVariable variable{word.substr(0, equals), word.substr(equals + 1)};
    if (!ORVIsVariableName(variable.name) || !isUTF8(word)) {
        error =
            localized("'%1' cannot be the name of a variable: it is empty, not UTF-8 or holds one of {}\\:/", {printable(variable.name)});
        return std::nullopt;
    }
    return variable;
}

/// What the words ask for; false after what is wrong was put into `error`.
bool understand(const ParsedOptions &words, FolderImportOptions &options, std::string &error) {
    error = words.error;
    if (error.empty() && words.operands.size() != 1) {
        error = localized(words.operands.empty() ? forTranslation("no folder given") : forTranslation("more than one folder given"));
    }
    for (const GivenOption &option : words.options) {
        if (error.empty() && option.name == "variable") {
            if (auto variable = variableOf(option.value, error)) {
                options.variables.push_back(std::move(*variable));
            }
        }
    }
    if (!error.empty()) {
        return false;
    }
    options.folder = words.operands.front();
    options.name = nameOfFolder(options.folder);
    options.label = words.lastValue("label").value_or(options.name);
    if (!isUTF8(options.label) && words.has("label")) {
        error = localized("the label is not UTF-8");
    } else if (options.label.empty() && words.has("label")) {
        error = localized("the label is empty");
    }
    return error.empty();
}

/// Warns of texts that no name holds: most likely they are mistyped. The preset's variables tell which ones were found; where several
/// texts share a variable, they are looked for once more with a variable each.
void warnOfUnusedTexts(const FolderImportOptions &options, const PropertyList &preset, FinderInformation &finderInformation) {
    FolderImportOptions numbered = options;
    numbered.contentStore = nullptr;
    std::set<std::string> names;
    for (std::size_t i = 0; i < numbered.variables.size(); ++i) {
        names.insert(std::exchange(numbered.variables[i].name, std::to_string(i)));
    }
    std::optional<ImportedFolder> again;
    if (names.size() < options.variables.size()) {
        Sentence problem;
        again = importFolder(numbered, finderInformation, problem);
    }
    if (Interruption::wasRequested()) {
        return; // nothing of it stays, and the second look may be cut short
    }
    const ORVPresetSurvey survey(again ? again->preset.root() : preset.root());
    for (std::size_t i = 0; i < options.variables.size(); ++i) {
        const ORVImportVariable &given = options.variables[i];
        const std::string &name = again ? numbered.variables[i].name : given.name;
        if (std::find(survey.variableNames.begin(), survey.variableNames.end(), name) == survey.variableNames.end()) {
            warn(localized("'%1' was turned into the variable '%2' nowhere", {given.text, given.name}));
        }
    }
}

/// Imports and prints what it has got; what was stored for nothing is taken away again.
ExitStatus import(CommandContext &context, FolderImportOptions &options, bool withContent, bool &isKept) {
    const std::string title = localized("Folder not imported");
    const std::string contents = stringByAppendingPathComponent(ORVApplicationSupportPath(context.folders), ORVFileContentFolder);
    ResourceFolder store(contents, &Interruption::wasRequested);
    options.contentStore = withContent ? &store : nullptr;
    options.shouldStop = &Interruption::wasRequested;
    Sentence problem;
    const auto imported = importFolder(options, context.finderInformation, problem);
    if (Interruption::wasRequested()) {
        return ExitStatus::NotMade;
    }
    if (!imported) {
        return failure(title, printable(withReason(options.folder, localized(problem))));
    }
    for (const Sentence &warning : imported->warnings) {
        warn(localized(warning));
    }
    if (refusesNeverEnding(imported->preset.root())) {
        return ExitStatus::NotMade;
    }
    warnOfUnusedTexts(options, imported->preset, context.finderInformation);
    // As with `add`: the folder is there to be imported again.
    const auto index = appendPreset(context, imported->preset, [&] {
        const bool flushed = store.flush();
        if (!flushed) {
            failure(title, printable(withReason(contents, textOfError(errno))));
        }
        return flushed && !Interruption::wasRequested();
    });
    if (!index) {
        return ExitStatus::NotMade;
    }
    store.keep();
    isKept = true;
    return writeStandardOutput(std::to_string(*index) + "  " + printable(options.label) + "\n");
}

} // namespace

std::string importCommandHelp() {
    return localized("Usage: orvane import DIR [--label TEXT] [--variable TEXT=NAME]...\n"
                     "                     [--with-content]\n"
                     "\n"
                     "Makes a preset from the folder DIR: the names of its folders and files, their\n"
                     "permissions and labels. Symbolic links, FIFOs, sockets and devices are left\n"
                     "out, each with a warning.\n"
                     "\n"
                     "  --label TEXT          label of the preset (default: the folder's name)\n"
                     "  --variable TEXT=NAME  turn TEXT into the variable {NAME} wherever a name\n"
                     "                        holds it; the longest TEXT first (may be given several\n"
                     "                        times)\n"
                     "  --with-content        copy the files' contents, too; without it the preset's\n"
                     "                        files are empty\n"
                     "\n"
                     "Prints the new preset's index and label.\n"
                     "\n"
                     "Exit status: 0 imported, 1 not imported, 2 wrong usage.\n");
}

std::span<const OptionRule> importCommandOptions() {
    return Rules;
}

ExitStatus runImportCommand(CommandContext &context, const CommandArguments &arguments) {
    const ParsedOptions words = parseOptions(arguments, Rules);
    FolderImportOptions options;
    std::string error;
    if (!understand(words, options, error)) {
        return usageError("import", error);
    }
    if (options.name.empty() || !isUTF8(options.name)) {
        return failure(localized("Folder not imported"),
                       localized("'%1' does not exist, or its name cannot be used.", {printable(options.folder)}));
    }
    if (!readPresets(context)) {
        return ExitStatus::NotMade;
    }
    return untilInterrupted([&](bool &isKept) { return import(context, options, words.has("with-content"), isKept); });
}

} // namespace orvane
