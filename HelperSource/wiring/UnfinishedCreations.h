#pragma once

#include "platform/qt/RemainsRemoval.h"
#include "ports/CreationJournal.h"
#include "ports/MainThread.h"
#include "ports/SystemLog.h"
#include "ports/ThreadLauncher.h"

#include <functional>
#include <vector>

namespace orvane {

/// How the user is asked what becomes of the remains of creations that were ended half-way. Called on the main thread.
struct UnfinishedCreationsOffer {
    /// Asks, and returns at once. `answered` is to be called at most once, on the main thread, with whether to remove; not at all when
    /// the user does not want to decide now.
    std::function<void(const std::vector<CreationRemains> &remains, std::function<void(bool remove)> answered)> ask;
    /// Tells what came of removing.
    std::function<void(const RemainsRemoval &removal)> tell;
};

/// Looks once for what creations left that were ended half-way, and offers to remove it: all of it in one question. What was kept is
/// never asked about again; what was not decided is at the next start. Whether there is anything to remove is found out, and it is
/// removed, on another thread, for it can be much. Main thread only; must outlive that thread.
class UnfinishedCreations {
public:
    /// The references must outlive it. `recovery` is its own.
    UnfinishedCreations(CreationRecovery &recovery, ThreadLauncher &threads, MainThread &mainThread, SystemLog &log,
                        UnfinishedCreationsOffer offer);

    /// To be called once. Nothing is asked when there is nothing to remove.
    void look();

private:
    void _beside(const std::function<void()> &work);
    void _found(const std::vector<CreationRemains> &all);
    void _keep();
    void _remove();
    [[nodiscard]] RemainsRemoval _removeWhatIsThere();
    [[nodiscard]] bool _isOffered(const CreationRemains &remains) const;

    CreationRecovery &_recovery;
    ThreadLauncher &_threads;
    MainThread &_mainThread;
    SystemLog &_log;
    const UnfinishedCreationsOffer _offer;
    std::vector<CreationRemains> _offered; ///< not changed any more once it was offered
};

} // namespace orvane
