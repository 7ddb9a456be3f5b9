#include "platform/posix/PosixPrivateFolder.h"

#include <sys/stat.h>

namespace orvane {

bool makePrivateFolder(const std::string &path) {
    constexpr mode_t ForItsOwner = 0700;
    if (::mkdir(path.c_str(), ForItsOwner) != 0) {
        return false;
    }
    ::chmod(path.c_str(), ForItsOwner); // gives back what the mask took; where that fails, the folder is as good as it gets
    return true;
}

} // namespace orvane
