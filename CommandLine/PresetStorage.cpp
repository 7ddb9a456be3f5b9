#include "PresetStorage.h"

#include "CommandSupport.h"
#include "Interruption.h"
#include "PresetPacking.h"
#include "PropertyListFile.h"
#include "Translation.h"

#include "menubar/MenuBarController.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/UnistringTextCase.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetManager.h"

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

constexpr const char *NotStored = forTranslation("Preset not stored");

/// The first bytes of a regular file; nothing for anything else, which is never opened for long.
std::optional<std::string> readHead(const std::string &path, std::size_t bytes) {
    const FileDescriptor file(uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    std::string head(bytes, '\0');
    const ssize_t count = uninterrupted([&] { return ::read(file.get(), head.data(), head.size()); });
    if (count < 0) {
        return std::nullopt;
    }
    head.resize(static_cast<std::size_t>(count));
    return head;
}

/// For checks of names alone.
class AnyResources final : public ORVPresetResources {
public:
    [[nodiscard]] ORVContentState stateOfContent(std::string_view /*name*/) override { return ORVContentState::Usable; }
    [[nodiscard]] ORVScriptState stateOfScript(std::string_view /*name*/) override { return ORVScriptState::Usable; }
};

std::string nameOfSeverity(ORVProblemSeverity severity) {
    switch (severity) {
    case ORVProblemSeverity::Note:
        return localized("note");
    case ORVProblemSeverity::Warning:
        return localized("warning");
    case ORVProblemSeverity::Error:
        break;
    }
    return localized("error");
}

/// The engine's text for a problem. What stands there without quotation marks is a number or the kind of a value, in words of the
/// engine; the rest comes from the preset.
std::string textOfProblem(const ORVPresetProblem &problem) {
    const std::string_view format = problem.format;
    std::vector<std::string> arguments = problem.arguments;
    for (std::size_t i = 0; i < arguments.size() && i < 9; ++i) {
        const std::size_t place = format.find("%" + std::to_string(i + 1));
        if (place == 0 || (place != std::string_view::npos && format[place - 1] == ' ')) {
            arguments[i] = localized(arguments[i].c_str());
        }
    }
    return localized(problem.format, arguments);
}

bool haveLabel(std::span<const PropertyListValue> presets, const std::string &label) {
    return std::any_of(presets.begin(), presets.end(), [&](const PropertyListValue &preset) { return labelOfPreset(preset) == label; });
}

} // namespace

std::optional<std::size_t> appendPreset(CommandContext &context, const PropertyList &preset, const std::function<bool()> &aboutToStore) {
    const auto lock = context.preferences.lock();
    if (!lock && Interruption::wasRequested()) {
        return std::nullopt;
    }
    if (!lock) {
        failure(localized(NotStored), localized("the preferences cannot be locked, or another program holds them for too long."));
        return std::nullopt;
    }
    const auto presets = readPresets(context);
    if (!presets) {
        return std::nullopt;
    }
    const auto stored = context.preferences.copyAppValue(ORVPresetsKey);
    if (stored && !stored->root().isArray()) {
        failure(localized(NotStored), localized("the preferences hold something else than a list of presets, which is left as it is."));
        return std::nullopt;
    }
    const auto isStorable = [&](std::string_view text) { return context.preferences.canStoreText(text); };
    if (const auto text = firstTextThatDoesNot(isStorable, preset.root())) {
        failure(localized(NotStored), localized("the preferences cannot hold the text '%1'.", {printable(*text)}));
        return std::nullopt;
    }
    PropertyListBuilder builder;
    const auto records = builder.adopt(*presets).array();
    std::vector<PropertyListValue> all(records.begin(), records.end());
    all.push_back(builder.adopt(preset));
    if (aboutToStore && !aboutToStore()) {
        return std::nullopt;
    }
    context.preferences.setAppValue(ORVPresetsKey, builder.finish(builder.array(all)));
    if (!stored && !context.fileSystem.fileExists(pathOfPreferences(context.folders))) {
        // The first preset of a new user makes the file, in which the absent key would hide the helper from the status bar.
        PropertyListBuilder shown;
        context.preferences.setAppValue(ORVShowMenubarKey, shown.finish(PropertyListValue::ofBoolean(true)));
    }
    if (!context.preferences.synchronize()) {
        failure(localized(NotStored), localized("%1: the preferences cannot be written.", {pathOfPreferences(context.folders)}));
        return std::nullopt;
    }
    if (const auto label = labelOfPreset(preset.root()); label && haveLabel(presets->root().array(), *label)) {
        warn(localized("there are several presets '%1' now; their indexes tell them apart", {*label}));
    }
    context.notifications.post(ORVPresetConfigurationChangedNotification); // without anybody to tell there is nothing to do
    return all.size() - 1;
}

std::unique_ptr<ORVPresetResources> storedResources(CommandContext &context) {
    return std::make_unique<ORVStoredResources>(context.fileSystem, context.finderInformation, ORVApplicationSupportPath(context.folders),
                                                readHead);
}

std::string lineOfProblem(const ORVPresetProblem &problem, const PropertyListValue &preset) {
    const std::string place = ORVTextOfPlace(problem.place, preset);
    const std::string said = withReason(nameOfSeverity(problem.severity), textOfProblem(problem));
    return printable(place.empty() ? said : withReason(place, said));
}

bool refusesNeverEnding(const PropertyListValue &preset, Refusal reason) {
    AnyResources resources;
    UnistringTextCase textCase;
    const auto problems = ORVPresetChecker(resources, textCase).checkPreset(preset);
    const auto found = std::find_if(problems.begin(), problems.end(), [&](const ORVPresetProblem &problem) {
        return problem.neverEnds && (reason == Refusal::Names || problem.place.key == "fileHierarchy");
    });
    if (found == problems.end()) {
        return false;
    }
    failure(localized("Preset refused"), lineOfProblem(*found, preset));
    return true;
}

std::optional<PropertyList> readPropertyListArgument(const std::string &path, Sentence &why) {
    return path == "-" ? readPropertyListFile(STDIN_FILENO, why) : readPropertyListFile(path, why);
}

void warn(std::string_view text) {
    writeStandardError("orvane: " + localized("warning: %1", {printable(text)}) + "\n");
}

} // namespace orvane
