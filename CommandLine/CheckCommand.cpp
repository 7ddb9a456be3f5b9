#include "Command.h"
#include "CommandSupport.h"
#include "JSONWriter.h"
#include "Options.h"
#include "PresetStorage.h"
#include "Translation.h"

#include "platform/posix/UnistringTextCase.h"
#include "presets/ORVPresetFile.h"
#include "presets/ORVPresetManager.h"

#include <array>
#include <cstdint>
#include <memory>

#include <sys/stat.h>

namespace orvane {

namespace {

constexpr std::array<OptionRule, 1> Rules = {{{"json", false}}};
constexpr const char *UnreadableFileTitle = forTranslation("File cannot be read");

/// What is to be checked.
struct Subject {
    PropertyList presets;              ///< an array
    std::optional<std::size_t> chosen; ///< only this one of them
    std::unique_ptr<ORVPresetResources> resources;
    std::optional<ORVPackedPreset> packed; ///< what `resources` borrows
};

/// Prints problems as they are found, and counts them.
class Report {
public:
    explicit Report(bool isJSON) : _isJSON(isJSON) {
        if (_isJSON) {
            _json.beginObject().key("presets").beginArray();
        }
    }

    /// False when standard output takes no more.
    [[nodiscard]] bool add(std::size_t index, const PropertyListValue &preset, const std::vector<ORVPresetProblem> &problems) {
        for (const ORVPresetProblem &problem : problems) {
            ++_counts.at(static_cast<std::size_t>(problem.severity));
        }
        if (_isJSON) {
            _addJSON(index, preset, problems);
            return true;
        }
        std::string lines;
        for (const ORVPresetProblem &problem : problems) {
            lines += withReason(shownLabelOfPreset(preset), lineOfProblem(problem, preset)) + "\n";
        }
        return writeStandardOutput(lines) == ExitStatus::Success;
    }

    [[nodiscard]] ExitStatus finish() {
        const auto count = [this](ORVProblemSeverity severity) { return _counts.at(static_cast<std::size_t>(severity)); };
        const std::int64_t errors = count(ORVProblemSeverity::Error);
        const std::int64_t warnings = count(ORVProblemSeverity::Warning);
        if (_isJSON) {
            _json.endArray().key("errors").number(errors).key("warnings").number(warnings);
            _json.key("notes").number(count(ORVProblemSeverity::Note)).endObject();
            if (writeStandardOutput(_json.text() + "\n") != ExitStatus::Success) {
                return ExitStatus::NotMade;
            }
        }
        return errors + warnings > 0 ? ExitStatus::NotMade : ExitStatus::Success;
    }

private:
    void _addJSON(std::size_t index, const PropertyListValue &preset, const std::vector<ORVPresetProblem> &problems) {
        _json.beginObject().key("index").number(static_cast<std::int64_t>(index)).key("label").stringOrNull(labelOfPreset(preset));
        _json.key("problems").beginArray();
        for (const ORVPresetProblem &problem : problems) {
            _json.beginObject().key("place").string(ORVTextOfPlace(problem.place, preset));
            _json.key("severity").string(ORVNameOfSeverity(problem.severity)).key("text").string(problem.text()).endObject();
        }
        _json.endArray().endObject();
    }

    bool _isJSON;
    JSONWriter _json;
    std::array<std::int64_t, 3> _counts{}; ///< by severity
};

PropertyList listOf(const PropertyList &preset) {
    PropertyListBuilder builder;
    const std::array<PropertyListValue, 1> one{builder.adopt(preset)};
    return builder.finish(builder.array(one));
}

/// What a file holds: one preset with its resources, or preferences. False after a message.
bool takeFile(CommandContext &context, const std::string &path, Subject &subject) {
    Sentence why;
    const auto document = readPropertyListArgument(path, why);
    if (!document) {
        failure(localized(UnreadableFileTitle), printable(withReason(path, localized(why))));
        return false;
    }
    if (const PropertyListValue *presets = document->root().find(ORVPresetsKey); presets != nullptr && presets->isArray()) {
        subject.presets = document->at(*presets);
        subject.resources = storedResources(context);
        return true;
    }
    subject.packed = ORVUnpackPreset(*document, why);
    if (!subject.packed) {
        failure(localized(UnreadableFileTitle), printable(withReason(path, localized(why))));
        return false;
    }
    subject.presets = listOf(subject.packed->preset);
    subject.resources = std::make_unique<ORVPackedResources>(*subject.packed);
    return true;
}

/// The user's own presets. False after a message.
bool takePreferences(CommandContext &context, Subject &subject) {
    std::string problem;
    const auto presets = synchronizedPresets(context, problem);
    const auto stored = context.preferences.copyAppValue(ORVPresetsKey);
    if (!presets) {
        failure(localized(UnreadablePreferencesTitle), printable(problem));
        return false;
    }
    if (stored && !stored->root().isArray()) {
        failure(localized("Presets cannot be read"), localized("ORVPresets in the preferences is no array."));
        return false;
    }
    subject.presets = *presets;
    subject.resources = storedResources(context);
    return true;
}

bool isFile(const std::string &word) {
    struct stat status {};
    return word == "-" || ::stat(word.c_str(), &status) == 0;
}

/// Whether somebody who writes that thinks of a file, so that a missing one is told as such.
bool isMeantAsFile(const std::string &word) {
    return word.ends_with(".orvpreset") || word.ends_with(".plist") || word.starts_with('/') || word.starts_with("./") ||
           word.starts_with("../");
}

/// Finds out what a word means: a file when it looks like a path, else a preset, else a file.
ExitStatus takeWord(CommandContext &context, const std::string &word, Subject &subject) {
    const bool exists = isFile(word);
    if (exists && (word == "-" || word.find('/') != std::string::npos)) {
        return takeFile(context, word, subject) ? ExitStatus::Success : ExitStatus::NotMade;
    }
    std::string problem;
    const auto presets = synchronizedPresets(context, problem);
    subject.chosen = presets ? choosePreset(word, *presets).index : std::nullopt;
    if (!subject.chosen && (exists || isMeantAsFile(word))) {
        return takeFile(context, word, subject) ? ExitStatus::Success : ExitStatus::NotMade;
    }
    if (!takePreferences(context, subject)) {
        return ExitStatus::NotMade;
    }
    if (!subject.chosen) {
        subject.chosen = presetNamed(word, subject.presets);
    }
    return subject.chosen ? ExitStatus::Success : ExitStatus::Usage;
}

} // namespace

std::string checkCommandHelp() {
    return localized("Usage: orvane check [PRESET | FILE] [--json]\n"
                     "\n"
                     "Looks for mistakes in a preset (an index or a label), in a file made by\n"
                     "'orvane export', in a preferences file, or, without argument, in all presets.\n"
                     "Prints a line for each: \"LABEL: PLACE: severity: text\". An error makes a\n"
                     "creation fail, hang or lose something; a warning is most likely not what was\n"
                     "meant; a note only tells what will happen.\n"
                     "\n"
                     "  --json  print one JSON object: 'presets' (each with 'index', 'label' and\n"
                     "          'problems' of 'place', 'severity', 'text'), 'errors', 'warnings',\n"
                     "          'notes' (numbers)\n"
                     "\n"
                     "Exit status: 0 neither errors nor warnings, 1 some, or nothing could be read,\n"
                     "2 wrong usage.\n");
}

ExitStatus runCheckCommand(CommandContext &context, const CommandArguments &arguments) {
    const ParsedOptions words = parseOptions(arguments, Rules);
    if (!words.error.empty() || words.operands.size() > 1) {
        return usageError("check", !words.error.empty() ? words.error : localized("more than one preset or file given"));
    }
    Subject subject;
    const ExitStatus taken = !words.operands.empty()             ? takeWord(context, words.operands.front(), subject)
                             : takePreferences(context, subject) ? ExitStatus::Success
                                                                 : ExitStatus::NotMade;
    if (taken != ExitStatus::Success) {
        return taken;
    }
    UnistringTextCase textCase;
    ORVPresetChecker checker(*subject.resources, textCase);
    checker.rememberLabels(subject.presets.root());
    Report report(words.has("json"));
    const auto presets = subject.presets.root().array();
    for (std::size_t index = 0; index < presets.size(); ++index) {
        if ((!subject.chosen || *subject.chosen == index) && !report.add(index, presets[index], checker.checkPreset(presets[index]))) {
            return ExitStatus::NotMade;
        }
    }
    return report.finish();
}

} // namespace orvane
