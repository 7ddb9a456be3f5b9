#include "TrialCreation.h"

#include "platform/SingleThread.h"
#include "platform/posix/PosixClock.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/UnistringTextCase.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetManager.h"

#include <dirent.h>
#include <memory>
#include <string_view>

namespace orvane {

namespace {

// The ports as a trial needs them: what is asked of the user is known, and what would be seen elsewhere is not done.

class TrialAlerts final : public Alerts {
public:
    explicit TrialAlerts(TrialCreation &trial) : _trial(trial) {}
    void runAlertPanel(const std::optional<std::string> &title, const std::optional<std::string> &message) override {
        if (_trial.problem.isEmpty() && _trial.script.empty()) { // the first one tells, and none that follows from not starting the script
            _trial.problem = Sentence::ofComposed(title.value_or("") + ": " + message.value_or(""));
        }
    }

private:
    TrialCreation &_trial;
};

/// Notes what would be started.
class TrialProcesses final : public ProcessLauncher {
public:
    explicit TrialProcesses(TrialCreation &trial) : _trial(trial) {}
    std::unique_ptr<ChildProcess> launch(const std::string &path, const std::map<std::string, std::string> &environment) override {
        _trial.script = path;
        _trial.environment = environment;
        return nullptr;
    }

private:
    TrialCreation &_trial;
};

/// A user who types the rows' values and presses OK.
class TrialPrompt final : public PromptInterface, private PromptWindow, private TableView {
public:
    explicit TrialPrompt(const std::vector<PromptValueRow> &answers) : _answers(answers) {}
    bool loadNibNamedOwner(std::string_view, PromptOwner &owner) override {
        _owner = &owner;
        owner.awakeFromNib(*this, *this);
        return true;
    }

private:
    long runModalSession() override {
        const std::span<PromptValueRow> rows = _owner->promptRows();
        for (std::size_t i = 0; i < rows.size() && i < _answers.size(); ++i) {
            rows[i].value = _answers[i].value;
        }
        _owner->finishPrompt();
        return RunStoppedResponse;
    }
    int numberOfRows() override { return static_cast<int>(_owner->promptRows().size()); }
    void makeKeyAndOrderFront() override {}
    void orderOut() override {}
    std::string stringWithSavedFrame() override { return {}; }
    void setFrameFromString(std::string_view) override {}
    void disableScreenUpdates() override {}
    void enableScreenUpdates() override {}
    void beginModalSession() override {}
    void endModalSession() override {}
    void stopModal() override {}
    void endEditing() override {}
    int selectedRow() override { return -1; }
    int editedRow() override { return -1; }
    int editedColumn() override { return -1; }
    int columnWithIdentifier(std::string_view) override { return -1; }
    void selectRowByExtendingSelection(int, bool) override {}
    void editColumnRowSelect(int, int, bool) override {}
    void superTextDidEndEditing(TextMovement) override {}
    void superKeyDown(int) override {}

    const std::vector<PromptValueRow> &_answers;
    PromptOwner *_owner = nullptr;
};

/// No preferences, and none are kept.
class TrialPreferences final : public PreferencesStore {
public:
    bool synchronize() override { return true; }
    std::optional<PropertyList> copyAppValue(std::string_view) override { return std::nullopt; }
    void setAppValue(std::string_view, const PropertyList &) override {}
    bool canStoreText(std::string_view) override { return true; }
    std::optional<PropertyList> dictionaryWithContentsOfFile() override { return std::nullopt; }
    std::unique_ptr<Lock> lock() override { return std::make_unique<Lock>(); }
    [[nodiscard]] bool isHeldElsewhere() const override { return false; }
};

class TrialNotifications final : public DistributedNotifications {
public:
    void addObserver(const void *, std::string_view, Suspension, Handler) override {}
    void removeObserver(const void *, std::string_view) override {}
    bool post(std::string_view) override { return false; }
};

class TrialLog final : public SystemLog {
public:
    void log(std::string_view) override {}
};

class TrialWorkspace final : public Workspace {
public:
    bool openFile(std::string_view) override { return true; }
};

class TrialFolders final : public UserFolders {
public:
    explicit TrialFolders(const TrialRequest &request) : _request(request) {}
    std::string applicationSupportDirectory() override { return stringByDeletingLastPathComponent(_request.supportFolder); }
    std::string homeDirectory() override { return _request.parent; }

private:
    const TrialRequest &_request;
};

/// The only thing in the folder, which may have another name than asked for; empty for none.
std::string pathOfOnlyItem(const std::string &parent) {
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(::opendir(parent.c_str()), ::closedir);
    while (const dirent *entry = folder ? ::readdir(folder.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            return stringByAppendingPathComponent(parent, name);
        }
    }
    return {};
}

} // namespace

TrialCreation makeTrialCreation(const TrialRequest &request) {
    TrialCreation trial;
    TrialAlerts alerts(trial);
    TrialProcesses processes(trial);
    TrialPrompt prompt(request.rows);
    TrialPreferences preferences;
    TrialNotifications notifications;
    TrialLog log;
    TrialWorkspace workspace;
    TrialFolders folders(request);
    SingleThreadApplication application;
    SingleMainThread mainThread;
    DeferredThreadLauncher threads;
    PosixClock clock;
    PosixFileSystem fileSystem;
    UnistringTextCase textCase;
    const auto manager = ORVPresetManager::create({alerts, application, clock, notifications, fileSystem, mainThread, preferences,
                                                   processes, log, textCase, threads, folders, prompt, workspace});
    if (manager == nullptr) {
        trial.problem = forTranslation("The folder for contents and scripts cannot be made.");
        return trial;
    }
    manager->setBasePath(request.parent);
    manager->createFileHierarchyFromPreset(request.preset.root());
    threads.runAll(); // only as far as the start of the script
    trial.folder = pathOfOnlyItem(request.parent);
    return trial;
}

} // namespace orvane
