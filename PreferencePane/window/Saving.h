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

    Saving(SettingsContext &context, const Bars &bars, QObject *parent);
    Saving(const Saving &) = delete;
    Saving &operator=(const Saving &) = delete;
    ~Saving() override;

    /// Reads the preferences for the first time.
    void start();
    /// Another program may have changed something.
    void lookAgain();
    /// True when everything is stored, at least in the file of unsaved edits.
    bool saveNow();
    [[nodiscard]] bool isReadable() const { return _context.store.state() == SettingsStore::State::Loaded; }

Q_SIGNALS:
    void readabilityChanged(bool isReadable);
    void modifiedChanged();

private:
    enum class Task { Save, Reload, Recover };

    void historyDidChange() override;
    void _watch();
    SettingsStore::Outcome _run(Task task);
    void _show(Task task, SettingsStore::Outcome outcome);
    void _showUnreadable();
    void _askConflict(std::size_t number);
    void _decide(std::size_t number, MergeSide side, bool forAll);
    void _offerRecovery();
    [[nodiscard]] QString _question(const MergeConflict &conflict) const;

    SettingsContext &_context;
    Bars _bars;
    QTimer _pause;
    QTimer _notice;
    QElapsedTimer _sinceFirstEdit;
    QFileSystemWatcher _watcher;
    Task _asking = Task::Save; ///< what goes on when conflicts are decided
    bool _isBusy = false;      ///< with the store, which changes models itself
    bool _wasReadable = true;
};

} // namespace orvane
