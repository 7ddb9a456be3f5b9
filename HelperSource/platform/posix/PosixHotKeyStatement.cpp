#include "platform/posix/PosixHotKeyStatement.h"

#include "platform/posix/PosixOpenFile.h"
#include "platform/posix/PosixWriting.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>

namespace orvane {

namespace {

constexpr std::size_t LongestStatement = 8000; // bytes; what is said has a tenth of it
constexpr int MostAttempts = 100;              // each lost to another statement: nobody says that many

std::string pathIn(const std::string &directory) {
    return directory + "/hot-key";
}

/// Its helper holds the lock of the file that it wrote: a number in it could be another process's by now.
bool isLocked(int file) {
    return uninterrupted([&] { return ::flock(file, LOCK_SH | LOCK_NB); }) != 0 && errno == EWOULDBLOCK;
}

/// What is said, behind the number.
std::optional<std::string> textIn(std::string_view content) {
    const std::size_t end = content.find('\n');
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    content.remove_prefix(end + 1);
    while (content.ends_with('\n')) {
        content.remove_suffix(1);
    }
    return content.empty() ? std::nullopt : std::optional<std::string>(content);
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
    if (file && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 && writeContents(file.get(), content) &&
        ::rename(temporary.c_str(), _path.c_str()) == 0) {
        _isSaid = true;
        _file = std::move(file);
    } else if (file) {
        ::unlink(temporary.c_str());
    }
}

std::optional<std::string> PosixHotKeyStatement::ofDirectory(const std::string &directory) {
    const std::string path = pathIn(directory);
    for (int attempt = 0; attempt < MostAttempts; ++attempt) {
        const FileDescriptor file(uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
        if (!file) {
            return std::nullopt;
        }
        std::array<char, LongestStatement> content{};
        const ssize_t size = uninterrupted([&] { return ::read(file.get(), content.data(), content.size()); });
        if (isLocked(file.get())) {
            return textIn(std::string_view(content.data(), size > 0 ? static_cast<std::size_t>(size) : 0));
        }
        if (isFileAtPath(file.get(), path)) {
            return std::nullopt;
        }
        // The helper has said something else meanwhile, and let this file go, which it does after it has replaced it.
    }
    return std::nullopt;
}

} // namespace orvane
