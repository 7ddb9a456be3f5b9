#include "presets/ORVPresetManager.h"

#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetSurvey.h"
#include "presets/ORVPropertyListReading.h"
#include "presets/ORVScriptRunner.h"

#include <algorithm>
#include <utility>

// From a preset to a folder on disk, and the script after it.

namespace orvane {

namespace {

constexpr std::string_view ScriptsThatShowTheFolder = "finder"; ///< anywhere in a script's lower-case name

std::string absentOr(const std::optional<std::string> &text) {
    return text.value_or("(null)");
}

} // namespace

std::vector<std::string> ORVPresetManager::variableNamesOfPreset(const PropertyListValue &preset) const {
    return _namesOfSurvey(ORVPresetSurvey(preset));
}

const std::vector<std::string> &ORVPresetManager::_namesOfSurvey(const ORVPresetSurvey &survey) const {
    if (survey.endless()) {
        static_cast<void>(findBracketedKeys(*survey.endless())); // does not return
    }
    return survey.variableNames;
}

PropertyList ORVPresetManager::rootNodeOfPreset(const PropertyListValue &preset, std::string_view name) {
    PropertyListBuilder builder;
    std::vector<PropertyListEntry> entries;
    if (const PropertyListValue *hierarchy = preset.find("fileHierarchy"); hierarchy != nullptr) {
        for (const PropertyListEntry &entry : hierarchy->dictionary()) {
            if (entry.key != "isFolder" && entry.key != "permissions" && entry.key != "filename" && entry.key != "color") {
                entries.push_back(entry);
            }
        }
    }
    entries.push_back({"isFolder", PropertyListValue::ofBoolean(true)});
    if (!name.empty()) {
        entries.push_back({"filename", builder.string(name)});
    }
    return builder.finish(builder.dictionary(entries));
}

void ORVPresetManager::createFileHierarchyFromPreset(const PropertyListValue &preset) {
    createFileHierarchyFromSurveyedPreset(preset, ORVPresetSurvey(preset));
}

void ORVPresetManager::createFileHierarchyFromSurveyedPreset(const PropertyListValue &preset, const ORVPresetSurvey &survey) {
    if (_comesToFrontWhilePrompting()) { // the rows are those of the run that asks
        return;
    }
    const std::shared_ptr<const PresetArray> keptForThisRun = _presets; // the prompt may handle events that re-read them
    const std::string nameTemplate = ORVTextValue(preset.find("directoryName"));
    const std::vector<std::string> &names = _namesOfSurvey(survey);
    std::unique_ptr<PreferencesStore::Lock> countersHeld;
    if (_keepsPreferencesLocked && std::any_of(names.begin(), names.end(), isAutomaticVariable)) {
        countersHeld = _ports.preferences.lock();
        if (!countersHeld && _ports.preferences.isHeldElsewhere()) {
            reportErrorMessage("Preferences are in use", "Another program holds the preferences, so no number can be had from them.");
            return;
        }
    }
    const ORVAutomaticVariables variables = automaticVariables();
    const bool countersWereRead = _configurationWasRead;
    _countersWereStored = true;
    _promptValues.clear();
    std::string topLevelName = nameTemplate;
    if (!names.empty()) {
        _setPromptRows(names, variables);
        _setPromptDirectoryName(nameTemplate);
        if (!runPromptModally()) {
            return;
        }
        topLevelName = replaceBracketedKeysReplace(nameTemplate, _promptValues);
        // Before any check, so that a counter advances even when nothing is made then; deliberate. The dictionary is stored even
        // without counters to advance, unless it stands there already: then nothing would change.
        const bool isThere = countersWereRead && variables.storage.root().isDictionary();
        const bool hasCounters = std::any_of(names.begin(), names.end(), isAutomaticVariable);
        if (!isThere || hasCounters) {
            const bool wereStored = _storeAutomaticValuesOfRows(countersWereRead);
            _countersWereStored = wereStored || !hasCounters; // an empty dictionary is nothing that somebody misses
        }
    }
    countersHeld.reset();
    const std::string parent = *_contextualDirectory;
    const std::string topLevelPath = stringByAppendingPathComponent(parent, topLevelName);
    if (!_checkTopLevel(topLevelName, topLevelPath)) {
        return;
    }
    // The path stays as it is, while the folder's name is substituted once more and cleaned: where the name holds a ":" or
    // "/", the folder made is another than the one checked, removed, told the script and opened. Kept deliberately.
    const PropertyList root = rootNodeOfPreset(preset, topLevelName);
    // A failure then leaves what was made so far, which two threads could not make the same as one.
    const bool standsAsChecked = cleanFilesystemEntities(replaceBracketedKeysReplace(topLevelName, _promptValues)) == topLevelName;
    if (!_createNode(root.root(), parent, _promptValues, standsAsChecked ? &survey.tree : nullptr)) {
        _reportCreationFailure(topLevelPath);
        return;
    }
    _finishCreation(preset, topLevelPath);
}

bool ORVPresetManager::_leaveCountersAlone(std::string_view why) {
    _ports.log.log("The last values of automatic variables were not stored: " + std::string(why));
    return false;
}

bool ORVPresetManager::_storeAutomaticValuesOfRows(bool countersWereRead) {
    // Other programs may have counted on since the counters were read: only this creation's rows change, every other entry
    // keeps what is on disk now. Whatever cannot be read now is not known, and not replaced.
    const std::unique_ptr<PreferencesStore::Lock> lock = _ports.preferences.lock();
    if (!lock) {
        return _leaveCountersAlone("the preferences could not be locked.");
    }
    ORVAutomaticVariables variables = automaticVariables();
    if (!countersWereRead || !_configurationWasRead) {
        return _leaveCountersAlone("the preferences could not be read.");
    }
    if (variables.storage.root().type() != PropertyListType::Null && !variables.storage.root().isDictionary()) {
        return _leaveCountersAlone("what stands in their place in the preferences is no dictionary.");
    }
    bool allFit = true;
    for (const PromptValueRow &row : _promptValues) {
        if (!isAutomaticVariable(row.key)) {
            continue;
        }
        if (_ports.preferences.canStoreText(row.key) && _ports.preferences.canStoreText(row.value)) {
            variables[row.key] = PropertyListValue::viewOfString(row.value);
        } else { // one text that the file cannot hold must not cost the other counters their values
            allFit = _leaveCountersAlone("the preferences cannot hold the text of one; the others were.");
        }
    }
    setAutomaticVariables(variables);
    return _countersWereStored && allFit;
}

bool ORVPresetManager::_checkTopLevel(const std::string &name, const std::string &path) {
    if (name.empty()) {
        reportErrorMessage("Top level folder name is blank",
                           "Make sure that the top-level folder name for this preset has been set in the ORV Preference Pane.");
        return false;
    }
    if (_ports.fileSystem.fileExists(path)) {
        reportErrorMessage("Directory already exists",
                           "'" + lastPathComponent(path) + "' already exists in '" + stringByDeletingLastPathComponent(path) + "'.");
        return false;
    }
    return true;
}

void ORVPresetManager::_reportCreationFailure(const std::string &topLevelPath) {
    // Only what this run made goes, and only when it stands at the path that was checked.
    if (_failedHierarchy && _failedPath == topLevelPath) {
        _failedHierarchy->removeEverythingMade();
    }
    _failedHierarchy.reset();
    const std::string reason = absentOr(_fileCreationError ? _fileCreationError->localizedDescription() : std::nullopt);
    reportErrorMessage("ORV wasn't able to create the preset",
                       "ORV wasn't able to create the preset, because a file creation failed: " + reason);
}

void ORVPresetManager::_finishCreation(const PropertyListValue &preset, const std::string &topLevelPath) {
    const std::string scriptFile = ORVTextValue(preset.find("scriptFile"));
    if (scriptFile.empty()) {
        _ports.workspace.openFile(topLevelPath);
        return;
    }
    const std::string scripts = stringByAppendingPathComponent(applicationSupportPath(), ORVScriptsFolder);
    ORVPostflightJob job{stringByAppendingPathComponent(scripts, scriptFile), environmentOfScript(topLevelPath, _promptValues)};
    const std::string scriptName = lastPathComponent(job.script);
    if (!_ports.threads.detachNewThread([this, job = std::move(job)] { runPostflightScript(job); })) {
        _ports.log.log("ORV script '" + scriptName + "' error: no thread could be started for it");
    }
    if (ORVASCIILowercase(scriptName).find(ScriptsThatShowTheFolder) == std::string::npos) {
        _ports.workspace.openFile(topLevelPath);
    }
}

std::map<std::string, std::string> ORVPresetManager::environmentOfScript(const std::string &topLevelPath,
                                                                         std::span<const PromptValueRow> rows) {
    std::map<std::string, std::string> environment{{"ORV_CONTEXT", "postflight"}, {"ORV_ROOT_PATH", topLevelPath}};
    for (const PromptValueRow &row : rows) {
        std::string name = _ports.textCase.uppercase(row.key);
        std::replace(name.begin(), name.end(), ' ', '_');
        environment["P_" + name] = row.value;
    }
    return environment;
}

void ORVPresetManager::runPostflightScript(const ORVPostflightJob &job) {
    const std::string name = lastPathComponent(job.script);
    const std::string opening = "'" + name + "' is the specified script file for this preset, ";
    if (!_ports.fileSystem.fileExists(job.script)) {
        reportErrorMessage("Script file not found", opening + "but that file doesn't exist.");
        return;
    }
    if (!_ports.fileSystem.isExecutableFile(job.script)) {
        reportErrorMessage("Script file not executable", opening + "but that file isn't executable.");
        return;
    }
    ORVScriptRunner runner(job.script, _ports.processes, _ports.clock);
    ORVError error;
    if (runner.runWithArgumentsTimeoutError(job.args, ORVPostflightTimeout, &error)) {
        return;
    }
    _ports.log.log("ORV script '" + name + "' error: " + absentOr(error.localizedDescription()));
    _ports.log.log("Script stderr:\n" + absentOr(error.localizedFailureReason()));
    reportErrorMessage("Script reported errors", opening + "and it reported errors during its execution. Check Console.app for more "
                                                           "information on why the script failed.");
}

} // namespace orvane
