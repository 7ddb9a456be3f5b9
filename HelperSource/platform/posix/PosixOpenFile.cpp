#include "platform/posix/PosixOpenFile.h"

#include <sys/stat.h>

namespace orvane {

bool isFileAtPath(int file, const std::string &path) {
    struct stat open {};
    struct stat found {};
    return ::fstat(file, &open) == 0 && ::stat(path.c_str(), &found) == 0 && open.st_dev == found.st_dev && open.st_ino == found.st_ino;
}

} // namespace orvane
