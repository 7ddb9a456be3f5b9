#include "platform/posix/PosixWriting.h"

#include "platform/posix/FileDescriptor.h"

#include <cerrno>
#include <cstddef>

#include <unistd.h>

namespace orvane {

bool writeContents(int to, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t done = uninterrupted([&] { return ::write(to, bytes.data(), bytes.size()); });
        if (done <= 0) {
            errno = done == 0 ? ENOSPC : errno;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(done));
    }
    return true;
}

} // namespace orvane
