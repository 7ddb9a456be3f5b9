#include "platform/posix/PosixPrivateFolder.h"

#include <cerrno>
#include <cstddef>

#include <sys/stat.h>

namespace orvane {

namespace {

/// Whether the folder is there now.
bool makeOrFind(const std::string &path, std::vector<std::string> *made) {
    if (makePrivateFolder(path)) {
        if (made != nullptr) {
            made->push_back(path);
        }
        return true;
    }
    if (errno == EEXIST || errno == ENOENT) {
        return errno == EEXIST;
    }
    // Above the user's own folders making one may be refused in other ways although it exists.
    const int error = errno;
    struct stat status {};
    const bool isThere = ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    errno = error;
    return isThere;
}

} // namespace

bool makePrivateFolder(const std::string &path) {
    constexpr mode_t ForItsOwner = 0700;
    if (::mkdir(path.c_str(), ForItsOwner) != 0) {
        return false;
    }
    ::chmod(path.c_str(), ForItsOwner); // gives back what the mask took; where that fails, the folder is as good as it gets
    return true;
}

bool makePrivateFolders(const std::string &path, std::vector<std::string> *made) {
    if (makeOrFind(path, made)) {
        return true;
    }
    const std::size_t slash = path.rfind('/');
    const bool hasParent = errno == ENOENT && slash != std::string::npos && slash > 0;
    return hasParent && makePrivateFolders(path.substr(0, slash), made) && makeOrFind(path, made);
}

} // namespace orvane
