#include "platform/posix/PosixHotKeyStatement.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace orvane {

namespace {

constexpr std::size_t LongestStatement = 8000; // bytes; what is said has a tenth of it

std::string pathIn(const std::string &directory) {
    return directory + "/hot-key";
}

/// Its helper holds the lock of the file that it wrote: a number in it could be another process's by now.
bool isLocked(int file) {
    return uninterrupted([&] { return ::flock(file, LOCK_SH | LOCK_NB); }) != 0 && errno == EWOULDBLOCK;
}

bool writeWhole(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = uninterrupted([&] { return ::write(descriptor, text.data(), text.size()); });
        if (written <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace

PosixHotKeyStatement::PosixHotKeyStatement(std::string directory) : _directory(std::move(directory)), _path(pathIn(_directory)) {}

PosixHotKeyStatement::~PosixHotKeyStatement() {
    say({});
}

void PosixHotKeyStatement::say(std::string_view text) {
    if (text.empty()) {
        if (std::exchange(_isSaid, false)) {
            ::unlink(_path.c_str());
            _file.reset();
        }
        return;
    }
    constexpr mode_t ForTheUser = 0600;
    // The log has made the folder: whoever says something logs it too.
    const std::string temporary = _path + ".new";
    FileDescriptor file(
        uninterrupted([&] { return ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, ForTheUser); }));
    const std::string content = std::to_string(::getpid()) + "\n" + std::string(text) + "\n"; // the number is for whoever looks
    if (file && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 && writeWhole(file.get(), content) &&
        ::rename(temporary.c_str(), _path.c_str()) == 0) {
        _isSaid = true;
        _file = std::move(file);
    } else if (file) {
        ::unlink(temporary.c_str());
    }
}

std::optional<std::string> PosixHotKeyStatement::ofDirectory(const std::string &directory) {
    const FileDescriptor file(uninterrupted([&] { return ::open(pathIn(directory).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    if (!file) {
        return std::nullopt;
    }
    std::array<char, LongestStatement> content{};
    const ssize_t size = uninterrupted([&] { return ::read(file.get(), content.data(), content.size()); });
    std::string_view text(content.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos || !isLocked(file.get())) {
        return std::nullopt;
    }
    text.remove_prefix(end + 1);
    while (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    return text.empty() ? std::nullopt : std::optional<std::string>(text);
}

} // namespace orvane
