#pragma once

#include "ports/PromptValueRow.h"

#include <span>
#include <string>
#include <string_view>

namespace orvane {

/// Why the editing of a cell's text ended; the values are those of the movement that a text view reports.
enum class TextMovement : int { Illegal = 0, Return = 16, Tab = 17, Backtab = 18 };

/// Key code of the Return key, as a key event reports it (Carbon's kVK_Return).
inline constexpr int ReturnKeyCode = 36;
/// What a modal session answers as long as it goes on (AppKit's NSRunContinuesResponse).
inline constexpr long RunContinuesResponse = -1002;
/// What it answers once its modal state was stopped (AppKit's NSRunStoppedResponse).
inline constexpr long RunStoppedResponse = -1000;

/// The window in which values are asked for. Main thread only.
class PromptWindow {
public:
    virtual ~PromptWindow() = default;
    virtual void makeKeyAndOrderFront() = 0;
    /// Takes the window from the screen without closing it.
    virtual void orderOut() = 0;
    /// Frame in text form; empty when it cannot be told.
    [[nodiscard]] virtual std::string stringWithSavedFrame() = 0;
    /// Applies such a text; one that it does not understand, or that lies off every screen, changes nothing.
    virtual void setFrameFromString(std::string_view frame) = 0;
    /// Keeps the user from seeing intermediate states in between.
    virtual void disableScreenUpdates() = 0;
    virtual void enableScreenUpdates() = 0;
    /// From now on until the end the user can use no other window of this program.
    virtual void beginModalSession() = 0;
    /// Waits for the next batch of events without using the processor, handles it and answers `RunContinuesResponse`, or
    /// anything else once the modal state was stopped or the program is about to quit.
    [[nodiscard]] virtual long runModalSession() = 0;
    virtual void endModalSession() = 0;
    /// Makes the session's next answer another one.
    virtual void stopModal() = 0;
    /// Ends the editing of any text in the window and commits it.
    virtual void endEditing() = 0;
};

/// What a table does by itself; the rows are the manager's prompt values. Main thread only.
class TableView {
public:
    virtual ~TableView() = default;
    [[nodiscard]] virtual int numberOfRows() = 0;
    /// -1 when no row is selected.
    [[nodiscard]] virtual int selectedRow() = 0;
    /// -1 when nothing is edited.
    [[nodiscard]] virtual int editedRow() = 0;
    [[nodiscard]] virtual int editedColumn() = 0;
    /// -1 when there is none.
    [[nodiscard]] virtual int columnWithIdentifier(std::string_view identifier) = 0;
    virtual void selectRowByExtendingSelection(int row, bool extends) = 0;
    /// Starts editing that cell and scrolls it into view; `selects` selects all of its text. A row or column that does not
    /// exist changes nothing.
    virtual void editColumnRowSelect(int column, int row, bool selects) = 0;
    /// The table's own end of editing: stores the typed text into the row's value, then moves on as the movement says.
    virtual void superTextDidEndEditing(TextMovement movement) = 0;
    /// The table's own handling of a key.
    virtual void superKeyDown(int keyCode) = 0;
};

/// What stands in the way of the creation that the values as they are would lead to.
enum class PromptProblem { None, BlankName, AlreadyExists, NameTooLong, ImpossibleName };

/// Whoever shows the prompt: the interface file's owner. Implemented by the core; main thread only.
class PromptOwner {
public:
    virtual ~PromptOwner() = default;
    /// Connects the outlets and starts. Both are borrowed until the next load. To be called by the loader once all is made.
    virtual void awakeFromNib(PromptWindow &window, TableView &table) = 0;

    // What the interface shows.
    /// The rows, whose values the interface changes in place (the keys never).
    [[nodiscard]] virtual std::span<PromptValueRow> promptRows() = 0;
    /// Raw template of the folder's name.
    [[nodiscard]] virtual const std::string &promptDirectoryName() const = 0;
    /// Absolute path of the folder in which the new one will be; empty when it is not known.
    [[nodiscard]] virtual const std::string &promptParentFolder() const = 0;
    /// The folder's name as `rows` would make it. Never fails; for showing only.
    [[nodiscard]] virtual std::string directoryNameForRows(std::span<const PromptValueRow> rows) const = 0;
    /// What would stop the creation with these rows. Asks the disk; for showing only.
    [[nodiscard]] virtual PromptProblem problemForRows(std::span<const PromptValueRow> rows) const = 0;

    // What the user did.
    virtual void finishPrompt() = 0;
    virtual void abortPrompt() = 0;
    /// The window is about to close, by its close button or the window manager.
    virtual void windowWillClose(PromptWindow &window) = 0;
    /// The editing of a cell's text ended; `editedColumn()` and `editedRow()` still tell which. The typed text is stored by
    /// `superTextDidEndEditing`, which this calls.
    virtual void tableTextDidEndEditing(TextMovement movement) = 0;
    /// A key came to the table while no text is edited.
    virtual void tableKeyDown(int keyCode) = 0;
};

/// The application's interface files.
class PromptInterface {
public:
    virtual ~PromptInterface() = default;
    /// Loads a new copy of the interface file of that name for `owner`, calls its `awakeFromNib`, and says whether that succeeded.
    /// What the previous load made may be let go of. Main thread only.
    [[nodiscard]] virtual bool loadNibNamedOwner(std::string_view name, PromptOwner &owner) = 0;
};

} // namespace orvane
