#include "Command.h"
#include "CommandSupport.h"
#include "Options.h"
#include "PresetPacking.h"
#include "PresetStorage.h"
#include "Translation.h"

#include "platform/posix/PosixNewFile.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetFile.h"

#include <array>
#include <cerrno>

#include <sys/stat.h>

namespace orvane {

namespace {

constexpr const char *Title = forTranslation("Preset not exported");
constexpr std::array<OptionRule, 1> Rules = {{{.name = "force", .mustBeWhole = true}}};

ExitStatus writePresetFile(const std::string &path, const std::string &bytes, bool replaces) {
    if (path == "-") {
        return writeStandardOutput(bytes);
    }
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        return failure(localized(Title), withReason(printable(path), localized("it is not an ordinary file.")));
    }
    if (writeWholeFile(path, bytes, replaces)) {
        return ExitStatus::Success;
    }
    return failure(localized(Title),
                   withReason(printable(path), errno == EEXIST ? localized("it exists; give --force to replace it.") : textOfError(errno)));
}

} // namespace

std::string exportCommandHelp() {
    return localized("Usage: orvane export PRESET FILE [--force]\n"
                     "\n"
                     "Writes a preset (an index or a label) with its contents and its script to one\n"
                     "file, from which 'orvane add' takes it, on this computer or another. FILE \"-\"\n"
                     "is standard output; a good ending is \".orvpreset\". Contents that are missing\n"
                     "are left out with a warning.\n"
                     "\n"
                     "  --force  replace FILE when it exists\n"
                     "\n"
                     "Exit status: 0 exported, 1 not exported, 2 wrong usage.\n");
}

ExitStatus runExportCommand(CommandContext &context, const CommandArguments &arguments) {
    const ParsedOptions words = parseOptions(arguments, Rules);
    if (!words.error.empty() || words.operands.size() != 2) {
        return usageError("export", !words.error.empty() ? words.error : localized("a preset and a file are needed"));
    }
    ExitStatus status = ExitStatus::Success;
    const auto named = readPresetNamed(context, words.operands.front(), status);
    if (!named) {
        return status;
    }
    const PropertyList &preset = named->preset;
    if (!preset.root().isDictionary()) {
        return failure(localized(Title), localized("the preset is no dictionary."));
    }
    if (refusesNeverEnding(preset.root(), Refusal::Size)) {
        return ExitStatus::NotMade;
    }
    PresetPartsReader reader(ORVApplicationSupportPath(context.folders), [](const Sentence &text) { warn(localized(text)); });
    const ORVPackedPreset parts = reader.read(preset);
    Sentence why;
    const auto bytes = bytesOfPresetFile(parts, why);
    if (!bytes) {
        return failure(localized(Title), printable(localized(why)));
    }
    return writePresetFile(words.operands.back(), *bytes, words.has("force"));
}

} // namespace orvane
