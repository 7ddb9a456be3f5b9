#include "CommandSupport.h"
#include "JSONWriter.h"
#include "Options.h"
#include "Terminal.h"
#include "Translation.h"

#include <array>
#include <unistd.h>

namespace orvane {

namespace {

std::string jsonOfPresets(std::span<const PropertyListValue> presets) {
    JSONWriter writer;
    writer.beginArray();
    for (std::size_t index = 0; index < presets.size(); ++index) {
        writer.beginObject().key("index").number(static_cast<std::int64_t>(index));
        writer.key("label").stringOrNull(labelOfPreset(presets[index])).endObject();
    }
    writer.endArray();
    return writer.text() + "\n";
}

std::string linesOfPresets(std::span<const PropertyListValue> presets) {
    const std::size_t width = std::to_string(presets.empty() ? 0 : presets.size() - 1).size();
    std::string lines;
    for (std::size_t index = 0; index < presets.size(); ++index) {
        const std::string number = std::to_string(index);
        lines.append(width - number.size(), ' ').append(number).append("  ").append(shownLabelOfPreset(presets[index])) += '\n';
    }
    return lines;
}

/// Says why nothing is to be seen: to everybody when the preferences are wrong, otherwise only to people.
void tellOfNoPresets(CommandContext &context, bool isForPeople) {
    if (!warnOfPresetsThatAreNoArray(context) && isForPeople && isTerminal(STDOUT_FILENO) && isTerminal(STDERR_FILENO)) {
        const char *const text = localized("there are no presets yet; 'orvane import', 'orvane add' or 'orvane-settings' gives you one");
        writeStandardError(std::string("orvane: ") + text + "\n");
    }
}

} // namespace

std::string listCommandHelp() {
    return localized("Usage: orvane list [--json]\n"
                     "\n"
                     "Shows the presets, each with its index and label. Either names the preset in\n"
                     "the other commands; a label must be given exactly, and only when no other\n"
                     "preset has the same. A preset without label goes by the template of its\n"
                     "folder's name.\n"
                     "\n"
                     "  --json  print a JSON array of objects with 'index' and 'label'\n"
                     "\n"
                     "Exit status: 0 shown, 1 the preferences cannot be read, 2 wrong usage.\n");
}

ExitStatus runListCommand(CommandContext &context, const CommandArguments &arguments) {
    constexpr std::array<OptionRule, 1> Rules = {{{"json", false}}};
    const ParsedOptions parsed = parseOptions(arguments, Rules);
    if (!parsed.error.empty()) {
        return usageError("list", parsed.error);
    }
    if (!parsed.operands.empty()) {
        return usageError("list", localized("unexpected '%1'", {parsed.operands.front()}));
    }
    const auto presets = readPresets(context);
    if (!presets) {
        return ExitStatus::NotMade;
    }
    const auto records = presets->root().array();
    if (records.empty()) {
        tellOfNoPresets(context, !parsed.has("json"));
    }
    return writeStandardOutput(parsed.has("json") ? jsonOfPresets(records) : linesOfPresets(records));
}

} // namespace orvane
