#include "CommandLineAdapters.h"
#include "CommandLinePrompt.h"
#include "CommandLineWorkspace.h"
#include "CommandSupport.h"
#include "JSONWriter.h"
#include "Options.h"
#include "PresetEngine.h"
#include "PresetTree.h"
#include "Translation.h"
#include "TreeDrawing.h"

#include "platform/SingleThread.h"
#include "presets/ORVPropertyListReading.h"

#include <algorithm>
#include <array>
#include <unistd.h>

namespace orvane {

namespace {

constexpr const char *Name = "show";

/// A preset with what the engine would make of it.
struct ShownPreset {
    std::size_t index = 0;
    std::optional<std::string> label;
    std::string shownLabel; ///< for people
    std::string nameTemplate;
    std::vector<PromptValueRow> variables; ///< with their defaults
    std::string script;
    Tree tree;
    std::string problem; ///< why the variables cannot be listed; empty when they are
};

/// The variables in the order of the prompt, with what it would offer for each.
std::vector<PromptValueRow> variablesOfPreset(CommandContext &context, const PropertyListValue &preset) {
    CommandLineAlerts alerts;
    ReadOnlyPreferencesStore preferences(context.preferences);
    DeferredThreadLauncher threads;
    StandardTerminal terminal;
    CommandLinePrompt prompt({}, true, terminal);
    CommandLineWorkspace workspace([] { return false; });
    PresetEngine engine;
    const auto manager =
        engine.makeManager({context, alerts, context.fileSystem, preferences, context.engine->processes, threads, prompt, workspace});
    const ORVAutomaticVariables counters = manager->automaticVariables();
    std::vector<PromptValueRow> rows;
    for (std::string &name : manager->variableNamesOfPreset(preset)) {
        std::string value = ORVPresetManager::defaultValueForVariable(name, counters);
        rows.push_back({std::move(name), std::move(value)});
    }
    return rows;
}

std::string jsonOfPreset(const ShownPreset &preset) {
    JSONWriter writer;
    writer.beginObject().key("index").number(static_cast<std::int64_t>(preset.index));
    writer.key("label").stringOrNull(preset.label).key("name").string(preset.nameTemplate).key("variables").beginArray();
    for (const PromptValueRow &row : preset.variables) {
        writer.beginObject().key("name").string(row.key).key("default").string(row.value).endObject();
    }
    writer.endArray().key("script").stringOrNull(preset.script.empty() ? std::nullopt : std::optional(preset.script));
    writeTree(writer.key("tree"), preset.tree);
    if (!preset.problem.empty()) {
        writer.key("problem").string(preset.problem);
    }
    writer.endObject();
    return writer.text() + "\n";
}

/// The text, followed by as many blanks as it takes to reach the next column.
std::string filledUp(std::string text, std::size_t width) {
    const std::size_t columns = columnsOf(text);
    return text.append(width > columns ? width - columns : 0, ' ').append("  ");
}

std::string linesOfVariables(const std::vector<PromptValueRow> &variables) {
    std::size_t width = 0;
    for (const PromptValueRow &row : variables) {
        width = std::max(width, columnsOf(printable(row.key)));
    }
    std::string text;
    for (const PromptValueRow &row : variables) {
        const std::string name = printable(row.key);
        text += "  " + (row.value.empty() ? name : filledUp(name, width) + printable(row.value)) + "\n";
    }
    return text;
}

std::string textOfPreset(const ShownPreset &preset, const TextStyle &style) {
    const std::array<const char *, 4> headings = {localized("preset:"), localized("name:"), localized("variables:"), localized("script:")};
    std::size_t width = 0;
    for (const char *const heading : headings) {
        width = std::max(width, columnsOf(heading));
    }
    std::string text = filledUp(headings[0], width) + std::to_string(preset.index) + "  " + preset.shownLabel + "\n";
    text += filledUp(headings[1], width) + printable(preset.nameTemplate) + "\n";
    if (!preset.problem.empty()) {
        text += filledUp(headings[2], width) + printable(preset.problem) + "\n";
    } else if (preset.variables.empty()) {
        text += filledUp(headings[2], width) + localized("no variables") + "\n";
    } else {
        text += std::string(headings[2]) + "\n" + linesOfVariables(preset.variables);
    }
    text += filledUp(headings[3], width);
    text += (preset.script.empty() ? localized("none") : printable(preset.script)) + "\n\n";
    return text + drawTree(preset.tree, style) + "\n" + countOfTree(preset.tree) + "\n";
}

} // namespace

std::string showCommandHelp() {
    return localized("Usage: orvane show PRESET [--json]\n"
                     "\n"
                     "Shows a preset: the template of its folder's name, its variables in the order\n"
                     "in which they are asked for, each with the value that is offered, and the tree\n"
                     "of its folders and files with modes, labels and content files.\n"
                     "\n"
                     "  --json  print one JSON object\n"
                     "\n"
                     "Exit status: 0 shown, 1 the preferences cannot be read, 2 wrong usage.\n");
}

ExitStatus runShowCommand(CommandContext &context, const CommandArguments &arguments) {
    constexpr std::array<OptionRule, 1> Rules = {{{"json", false}}};
    const ParsedOptions parsed = parseOptions(arguments, Rules);
    if (!parsed.error.empty() || parsed.operands.size() != 1) {
        return usageError(Name, !parsed.error.empty()     ? parsed.error
                                : parsed.operands.empty() ? localized("which preset?")
                                                          : localized("one preset at a time"));
    }
    ExitStatus status = ExitStatus::Success;
    const auto named = readPresetNamed(context, parsed.operands.front(), status);
    if (!named) {
        return status;
    }
    const PropertyListValue &record = named->preset.root();
    ShownPreset preset;
    preset.index = named->index;
    preset.label = labelOfPreset(record);
    preset.shownLabel = shownLabelOfPreset(record);
    preset.nameTemplate = ORVTextValue(record.find("directoryName"));
    preset.script = ORVTextValue(record.find("scriptFile"));
    preset.tree = treeOfPreset(record);
    preset.problem = endlessTemplate(ORVPresetSurvey(record));
    if (preset.problem.empty()) {
        preset.variables = variablesOfPreset(context, record);
    }
    return writeStandardOutput(parsed.has("json") ? jsonOfPreset(preset) : textOfPreset(preset, styleOfDescriptor(STDOUT_FILENO)));
}

} // namespace orvane
