#include "platform/posix/PosixSystemLog.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixPrivateFolder.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <sys/file.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

namespace orvane {

namespace {

constexpr off_t MostBytesOfFile = 1024L * 1024;
constexpr std::size_t MostBytesForSyslog = 8000;

/// UTF-8 of the C1 control characters is 0xC2 followed by 0x80 to 0x9F.
bool startsC1Control(std::string_view text) {
    return text.size() > 1 && text[0] == '\xC2' && static_cast<unsigned char>(text[1]) >= 0x80 &&
           static_cast<unsigned char>(text[1]) <= 0x9F;
}

void appendEscaped(std::string &result, char byte) {
    std::array<char, 5> escaped{};
    std::snprintf(escaped.data(), escaped.size(), "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    result += escaped.data();
}

std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (; !text.empty(); text.remove_prefix(1)) {
        const char byte = text.front();
        const bool isControl = (static_cast<unsigned char>(byte) < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F;
        if (startsC1Control(text)) {
            appendEscaped(result, byte);
            text.remove_prefix(1);
            appendEscaped(result, text.front());
        } else if (isControl) {
            appendEscaped(result, byte);
        } else {
            result += byte;
        }
    }
    return result;
}

std::string timeStamp() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    if (::localtime_r(&now, &parts) == nullptr) {
        return "-";
    }
    std::array<char, 40> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S%z", &parts);
    return {text.data(), length};
}

/// The start of a text that syslog takes whole, cut between characters.
std::string forSyslog(const std::string &text) {
    if (text.size() <= MostBytesForSyslog) {
        return text;
    }
    std::size_t length = MostBytesForSyslog;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) {
        --length;
    }
    return text.substr(0, length) + "…";
}

FileDescriptor opened(const std::string &path) {
    return FileDescriptor(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0600));
}

} // namespace

PosixSystemLog::PosixSystemLog(std::string directory, Syslog syslog)
    : _directory(std::move(directory)), _path(_directory + "/log"), _syslog(syslog) {}

void PosixSystemLog::log(std::string_view text) {
    const std::string entry = printable(text);
    _syslog(forSyslog(entry).c_str());
    _appendToFile(timeStamp() + ' ' + entry + '\n');
}

void PosixSystemLog::writeToSyslog(const char *text) {
    static std::once_flag once;
    // syslog keeps the pointer. This name, of the C library, lives as long as the program.
    std::call_once(once, [] { ::openlog(program_invocation_short_name, LOG_PID, LOG_USER); });
    ::syslog(LOG_NOTICE, "%s", text);
}

void PosixSystemLog::_appendToFile(const std::string &line) const {
    for (bool mayRotate : {true, false}) {
        FileDescriptor file = opened(_path);
        if (!file && errno == ENOENT) {
            static_cast<void>(makePrivateFolders(_directory)); // its failure shows in the opening
            file = opened(_path);
        }
        struct stat status {};
        if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
            return;
        }
        const bool isFull = status.st_size > 0 && status.st_size + static_cast<off_t>(line.size()) > MostBytesOfFile;
        if (isFull && mayRotate && _rotate(file.get())) {
            continue;
        }
        // One write, so that entries of several programs never mix; what does not fit on the disk is lost.
        [[maybe_unused]] const ssize_t written = ::write(file.get(), line.data(), line.size());
        return;
    }
}

/// Renames the full file away. When another program is at it, or has just done it, the entry goes where it stands.
bool PosixSystemLog::_rotate(int descriptor) const {
    struct stat ours {};
    struct stat current {};
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        return false;
    }
    if (::fstat(descriptor, &ours) != 0 || ::stat(_path.c_str(), &current) != 0) {
        return false;
    }
    if (ours.st_ino != current.st_ino || ours.st_dev != current.st_dev) {
        return true; // renamed by another: the file of that name is a new one
    }
    return ::rename(_path.c_str(), (_path + ".1").c_str()) == 0;
}

} // namespace orvane
