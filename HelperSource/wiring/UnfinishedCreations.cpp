#include "wiring/UnfinishedCreations.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace orvane {

UnfinishedCreations::UnfinishedCreations(CreationRecovery &recovery, ThreadLauncher &threads, MainThread &mainThread, SystemLog &log,
                                         UnfinishedCreationsOffer offer)
    : _recovery(recovery), _threads(threads), _mainThread(mainThread), _log(log), _offer(std::move(offer)) {}

void UnfinishedCreations::look() {
    _beside([this] {
        const std::vector<CreationRemains> all = _recovery.remains();
        _mainThread.performAndWait([&] { _found(all); });
    });
}

/// On another thread, and on this one where none can be had.
void UnfinishedCreations::_beside(const std::function<void()> &work) {
    if (!_threads.detachNewThread(work)) {
        work();
    }
}

void UnfinishedCreations::_found(const std::vector<CreationRemains> &all) {
    for (const CreationRemains &remains : all) {
        _log.log("the creation of " + remains.topPath + " was ended half-way; 'orvane recover' shows and removes what it left");
        if (remains.items > 0) { // of what was changed since nothing is ever removed
            _offered.push_back(remains);
        }
    }
    if (!_offered.empty()) {
        _offer.ask(_offered, [this](bool remove) { remove ? _remove() : _keep(); });
    }
}

void UnfinishedCreations::_keep() {
    for (const CreationRemains &remains : _offered) {
        _recovery.keep(remains);
        _log.log("what the creation of " + remains.topPath + " left is kept");
    }
}

void UnfinishedCreations::_remove() {
    _beside([this] {
        const RemainsRemoval removal = _removeWhatIsThere();
        _mainThread.performAndWait([&] { _offer.tell(removal); });
    });
}

/// The offer may be old: some of it may have been changed since, removed by 'orvane recover', or be in its hands right now.
RemainsRemoval UnfinishedCreations::_removeWhatIsThere() {
    RemainsRemoval removal;
    for (const CreationRemains &remains : _recovery.remains()) {
        if (!_isOffered(remains)) {
            continue;
        }
        const std::size_t removed = _recovery.remove(remains);
        _log.log("of what the creation of " + remains.topPath + " left, removed: " + std::to_string(removed) +
                 ", changed since: " + std::to_string(remains.changed.size()));
        removal.removed += removed;
        removal.changed.insert(removal.changed.end(), remains.changed.begin(), remains.changed.end());
        if (removed < remains.items && remains.changed.empty()) {
            removal.left.push_back(remains.topPath);
        }
    }
    for (const CreationRemains &remains : _recovery.remains()) {
        if (_isOffered(remains) && std::find(removal.left.begin(), removal.left.end(), remains.topPath) == removal.left.end()) {
            removal.left.push_back(remains.topPath);
        }
    }
    return removal;
}

bool UnfinishedCreations::_isOffered(const CreationRemains &remains) const {
    return std::any_of(_offered.begin(), _offered.end(),
                       [&](const CreationRemains &each) { return each.entry == remains.entry && each.topPath == remains.topPath; });
}

} // namespace orvane
