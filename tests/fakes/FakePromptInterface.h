#pragma once

#include "ports/PromptInterface.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

/// The prompt's interface in memory, with a user in front of it. The user either follows `script`, one step for each batch of
/// events, or just puts in the `answers` and confirms or gives up. The journal has one line for every call of the ports:
///
///     loadNibNamed PromptWindow          window setFrameFromString FRAME     table selectRow 0 extends 0
///     window beginModalSession           window runModalSession              table editColumn 1 row 0 select 1
///     table superTextDidEndEditing 16    window endEditing                   table superKeyDown 49
///
/// A window and its table live until the next load. The table has the columns "KeyColumn" and "ValueColumn", and moves on by itself
/// after Return and Tab: to the next row's value, from the last one to the first.
class FakePromptInterface final : public PromptInterface {
public:
    struct Run {
        std::string directoryName;
        std::vector<PromptValueRow> rows; ///< as they were offered
    };

    [[nodiscard]] bool loadNibNamedOwner(std::string_view name, PromptOwner &owner) override {
        _note("loadNibNamed " + std::string(name));
        if (whileLoading) {
            whileLoading();
        }
        if (isMissing) {
            return false;
        }
        _owner = &owner;
        _table = std::make_unique<Table>(*this);
        _window = std::make_unique<Window>(*this);
        if (!awakesNobody) {
            owner.awakeFromNib(*_window, *_table);
        }
        return true;
    }

    // The plain user.

    std::map<std::string, std::string> answers; ///< by variable name, for every row of that name
    bool cancels = false;                       ///< gives up, after having put in the answers
    std::function<void(std::span<PromptValueRow> rows)> whileShown;
    std::vector<Run> runs; ///< what was shown, once a session

    // The user who follows a script.

    std::deque<std::function<void()>> script;
    bool quitsAfterScript = false;        ///< the program is about to quit when the script is over
    long lastAnswer = RunStoppedResponse; ///< of a session that goes on no longer
    /// Types over the selected text.
    void type(std::string_view text) { _table->typed = text; }
    /// Presses Return, Tab or Backtab in a text, or clicks elsewhere (`Illegal`).
    void endEditing(TextMovement movement) { _owner->tableTextDidEndEditing(movement); }
    void pressKeyInTable(int keyCode) { _owner->tableKeyDown(keyCode); }
    /// Clicks on a row, without editing it.
    void selectRow(int row) {
        _table->leaveCell();
        _table->selected = row;
    }
    void confirm() { _owner->finishPrompt(); }
    void giveUp() { _owner->abortPrompt(); }
    void closeWindow() { _owner->windowWillClose(*_window); }
    void closeAnotherWindow() {
        Window other(*this);
        _owner->windowWillClose(other);
    }
    void moveWindow(std::string_view frame) { _window->frame = frame; }

    // What the user sees.

    [[nodiscard]] int editedRow() const { return _table->edited; }
    [[nodiscard]] int selectedRow() const { return _table->selected; }
    [[nodiscard]] bool textIsSelected() const { return _table->textIsSelected; }
    [[nodiscard]] bool isOnScreen() const { return _window != nullptr && _window->onScreen; }
    [[nodiscard]] const std::string &frame() const { return _window->frame; }
    [[nodiscard]] int loads() const { return static_cast<int>(std::count(journal.begin(), journal.end(), "loadNibNamed PromptWindow")); }

    // What happens while it is shown, apart from events.

    std::function<void()> whileLoading;     ///< the interface file is being loaded: nothing is made yet
    std::function<void()> whenOrderedFront; ///< the window has come onto the screen
    std::function<void()> whenEditingEnds;  ///< the program ends the editing, whose text is not stored yet

    bool isMissing = false;    ///< the interface file cannot be loaded
    bool awakesNobody = false; ///< the interface file is damaged: it connects nothing, without anybody noticing
    std::string fileFrame = "100 100 480 320";
    std::vector<std::string> journal;

private:
    static constexpr int ValueColumn = 1;

    class Window final : public PromptWindow {
    public:
        explicit Window(FakePromptInterface &all) : frame(all.fileFrame), _all(all) {}
        void makeKeyAndOrderFront() override {
            onScreen = true;
            _all._note("window makeKeyAndOrderFront");
            if (_all.whenOrderedFront) {
                _all.whenOrderedFront();
            }
        }
        void orderOut() override {
            onScreen = false;
            _all._note("window orderOut");
        }
        [[nodiscard]] std::string stringWithSavedFrame() override {
            _all._note("window stringWithSavedFrame");
            return frame;
        }
        void setFrameFromString(std::string_view text) override {
            frame = text;
            _all._note("window setFrameFromString " + frame);
        }
        void disableScreenUpdates() override { _all._note("window disableScreenUpdates"); }
        void enableScreenUpdates() override { _all._note("window enableScreenUpdates"); }
        void beginModalSession() override {
            _stopped = false; // whatever was stopped before was another session
            _all._note("window beginModalSession");
        }
        [[nodiscard]] long runModalSession() override {
            _all._note("window runModalSession");
            const bool continues = _all._handleEvents();
            return continues && !std::exchange(_stopped, false) ? RunContinuesResponse : _all.lastAnswer;
        }
        void endModalSession() override { _all._note("window endModalSession"); }
        void stopModal() override {
            _stopped = true;
            _all._note("window stopModal");
        }
        void endEditing() override {
            _all._note("window endEditing");
            if (_all.whenEditingEnds) {
                _all.whenEditingEnds();
            }
            _all._owner->tableTextDidEndEditing(TextMovement::Illegal);
        }

        bool onScreen = false;
        std::string frame;

    private:
        FakePromptInterface &_all;
        bool _stopped = false;
    };

    class Table final : public TableView {
    public:
        explicit Table(FakePromptInterface &all) : _all(all) {}
        [[nodiscard]] int numberOfRows() override { return static_cast<int>(_all._owner->promptRows().size()); }
        [[nodiscard]] int selectedRow() override { return selected; }
        [[nodiscard]] int editedRow() override { return edited; }
        [[nodiscard]] int editedColumn() override { return edited == -1 ? -1 : ValueColumn; }
        [[nodiscard]] int columnWithIdentifier(std::string_view identifier) override {
            return identifier == "ValueColumn" ? ValueColumn : identifier == "KeyColumn" ? 0 : -1;
        }
        void selectRowByExtendingSelection(int row, bool extends) override {
            _all._note("table selectRow " + std::to_string(row) + " extends " + std::to_string(extends ? 1 : 0));
            selected = row < numberOfRows() ? row : selected;
        }
        void editColumnRowSelect(int column, int row, bool selects) override {
            _all._note("table editColumn " + std::to_string(column) + " row " + std::to_string(row) + " select " +
                       std::to_string(selects ? 1 : 0));
            if (column == ValueColumn && row >= 0 && row < numberOfRows()) {
                _edit(row, selects);
            }
        }
        void superTextDidEndEditing(TextMovement movement) override {
            _all._note("table superTextDidEndEditing " + std::to_string(static_cast<int>(movement)));
            if (edited == -1) {
                return;
            }
            const int row = std::exchange(edited, -1);
            _all._owner->promptRows()[static_cast<std::size_t>(row)].value = typed;
            if (movement == TextMovement::Return || movement == TextMovement::Tab) {
                _edit((row + 1) % numberOfRows(), true);
            }
        }
        void superKeyDown(int keyCode) override { _all._note("table superKeyDown " + std::to_string(keyCode)); }
        void leaveCell() { edited = -1; }

        int selected = -1;
        int edited = -1;
        bool textIsSelected = false;
        std::string typed; ///< text of the edited cell

    private:
        void _edit(int row, bool selects) {
            edited = row;
            selected = row;
            textIsSelected = selects;
            typed = _all._owner->promptRows()[static_cast<std::size_t>(row)].value;
        }
        FakePromptInterface &_all;
    };

    void _note(std::string line) { journal.push_back(std::move(line)); }

    /// The user's next doing; false when there is none any more.
    bool _handleEvents() {
        if (!script.empty()) {
            const std::function<void()> step = std::move(script.front());
            script.pop_front();
            step();
            return !script.empty() || !quitsAfterScript;
        }
        _answer();
        return true;
    }

    void _answer() {
        const std::span<PromptValueRow> rows = _owner->promptRows();
        runs.push_back({_owner->promptDirectoryName(), {rows.begin(), rows.end()}});
        _table->leaveCell();
        for (PromptValueRow &row : rows) {
            if (const auto answer = answers.find(row.key); answer != answers.end()) {
                row.value = answer->second;
            }
        }
        if (whileShown) {
            whileShown(rows);
        }
        cancels ? giveUp() : confirm();
    }

    PromptOwner *_owner = nullptr;
    std::unique_ptr<Table> _table;
    std::unique_ptr<Window> _window;
};

} // namespace orvane
