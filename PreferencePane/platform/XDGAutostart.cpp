#include "XDGAutostart.h"

#include "platform/posix/PosixNewFile.h"
#include "platform/posix/PosixPrivateFolder.h"
#include "platform/posix/PosixSmallFile.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace orvane {

namespace {

constexpr std::string_view Group = "[Desktop Entry]";
constexpr std::string_view HiddenKey = "Hidden";
/// GNOME's own switch, written by its tools in the place of `Hidden`.
constexpr std::string_view GNOMEKey = "X-GNOME-Autostart-enabled";
/// Nothing that is longer is an entry.
constexpr std::size_t Longest = std::size_t{1} << 20U;

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(" \t\r"), text.size());
    const std::size_t end = text.find_last_not_of(" \t\r");
    return end == std::string_view::npos ? std::string_view() : text.substr(begin, end + 1 - begin);
}

bool isKey(std::string_view line, std::string_view key) {
    return trimmed(line.substr(0, line.find('='))) == key && line.find('=') != std::string_view::npos;
}

/// Lines of the entry's own group: from behind its heading to the next one.
std::pair<std::size_t, std::size_t> groupOf(const std::vector<std::string> &lines) {
    const auto heading = std::find_if(lines.begin(), lines.end(), [](const std::string &line) { return trimmed(line) == Group; });
    const auto first = heading == lines.end() ? heading : heading + 1;
    const auto last = std::find_if(first, lines.end(), [](const std::string &line) { return trimmed(line).starts_with('['); });
    return {static_cast<std::size_t>(first - lines.begin()), static_cast<std::size_t>(last - lines.begin())};
}

std::string valueOf(const std::string &text, std::string_view key) {
    const std::vector<std::string> lines = linesOf(text);
    const auto [first, last] = groupOf(lines);
    for (std::size_t i = first; i < last; ++i) {
        if (isKey(lines[i], key)) {
            return std::string(trimmed(std::string_view(lines[i]).substr(lines[i].find('=') + 1)));
        }
    }
    return {};
}

/// The text with another value of a key. One that is not there is added, behind the group's heading, where `adds`.
std::string withValue(const std::string &text, std::string_view key, std::string_view value, bool adds) {
    std::vector<std::string> lines = linesOf(text);
    auto [first, last] = groupOf(lines);
    const std::string line = std::string(key) + "=" + std::string(value);
    bool isThere = false;
    for (std::size_t i = first; i < last; ++i) {
        if (isKey(lines[i], key)) {
            lines[i] = line;
            isThere = true;
        }
    }
    if (!isThere && adds) {
        if (first == lines.size() && (lines.empty() || trimmed(lines.back()) != Group)) {
            lines.emplace_back(Group);
            first = lines.size();
        }
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(first), line);
    }
    std::string result;
    for (const std::string &each : lines) {
        result += each + "\n";
    }
    return result;
}

bool startsByText(const std::string &text) {
    return valueOf(text, HiddenKey) != "true" && valueOf(text, GNOMEKey) != "false";
}

} // namespace

XDGAutostart::XDGAutostart(std::string configurationFolder, std::vector<std::string> systemFolders, std::string fileName, std::string entry)
    : _folder(std::move(configurationFolder) + "/autostart"), _systemFolders(std::move(systemFolders)), _fileName(std::move(fileName)),
      _entry(std::move(entry)) {}

std::string XDGAutostart::configurationFolderOfEnvironment(const std::string &home) {
    const char *folder = std::getenv("XDG_CONFIG_HOME");
    return folder != nullptr && *folder == '/' ? folder : home + "/.config";
}

std::vector<std::string> XDGAutostart::systemFoldersOfEnvironment() {
    const char *value = std::getenv("XDG_CONFIG_DIRS");
    std::string_view list = value != nullptr && *value != '\0' ? value : "/etc/xdg";
    std::vector<std::string> folders;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(':'), list.size());
        if (list.front() == '/') {
            folders.emplace_back(list.substr(0, end));
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return folders;
}

/// The entry that counts; nothing when there is none.
std::optional<std::string> XDGAutostart::_text() const {
    auto text = contentsOfSmallFile(_folder + "/" + _fileName, Longest);
    for (std::size_t i = 0; i < _systemFolders.size() && !text; ++i) {
        text = contentsOfSmallFile(_systemFolders[i] + "/autostart/" + _fileName, Longest);
    }
    return text;
}

bool XDGAutostart::isEnabled() {
    const auto text = _text();
    return text && startsByText(*text);
}

bool XDGAutostart::setEnabled(bool isEnabled) {
    if (isEnabled == this->isEnabled()) {
        return true;
    }
    const std::string before = _text().value_or(_entry);
    const std::string text =
        withValue(withValue(before, HiddenKey, isEnabled ? "false" : "true", true), GNOMEKey, isEnabled ? "true" : "false", false);
    return makePrivateFolders(_folder) && writeWholeFile(_folder + "/" + _fileName, text, true);
}

} // namespace orvane
