#include "platform/filemanagers/UserDirectories.h"

#include "platform/filemanagers/FolderAddress.h"
#include "platform/posix/PosixSmallFile.h"

namespace orvane {

namespace {

/// Nothing that is longer is such a file.
constexpr std::size_t Longest = std::size_t{1} << 20U;

std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
    return text;
}

bool consume(std::string_view &text, std::string_view beginning) {
    if (!text.starts_with(beginning)) {
        return false;
    }
    text.remove_prefix(beginning.size());
    return true;
}

/// The path in `"…"`, a backslash making the next character stand for itself; empty when it is not valid.
std::string quotedPath(std::string_view text, const std::string &home) {
    std::string path;
    if (!consume(text, "\"")) {
        return {};
    }
    if (consume(text, "$HOME")) {
        if (!text.starts_with('/') && !text.starts_with('"')) {
            return {};
        }
        path = home;
    } else if (!text.starts_with('/')) {
        return {};
    }
    while (!text.empty() && text.front() != '"') {
        if (text.front() == '\\') {
            text.remove_prefix(1);
        }
        if (!text.empty()) {
            path += text.front();
            text.remove_prefix(1);
        }
    }
    return text.empty() ? std::string() : withoutTrailingSlashes(path);
}

} // namespace

std::string desktopDirectoryInText(std::string_view text, const std::string &home) {
    std::string found;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = withoutBlanks(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (!consume(line, "XDG_DESKTOP_DIR")) {
            continue;
        }
        line = withoutBlanks(line);
        if (!consume(line, "=")) {
            continue;
        }
        if (const std::string path = quotedPath(withoutBlanks(line), home); !path.empty()) {
            found = path;
        }
    }
    return found;
}

std::string desktopDirectory(const std::string &configurationFolder, const std::string &home) {
    const std::string told =
        desktopDirectoryInText(contentsOfSmallFile(configurationFolder + "/user-dirs.dirs", Longest).value_or(""), home);
    return told.empty() ? home + "/Desktop" : told;
}

} // namespace orvane
