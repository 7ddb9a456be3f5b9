#include "presets/ORVScriptRunner.h"

#include "ports/UTF16.h"

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

constexpr const char *ErrorDomain = "ORVScriptRunner";
constexpr unsigned DefaultTimeout = 30; ///< seconds
constexpr std::chrono::microseconds PollInterval{1000};

void store(ORVError *error, std::string description, std::optional<std::string> reason) {
    if (error == nullptr) {
        return;
    }
    *error = ORVError{ErrorDomain, 0, {{LocalizedDescriptionKey, std::move(description)}}};
    if (reason) {
        error->userInfo[LocalizedFailureReasonKey] = std::move(*reason);
    }
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view Blanks = " \t";
    const std::size_t first = text.find_first_not_of(Blanks);
    return first == std::string_view::npos ? std::string_view() : text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

} // namespace

ORVScriptRunner::ORVScriptRunner(std::string path, ProcessLauncher &processes, Clock &clock)
    : _scriptPath(std::move(path)), _processes(processes), _clock(clock) {}

std::optional<ORVScriptRunner::Dictionary> ORVScriptRunner::runWithArgumentsTimeoutError(const Dictionary &environment, unsigned timeout,
                                                                                         ORVError *error) {
    const std::unique_ptr<ChildProcess> child = _processes.launch(_scriptPath, environment);
    if (!child) {
        store(error, "Unable to execute script.", std::nullopt);
        return std::nullopt;
    }
    const bool inTime = _waitForEnd(*child, timeout);
    // Read before anything else is looked at: a script that timed out is waited for here until it closes this pipe. One that
    // waits itself, because nobody reads what it prints, would never do so; it is not ended, but helped on.
    std::string standardError = ORVTextOfBytes(inTime ? child->readStandardErrorToEnd() : child->readStandardErrorToEndDroppingOutput());
    if (!inTime) {
        store(error, "Script timed out.", std::move(standardError));
        return std::nullopt;
    }
    if (const int status = child->terminationStatus(); status != 0) {
        store(error, "Script returned error code " + std::to_string(status) + ".", std::move(standardError));
        return std::nullopt;
    }
    return parseOutput(ORVTextOfBytes(child->readStandardOutputToEnd()));
}

bool ORVScriptRunner::_waitForEnd(ChildProcess &child, unsigned timeout) {
    const std::uint64_t limit = timeout == 0 ? DefaultTimeout : timeout;
    const std::uint64_t start = _clock.nowInSeconds();
    for (;;) {
        // Looked at before the sleep: a child that ends in the pass that passed the limit is late all the same.
        const bool timedOut = _clock.nowInSeconds() - start > limit;
        _clock.sleep(PollInterval);
        const bool running = child.isRunning();
        if (timedOut || !running) {
            return !timedOut;
        }
    }
}

ORVScriptRunner::Dictionary ORVScriptRunner::parseOutput(std::string_view output) {
    Dictionary result;
    while (!output.empty()) {
        const std::size_t end = std::min(output.find('\n'), output.size());
        const std::string_view line = output.substr(0, end);
        output.remove_prefix(std::min(end + 1, output.size()));
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos || equals == 0 || equals + 1 == line.size()) {
            continue;
        }
        result[std::string(trimmed(line.substr(0, equals)))] = std::string(trimmed(line.substr(equals + 1)));
    }
    return result;
}

std::string ORVTextOfBytes(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = ORVCharacterLength(bytes, at);
        const bool stray = length == 1 && (static_cast<unsigned char>(bytes[at]) & 0x80U) != 0;
        const bool surrogate = length == 3 && bytes[at] == '\xED' && (static_cast<unsigned char>(bytes[at + 1]) & 0x20U) != 0;
        if (stray || surrogate) {
            text += "\xEF\xBF\xBD";
        } else {
            text.append(bytes.substr(at, length));
        }
        at += length;
    }
    return text;
}

} // namespace orvane
