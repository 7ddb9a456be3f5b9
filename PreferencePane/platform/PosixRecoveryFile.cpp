#include "PosixRecoveryFile.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixNewFile.h"
#include "platform/posix/PosixPreferencesLock.h"
#include "platform/posix/PosixPrivateFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

constexpr std::size_t Piece = std::size_t{256} * 1024;

} // namespace

std::optional<std::string> PosixRecoveryFile::read() {
    const FileDescriptor file(::open(_path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != ::geteuid()) {
        return std::nullopt;
    }
    std::string bytes;
    for (ssize_t count = 1; count > 0;) {
        const std::size_t done = bytes.size();
        bytes.resize(done + Piece);
        count = uninterrupted([&] { return ::read(file.get(), &bytes[done], Piece); });
        if (count < 0) {
            return std::nullopt;
        }
        bytes.resize(done + static_cast<std::size_t>(count));
    }
    return bytes;
}

bool PosixRecoveryFile::write(std::string_view bytes) {
    struct stat status {};
    if (::lstat(_path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && ::unlink(_path.c_str()) != 0) {
        return false; // a link would lead the text to another place
    }
    return makePrivateFolders(folderOfPreferencesPath(_path)) && writeWholeFile(_path, bytes, true, 0600);
}

void PosixRecoveryFile::remove() {
    ::unlink(_path.c_str());
}

} // namespace orvane
