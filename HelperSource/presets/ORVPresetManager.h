#pragma once

#include "ports/Alerts.h"
#include "ports/Application.h"
#include "ports/Clock.h"
#include "ports/CreationProgress.h"
#include "ports/DistributedNotifications.h"
#include "ports/Error.h"
#include "ports/FileSystem.h"
#include "ports/KeyValueObserver.h"
#include "ports/MainThread.h"
#include "ports/PreferencesStore.h"
#include "ports/Processes.h"
#include "ports/PromptInterface.h"
#include "ports/PropertyList.h"
#include "ports/SystemLog.h"
#include "ports/TextCase.h"
#include "ports/ThreadLauncher.h"
#include "ports/UserFolders.h"
#include "ports/Workspace.h"
#include "presets/ORVTableView.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Domain in which presets, counters and the other settings are kept.
inline constexpr std::string_view ORVPreferenceDomain = "org.orvane.ORVPrefPane";
// Keys of that domain.
inline constexpr std::string_view ORVPresetsKey = "ORVPresets";
inline constexpr std::string_view ORVAutomaticVarsKey = "ORVAutomaticVars";
/// Posted by whoever changed the configuration.
inline constexpr std::string_view ORVPresetConfigurationChangedNotification = "ORVPresetConfigurationChangedNotification";
/// Folders inside the support folder.
inline constexpr std::string_view ORVScriptsFolder = "Scripts";
inline constexpr std::string_view ORVFileContentFolder = "File Content";
/// Interface file of the prompt.
inline constexpr std::string_view ORVPromptInterfaceName = "PromptWindow";
/// Longest name of a file or folder in bytes (Linux, NAME_MAX in <linux/limits.h>).
inline constexpr std::size_t ORVLongestName = 255;
/// Time limit of a postflight script in whole seconds.
inline constexpr unsigned ORVPostflightTimeout = 120;

class ORVTreeSurvey;
struct ORVPresetSurvey;

/// Everything that the manager asks of the desktop. All are borrowed and must outlive it; `observer` and `progress` are optional.
struct ORVPresetManagerPorts {
    Alerts &alerts;
    Application &application;
    Clock &clock;
    DistributedNotifications &notifications;
    FileSystem &fileSystem;
    MainThread &mainThread;
    PreferencesStore &preferences;
    ProcessLauncher &processes;
    SystemLog &log;
    TextCase &textCase;
    ThreadLauncher &threads;
    UserFolders &folders;
    PromptInterface &promptInterface;
    Workspace &workspace;
    KeyValueObserver *observer = nullptr;
    CreationProgress *progress = nullptr;
};

/// The last values of automatic variables by variable name, a copy that its owner may change. Values put in by the owner
/// must live as long as the copy.
struct ORVAutomaticVariables : std::map<std::string, PropertyListValue, std::less<>> {
    PropertyList storage; ///< what the values that were read borrow from
};

/// A script to run after a creation, handed to a thread of its own.
struct ORVPostflightJob {
    std::string script;                      ///< full path
    std::map<std::string, std::string> args; ///< the script's whole environment, name to value
};

/// An alert on its way to the main thread; an absent entry is absent there too.
struct ORVErrorDictionary {
    std::optional<std::string> title;
    std::optional<std::string> message;
};

/// The preset engine: reads presets, asks for their variables, makes their hierarchies and runs their scripts.
///
/// One instance serves the whole process, `sharedManager()`; tests build private ones. Main thread only, but for
/// `reportErrorMessage` and `runPostflightScript`.
class ORVPresetManager final : public PromptOwner, public ORVTableViewDelegate {
public:
    // Core ----------------------------------------------------------------------------------------------------------

    /// Says over which ports the shared manager will be built. To be called before the first `sharedManager()`; a null
    /// pointer forgets them, and the shared manager with them (for tests).
    static void setSharedPorts(const ORVPresetManagerPorts *ports);
    /// The shared manager, made on first use. Null when its surroundings cannot be made ready (the next call tries
    /// again) or no ports are set. Any thread, but the first call on the main thread: it reads the configuration.
    [[nodiscard]] static ORVPresetManager *sharedManager();

    /// A manager of one's own, or null when the surroundings cannot be made ready (a log line says so).
    [[nodiscard]] static std::unique_ptr<ORVPresetManager> create(const ORVPresetManagerPorts &ports);
    ORVPresetManager(const ORVPresetManager &) = delete;
    ORVPresetManager &operator=(const ORVPresetManager &) = delete;
    ~ORVPresetManager() override;

    /// Reference counting has no effect on the shared manager, which is never destroyed: `retain` and `autorelease`
    /// give `sharedManager()` (whatever the receiver), `release` and `dealloc` do nothing, `retainCount` has all bits set.
    ORVPresetManager *retain();
    ORVPresetManager *autorelease();
    void release();
    [[nodiscard]] unsigned long retainCount() const;
    void dealloc();

    /// Shows an alert and returns when the user has dismissed it. Any thread; off the main thread the pair is handed over
    /// and the caller waits. The message is read as a format without arguments (see `ORVMessageOfFormat`), kept deliberately.
    /// Off the main thread an absent title takes the message with it.
    void reportErrorMessage(const std::optional<std::string> &title, const std::optional<std::string> &message);
    /// The main thread's end of that.
    void reportErrorWithDict(const ORVErrorDictionary &error);

    // Records -------------------------------------------------------------------------------------------------------

    /// Re-reads the presets from the preferences. A missing value, or one that is no array, gives none.
    void readConfiguration();
    /// The presets as last read, in order. The array stays valid until the current event has been handled, even when the
    /// configuration is read again meanwhile.
    [[nodiscard]] const std::vector<PropertyListValue> &presets() const { return _presets->records; }
    /// Labels of the presets that have one, in preset order; positions can differ from preset indexes.
    [[nodiscard]] std::vector<std::string> presetNames() const;
    /// Re-reads the configuration, presets included, and returns a copy of the counters.
    [[nodiscard]] ORVAutomaticVariables automaticVariables();
    /// Writes the counters whole and synchronises at once.
    void setAutomaticVariables(const ORVAutomaticVariables &variables);
    /// Whether a variable remembers its last value: its name starts with "auto" in any case.
    [[nodiscard]] static bool isAutomaticVariable(std::string_view name);
    /// What the prompt offers: "" for an ordinary variable, else "0", the stored integer plus one (formatted in 32 bits,
    /// kept deliberately: 2147483647 is followed by -2147483648) or the stored text when it starts with no integer.
    [[nodiscard]] static std::string defaultValueForVariable(std::string_view name, const ORVAutomaticVariables &variables);

    // Keys ----------------------------------------------------------------------------------------------------------

    /// The texts between delimiters, in order of appearance, duplicates kept; empty ones left out; a backslash just before a
    /// delimiter takes its meaning away and is removed inside a key. Does not return (kept deliberately) for a text that
    /// ends in an unescaped opening delimiter, or in an escaped closing one after an open key; ask `scanEnds` first.
    [[nodiscard]] std::vector<std::string> findKeysEnclosedByCloseTag(std::string_view text, std::string_view openTag,
                                                                      std::string_view closeTag) const;
    /// The same with "{" and "}".
    [[nodiscard]] std::vector<std::string> findBracketedKeys(std::string_view text) const;
    /// Whether `findBracketedKeys` returns for that text.
    [[nodiscard]] static bool scanEnds(std::string_view text);
    /// Unescapes the braces of `text`, then replaces each row's "{key}" everywhere, row by row. Unchanged when the text
    /// or the table is empty.
    [[nodiscard]] std::string replaceBracketedKeysReplace(std::string_view text, std::span<const PromptValueRow> rows) const;
    /// Appends the names used by the node's cleaned file name and, for a folder, by everything below it, depth first, to
    /// the list, unless already there.
    void scanHierarchyForVariableNamesVariableNames(const PropertyListValue &node, std::vector<std::string> &variableNames) const;

    // Nodes ---------------------------------------------------------------------------------------------------------

    /// The name with every ":" and "/" replaced by "_".
    [[nodiscard]] static std::string cleanFilesystemEntities(std::string_view name);
    /// Permission bits of a node's text, by C's "%o"; nothing unless it is exactly three UTF-16 units long.
    [[nodiscard]] static std::optional<unsigned> modeOfPermissions(std::string_view permissions);
    /// Makes the node and everything below it inside `basePath`. False at the first failure, which leaves an error in
    /// `fileCreationError()` (except for an empty name) and everything made so far on disk.
    [[nodiscard]] bool createFileNodeAtBasePathWithReplacePairs(const PropertyListValue &node, std::string_view basePath,
                                                                std::span<const PromptValueRow> replacePairs);
    /// Error of the last failed creation; success does not clear it.
    [[nodiscard]] const std::optional<ORVError> &fileCreationError() const { return _fileCreationError; }
    /// Support folder, asked for once and kept.
    [[nodiscard]] const std::string &applicationSupportPath();

    // Driver --------------------------------------------------------------------------------------------------------

    /// Makes the preset's hierarchy in the parent folder set before: asks for variables, checks, creates, starts the script, opens
    /// the new folder. Every failure is reported to the user. While the prompt is up, it only brings the program to the front.
    void createFileHierarchyFromPreset(const PropertyListValue &preset);
    /// The same for a preset that has been looked at already.
    void createFileHierarchyFromSurveyedPreset(const PropertyListValue &preset, const ORVPresetSurvey &survey);
    /// The names that the prompt would ask for, in its order: those of the folder name with duplicates, then new ones of the tree.
    [[nodiscard]] std::vector<std::string> variableNamesOfPreset(const PropertyListValue &preset) const;
    /// The preset's tree with the folder name as its root's name (absent when the name is empty).
    [[nodiscard]] static PropertyList rootNodeOfPreset(const PropertyListValue &preset, std::string_view name);
    /// The script's environment for a folder and the rows.
    [[nodiscard]] std::map<std::string, std::string> environmentOfScript(const std::string &topLevelPath,
                                                                         std::span<const PromptValueRow> rows);
    /// Runs a script job to its end and reports failures. Runs on a thread of its own.
    void runPostflightScript(const ORVPostflightJob &job);

    // Prompt --------------------------------------------------------------------------------------------------------

    /// Shows the prompt and blocks until the user is done. True when the user completed it; false when the user gave up, when
    /// the interface file cannot be loaded (nothing is shown then) or when the program is about to quit. While it runs, a
    /// second call only brings the program to the front and gives false.
    [[nodiscard]] bool runPromptModally();
    /// Loads a new copy of the prompt's interface file; false when that is impossible.
    [[nodiscard]] bool loadPromptBundle();
    [[nodiscard]] const std::vector<PromptValueRow> &promptValues() const { return _promptValues; }
    [[nodiscard]] std::span<PromptValueRow> promptRows() override { return _promptValues; }
    [[nodiscard]] const std::string &promptDirectoryName() const override { return _promptDirectoryName; }
    [[nodiscard]] const std::string &promptParentFolder() const override { return *_contextualDirectory; }
    [[nodiscard]] std::string directoryNameForRows(std::span<const PromptValueRow> rows) const override;
    /// Follows the creation's own checks in their order. A folder that has the cleaned name, where that differs from the name as
    /// typed, counts as existing too: it would not stop the creation, which adds to it, but nobody expects that.
    [[nodiscard]] PromptProblem problemForRows(std::span<const PromptValueRow> rows) const override;
    /// Selects the first row and starts editing its value.
    void awakeFromNib(PromptWindow &window, TableView &table) override;
    /// Completes the prompt; text that is being typed counts.
    void finishPrompt() override;
    /// Abandons the prompt; text that is being typed is dropped.
    void abortPrompt() override;
    /// Abandons it as well, unless it was completed.
    void windowWillClose(PromptWindow &window) override;
    void tableTextDidEndEditing(TextMovement movement) override;
    void tableKeyDown(int keyCode) override;
    /// Completes the prompt after Return or Tab in the last row's value.
    void tableViewDidEditTableColumnRowWasKeyboardCommit(ORVTableView &tableView, int column, int row, bool wasKeyboardCommit) override;
    /// Holds the preferences against other programs from the reading of the counters to their storing; for
    /// prompts that answer at once. Off at first.
    void setKeepsPreferencesLocked(bool keeps) { _keepsPreferencesLocked = keeps; }
    /// False when the last run had variables and their counters could not be stored; the log says why.
    [[nodiscard]] bool countersWereStored() const { return _countersWereStored; }

    // Service -------------------------------------------------------------------------------------------------------

    /// Adds the observer of configuration changes, once. Any thread, but notifications arrive on the main thread.
    void loadManager();
    /// Removes it.
    void unloadManager();
    /// Sets the parent folder of the next creations; absent clears it.
    void setBasePath(const std::optional<std::string> &path);
    /// Valid until the current event has been handled, even when it is set anew meanwhile.
    [[nodiscard]] const std::string &contextualDirectory() const { return *_contextualDirectory; }
    void handlePresetConfigurationChangedNotification();
    /// Runs the preset of that index; the index just past the last opens the preference pane; any other does nothing.
    void handlePresetClicked(std::int32_t index);
    /// Opens every installed preference pane file: that of all users, then the user's own.
    void openORVPreferencePane();

private:
    struct PresetArray {
        PropertyList document; ///< keeps the records' storage
        std::vector<PropertyListValue> records;
    };
    struct CreationRun;
    class CreationWalk;

    explicit ORVPresetManager(const ORVPresetManagerPorts &ports);
    [[nodiscard]] bool _init();
    void _setPromptRows(const std::vector<std::string> &names, const ORVAutomaticVariables &variables);
    void _setPromptDirectoryName(std::string_view name);
    [[nodiscard]] bool _comesToFrontWhilePrompting();
    void _waitForPrompt(PromptWindow &window);
    void _cancelPrompt();
    [[nodiscard]] bool _storeAutomaticValuesOfRows(bool countersWereRead);
    [[nodiscard]] bool _leaveCountersAlone(std::string_view why);
    [[nodiscard]] bool _checkTopLevel(const std::string &name, const std::string &path);
    [[nodiscard]] const std::vector<std::string> &_namesOfSurvey(const ORVPresetSurvey &survey) const;
    [[nodiscard]] bool _createNode(const PropertyListValue &node, std::string_view basePath, std::span<const PromptValueRow> replacePairs,
                                   const ORVTreeSurvey *survey);
    [[nodiscard]] bool _makeOrRunOutOfMemory(CreationWalk &walk, const PropertyListValue &node, bool &ranOut);
    [[nodiscard]] bool _createNodeAgain(const PropertyListValue &node, std::string_view basePath,
                                        std::span<const PromptValueRow> replacePairs, std::unique_ptr<HierarchyWriter> writer);
    void _reportCreationFailure(const std::string &topLevelPath);
    void _finishCreation(const PropertyListValue &preset, const std::string &topLevelPath);
    void _putNameOf(const PropertyListValue *filename, std::span<const PromptValueRow> rows, std::string &name) const;
    void _setFileCreationError(std::string message);

    ORVPresetManagerPorts _ports;
    std::shared_ptr<const PresetArray> _presets;
    std::shared_ptr<const std::string> _contextualDirectory;
    std::string _promptDirectoryName;
    std::string _promptWindowFrame; ///< where the user left the window; empty before the first run
    std::vector<PromptValueRow> _promptValues;
    PromptWindow *_ui_promptWindow = nullptr;         ///< of the last load
    std::unique_ptr<ORVTableView> _ui_variableEditor; ///< over the table of the last load
    std::optional<ORVError> _fileCreationError;
    bool _promptWasCanceled = false;
    bool _promptWasCompleted = false;
    bool _isPrompting = false; ///< from the loading of the prompt until it is off the screen
    bool _isLoaded = false;

    std::recursive_mutex _monitor;                     ///< of this instance, for loading
    std::optional<std::string> _applicationSupport;    ///< once asked for
    std::unique_ptr<HierarchyWriter> _failedHierarchy; ///< what the last failed creation made
    std::string _failedPath;                           ///< its top node's path
    bool _keepsPreferencesLocked = false;
    bool _configurationWasRead = false; ///< the last reading of the preferences succeeded; a missing file counts as read
    bool _countersWereStored = true;    ///< by the last run
};

/// The text that an alert shows for a message: "%%" is "%", integer directives give 0 and others of C and Cocoa what an
/// absent argument gives ("(null)" for "%@" and "%s"), with flags, width and precision obeyed; what is no directive stays.
[[nodiscard]] std::string ORVMessageOfFormat(std::string_view format);

} // namespace orvane
