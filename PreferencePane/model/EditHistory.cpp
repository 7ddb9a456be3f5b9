#include "EditHistory.h"

#include <cassert>
#include <utility>

namespace orvane {

EditHistory::Step::Step(EditHistory &history, const char *name, std::string mergeKey) : _history(history) {
    _history._begin(name, std::move(mergeKey));
}

EditHistory::Step::~Step() {
    _history._end();
}

void EditHistory::_begin(const char *name, std::string mergeKey) {
    if (_open++ == 0) {
        _current = {name, std::move(mergeKey), {}};
    }
}

void EditHistory::_end() {
    if (--_open > 0 || _current.changes.empty()) {
        return;
    }
    _keep(std::exchange(_current, {}));
    _tell();
}

void EditHistory::perform(std::unique_ptr<EditChange> change) {
    assert(_open > 0);
    if (_current.changes.empty()) {
        _dropUndone(); // while what they would do again is still there to be let go of
    }
    change->redo();
    ++_revision;
    if (_current.changes.empty() || !_current.changes.back()->absorb(*change)) {
        _current.changes.push_back(std::move(change));
    }
}

void EditHistory::_keep(Recorded step) {
    const bool merges = _mayMerge && _done > 0 && !step.mergeKey.empty() && _steps.back().mergeKey == step.mergeKey;
    _mayMerge = true;
    if (merges) {
        auto &changes = _steps.back().changes;
        for (auto &change : step.changes) {
            if (!changes.back()->absorb(*change)) {
                changes.push_back(std::move(change));
            }
        }
        return;
    }
    _steps.push_back(std::move(step));
    ++_done;
    _dropOldest();
}

/// Steps go from the last to the first: a later one may hold on to what an earlier one made.
void EditHistory::_dropUndone() {
    if (_savedAt && *_savedAt > _done) {
        _savedAt = std::nullopt;
    }
    if (_steps.size() > _done) {
        _mayMerge = false;
    }
    while (_steps.size() > _done) {
        _steps.pop_back();
    }
}

void EditHistory::_dropOldest() {
    if (_steps.size() <= MostSteps) {
        return;
    }
    _steps.erase(_steps.begin());
    --_done;
    if (_savedAt) {
        _savedAt = *_savedAt == 0 ? std::nullopt : std::optional(*_savedAt - 1);
    }
}

const char *EditHistory::undoName() const {
    return canUndo() ? _steps[_done - 1].name : "";
}

const char *EditHistory::redoName() const {
    return canRedo() ? _steps[_done].name : "";
}

void EditHistory::undo() {
    if (!canUndo()) {
        return;
    }
    auto &changes = _steps[--_done].changes;
    for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
        (*change)->undo();
        ++_revision;
    }
    _mayMerge = false;
    _tell();
}

void EditHistory::redo() {
    if (!canRedo()) {
        return;
    }
    for (const auto &change : _steps[_done++].changes) {
        change->redo();
        ++_revision;
    }
    _mayMerge = false;
    _tell();
}

void EditHistory::markSaved() {
    _savedAt = _done;
    _mayMerge = false; // so that undoing leads back to here
    _tell();
}

void EditHistory::markNeverSaved() {
    _savedAt = std::nullopt;
    _mayMerge = false;
    _tell();
}

void EditHistory::clear() {
    const bool wasModified = isModified();
    _done = 0;
    while (!_steps.empty()) {
        _steps.pop_back();
    }
    _savedAt = wasModified ? std::nullopt : std::optional<std::size_t>(0);
    _mayMerge = false;
    _tell();
}

void EditHistory::_tell() {
    const std::vector<EditHistoryObserver *> observers = _observers;
    for (EditHistoryObserver *observer : observers) {
        observer->historyDidChange();
    }
}

} // namespace orvane
