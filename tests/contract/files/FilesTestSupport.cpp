#include "FilesTestSupport.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include <dirent.h>
#include <fcntl.h>
#include <grp.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace orvane::testing {

namespace {

void check(bool isGood, const std::string &what) {
    if (!isGood) {
        std::fprintf(stderr, "test set-up failed: %s: %s\n", what.c_str(), std::strerror(errno));
        std::abort();
    }
}

std::string inChildAs(const std::function<std::string()> &work, bool dropsPrivileges) {
    std::array<int, 2> channel{};
    check(::pipe2(channel.data(), O_CLOEXEC) == 0, "pipe");
    const pid_t child = ::fork();
    check(child >= 0, "fork");
    if (child == 0) {
        ::alarm(60);
        std::string result;
        if (dropsPrivileges && (::setgroups(0, nullptr) != 0 || ::setgid(OrdinaryUser) != 0 || ::setuid(OrdinaryUser) != 0)) {
            result = "cannot become an ordinary user";
        } else {
            result = work();
        }
        const ssize_t written = ::write(channel[1], result.data(), result.size());
        ::_exit(written == static_cast<ssize_t>(result.size()) ? 0 : 1);
    }
    ::close(channel[1]);
    std::string result;
    std::array<char, 4096> buffer{};
    for (ssize_t got = 0; (got = ::read(channel[0], buffer.data(), buffer.size())) > 0;) {
        result.append(buffer.data(), static_cast<std::size_t>(got));
    }
    ::close(channel[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return status == 0 ? result : "the child ended with status " + std::to_string(status) + " " + result;
}

} // namespace

bool isRoot() {
    return ::geteuid() == 0;
}

std::string asOrdinaryUser(const std::function<std::string()> &work) {
    return inChildAs(work, isRoot());
}

std::string inChild(const std::function<std::string()> &work) {
    return inChildAs(work, false);
}

std::string contentsOf(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "<cannot be read: " + path + ">";
}

void putFile(const std::string &path, std::string_view contents, mode_t mode) {
    std::ofstream(path, std::ios::binary) << contents;
    check(::chmod(path.c_str(), mode) == 0, path);
}

void putFolder(const std::string &path, mode_t mode) {
    check(::mkdir(path.c_str(), 0700) == 0 && ::chmod(path.c_str(), mode) == 0, path);
}

void putLink(const std::string &path, const std::string &target) {
    check(::symlink(target.c_str(), path.c_str()) == 0, path);
}

void setAttribute(const std::string &path, const char *name, std::string_view value) {
    check(::lsetxattr(path.c_str(), name, value.data(), value.size(), 0) == 0, path + " " + name);
}

std::optional<std::string> attributeOf(const std::string &path, const char *name) {
    std::string value(65536, '\0');
    const ssize_t length = ::lgetxattr(path.c_str(), name, value.data(), value.size());
    if (length < 0) {
        return std::nullopt;
    }
    value.resize(static_cast<std::size_t>(length));
    return value;
}

bool isThere(const std::string &path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

struct stat stateOf(const std::string &path) {
    struct stat status {};
    check(::lstat(path.c_str(), &status) == 0, path);
    return status;
}

unsigned modeOf(const std::string &path) {
    return stateOf(path).st_mode & 07777U;
}

std::vector<std::string> namesIn(const std::string &path) {
    std::vector<std::string> names;
    DIR *const folder = ::opendir(path.c_str());
    check(folder != nullptr, path);
    while (const dirent *const entry = ::readdir(folder)) {
        const std::string name(entry->d_name);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    ::closedir(folder);
    std::sort(names.begin(), names.end());
    return names;
}

std::size_t openDescriptors() {
    return namesIn("/proc/self/fd").size() - 1; // the listing itself has one
}

int run(const std::string &command) {
    return std::system(command.c_str());
}

void giveToOrdinaryUser(const std::string &path) {
    if (isRoot()) {
        check(::lchown(path.c_str(), OrdinaryUser, OrdinaryUser) == 0, path);
    }
}

} // namespace orvane::testing
