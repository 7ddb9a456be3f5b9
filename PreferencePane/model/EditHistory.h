#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// One change of a model, which can be taken back and made again any number of times, always alternately.
class EditChange {
public:
    EditChange() = default;
    EditChange(const EditChange &) = delete;
    EditChange &operator=(const EditChange &) = delete;
    virtual ~EditChange() = default;
    virtual void redo() = 0;
    virtual void undo() = 0;
    /// Takes over a change that was made right after this one, so that both are one. False where that is impossible; `later` is
    /// then as it was.
    [[nodiscard]] virtual bool absorb(EditChange &later) {
        (void)later;
        return false;
    }
};

/// Told whenever what can be undone or redone, or whether there are unsaved changes, may have become another.
class EditHistoryObserver {
public:
    virtual ~EditHistoryObserver() = default;
    virtual void historyDidChange() = 0;
};

/// Everything that was changed since the settings were loaded, in steps that a person takes back one by one.
///
/// Shared by all models, so that one step may change several of them. Models borrow it, and it must outlive them: each one clears
/// it when it goes. Main thread only.
class EditHistory {
public:
    /// An edit in the making: every change until its end belongs to one step. Inside of another one it joins that.
    class Step {
    public:
        /// `name` is the English source text of what it does, as in "Delete Preset", and lives for ever. Steps in a row with the same
        /// `mergeKey` that is not empty become one: typing in one field is taken back at once.
        Step(EditHistory &history, const char *name, std::string mergeKey = {});
        Step(const Step &) = delete;
        Step &operator=(const Step &) = delete;
        ~Step();

    private:
        EditHistory &_history;
    };

    EditHistory() = default;
    EditHistory(const EditHistory &) = delete;
    EditHistory &operator=(const EditHistory &) = delete;
    ~EditHistory() = default;

    /// Makes the change and keeps it. There must be an open step.
    void perform(std::unique_ptr<EditChange> change);

    [[nodiscard]] bool canUndo() const { return _open == 0 && _done > 0; }
    [[nodiscard]] bool canRedo() const { return _open == 0 && _done < _steps.size(); }
    /// What would be undone, such as "Delete Preset"; empty when nothing can be.
    [[nodiscard]] const char *undoName() const;
    [[nodiscard]] const char *redoName() const;
    void undo();
    void redo();

    /// The next step does not join the last one: the field was left.
    void endMerging() { _mayMerge = false; }
    /// What there is now is what stands on disk.
    void markSaved();
    /// What there is now has never stood on disk, whatever is undone or redone.
    void markNeverSaved();
    [[nodiscard]] bool isModified() const { return _savedAt != _done; }
    /// Grows with every change, undone and redone ones included.
    [[nodiscard]] std::uint64_t revision() const { return _revision; }

    /// Forgets all steps. What there is now keeps being saved or not.
    void clear();

    /// Borrowed; must be removed before it is destroyed.
    void addObserver(EditHistoryObserver &observer) { _observers.push_back(&observer); }
    void removeObserver(EditHistoryObserver &observer) { std::erase(_observers, &observer); }

    /// Older steps than that many are forgotten.
    static constexpr std::size_t MostSteps = 1000;

private:
    struct Recorded {
        const char *name = "";
        std::string mergeKey = {};
        std::vector<std::unique_ptr<EditChange>> changes = {};
    };

    void _begin(const char *name, std::string mergeKey);
    void _end();
    void _keep(Recorded step);
    void _dropUndone();
    void _dropOldest();
    void _tell();

    std::vector<Recorded> _steps;
    std::size_t _done = 0;                   ///< steps before this one are made, the others undone
    std::optional<std::size_t> _savedAt = 0; ///< `_done` at the time of saving; nothing when that cannot be reached any more
    std::size_t _open = 0;                   ///< how deep steps are nested
    Recorded _current;
    bool _mayMerge = false;
    std::uint64_t _revision = 0;
    std::vector<EditHistoryObserver *> _observers;
};

} // namespace orvane
