#include "platform/filemanagers/WindowTitle.h"

#include "platform/filemanagers/FolderAddress.h"

#include <libintl.h>

namespace orvane {

namespace {

/// The message in the language that the C library was set to, out of the file manager's own catalogue.
bool isMessage(std::string_view text, const char *domain, const char *message) {
    return message != nullptr && (text == message || (domain != nullptr && text == ::dgettext(domain, message)));
}

} // namespace

std::string folderPartOfTitle(const TitleRule &rule, std::string_view title) {
    if (rule.separator != nullptr) {
        // The last one: a folder's own name may hold the separator.
        title = title.substr(0, title.rfind(rule.separator));
    }
    return std::string(title);
}

std::optional<std::string> fullPathInTitle(const TitleRule &rule, std::string_view title) {
    const std::string part = folderPartOfTitle(rule, title);
    if (rule.mayShowFullPath && part.starts_with('/')) {
        return withoutTrailingSlashes(part);
    }
    // A name holds no slash, so the first " - /" is where the path begins.
    if (const std::size_t place = part.find(" - /"); rule.mayAppendFullPath && place != std::string::npos) {
        const std::string path = withoutTrailingSlashes(std::string_view(part).substr(place + 3));
        if (lastComponent(path) == part.substr(0, place)) {
            return path;
        }
    }
    return std::nullopt;
}

bool titleAgreesWithPath(const TitleRule &rule, std::string_view title, const std::string &path, const std::string &home) {
    const std::string plain = withoutTrailingSlashes(path);
    if (const auto full = fullPathInTitle(rule, title)) {
        return *full == plain;
    }
    const std::string part = folderPartOfTitle(rule, title);
    if (plain == "/") {
        return part == "/" || isMessage(part, rule.domain, rule.rootMessage);
    }
    if (part == lastComponent(plain)) {
        return !part.empty();
    }
    return plain == withoutTrailingSlashes(home) && isMessage(part, rule.domain, rule.homeMessage);
}

} // namespace orvane
