#include "ParentFolder.h"

#include "Translation.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

struct FreeDeleter {
    void operator()(char *memory) const { std::free(memory); }
};
using OwnedText = std::unique_ptr<char, FreeDeleter>;

/// Whether the path has a component "." or "..", which would otherwise stand in every path that people and scripts see.
bool hasDotComponents(std::string_view path) {
    return (std::string(path) + "/").find("/./") != std::string::npos || (std::string(path) + "/").find("/../") != std::string::npos;
}

} // namespace

std::string parentFolder(const std::optional<std::string> &in, std::string &problem) {
    if (!in) {
        const OwnedText current(::getcwd(nullptr, 0));
        if (!current || *current != '/') { // Linux: "(unreachable)" stands before a folder outside of the root
            problem = localized("the current folder cannot be used: %1", {textOfError(current ? ENOENT : errno)});
            return {};
        }
        return current.get();
    }
    struct stat status {};
    if (::stat(in->c_str(), &status) != 0) {
        problem = localized("'%1' cannot be used: %2", {*in, textOfError(errno)});
        return {};
    }
    if (!S_ISDIR(status.st_mode)) {
        problem = localized("'%1' is not a folder", {*in});
        return {};
    }
    if (in->front() == '/' && !hasDotComponents(*in)) {
        return *in;
    }
    const OwnedText whole(::realpath(in->c_str(), nullptr));
    if (!whole) {
        problem = localized("'%1' cannot be used: %2", {*in, textOfError(errno)});
        return {};
    }
    return whole.get();
}

} // namespace orvane
