#include "presets/ORVPresetManager.h"

#include "presets/ORVFileHelpers.h"
#include "presets/ORVPropertyListReading.h"

#include <limits>
#include <utility>

// What the preferences hold: presets, and the last values of automatic variables.

namespace orvane {

namespace {

constexpr std::string_view AutomaticPrefix = "auto";
constexpr std::string_view FirstValue = "0";

/// Length of the white-space or line-break character at the start of the text (Unicode categories Zs, Zl, Zp and the
/// control characters that count as such), 0 when there is none.
std::size_t leadingSpace(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead == ' ' || (lead >= '\t' && lead <= '\r')) {
        return 1;
    }
    if (text.starts_with("\xC2\xA0") || text.starts_with("\xC2\x85")) { // U+00A0, U+0085
        return 2;
    }
    if (text.size() < 3) {
        return 0;
    }
    const std::string_view three = text.substr(0, 3);
    const bool generalPunctuation = three >= "\xE2\x80\x80" && three <= "\xE2\x80\x8B"; // U+2000 to U+200B
    const bool other = three == "\xE1\x9A\x80" || three == "\xE2\x80\xA8" || three == "\xE2\x80\xA9" || three == "\xE2\x80\xAF" ||
                       three == "\xE2\x81\x9F" || three == "\xE3\x80\x80"; // U+1680, 2028, 2029, 202F, 205F, 3000
    return generalPunctuation || other ? 3 : 0;
}

/// The integer that the text starts with after white space; one that does not fit is the nearest that does.
std::optional<std::int64_t> scanInteger(std::string_view text) {
    while (const std::size_t space = leadingSpace(text)) {
        text.remove_prefix(space);
    }
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    if (text.empty() || text.front() < '0' || text.front() > '9') {
        return std::nullopt;
    }
    using Limits = std::numeric_limits<std::int64_t>;
    std::int64_t value = 0;
    for (; !text.empty() && text.front() >= '0' && text.front() <= '9'; text.remove_prefix(1)) {
        const std::int64_t digit = text.front() - '0';
        const bool overflow = negative ? __builtin_mul_overflow(value, 10, &value) || __builtin_sub_overflow(value, digit, &value)
                                       : __builtin_mul_overflow(value, 10, &value) || __builtin_add_overflow(value, digit, &value);
        if (overflow) {
            return negative ? Limits::min() : Limits::max();
        }
    }
    return value;
}

/// `value` + 1 as it comes out when it is formatted as a signed 32-bit number.
std::string nextIn32Bits(std::int64_t value) {
    return std::to_string(static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value) + 1U)));
}

} // namespace

void ORVPresetManager::readConfiguration() {
    _configurationWasRead = _ports.preferences.synchronize();
    auto presets = std::make_shared<PresetArray>();
    if (auto value = _ports.preferences.copyAppValue(ORVPresetsKey); value && value->root().isArray()) {
        presets->document = std::move(*value);
        const auto records = presets->document.root().array();
        presets->records.assign(records.begin(), records.end());
    }
    // Whoever was handed the old array, or a record of it, may use it until the current event has been handled.
    _ports.mainThread.releaseAfterCurrentEvent(std::exchange(_presets, std::move(presets)));
}

std::vector<std::string> ORVPresetManager::presetNames() const {
    std::vector<std::string> names;
    for (const PropertyListValue &preset : _presets->records) {
        if (const PropertyListValue *label = preset.find("label"); ORVHasText(label)) {
            names.push_back(ORVTextValue(label));
        }
    }
    return names;
}

ORVAutomaticVariables ORVPresetManager::automaticVariables() {
    readConfiguration(); // so asking for the counters refreshes the presets as well, deliberately
    ORVAutomaticVariables result;
    result.storage = _ports.preferences.copyAppValue(ORVAutomaticVarsKey).value_or(PropertyList());
    for (const PropertyListEntry &entry : result.storage.root().dictionary()) {
        result.emplace(std::string(entry.key), entry.value);
    }
    return result;
}

void ORVPresetManager::setAutomaticVariables(const ORVAutomaticVariables &variables) {
    PropertyListBuilder builder;
    (void)builder.adopt(variables.storage); // values that came from there keep their storage
    std::vector<PropertyListEntry> entries;
    entries.reserve(variables.size());
    for (const auto &[name, value] : variables) {
        entries.push_back({name, value.isString() ? builder.string(value.string()) : value});
    }
    _ports.preferences.setAppValue(ORVAutomaticVarsKey, builder.finish(builder.dictionary(entries)));
    _countersWereStored = _ports.preferences.synchronize();
}

bool ORVPresetManager::isAutomaticVariable(std::string_view name) {
    return ORVASCIILowercase(name.substr(0, AutomaticPrefix.size())) == AutomaticPrefix;
}

std::string ORVPresetManager::defaultValueForVariable(std::string_view name, const ORVAutomaticVariables &variables) {
    if (!isAutomaticVariable(name)) {
        return {};
    }
    const auto found = variables.find(name);
    std::string stored = found == variables.end() ? std::string() : ORVTextValue(&found->second);
    if (stored.empty()) {
        return std::string(FirstValue);
    }
    const auto number = scanInteger(stored);
    return number ? nextIn32Bits(*number) : stored;
}

} // namespace orvane
