#pragma once

#include "ports/CreationProgress.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class QObject;

namespace orvane {

/// Shows a window once a creation has lasted for half a second.
///
/// Creations keep the main thread, and handling events in between would let the user start things in the middle of one (and would not
/// help during the copying of one big file). So the window belongs to a process of its own, which answers the desktop all the
/// while; a thread of ours starts it, feeds it and ends it. A creation begins with the first `advanced` and ends when the main thread
/// handles events again.
class QtCreationProgress final : public CreationProgress {
public:
    /// `command` is a program with its arguments that does what `QtRunProgressWindow` does on its standard input. Main thread.
    explicit QtCreationProgress(std::vector<std::string> command);
    QtCreationProgress(const QtCreationProgress &) = delete;
    QtCreationProgress &operator=(const QtCreationProgress &) = delete;
    /// Takes the window away.
    ~QtCreationProgress() override;

    /// Any thread.
    void advanced(std::size_t nodes) override;
    void startedOver() override { _nodes = 0; }
    /// So many nodes the present creation has made; 0 between creations. Any thread.
    [[nodiscard]] std::uint64_t nodes() const { return _nodes; }
    /// So many times a window was given the number, counting those that could not be started. Any thread; for tests.
    [[nodiscard]] std::uint64_t tellings() const { return _tellings; }

private:
    void _begin();
    void _end();
    void _watch();
    void _showUntilEnd(std::unique_lock<std::mutex> &lock);

    const std::vector<std::string> _command;
    std::unique_ptr<QObject> _context; ///< of the event that ends a creation
    std::atomic<bool> _isCreating = false;
    std::atomic<std::uint64_t> _nodes = 0;
    std::atomic<std::uint64_t> _tellings = 0;

    std::mutex _mutex;
    std::condition_variable _changed;
    std::uint64_t _creation = 0; ///< number of the creation under way; 0 for none
    std::uint64_t _creations = 0;
    bool _isOver = false;
    std::thread _watcher; ///< from the first creation on
};

} // namespace orvane
