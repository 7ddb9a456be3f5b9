// Names, modes, messages, counters and script output: invariants that hold for every text.

#include "core/Fuzz.h"
#include "core/FuzzDesk.h"
#include "ports/UTF16.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVScriptRunner.h"
#include "presets/ORVUTF16.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>

namespace {

using orvane::ORVPresetManager;
using orvane::fuzz::require;

void checkNames(const std::string &text) {
    const std::string cleaned = ORVPresetManager::cleanFilesystemEntities(text);
    require(cleaned.size() == text.size(), "a cleaned name keeps its length");
    require(cleaned.find_first_of(":/") == std::string::npos, "a cleaned name holds neither colon nor slash");
    require(ORVPresetManager::cleanFilesystemEntities(cleaned) == cleaned, "a clean name stays");
    const std::string deleted = orvane::stringByDeletingFileSystemEntities(text);
    require(deleted.find_first_of(":/~") == std::string::npos, "a stripped name holds none of the three");
    require(orvane::ORVTextOfUTF16(orvane::ORVUTF16OfText(text)) == text || text.find('\xED') != std::string::npos,
            "a text without surrogate halves survives UTF-16");
    require(orvane::ORVUTF16OfText(text).size() == orvane::ORVUTF16Length(text), "the length in units is the number of units");
}

void checkPaths(const std::string &text) {
    const std::string path = orvane::stringByAppendingPathComponent("/base", text);
    require(path.starts_with("/base"), "a joined path starts with its base");
    require(path.find("//") == std::string::npos, "a joined path holds no run of slashes");
    const std::string again =
        orvane::stringByAppendingPathComponent(orvane::stringByDeletingLastPathComponent(path), orvane::lastPathComponent(path));
    require(again == path, "a path taken apart goes together again");
}

void checkModes(const std::string &text) {
    const auto mode = ORVPresetManager::modeOfPermissions(text);
    require(mode.has_value() == (orvane::ORVUTF16Length(text) == 3), "three units, and only they, are a mode");
    if (!mode) {
        return;
    }
    // C's own conversion is the reference; it reads up to the first byte that is no octal digit.
    unsigned reference = 0;
    if (std::sscanf(text.c_str(), "%o", &reference) != 1) {
        reference = 0;
    }
    require(*mode == (reference & 07777U), "the mode that C reads");
}

void checkMessages(const std::string &text) {
    const std::string message = orvane::ORVMessageOfFormat(text);
    require(text.find('%') != std::string::npos || message == text, "a message without directives stays");
    require(message.size() <= text.size() * 1024, "a message cannot fill the memory");
}

void checkCounters(const std::string &text) {
    orvane::ORVAutomaticVariables variables;
    variables["auto"] = orvane::PropertyListValue::viewOfString(text);
    const std::string value = ORVPresetManager::defaultValueForVariable("auto", variables);
    const bool number = !value.empty() && value.find_first_not_of("-0123456789") == std::string::npos && value.size() <= 11;
    require(number || value == text, "a counter is offered as a 32-bit number or as it is");
    require(ORVPresetManager::defaultValueForVariable("other", variables).empty(), "other variables have no default");
}

void checkOutput(const std::string &text) {
    for (const auto &[key, value] : orvane::ORVScriptRunner::parseOutput(text)) {
        require(key.find('\n') == std::string::npos && key.find('=') == std::string::npos, "a key is part of one line");
        require(value.find('\n') == std::string::npos, "a value is part of one line");
        require(text.find(key) != std::string::npos && text.find(value) != std::string::npos, "keys and values stand in the output");
    }
    const std::string clean = orvane::ORVTextOfBytes(text);
    require(orvane::ORVTextOfBytes(clean) == clean, "clean text stays");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), std::min<std::size_t>(size, 65536));
    checkNames(text);
    checkPaths(text);
    checkModes(text);
    checkModes(text.substr(0, 3));
    checkMessages(text);
    checkCounters(text);
    checkOutput(text);
    return 0;
}
