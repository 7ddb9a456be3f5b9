#include "Terminal.h"

#include "Interruption.h"

#include "platform/posix/PosixWriting.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#include <uniwidth.h>

namespace orvane {

namespace {

std::string_view variable(const char *name) {
    const char *value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

/// Each line of a text made printable for itself.
std::string printableLines(std::string_view text) {
    std::string result;
    for (std::size_t feed = text.find('\n'); feed != std::string_view::npos; feed = text.find('\n')) {
        result += printable(text.substr(0, feed)) + '\n';
        text.remove_prefix(feed + 1);
    }
    return result + printable(text);
}

} // namespace

bool environmentHasUTF8() {
    std::string_view locale = variable("LC_ALL");
    locale = locale.empty() ? variable("LC_CTYPE") : locale;
    locale = locale.empty() ? variable("LANG") : locale;
    const std::size_t dot = locale.find('.');
    if (dot == std::string_view::npos) {
        return false;
    }
    std::string codeset;
    for (const char c : locale.substr(dot + 1, locale.find('@') - dot - 1)) {
        if (c != '-') {
            codeset += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
    return codeset == "utf8";
}

std::size_t columnsOf(std::string_view text) {
    const int columns = ::u8_width(reinterpret_cast<const std::uint8_t *>(text.data()), text.size(), "UTF-8");
    return columns > 0 ? static_cast<std::size_t>(columns) : 0;
}

TextStyle styleOfDescriptor(int descriptor) {
    TextStyle style;
    style.terminal = isTerminal(descriptor);
    style.color = style.terminal && variable("NO_COLOR").empty() && !variable("TERM").empty() && variable("TERM") != "dumb";
    style.unicode = environmentHasUTF8();
    return style;
}

StandardTerminal::~StandardTerminal() {
    if (_ownsShown) {
        ::close(_shown);
    }
}

bool StandardTerminal::isAvailable() {
    if (_shown >= 0) {
        return true;
    }
    if (!isTerminal(STDIN_FILENO)) {
        return false;
    }
    if (isTerminal(STDERR_FILENO)) {
        _shown = STDERR_FILENO;
        return true;
    }
    _shown = ::open("/dev/tty", O_WRONLY | O_CLOEXEC | O_NOCTTY);
    _ownsShown = _shown >= 0;
    return _ownsShown;
}

void StandardTerminal::write(std::string_view text) {
    static_cast<void>(writeContents(_shown, printableLines(text))); // a question that cannot be shown is answered by no line
}

std::optional<std::string> StandardTerminal::readLine() {
    // The terminal hands lines over whole; what does not fit comes with the next read.
    std::string line;
    std::array<char, 4096> bytes{};
    while (Interruption::waitForInput(STDIN_FILENO)) {
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count <= 0) { // the end, or a terminal that is gone
            return std::nullopt;
        }
        line.append(bytes.data(), static_cast<std::size_t>(count));
        if (line.back() == '\n') {
            line.pop_back();
            return line;
        }
    }
    return std::nullopt;
}

} // namespace orvane
