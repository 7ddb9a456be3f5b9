#include "platform/posix/PosixSmallFile.h"

#include "platform/posix/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {

std::optional<std::string> contentsOfSmallFile(const std::string &path, std::size_t most) {
    const FileDescriptor file(uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || static_cast<std::size_t>(status.st_size) > most) {
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = uninterrupted([&] { return ::read(file.get(), &bytes[done], bytes.size() - done); });
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) { // it has become shorter meanwhile
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    bytes.resize(done);
    return bytes;
}

} // namespace orvane
