#include "platform/posix/PosixContentCopy.h"

#include "platform/posix/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <vector>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/sendfile.h>

namespace orvane {

namespace {

/// Most that one call is asked for: 1 GiB, below the 2 GiB minus a page at which Linux cuts (man read).
constexpr std::size_t MostAtOnce = std::size_t{1} << 30U;
/// Buffer of the last resort. Larger ones gain little and count against the memory of a small program.
constexpr std::size_t BufferSize = std::size_t{256} * 1024;

/// The ways to move bytes, best first. A way that the file systems refuse is not tried again in the same copy.
enum class Way { CopyFileRange, SendFile, ReadAndWrite };

/// Errors that mean "not in this way"; others are real.
bool isRefusal(int error) {
    return error == EXDEV || error == EOPNOTSUPP || error == EINVAL || error == ENOSYS || error == EPERM || error == ETXTBSY;
}

class Copy {
public:
    Copy(int from, int to, const std::function<bool()> *shouldStop)
        : _from(from), _to(to), _shouldStop(shouldStop), _mostAtOnce(shouldStop != nullptr ? PosixMostBytesUnasked : MostAtOnce) {}

    /// Copies the bytes from `position` to `end`, or to the end of the source.
    [[nodiscard]] bool range(off_t position, off_t end) {
        while (position < end) {
            if (_shouldStop != nullptr && (*_shouldStop)()) {
                errno = ECANCELED;
                return false;
            }
            const auto wanted = static_cast<std::size_t>(std::min(end - position, static_cast<off_t>(_mostAtOnce)));
            const ssize_t done = uninterrupted([&] { return _some(position, wanted); });
            if (done > 0) {
                position += done;
            } else if (_way == Way::ReadAndWrite) {
                return done == 0;
            } else if (done == 0 || isRefusal(errno)) {
                // Some special file systems answer "nothing" where only reading gives the bytes.
                _way = _way == Way::CopyFileRange && done != 0 ? Way::SendFile : Way::ReadAndWrite;
            } else {
                return false;
            }
        }
        return true;
    }

private:
    [[nodiscard]] ssize_t _some(off_t position, std::size_t size) {
        off_t in = position;
        off_t out = position;
        switch (_way) {
        case Way::CopyFileRange:
            return ::copy_file_range(_from, &in, _to, &out, size, 0);
        case Way::SendFile:
            return ::lseek(_to, position, SEEK_SET) < 0 ? -1 : ::sendfile(_to, _from, &in, size);
        case Way::ReadAndWrite:
            break;
        }
        _buffer.resize(BufferSize);
        const ssize_t got = ::pread(_from, _buffer.data(), std::min(size, BufferSize), position);
        return got <= 0 ? got : ::pwrite(_to, _buffer.data(), static_cast<std::size_t>(got), position);
    }

    int _from;
    int _to;
    const std::function<bool()> *_shouldStop;
    std::size_t _mostAtOnce;
    Way _way = Way::CopyFileRange;
    std::vector<char> _buffer;
};

} // namespace

bool copyContents(int from, int to, off_t size, bool sparse, const std::function<bool()> *shouldStop) {
    if (size == 0 || ::ioctl(to, FICLONE, from) == 0) {
        return true;
    }
    Copy copy(from, to, shouldStop);
    off_t position = 0;
    while (sparse && position < size) {
        const off_t data = ::lseek(from, position, SEEK_DATA);
        if (data < 0 && errno == ENXIO) {
            break; // a hole up to the end
        }
        const off_t hole = data < 0 ? -1 : ::lseek(from, data, SEEK_HOLE);
        if (hole < 0) {
            sparse = false; // no such question on this file system
        } else if (!copy.range(data, std::min(hole, size))) {
            return false;
        } else {
            position = hole;
        }
    }
    return sparse ? ::ftruncate(to, size) == 0 : copy.range(position, size);
}

} // namespace orvane
