#include "ProgressBar.h"

#include "Terminal.h"
#include "Translation.h"

#include "platform/posix/PosixBlockedSignals.h"
#include "platform/posix/PosixWriting.h"

#include <algorithm>
#include <chrono>
#include <sys/ioctl.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace orvane {

namespace {

constexpr auto Patience = std::chrono::milliseconds(500);
constexpr auto Interval = std::chrono::milliseconds(100);
constexpr std::size_t LongestBar = 40;
constexpr std::size_t UsualColumns = 80;
constexpr std::string_view ClearLine = "\r\033[K"; // ECMA-48: carriage return, erase to the end of the line

std::size_t columnsOfTerminal() {
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : UsualColumns;
}

/// A terminal that is gone has nobody who waits.
void show(std::string_view text) {
    static_cast<void>(writeContents(STDERR_FILENO, text));
}

} // namespace

void ProgressBar::begin() {
    if (_thread.joinable() || !isTerminal(STDERR_FILENO)) {
        return;
    }
    const PosixBlockedSignals blocked; // signals go to the thread that can act on them
    try {
        _thread = std::thread([this] { _run(); });
    } catch (const std::system_error &) { // without a thread there is no bar
    }
}

void ProgressBar::end() {
    if (!_thread.joinable()) {
        return;
    }
    {
        const std::lock_guard lock(_mutex);
        _isOver = true;
    }
    _changed.notify_all();
    _thread.join();
}

void ProgressBar::_run() {
    const bool unicode = environmentHasUTF8();
    std::unique_lock lock(_mutex);
    if (_changed.wait_for(lock, Patience, [this] { return _isOver; })) {
        return;
    }
    do {
        const std::string shown = line(_counter.nodes(), _total, unicode, columnsOfTerminal() - 1);
        show(std::string(ClearLine) + shown);
    } while (!_changed.wait_for(lock, Interval, [this] { return _isOver; }));
    show(ClearLine);
}

std::string ProgressBar::line(std::size_t nodes, std::size_t total, bool unicode, std::size_t columns) {
    const std::size_t done = std::min(nodes, total);
    const std::size_t percent = total == 0 ? 100 : done * 100 / total;
    const std::vector<std::string> numbers{std::to_string(done), std::to_string(total)};
    const std::string count = " " + std::to_string(percent) + " %  " + localized("%1 of %2", numbers);
    if (columns < count.size() + 4) { // no room for a bar
        return count.substr(1, columns);
    }
    const std::size_t width = std::min(LongestBar, columns - count.size() - 2);
    const std::size_t filled = total == 0 ? width : done * width / total;
    std::string bar = unicode ? "▕" : "[";
    for (std::size_t i = 0; i < width; ++i) {
        bar += i < filled ? (unicode ? "█" : "#") : " ";
    }
    return bar + (unicode ? "▏" : "]") + count;
}

} // namespace orvane
