#include "platform/posix/PosixUserFolders.h"

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <pwd.h>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace orvane {

namespace {

/// An absolute path without slashes at its end; nothing for any other text.
std::optional<std::string> absolutePath(const char *text) {
    if (text == nullptr || *text != '/')
        return std::nullopt;
    std::string path(text);
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

std::string joined(std::string folder, std::string_view component) {
    if (folder.back() != '/')
        folder += '/';
    return folder.append(component);
}

/// The user database may load further libraries (nsswitch.conf) and ask the network: only for want of $HOME.
std::optional<std::string> homeOfUserDatabase() {
    constexpr std::size_t mostBytes = 1024 * 1024; // an entry longer than that is taken for absent
    std::vector<char> buffer(1024);
    for (;;) {
        passwd entry{};
        passwd *found = nullptr;
        const int error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
        if (error == EINTR)
            continue;
        if (error == ERANGE && buffer.size() < mostBytes) {
            buffer.resize(buffer.size() * 2);
            continue;
        }
        return error == 0 && found != nullptr ? absolutePath(found->pw_dir) : std::nullopt;
    }
}

} // namespace

std::string PosixUserFolders::applicationSupportDirectory() {
    if (auto folder = absolutePath(std::getenv("XDG_DATA_HOME")))
        return *std::move(folder);
    return joined(homeDirectory(), ".local/share");
}

std::string PosixUserFolders::homeDirectory() {
    if (auto folder = absolutePath(std::getenv("HOME")))
        return *std::move(folder);
    return homeOfUserDatabase().value_or("/");
}

std::string PosixUserFolders::stateDirectory() {
    if (const auto folder = absolutePath(std::getenv("XDG_STATE_HOME")))
        return joined(*folder, "orvane");
    return joined(homeDirectory(), ".local/state/orvane");
}

std::string PosixUserFolders::preferencesFile() {
    return joined(homeDirectory(), "Library/Preferences/org.orvane.ORVPrefPane.plist");
}

} // namespace orvane
