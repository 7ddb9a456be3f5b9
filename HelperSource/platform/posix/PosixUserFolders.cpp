#include "platform/posix/PosixUserFolders.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <pwd.h>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace orvane {

namespace {

/// An absolute path without slashes at its end; nothing for any other text.
std::optional<std::string> absolutePath(const char *text) {
    if (text == nullptr || *text != '/') {
        return std::nullopt;
    }
    std::string path(text);
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

std::string joined(std::string folder, std::string_view component) {
    if (folder.back() != '/') {
        folder += '/';
    }
    return folder.append(component);
}

struct FileCloser {
    void operator()(std::FILE *file) const { std::fclose(file); }
};

/// The home folder that the file of users tells. Only for want of $HOME, and without the system's other sources of users
/// (nsswitch.conf): they are shared libraries, which a program that is linked statically cannot load.
std::optional<std::string> homeOfUserDatabase() {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen("/etc/passwd", "re"));
    constexpr std::size_t mostBytes = 1024UL * 1024; // an entry longer than that ends the search
    std::vector<char> buffer(1024);
    while (file) {
        passwd entry{};
        passwd *found = nullptr;
        const int error = ::fgetpwent_r(file.get(), &entry, buffer.data(), buffer.size(), &found);
        if (error == ERANGE && buffer.size() < mostBytes) {
            buffer.resize(buffer.size() * 2); // the entry that did not fit is read again
            continue;
        }
        if (error != 0 || found == nullptr) {
            return std::nullopt;
        }
        if (found->pw_uid == ::getuid()) {
            return absolutePath(found->pw_dir);
        }
    }
    return std::nullopt;
}

} // namespace

std::string PosixUserFolders::applicationSupportDirectory() {
    if (auto folder = absolutePath(std::getenv("XDG_DATA_HOME"))) {
        return *std::move(folder);
    }
    return joined(homeDirectory(), ".local/share");
}

std::string PosixUserFolders::homeDirectory() {
    if (auto folder = absolutePath(std::getenv("HOME"))) {
        return *std::move(folder);
    }
    return homeOfUserDatabase().value_or("/");
}

std::string PosixUserFolders::stateDirectory() {
    if (const auto folder = absolutePath(std::getenv("XDG_STATE_HOME"))) {
        return joined(*folder, "orvane");
    }
    return joined(homeDirectory(), ".local/state/orvane");
}

std::string PosixUserFolders::preferencesFile() {
    return joined(homeDirectory(), "Library/Preferences/org.orvane.ORVPrefPane.plist");
}

} // namespace orvane
