#include "Command.h"
#include "CommandSupport.h"
#include "Interruption.h"
#include "Options.h"
#include "PresetPacking.h"
#include "PresetStorage.h"
#include "Translation.h"

#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetFile.h"
#include "presets/ORVPropertyListReading.h"

namespace orvane {

namespace {

constexpr const char *Title = forTranslation("Preset not added");

/// Stores the parts of a preset file and prints what the preset has got; what was stored for nothing is taken away again.
ExitStatus add(CommandContext &context, const ORVPackedPreset &parts, bool &isKept) {
    PresetAddition addition(
        parts, ORVApplicationSupportPath(context.folders), [](const Sentence &text) { warn(localized(text)); },
        &Interruption::wasRequested);
    Sentence problem;
    const bool isStored = addition.storeResources(problem);
    if (Interruption::wasRequested()) {
        return ExitStatus::NotMade;
    }
    if (!isStored) {
        return failure(localized(Title), printable(localized(problem)));
    }
    if (ORVTextValue(parts.preset.root().find("directoryName")).empty()) {
        warn(localized("the top-level folder has no name")); // in the words of `check`
    }
    // A preset whose contents are not on the disk is not worth having while its file is there to be added again.
    const auto index = appendPreset(context, addition.preset(), [&] {
        const bool flushed = addition.flush(problem);
        if (!flushed) {
            failure(localized(Title), printable(localized(problem)));
        }
        return flushed && !Interruption::wasRequested();
    });
    if (!index) {
        return ExitStatus::NotMade;
    }
    addition.keep();
    isKept = true;
    if (addition.script()) {
        const std::string script = printable(*addition.script());
        writeStandardError("orvane: " + localized("the script '%1' will run after each creation with this preset", {script}) + "\n");
    }
    return writeStandardOutput(std::to_string(*index) + "  " + shownLabelOfPreset(parts.preset.root()) + "\n");
}

} // namespace

std::string addCommandHelp() {
    return localized("Usage: orvane add FILE\n"
                     "\n"
                     "Adds the preset that 'orvane export' wrote to FILE (\"-\" is standard input) to\n"
                     "the user's presets, its contents and its script included. Nothing that is there\n"
                     "is overwritten: what has the same name and differs gets a new name, in the\n"
                     "preset, too. A script will run after each creation: look at it when FILE comes\n"
                     "from somebody else.\n"
                     "\n"
                     "Prints the new preset's index and label.\n"
                     "\n"
                     "Exit status: 0 added, 1 not added, 2 wrong usage.\n");
}

ExitStatus runAddCommand(CommandContext &context, const CommandArguments &arguments) {
    const ParsedOptions words = parseOptions(arguments, {});
    if (!words.error.empty() || words.operands.size() != 1) {
        return usageError("add", !words.error.empty()     ? words.error
                                 : words.operands.empty() ? localized("no file given")
                                                          : localized("more than one file given"));
    }
    const std::string &file = words.operands.front();
    Sentence problem;
    const auto document = readPropertyListArgument(file, problem);
    const auto parts = document ? ORVUnpackPreset(*document, problem) : std::nullopt;
    if (!parts) {
        return failure(localized(Title), printable(withReason(file, localized(problem))));
    }
    if (refusesNeverEnding(parts->preset.root()) || !readPresets(context)) {
        return ExitStatus::NotMade;
    }
    return untilInterrupted([&](bool &isKept) { return add(context, *parts, isKept); });
}

} // namespace orvane
