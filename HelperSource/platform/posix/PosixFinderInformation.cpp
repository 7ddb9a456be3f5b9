#include "platform/posix/PosixFinderInformation.h"

#include "platform/posix/PosixFinderAttributes.h"
#include "platform/posix/PosixPath.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {

bool PosixFinderInformation::hasItem(std::string_view path) {
    const PosixPath reached(path);
    struct stat status {};
    return ::fstatat(reached.folder(), reached.path(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

int PosixFinderInformation::readFlags(std::string_view path, std::uint16_t &flags) {
    const PosixPath reached(path);
    int error = 0;
    const PosixExtendedAttributes attributes = readFinderAttributes(reached.text(), error);
    if (error == 0) {
        flags = finderFlagsOf(attributes).value_or(0);
    }
    return error;
}

int PosixFinderInformation::writeFlags(std::string_view path, std::uint16_t flags) {
    const PosixPath reached(path);
    int error = 0;
    const PosixExtendedAttributes attributes = readFinderAttributes(reached.text(), error);
    return error != 0 ? error : writeFinderAttributes(reached.text(), attributesForFinderFlags(attributes, flags));
}

} // namespace orvane
