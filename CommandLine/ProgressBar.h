#pragma once

#include "CommandLineAdapters.h"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace orvane {

/// A line on standard error that shows how far a long creation is: nothing for half a second, then ten times a second,
/// and away again at the end. It has a thread of its own, since a single file may take long; where standard error is no
/// terminal there is neither thread nor line.
class ProgressBar {
public:
    /// `counter` is borrowed; `total` is the number of nodes at the end.
    ProgressBar(const NodeCounter &counter, std::size_t total) : _counter(counter), _total(total) {}
    ProgressBar(const ProgressBar &) = delete;
    ProgressBar &operator=(const ProgressBar &) = delete;
    ~ProgressBar() { end(); }

    /// Begins the waiting; does nothing while it lasts.
    void begin();
    /// Takes the line away and waits for the thread. May be called any number of times.
    void end();

    /// The line for a state, `columns` wide at most, without escape sequences.
    [[nodiscard]] static std::string line(std::size_t nodes, std::size_t total, bool unicode, std::size_t columns);

private:
    void _run();

    const NodeCounter &_counter;
    std::size_t _total;
    std::mutex _mutex;
    std::condition_variable _changed;
    bool _isOver = false;
    std::thread _thread;
};

} // namespace orvane
