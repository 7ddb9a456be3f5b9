#include "platform/posix/PosixFileFinisher.h"

#include "platform/posix/PosixWriting.h"

#include <algorithm>
#include <chrono>
#include <new>
#include <utility>

namespace orvane {

namespace {

/// Files in the first batch, so that a folder of some dozen files comes to have two threads.
constexpr std::size_t FirstBatch = 4;
/// Files in a batch at most: beside so many, waking the other thread costs little. Three such batches can be open at once.
constexpr std::size_t LargestBatch = 64;

/// How long the maker waits for a batch before it lets the other thread have this processor.
constexpr std::chrono::milliseconds Patience(2);
/// From so long on `finished` is called within a batch.
constexpr std::chrono::milliseconds TellEvery(100);

} // namespace

PosixFileFinisher::PosixFileFinisher(const std::function<void(bool isGood)> &finished) : _finished(finished), _batch(FirstBatch) {
    for (std::vector<File> *const files : {&_own, &_taken, &_given}) {
        files->reserve(LargestBatch);
    }
}

void PosixFileFinisher::add(File file) {
    _own.push_back(std::move(file));
    if (_own.size() >= _batch) {
        _handOver();
        _batch = std::min(_batch * 2, LargestBatch);
    }
}

void PosixFileFinisher::_handOver() {
    if (!_isStarted) {
        _isStarted = true;
        _hasThread = _thread.start([this] { _run(); }, PosixSecondThread::Place::Apart);
    }
    if (_hasThread) {
        const std::lock_guard lock(_monitor);
        if (_given.empty()) {
            _given.swap(_own);
        }
    }
    if (_own.empty()) {
        _isThere.notify_one();
    } else {
        _complete(_own);
    }
}

void PosixFileFinisher::wait() {
    _complete(_own);
    std::unique_lock lock(_monitor);
    if (!_given.empty()) {
        _own.swap(_given);
        lock.unlock();
        _complete(_own);
        lock.lock();
    }
    const auto isIdle = [this] { return !_isBusy; };
    if (!_isIdle.wait_for(lock, Patience, isIdle)) { // it has no processor, perhaps; this one has time now
        lock.unlock();
        _thread.setFree();
        lock.lock();
        _isIdle.wait(lock, isIdle);
    }
}

void PosixFileFinisher::end() {
    wait();
    {
        const std::lock_guard lock(_monitor);
        _isEnding = true;
    }
    _isThere.notify_one();
    _thread.join();
}

void PosixFileFinisher::_run() {
    std::unique_lock lock(_monitor);
    for (;;) {
        _isThere.wait(lock, [this] { return !_given.empty() || _isEnding; });
        if (_given.empty()) {
            return;
        }
        _taken.swap(_given);
        _isBusy = true;
        lock.unlock();
        _complete(_taken);
        lock.lock();
        _isBusy = false;
        _isIdle.notify_one();
    }
}

void PosixFileFinisher::_complete(std::vector<File> &batch) {
    if (batch.empty()) {
        return;
    }
    Unfinished unfinished;
    auto told = std::chrono::steady_clock::now();
    for (File &each : batch) {
        if (_isGood && !_complete(each, unfinished) && _isGood.exchange(false)) {
            _finished(false);
        }
        if (const auto now = std::chrono::steady_clock::now(); _isGood && now - told >= TellEvery) {
            _finished(true);
            told = now;
        }
    }
    batch.clear();
    if (unfinished.count > 0) {
        const std::lock_guard lock(_monitor);
        _unfinished.add(unfinished);
    }
    if (_isGood) {
        _finished(true);
    }
}

bool PosixFileFinisher::_complete(File &file, Unfinished &unfinished) {
    const PosixContent *const content = file.finish.content;
    if (content != nullptr && !writeContents(file.file.get(), content->bytes())) {
        return false;
    }
    int error = 0;
    try {
        error = finishNewFile(file.file.get(), file.finish);
    } catch (const std::bad_alloc &) { // a single thread may get by with what there is
        return false;
    }
    if (error != 0) {
        unfinished.add({1, file.item, error});
    }
    return content == nullptr || file.file.closeChecked();
}

void PosixFileFinisher::Unfinished::add(const Unfinished &others) {
    if (count == 0 || others.first < first) {
        first = others.first;
        error = others.error;
    }
    count += others.count;
}

} // namespace orvane
