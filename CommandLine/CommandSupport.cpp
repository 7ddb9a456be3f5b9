#include "CommandSupport.h"

#include "Translation.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixWriting.h"
#include "platform/propertylist/PropertyListFiles.h"
#include "ports/UTF16.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

constexpr std::size_t MostCandidates = 50;

/// The number that a word is in the form in which `list` prints it: digits without leading zeros.
std::optional<std::size_t> indexInWord(std::string_view word) {
    if (word.empty() || (word.front() == '0' && word.size() > 1)) {
        return std::nullopt;
    }
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), index);
    return error == std::errc() && end == word.data() + word.size() ? std::optional(index) : std::nullopt;
}

void appendCandidate(std::string &text, std::size_t index, const PropertyListValue &preset) {
    text += "\n  " + std::to_string(index) + "  " + shownLabelOfPreset(preset);
}

std::string candidates(std::span<const PropertyListValue> presets) {
    std::string text;
    for (std::size_t index = 0; index < presets.size() && index < MostCandidates; ++index) {
        appendCandidate(text, index, presets[index]);
    }
    if (presets.size() > MostCandidates) {
        text += "\n  " + localizedCount("and %1 more", "and %1 more", presets.size() - MostCandidates);
    }
    return text;
}

/// Positions of the presets without label whose folder name's template is the word.
std::vector<std::size_t> presetsWithTemplate(std::string_view word, std::span<const PropertyListValue> presets) {
    std::vector<std::size_t> found;
    for (std::size_t position = 0; position < presets.size() && !word.empty(); ++position) {
        if (!labelOfPreset(presets[position]) && ORVTextValue(presets[position].find("directoryName")) == word) {
            found.push_back(position);
        }
    }
    return found;
}

/// Why the preferences file could not be read, as far as a second look tells.
std::string problemOfFile(const std::string &path) {
    constexpr const char *Passed = forTranslation("it could not be read, but that seems to have passed; try again");
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file) {
        return errno == ENOENT ? localized(Passed) : textOfError(errno);
    }
    struct stat status {};
    const bool isKnown = ::fstat(file.get(), &status) == 0;
    if (isKnown && !S_ISREG(status.st_mode)) {
        return S_ISDIR(status.st_mode) ? localized("it is a folder") : localized("it is not an ordinary file");
    }
    if (isKnown && status.st_size == 0) {
        return localized("the file is empty");
    }
    PropertyListReport report;
    const auto list = readPropertyList(file.get(), &report);
    if (!list) {
        return localizedSentence(report.why);
    }
    return localized(list->root().isDictionary() ? Passed : forTranslation("it holds something else than a dictionary"));
}

} // namespace

ExitStatus writeStandardOutput(std::string_view text) {
    int error = 0;
    return writeStandardOutput(text, error) ? ExitStatus::Success : reportStandardOutput(error);
}

bool writeStandardOutput(std::string_view text, int &error) {
    const bool isWritten = writeContents(STDOUT_FILENO, text);
    error = isWritten ? 0 : errno;
    return isWritten;
}

ExitStatus reportStandardOutput(int error) {
    return failure(localized("Standard output"), textOfError(error));
}

ExitStatus usageError(std::string_view command, std::string_view text) {
    std::string lines = "orvane: ";
    lines.append(command).append(command.empty() ? "" : ": ").append(text);
    const std::string help = "orvane " + std::string(command) + (command.empty() ? "" : " ") + "--help";
    lines.append("\n").append(localized("Try '%1' for more information.", {help})).append("\n");
    writeStandardError(lines);
    return ExitStatus::Usage;
}

ExitStatus failure(std::string_view title, std::string_view message) {
    return alert(withReason(title, message), {});
}

ExitStatus alert(std::string_view title, std::string_view message) {
    std::string line = "orvane: ";
    line.append(title).append(title.empty() || message.empty() ? "" : ": ").append(message) += '\n';
    writeStandardError(line);
    return ExitStatus::NotMade;
}

std::optional<std::string> labelOfPreset(const PropertyListValue &preset) {
    const PropertyListValue *label = preset.find("label");
    return ORVHasText(label) ? std::optional(ORVTextValue(label)) : std::nullopt;
}

std::string shownLabelOfPreset(const PropertyListValue &preset) {
    if (const auto label = labelOfPreset(preset)) {
        return printable(*label);
    }
    const std::string name = ORVTextValue(preset.find("directoryName"));
    return name.empty() ? localized("(no label)") : printable(name);
}

PresetChoice choosePreset(std::string_view word, const PropertyList &presets) {
    const auto records = presets.root().array();
    const auto index = indexInWord(word);
    if (index && *index < records.size()) {
        return {index, {}};
    }
    std::vector<std::size_t> found;
    for (std::size_t position = 0; position < records.size(); ++position) {
        if (labelOfPreset(records[position]) == word) {
            found.push_back(position);
        }
    }
    if (found.empty()) {
        found = presetsWithTemplate(word, records);
    }
    if (found.size() == 1) {
        return {found.front(), {}};
    }
    const std::string name = printable(word);
    if (records.empty()) {
        return {std::nullopt, localized("no preset '%1': there are no presets", {name})};
    }
    if (found.empty()) {
        return {std::nullopt, localized("no preset '%1'; there are:", {name}) + candidates(records)};
    }
    std::string problem = localized("more than one preset '%1'; give one of the indexes:", {name});
    for (const std::size_t position : found) {
        appendCandidate(problem, position, records[position]);
    }
    return {std::nullopt, std::move(problem)};
}

std::optional<std::size_t> presetNamed(std::string_view word, const PropertyList &presets) {
    const PresetChoice choice = choosePreset(word, presets);
    if (!choice.index) {
        writeStandardError("orvane: " + choice.problem + "\n");
    }
    return choice.index;
}

std::string pathOfPreferences(UserFolders &folders) {
    const std::string file = "Library/Preferences/" + std::string(ORVPreferenceDomain) + ".plist";
    return stringByAppendingPathComponent(folders.homeDirectory(), file);
}

std::optional<PropertyList> synchronizedPresets(CommandContext &context, std::string &problem) {
    // The answer belongs to the values: after a reading that failed the domain counts as empty, and whoever stored that would
    // replace presets that are still there.
    if (!context.preferences.synchronize()) {
        const std::string path = pathOfPreferences(context.folders);
        problem = withReason(path, problemOfFile(path));
        return std::nullopt;
    }
    if (auto presets = context.preferences.copyAppValue(ORVPresetsKey); presets && presets->root().isArray()) {
        return presets;
    }
    return PropertyList(nullptr, PropertyListValue::viewOfArray({})); // no presets, as the engine takes it
}

std::optional<PropertyList> readPresets(CommandContext &context) {
    std::string problem;
    auto presets = synchronizedPresets(context, problem);
    if (!presets) {
        failure(localized(UnreadablePreferencesTitle), printable(problem));
    }
    return presets;
}

bool warnOfPresetsThatAreNoArray(CommandContext &context) {
    const auto stored = context.preferences.copyAppValue(ORVPresetsKey);
    if (!stored || stored->root().isArray()) {
        return false;
    }
    const char *const text = localized("ORVPresets in the preferences is no array.");
    writeStandardError("orvane: " + localized("warning: %1", {text}) + "\n");
    return true;
}

std::optional<NamedPreset> readPresetNamed(CommandContext &context, std::string_view word, ExitStatus &status) {
    const auto presets = readPresets(context);
    if (!presets) {
        status = ExitStatus::NotMade;
        return std::nullopt;
    }
    if (presets->root().array().empty()) {
        warnOfPresetsThatAreNoArray(context);
    }
    const auto index = presetNamed(word, *presets);
    if (!index) {
        status = ExitStatus::Usage;
        return std::nullopt;
    }
    return NamedPreset{*index, presets->at(presets->root().array()[*index])};
}

} // namespace orvane
