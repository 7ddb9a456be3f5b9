#include "CommandLineAdapters.h"
#include "CommandLinePrompt.h"
#include "CommandLineWorkspace.h"
#include "CommandSupport.h"
#include "CreateOptions.h"
#include "CreateReport.h"
#include "DryRunFileSystem.h"
#include "Interruption.h"
#include "ObservedFileSystem.h"
#include "Options.h"
#include "ParentFolder.h"
#include "PresetEngine.h"
#include "PresetStorage.h"
#include "ProgressBar.h"
#include "Translation.h"

#include "platform/SingleThread.h"
#include "platform/posix/PosixBlockedSignals.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include <csignal>

#include <unistd.h>

// `orvane create`: the same road as in the helper, from the preset to the open folder, over adapters that answer from the
// command line. A dry run takes it as well, over a file system that makes nothing and preferences that keep nothing.

namespace orvane {

namespace {

constexpr const char *Name = "create";

/// One run of the command.
class Creation {
public:
    Creation(CommandContext &context, const CommandArguments &words, const CreateOptions &options)
        : _context(context), _words(words), _options(options), _prompt(options.assignments, options.noInput, _terminal),
          _observed(
              context.fileSystem, [this] { _beginProgress(); }, &Interruption::wasRequested),
          _planned(context.fileSystem), _readOnly(context.preferences), _processes(context.engine->processes),
          _workspace([this] { return !_options.noOpen && !_options.dryRun && !_observed.wasStopped(); }), _answersInJSON(options.json) {
        _alerts.setGate([this] { return _mayShowAlert(); });
    }

    ExitStatus run() {
        _run();
        const ExitStatus status = _finish();
        if (_interruptionIsOpen) {
            Interruption::raiseAgain(); // it came too late to take anything back, but not to be told what was made
        }
        return status;
    }

private:
    void _run() {
        std::string problem;
        const std::string parent = parentFolder(_options.in, problem);
        if (!problem.empty()) {
            _answersInJSON = _answersInJSON || asksForJSON(_words); // a "--in" whose value is missing has taken "--json" for it
            return _refuseUsage(_options.in ? withReason("--in", problem) : problem);
        }
        const std::unique_ptr<ORVPresetManager> manager = _makeManager();
        const auto presets = synchronizedPresets(_context, problem);
        if (!presets) {
            return _refuse(localized(UnreadablePreferencesTitle), problem);
        }
        const PresetChoice choice = choosePreset(_options.preset, *presets);
        if (!choice.index) {
            warnOfPresetsThatAreNoArray(_context);
            return _refuseUsage(choice.problem);
        }
        const PropertyListValue &preset = presets->root().array()[*choice.index];
        const ORVPresetSurvey survey(preset);
        if (problem = endlessTemplate(survey); !problem.empty()) {
            return _refuse(localized("Preset refused"), problem);
        }
        if (problem = _options.noInput ? "" : _problemOfAssignments(survey); !problem.empty()) {
            return _refuseUsage(problem);
        }
        _progress.emplace(_nodes, survey.tree.nodes() + 1);
        manager->setBasePath(parent);
        _create(*manager, preset, survey);
    }

    [[nodiscard]] std::unique_ptr<ORVPresetManager> _makeManager() {
        FileSystem &fileSystem = _options.dryRun ? static_cast<FileSystem &>(_planned) : _observed;
        PreferencesStore &preferences = _options.dryRun ? static_cast<PreferencesStore &>(_readOnly) : _context.preferences;
        PresetEnginePorts ports{_context, _alerts, fileSystem, preferences, _processes, _threads, _prompt, _workspace};
        ports.progress = &_nodes;
        ports.log = _options.dryRun ? &_silentLog : nullptr;
        auto manager = _engine.makeManager(ports);
        manager->setKeepsPreferencesLocked(_options.noInput && !_options.dryRun);
        return manager;
    }

    /// Names that a preset without any variable cannot have; the prompt, which would tell, is not run for one.
    [[nodiscard]] std::string _problemOfAssignments(const ORVPresetSurvey &survey) const {
        if (_options.assignments.empty() || !survey.variableNames.empty()) {
            return {};
        }
        return _prompt.problemWithoutVariables();
    }

    void _create(ORVPresetManager &manager, const PropertyListValue &preset, const ORVPresetSurvey &survey) {
        Interruption interruption;
        manager.createFileHierarchyFromSurveyedPreset(preset, survey);
        _progress->end();
        interruption.end();
        _report.variables = manager.promptValues();
        switch (_prompt.outcome()) {
        case CommandLinePrompt::Outcome::Cancelled:
            _report.status = ExitStatus::Cancelled;
            return;
        case CommandLinePrompt::Outcome::WrongUsage:
            return _refuseUsage(_prompt.problem());
        case CommandLinePrompt::Outcome::NotAsked:
        case CommandLinePrompt::Outcome::Answered:
            break;
        }
        if (_observed.wasStopped()) {
            return _noteStop();
        }
        // A reader who has gone ends a program at its next word. That has to wait: what was made is to be completed.
        const PosixBlockedSignals deferred(SIGPIPE);
        _warnOfDroppedValues(survey);
        _interruptionIsOpen = Interruption::wasRequested();
        _noteScript(manager, preset);
        if (_options.dryRun) {
            return _noteDryRun(manager);
        }
        if (!manager.countersWereStored()) {
            warn(localized("the last values of automatic variables were not stored; the log says why"));
        }
        if (!_alerts.shown().empty()) {
            _report.script.reset();
            _report.status = ExitStatus::NotMade;
            return;
        }
        _report.created = true;
        _report.path = _observed.topPath();
        _report.nodes = _nodes.nodes();
        int errorOfOutput = 0;
        if (!_answersInJSON) { // before the script, which may take long and be interrupted
            const std::string &path = *_report.path;
            writeStandardOutput((isTerminal(STDOUT_FILENO) ? printable(path) : path) + "\n", errorOfOutput);
        }
        if (!_interruptionIsOpen) { // else it is too late to take anything back, but not to keep the script from starting
            _runScript();
        }
        if (errorOfOutput != 0) { // the least of what there is to tell
            _written = reportStandardOutput(errorOfOutput);
        }
    }

    /// What would be wrong usage if it were not for --no-input, and values too many.
    void _warnOfDroppedValues(const ORVPresetSurvey &survey) {
        if (const std::string problem = _problemOfAssignments(survey); !problem.empty()) {
            warn(problem);
        }
        for (const std::string &warning : _prompt.warnings()) {
            warn(warning);
        }
    }

    void _noteStop() {
        _report.status = ExitStatus::Cancelled;
        if (!_observed.topIsThere()) {
            return Interruption::tell();
        }
        const std::string path = printable(_observed.topPath());
        const std::string told = localized("interrupted; '%1' is still there and may hold some of what was made", {path});
        writeStandardError("orvane: " + told + "\n");
    }

    void _runScript() {
        _threads.runAll();
        if (_report.script) {
            _report.script->status = _processes.lastStatus();
        }
        if (!_alerts.shown().empty()) {
            _report.status = ExitStatus::ScriptErrors;
        }
    }

    void _noteScript(ORVPresetManager &manager, const PropertyListValue &preset) {
        const std::string file = ORVTextValue(preset.find("scriptFile"));
        if (file.empty()) {
            return;
        }
        const std::string folder = stringByAppendingPathComponent(manager.applicationSupportPath(), ORVScriptsFolder);
        _report.script = ScriptReport{stringByAppendingPathComponent(folder, file)};
        if (!_options.dryRun) {
            return;
        }
        if (!_context.fileSystem.fileExists(_report.script->path)) {
            _report.script->problem = localized("does not exist");
        } else if (!_context.fileSystem.isExecutableFile(_report.script->path)) {
            _report.script->problem = localized("is not executable");
        }
    }

    void _noteDryRun(ORVPresetManager &manager) {
        _report.tree = _planned.tree();
        if (!_planned.topPath().empty()) {
            _report.path = _planned.topPath();
        }
        _report.nodes = _planned.tree().size();
        if (_alerts.shown().empty() && _planned.wouldFail()) { // as the engine would, had the hierarchy not gone on
            _tellsOfDryRun = true;
            manager.reportErrorMessage("ORV wasn't able to create the preset",
                                       "ORV wasn't able to create the preset, because a file creation failed: " + _planned.failure());
        }
        if (!_alerts.shown().empty()) {
            _report.status = ExitStatus::NotMade;
        }
    }

    void _refuse(std::string title, std::string message) {
        _report.status = failure(title, message);
        _report.error = ShownAlert{std::move(title), std::move(message)};
    }

    void _refuseUsage(const std::string &problem) {
        _report.status = usageError(Name, problem);
        _report.error = ShownAlert{"Usage", problem};
    }

    /// Alerts of a creation that was stopped tell nothing that the user does not know.
    [[nodiscard]] bool _mayShowAlert() {
        if (_progress) {
            _progress->end();
        }
        // A dry run goes on where a creation ends: what fails after that does not count.
        const bool isTooLate = _options.dryRun && _planned.wouldFail() && !_tellsOfDryRun;
        return !_observed.wasStopped() && !isTooLate;
    }

    void _beginProgress() {
        if (_progress) {
            _progress->begin();
        }
    }

    ExitStatus _finish() {
        if (!_report.error && !_alerts.shown().empty()) {
            _report.error = _alerts.shown().front();
        }
        if (_answersInJSON) {
            _written = writeStandardOutput(jsonOfReport(_report));
        } else if (_report.tree) {
            _written = writeStandardOutput(textOfDryRun(_report, styleOfDescriptor(STDOUT_FILENO)));
        }
        return _report.status == ExitStatus::Success ? _written : _report.status;
    }

    CommandContext &_context;
    const CommandArguments &_words;
    const CreateOptions &_options;
    StandardTerminal _terminal;
    CommandLinePrompt _prompt;
    CommandLineAlerts _alerts;
    ObservedFileSystem _observed;
    DryRunFileSystem _planned;
    ReadOnlyPreferencesStore _readOnly;
    SilentLog _silentLog;
    RecordingProcessLauncher _processes;
    DeferredThreadLauncher _threads;
    CommandLineWorkspace _workspace;
    PresetEngine _engine;
    NodeCounter _nodes;
    std::optional<ProgressBar> _progress;
    CreationReport _report;
    ExitStatus _written = ExitStatus::Success; ///< of what goes to standard output
    bool _tellsOfDryRun = false;               ///< the first failure that a dry run would meet
    bool _interruptionIsOpen = false;          ///< one arrived and changed nothing; the signal is still to be raised
    bool _answersInJSON;
};

/// The answer to words that mean nothing, in the form that they ask for.
ExitStatus refuseWords(const CreateOptions &options, const std::string &problem) {
    CreationReport report;
    report.status = usageError(Name, problem);
    report.error = ShownAlert{"Usage", problem};
    if (options.json) {
        writeStandardOutput(jsonOfReport(report));
    }
    return report.status;
}

} // namespace

std::string createCommandHelp() {
    return localized("Usage: orvane create PRESET [--in DIR] [--set NAME=VALUE]... [--no-input]\n"
                     "                     [--no-open] [--dry-run] [--json]\n"
                     "\n"
                     "Makes the folder of a preset, with everything in it, runs the preset's script\n"
                     "and opens the new folder. PRESET is the index or the exact label that\n"
                     "'orvane list' shows.\n"
                     "\n"
                     "  --in DIR          make it in DIR instead of the current folder\n"
                     "  --set NAME=VALUE  value of a variable; one that stands several times in the\n"
                     "                    folder's name may be given as many values: all names take\n"
                     "                    the first, the script and counters the last\n"
                     "  --no-input        do not ask: variables without --set take their defaults\n"
                     "  --no-open         do not open the new folder\n"
                     "  --dry-run         show what would be made, with its problems, and change\n"
                     "                    nothing\n"
                     "  --json            print one JSON object about what was done\n"
                     "\n"
                     "Without --no-input, variables without --set are asked for on the terminal; an\n"
                     "empty line takes the value in brackets. The path of the new folder is printed.\n"
                     "\n"
                     "Exit status: 0 made, 1 not made, 2 wrong usage, 3 cancelled, 4 made but the\n"
                     "script reported errors.\n");
}

ExitStatus runCreateCommand(CommandContext &context, const CommandArguments &arguments) {
    std::string problem;
    const CreateOptions options = CreateOptions::parse(arguments, problem);
    if (!problem.empty()) {
        return refuseWords(options, problem);
    }
    return Creation(context, arguments, options).run();
}

} // namespace orvane
