#include "ProgramFolder.h"

#include <array>
#include <climits>
#include <unistd.h>

namespace orvane {

std::string folderOfProgram() {
    std::array<char, PATH_MAX> self{};
    const ssize_t length = ::readlink("/proc/self/exe", self.data(), self.size());
    const std::string path(self.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    return path.substr(0, path.find_last_of('/') + 1);
}

} // namespace orvane
