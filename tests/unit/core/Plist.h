#pragma once

#include "ports/PropertyList.h"

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

// Property lists written down in tests: dict({{"label", text("Film")}, {"children", list({...})}}).

namespace orvane::test {

inline PropertyList text(std::string_view value) {
    PropertyListBuilder builder;
    return builder.finish(builder.string(value));
}

inline PropertyList data(std::string_view bytes) {
    PropertyListBuilder builder;
    return builder.finish(builder.data(bytes));
}

inline PropertyList yes(bool value = true) {
    return {nullptr, PropertyListValue::ofBoolean(value)};
}

inline PropertyList number(std::int64_t value) {
    return {nullptr, PropertyListValue::ofInteger(value)};
}

inline PropertyList real(double value) {
    return {nullptr, PropertyListValue::ofReal(value)};
}

inline PropertyList list(const std::vector<PropertyList> &items) {
    PropertyListBuilder builder;
    std::vector<PropertyListValue> values;
    for (const PropertyList &item : items) {
        values.push_back(builder.adopt(item));
    }
    return builder.finish(builder.array(values));
}

inline PropertyList dict(const std::vector<std::pair<std::string_view, PropertyList>> &items) {
    PropertyListBuilder builder;
    std::vector<PropertyListEntry> entries;
    for (const auto &[key, value] : items) {
        entries.push_back({key, builder.adopt(value)});
    }
    return builder.finish(builder.dictionary(entries));
}

/// A folder node.
inline PropertyList folder(std::string_view name, const std::vector<PropertyList> &children = {}) {
    return dict({{"filename", text(name)}, {"isFolder", yes()}, {"children", list(children)}});
}

/// A file node.
inline PropertyList file(std::string_view name) {
    return dict({{"filename", text(name)}});
}

/// A preset with that folder name and tree.
inline PropertyList preset(std::string_view directoryName, const std::vector<PropertyList> &children = {}) {
    return dict({{"label", text("Preset")},
                 {"directoryName", text(directoryName)},
                 {"fileHierarchy", dict({{"isFolder", yes()}, {"children", list(children)}})}});
}

inline PropertyList presetWithScript(std::string_view directoryName, std::string_view scriptFile) {
    return dict({{"directoryName", text(directoryName)}, {"scriptFile", text(scriptFile)}});
}

} // namespace orvane::test
