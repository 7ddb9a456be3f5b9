#pragma once

#include "window/SettingsContext.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

#include <cstddef>

namespace orvane {

class MessageBar;

/// Keeps the preferences and the window the same: saves soon after each edit, takes over what other programs change, and asks in the
/// window's bars where both changed the same. Edits that cannot be saved are kept in the file of unsaved ones.
class Saving final : public QObject, private EditHistoryObserver {
    Q_OBJECT

public:
    struct Bars {
        MessageBar &file;     ///< about the preferences file as a whole
        MessageBar &conflict; ///< asks whose change counts
        MessageBar &recovery; ///< offers unsaved edits of an earlier run
    };

    /// How long after the last edit is saved, in ms; while somebody goes on editing, at least every `Longest`.
    static constexpr int Delay = 700;
    static constexpr int Longest = 5000;
    /// How soon after an edit it stands in the file of unsaved ones, in ms; where writing that takes long, ten times as long as that.
    static constexpr int UnsavedDelay = 150;
    /// How often saving is tried while another program holds the preferences, and when the user is told, in ms.
    static constexpr int Again = 100;
    static constexpr int Unnoticed = 1000;

    Saving(SettingsContext &context, const Bars &bars, QObject *parent);
    Saving(const Saving &) = delete;
    Saving &operator=(const Saving &) = delete;
    ~Saving() override;

    /// Reads the preferences for the first time.
    void start();
    /// Another program may have changed something.
    void lookAgain();
    /// True when everything is stored, at least in the file of unsaved edits. While another program holds the preferences nothing waits:
    /// saving is tried again until it lets go, and the file bar says so after a while.
    bool saveNow();
    /// Whether another program holds the preferences, and what was edited is stored as soon as it lets go.
    [[nodiscard]] bool isHeldUp() const { return _heldUp.isValid(); }
    [[nodiscard]] bool isReadable() const { return _context.store.state() == SettingsStore::State::Loaded; }

Q_SIGNALS:
    void readabilityChanged(bool isReadable);
    void modifiedChanged();
    /// Another program has let go of the preferences, and what was edited is stored.
    void heldUpEnded();

private:
    enum class Task { Save, Reload, Recover };

    void historyDidChange() override;
    void _watch();
    SettingsStore::Outcome _run(Task task);
    void _show(Task task, SettingsStore::Outcome outcome);
    void _showUnreadable();
    void _waitForOthers();
    void _keepUnsaved();
    void _askConflict(std::size_t number);
    void _decide(std::size_t number, MergeSide side, bool forAll);
    void _offerRecovery();
    [[nodiscard]] QString _question(const MergeConflict &conflict) const;

    SettingsContext &_context;
    Bars _bars;
    QTimer _pause;
    QTimer _notice;
    QTimer _unsaved; ///< until the edits are written into the file of unsaved ones
    QTimer _again;
    QElapsedTimer _heldUp; ///< since another program holds the preferences while there is something to save
    QElapsedTimer _sinceFirstEdit;
    QFileSystemWatcher _watcher;
    Task _asking = Task::Save; ///< what goes on when conflicts are decided
    bool _isBusy = false;      ///< with the store, which changes models itself
    bool _wasReadable = true;
};

} // namespace orvane
