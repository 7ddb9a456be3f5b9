#include "presets/ORVPresetManager.h"

#include "presets/ORVDoing.h"
#include "presets/ORVFileHelpers.h"

// The prompt: the rows that it shows, the asking, and what the user does meanwhile.

namespace orvane {

namespace {

constexpr std::string_view PromptValuesKey = "promptValues";
constexpr std::string_view PromptDirectoryNameKey = "promptDirectoryName";

/// Announces a change on construction and its end on destruction.
class ChangeOfValue {
public:
    ChangeOfValue(KeyValueObserver *observer, std::string_view key) : _observer(observer), _key(key) {
        if (_observer != nullptr) {
            _observer->willChangeValueForKey(_key);
        }
    }
    ChangeOfValue(const ChangeOfValue &) = delete;
    ChangeOfValue &operator=(const ChangeOfValue &) = delete;
    ~ChangeOfValue() {
        if (_observer != nullptr) {
            _observer->didChangeValueForKey(_key);
        }
    }

private:
    KeyValueObserver *_observer;
    std::string_view _key;
};

} // namespace

void ORVPresetManager::_setPromptRows(const std::vector<std::string> &names, const ORVAutomaticVariables &variables) {
    const ChangeOfValue change(_ports.observer, PromptValuesKey);
    for (const std::string &name : names) {
        _promptValues.push_back({name, defaultValueForVariable(name, variables)});
    }
}

void ORVPresetManager::_setPromptDirectoryName(std::string_view name) {
    const ChangeOfValue change(_ports.observer, PromptDirectoryNameKey);
    _promptDirectoryName = name;
}

bool ORVPresetManager::loadPromptBundle() {
    _ui_promptWindow = nullptr; // the last run's window may go away with the load
    _ui_variableEditor.reset();
    return _ports.promptInterface.loadNibNamedOwner(ORVPromptInterfaceName, *this);
}

void ORVPresetManager::awakeFromNib(PromptWindow &window, TableView &table) {
    _ui_promptWindow = &window;
    _ui_variableEditor = std::make_unique<ORVTableView>(table, this);
    _ui_variableEditor->selectRowByExtendingSelection(0, false);
    _ui_variableEditor->editValueOfRow(0);
}

bool ORVPresetManager::_comesToFrontWhilePrompting() {
    if (_isPrompting) {
        _ports.application.activateIgnoringOtherApps(true);
    }
    return _isPrompting;
}

bool ORVPresetManager::runPromptModally() {
    if (_comesToFrontWhilePrompting()) {
        return false;
    }
    const ORVDoing prompting(_isPrompting);
    if (!loadPromptBundle() || _ui_promptWindow == nullptr) {
        return false;
    }
    PromptWindow &window = *_ui_promptWindow;
    window.makeKeyAndOrderFront();
    _promptWasCompleted = false;
    _promptWasCanceled = false;
    window.disableScreenUpdates(); // so that nobody sees the window jump to where it was left
    window.beginModalSession();
    if (!_promptWindowFrame.empty()) {
        window.setFrameFromString(_promptWindowFrame);
    }
    _ports.application.activateIgnoringOtherApps(true);
    window.enableScreenUpdates();
    _waitForPrompt(window);
    window.endModalSession();
    _promptWindowFrame = window.stringWithSavedFrame();
    window.orderOut();
    return !_promptWasCanceled && _promptWasCompleted;
}

void ORVPresetManager::_waitForPrompt(PromptWindow &window) {
    while (!_promptWasCompleted && !_promptWasCanceled && window.runModalSession() == RunContinuesResponse) {
    }
}

void ORVPresetManager::finishPrompt() {
    _promptWasCompleted = true;
    if (_ui_promptWindow == nullptr) {
        return;
    }
    if (_ui_variableEditor->editedRow() != -1) {
        _ui_promptWindow->endEditing(); // so that the text being typed is in its row when the rows are read
    }
    _ui_promptWindow->stopModal();
}

void ORVPresetManager::abortPrompt() {
    _cancelPrompt();
}

void ORVPresetManager::windowWillClose(PromptWindow &window) {
    if (&window == _ui_promptWindow && !_promptWasCompleted) {
        _cancelPrompt();
    }
}

void ORVPresetManager::_cancelPrompt() {
    _promptWasCanceled = true;
    if (_ui_promptWindow != nullptr) {
        _ui_promptWindow->stopModal();
    }
}

void ORVPresetManager::tableTextDidEndEditing(TextMovement movement) {
    if (_ui_variableEditor) {
        _ui_variableEditor->textDidEndEditing(movement);
    }
}

void ORVPresetManager::tableKeyDown(int keyCode) {
    if (_ui_variableEditor) {
        _ui_variableEditor->keyDown(keyCode);
    }
}

void ORVPresetManager::tableViewDidEditTableColumnRowWasKeyboardCommit(ORVTableView &tableView, int column, int row,
                                                                       bool wasKeyboardCommit) {
    if (wasKeyboardCommit && &tableView == _ui_variableEditor.get() && column == tableView.valueColumn() &&
        row == tableView.numberOfRows() - 1) {
        finishPrompt();
    }
}

std::string ORVPresetManager::directoryNameForRows(std::span<const PromptValueRow> rows) const {
    // Twice, as a creation does it: the folder's name first, and then that name again as its tree's top.
    return cleanFilesystemEntities(replaceBracketedKeysReplace(replaceBracketedKeysReplace(_promptDirectoryName, rows), rows));
}

PromptProblem ORVPresetManager::problemForRows(std::span<const PromptValueRow> rows) const {
    const std::string typedName = replaceBracketedKeysReplace(_promptDirectoryName, rows);
    if (typedName.empty()) {
        return PromptProblem::BlankName;
    }
    if (_ports.fileSystem.fileExists(stringByAppendingPathComponent(*_contextualDirectory, typedName))) {
        return PromptProblem::AlreadyExists;
    }
    const std::string name = cleanFilesystemEntities(replaceBracketedKeysReplace(typedName, rows));
    if (name.empty()) {
        return PromptProblem::BlankName;
    }
    if (name == "." || name == ".." || name.find('\0') != std::string::npos) {
        return PromptProblem::ImpossibleName;
    }
    if (name.size() > ORVLongestName) {
        return PromptProblem::NameTooLong;
    }
    const bool isOther = name != typedName;
    return isOther && _ports.fileSystem.fileExists(stringByAppendingPathComponent(*_contextualDirectory, name))
               ? PromptProblem::AlreadyExists
               : PromptProblem::None;
}

} // namespace orvane
