#include "presets/ORVPresetFile.h"

#include "ports/UTF16.h"
#include "presets/ORVPropertyListReading.h"

#include <algorithm>
#include <array>
#include <span>
#include <unordered_set>
#include <utility>

namespace orvane {

namespace {

constexpr std::size_t LongestSafeName = 200; ///< bytes; leaves room for a number within the 255 of file systems
constexpr std::size_t LongestSuffix = 16;
constexpr unsigned ModeBits = 0777;

std::string octalText(unsigned mode) {
    std::string text;
    for (const unsigned shift : {6U, 3U, 0U}) {
        text += static_cast<char>('0' + ((mode >> shift) & 7U));
    }
    return text;
}

std::optional<unsigned> modeOfText(std::string_view text) {
    if (text.empty() || text.size() > 4 || text.find_first_not_of("01234567") != std::string_view::npos) {
        return std::nullopt;
    }
    unsigned mode = 0;
    for (const char digit : text) {
        mode = mode * 8 + static_cast<unsigned>(digit - '0');
    }
    return mode & ModeBits;
}

/// Where the suffix of a file name starts; its end when it has none.
std::size_t suffixOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 || name.size() - dot > LongestSuffix ? name.size() : dot;
}

/// The longest beginning of at most that many bytes that cuts no character.
std::string_view cutTo(std::string_view text, std::size_t bytes) {
    std::size_t end = 0;
    while (end < text.size()) {
        const std::size_t next = end + ORVCharacterLength(text, end);
        if (next > bytes) {
            break;
        }
        end = next;
    }
    return text.substr(0, end);
}

bool isDataDictionary(const PropertyListValue &value) {
    const PropertyListValue *data = value.find("data");
    return data != nullptr && data->type() == PropertyListType::Data;
}

bool takeContents(const PropertyListValue &root, ORVPackedPreset &parts, Sentence &why) {
    const PropertyListValue *contents = root.find(ORVFileContentsKey);
    if (contents == nullptr) {
        return true;
    }
    if (!contents->isDictionary()) {
        why = forTranslation("its ORVFileContents is no dictionary");
        return false;
    }
    for (const PropertyListEntry &entry : contents->dictionary()) {
        const PropertyListValue *mode = entry.value.find("mode");
        if (!isDataDictionary(entry.value) || (mode != nullptr && !modeOfText(mode->string()))) {
            why = {forTranslation("the content file '%1' in it has no data, or a mode that is none"), {std::string(entry.key)}};
            return false;
        }
        parts.contents.push_back(
            {std::string(entry.key), entry.value.find("data")->data(), mode == nullptr ? std::nullopt : modeOfText(mode->string())});
    }
    return true;
}

bool takeScript(const PropertyListValue &root, ORVPackedPreset &parts, Sentence &why) {
    const PropertyListValue *script = root.find(ORVScriptKey);
    if (script == nullptr) {
        return true;
    }
    const PropertyListValue *name = script->find("name");
    if (!isDataDictionary(*script) || name == nullptr || !name->isString()) {
        why = forTranslation("the script in it has no name or no data");
        return false;
    }
    parts.script = ORVPackedScript{std::string(name->string()), script->find("data")->data()};
    return true;
}

std::span<const PropertyListValue> childrenOf(const PropertyListValue &node) {
    const PropertyListValue *children = node.find("children");
    return children != nullptr && children->isArray() ? children->array() : std::span<const PropertyListValue>();
}

/// A node of the tree while its children are made anew.
struct RebuiltNode {
    PropertyListValue node;
    std::vector<PropertyListValue> children = {};
    std::size_t next = 0;
};

/// The dictionary with some entries replaced; a null value takes an entry away.
PropertyListValue withEntries(PropertyListBuilder &builder, const PropertyListValue &dictionary,
                              std::span<const PropertyListEntry> changed) {
    std::vector<PropertyListEntry> entries;
    for (const PropertyListEntry &entry : dictionary.dictionary()) {
        const auto change =
            std::find_if(changed.begin(), changed.end(), [&](const PropertyListEntry &each) { return each.key == entry.key; });
        if (change == changed.end()) {
            entries.push_back(entry);
        } else if (change->value.type() != PropertyListType::Null) {
            entries.push_back(*change);
        }
    }
    return builder.dictionary(entries);
}

PropertyListValue textOrNull(PropertyListBuilder &builder, const std::string &text) {
    return text.empty() ? PropertyListValue() : builder.string(text);
}

PropertyListValue rebuilt(PropertyListBuilder &builder, const RebuiltNode &done, const ORVRenamedResources &names) {
    std::vector<PropertyListEntry> changed;
    if (!done.children.empty()) {
        changed.push_back({"children", builder.array(done.children)});
    }
    const auto renamed = names.contents.find(ORVTextValue(done.node.find("contentFilename")));
    if (renamed != names.contents.end()) {
        changed.push_back({"contentFilename", textOrNull(builder, renamed->second)});
    }
    return changed.empty() ? done.node : withEntries(builder, done.node, changed);
}

/// The tree with other content names, made from its leaves upwards.
PropertyListValue rebuiltTree(PropertyListBuilder &builder, const PropertyListValue &root, const ORVRenamedResources &names) {
    std::vector<RebuiltNode> open{{root}};
    while (true) {
        RebuiltNode &node = open.back();
        const bool isRead = open.size() == 1 || ORVBoolValue(node.node.find("isFolder")); // a file's children never are
        const auto children = isRead ? childrenOf(node.node) : std::span<const PropertyListValue>();
        if (node.next < children.size()) {
            open.push_back({children[node.next++]});
            continue;
        }
        const PropertyListValue made = rebuilt(builder, node, names);
        open.pop_back();
        if (open.empty()) {
            return made;
        }
        open.back().children.push_back(made);
    }
}

} // namespace

PropertyList ORVPackPreset(const ORVPackedPreset &parts) {
    PropertyListBuilder builder;
    std::vector<PropertyListEntry> root{{ORVPresetFileVersionKey, PropertyListValue::ofInteger(ORVPresetFileVersion)},
                                        {ORVPresetKey, builder.adopt(parts.preset)}};
    std::vector<PropertyListEntry> contents;
    for (const ORVPackedContent &content : parts.contents) {
        const std::array<PropertyListEntry, 2> entries{
            {{"data", PropertyListValue::viewOfData(content.data)}, {"mode", builder.string(octalText(content.mode.value_or(0644)))}}};
        contents.push_back({content.name, builder.dictionary(entries)});
    }
    if (!contents.empty()) {
        root.push_back({ORVFileContentsKey, builder.dictionary(contents)});
    }
    if (parts.script) {
        const std::array<PropertyListEntry, 2> entries{
            {{"name", builder.string(parts.script->name)}, {"data", PropertyListValue::viewOfData(parts.script->data)}}};
        root.push_back({ORVScriptKey, builder.dictionary(entries)});
    }
    return builder.finish(builder.dictionary(root));
}

std::optional<ORVPackedPreset> ORVUnpackPreset(const PropertyList &document, Sentence &why) {
    const PropertyListValue &root = document.root();
    const PropertyListValue *version = root.find(ORVPresetFileVersionKey);
    const PropertyListValue *preset = root.find(ORVPresetKey);
    if (version == nullptr || version->type() != PropertyListType::Integer || preset == nullptr) {
        why = forTranslation("it is not a preset file");
        return std::nullopt;
    }
    if (version->isUnsigned() || version->integer() > ORVPresetFileVersion) {
        why = forTranslation("it was made by a later version of Orvane");
        return std::nullopt;
    }
    if (version->integer() < 1 || !preset->isDictionary()) {
        why = version->integer() < 1 ? forTranslation("its version is not known") : forTranslation("the preset in it is no dictionary");
        return std::nullopt;
    }
    ORVPackedPreset parts{document.at(*preset), {}, std::nullopt};
    if (!takeContents(root, parts, why) || !takeScript(root, parts, why)) {
        return std::nullopt;
    }
    return parts;
}

std::string ORVSafeFileName(std::string_view name) {
    while (name.ends_with('/')) {
        name.remove_suffix(1);
    }
    std::string result(name.substr(name.rfind('/') + 1));
    std::replace_if(
        result.begin(), result.end(), [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }, '_');
    if (result.size() > LongestSafeName) {
        const std::string suffix = result.substr(suffixOf(result));
        result = std::string(cutTo(result, LongestSafeName - suffix.size())) + suffix;
    }
    return result == "." || result == ".." ? "" : result;
}

std::string ORVNumberedFileName(std::string_view name, std::size_t number) {
    const std::size_t suffix = suffixOf(name);
    const std::string ending = " " + std::to_string(number) + std::string(name.substr(suffix));
    constexpr std::size_t longestName = 255; // limits.h, NAME_MAX
    return std::string(cutTo(name.substr(0, suffix), longestName - ending.size())) + ending;
}

std::vector<std::string> ORVContentNamesOfPreset(const PropertyListValue &preset) {
    std::vector<std::string> names;
    std::unordered_set<std::string> known{""};
    const PropertyListValue *root = preset.find("fileHierarchy");
    std::vector<std::span<const PropertyListValue>> open{root == nullptr ? std::span<const PropertyListValue>() : childrenOf(*root)};
    while (!open.empty()) {
        if (open.back().empty()) {
            open.pop_back();
            continue;
        }
        const PropertyListValue &node = open.back().front();
        open.back() = open.back().subspan(1);
        std::string name = ORVTextValue(node.find("contentFilename"));
        if (ORVBoolValue(node.find("isFolder"))) {
            open.push_back(childrenOf(node));
        } else if (known.insert(name).second) {
            names.push_back(std::move(name));
        }
    }
    return names;
}

PropertyList ORVPresetWithResources(const PropertyList &preset, const ORVRenamedResources &names) {
    PropertyListBuilder builder;
    const PropertyListValue record = builder.adopt(preset);
    std::vector<PropertyListEntry> changed;
    const PropertyListValue *root = record.find("fileHierarchy");
    if (root != nullptr && !names.contents.empty()) {
        changed.push_back({"fileHierarchy", rebuiltTree(builder, *root, names)});
    }
    if (names.script) {
        changed.push_back({"scriptFile", textOrNull(builder, *names.script)});
    }
    return changed.empty() ? preset : builder.finish(withEntries(builder, record, changed));
}

ORVPackedResources::ORVPackedResources(const ORVPackedPreset &parts) : _parts(parts) {
    for (const ORVPackedContent &content : parts.contents) {
        _contents.emplace(content.name, &content);
    }
}

ORVContentState ORVPackedResources::stateOfContent(std::string_view name) {
    return _contents.contains(name) ? ORVContentState::Usable : ORVContentState::Missing;
}

ORVScriptState ORVPackedResources::stateOfScript(std::string_view name) {
    if (!_parts.script || _parts.script->name != name) {
        return ORVScriptState::Missing;
    }
    std::string interpreter; // whether this system has it shows once the script is there
    return ORVScriptStateOfHead(_parts.script->data, interpreter);
}

} // namespace orvane
