#include "platform/filemanagers/FolderAddress.h"

#include <QString>
#include <QUrl>

#include <sys/stat.h>

namespace orvane {

namespace {

int hexDigit(char character) {
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    const char lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Nothing where a percent sign is not followed by two hexadecimal digits, and for an encoded NUL or slash.
std::optional<std::string> decoded(std::string_view text) {
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '%') {
            result += text[index];
            continue;
        }
        const int high = index + 2 < text.size() ? hexDigit(text[index + 1]) : -1;
        const int low = index + 2 < text.size() ? hexDigit(text[index + 2]) : -1;
        const int value = high * 16 + low;
        if (high < 0 || low < 0 || value == 0 || value == '/') {
            return std::nullopt;
        }
        result += static_cast<char>(value);
        index += 2;
    }
    return result;
}

bool consistsOf(std::string_view text, std::string_view others) {
    for (const char character : text) {
        const bool plain = (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
                           (character >= 'A' && character <= 'Z') || others.find(character) != std::string_view::npos;
        if (!plain) {
            return false;
        }
    }
    return !text.empty();
}

/// The folder below "gvfs" that gvfsd-fuse shows a mount in: "sftp:host=HOST,port=PORT,user=USER". Names with characters that
/// it would encode are refused.
std::optional<std::string> nameOfMount(std::string_view authority) {
    std::string user;
    if (const std::size_t at = authority.rfind('@'); at != std::string_view::npos) {
        user = authority.substr(0, at);
        authority.remove_prefix(at + 1);
    }
    std::string port;
    if (const std::size_t colon = authority.rfind(':'); colon != std::string_view::npos) {
        port = authority.substr(colon + 1);
        authority = authority.substr(0, colon);
    }
    if (!consistsOf(authority, "-.") || (!port.empty() && !consistsOf(port, {})) || (!user.empty() && !consistsOf(user, "-._"))) {
        return std::nullopt;
    }
    return "sftp:host=" + std::string(authority) + (port.empty() ? "" : ",port=" + port) + (user.empty() ? "" : ",user=" + user);
}

} // namespace

std::string withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    return std::string(path);
}

std::string lastComponent(std::string_view path) {
    const std::string plain = withoutTrailingSlashes(path);
    return plain == "/" ? std::string() : plain.substr(plain.rfind('/') + 1);
}

bool isFolder(const std::string &path) {
    struct stat status = {};
    return !path.empty() && path.front() == '/' && path.find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0 &&
           S_ISDIR(status.st_mode);
}

std::optional<std::string> pathOfLocation(std::string_view location, const std::string &runtimeFolder) {
    if (location.starts_with('/')) {
        return withoutTrailingSlashes(location);
    }
    const std::size_t colon = location.find("://");
    if (colon == std::string_view::npos || location.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view scheme = location.substr(0, colon);
    const std::string_view rest = location.substr(colon + 3);
    const std::size_t slash = rest.find('/');
    const std::string_view authority = rest.substr(0, slash);
    const auto path = decoded(slash == std::string_view::npos ? std::string_view("/") : rest.substr(slash));
    if (!path) {
        return std::nullopt;
    }
    if (scheme == "file" && slash != std::string_view::npos && (authority.empty() || authority == "localhost")) {
        return withoutTrailingSlashes(*path);
    }
    if (scheme == "sftp" && runtimeFolder.starts_with('/')) {
        if (const auto mount = nameOfMount(authority)) {
            return withoutTrailingSlashes(runtimeFolder + "/gvfs/" + *mount + *path);
        }
    }
    return std::nullopt;
}

std::optional<std::string> pathOfReadableURL(std::string_view url) {
    const QUrl parsed(QString::fromUtf8(url.data(), static_cast<qsizetype>(url.size())));
    if (!parsed.isValid() || !parsed.isLocalFile() || !parsed.host().isEmpty()) {
        return std::nullopt;
    }
    const std::string path = parsed.toLocalFile().toStdString();
    if (!path.starts_with('/') || path.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    return withoutTrailingSlashes(path);
}

std::string readableURL(const std::string &path) {
    return QUrl::fromLocalFile(QString::fromStdString(path)).toString().toStdString();
}

} // namespace orvane
