#pragma once

#include "ports/PropertyList.h"

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

// Presets written down briefly.

namespace orvane::test {

/// Makes values; what it made lives as long as it.
class PresetMaker {
public:
    using Entries = std::vector<PropertyListEntry>;

    PropertyListValue text(std::string_view value) { return _builder.string(value); }
    PropertyListValue list(const std::vector<PropertyListValue> &items) { return _builder.array(items); }
    PropertyListValue dictionary(const Entries &entries) { return _builder.dictionary(entries); }
    PropertyListValue data(std::string_view bytes) { return _builder.data(bytes); }
    PropertyListValue file(std::string_view name, Entries more = {}) {
        more.insert(more.begin(), {"filename", text(name)});
        return dictionary(more);
    }
    PropertyListValue folder(std::string_view name, const std::vector<PropertyListValue> &children, Entries more = {}) {
        more.insert(more.begin(),
                    {{"filename", text(name)}, {"isFolder", PropertyListValue::ofBoolean(true)}, {"children", list(children)}});
        return dictionary(more);
    }
    PropertyListValue root(const std::vector<PropertyListValue> &children) {
        return dictionary({{"isFolder", PropertyListValue::ofBoolean(true)}, {"children", list(children)}});
    }
    /// A sound preset with that folder name and tree.
    PropertyListValue preset(std::string_view directoryName, const std::vector<PropertyListValue> &children = {}, Entries more = {}) {
        more.insert(more.begin(), {{"label", text("Label")}, {"directoryName", text(directoryName)}, {"fileHierarchy", root(children)}});
        return dictionary(more);
    }
    PropertyList document(const PropertyListValue &value) { return _builder.finish(value); }

private:
    PropertyListBuilder _builder;
};

} // namespace orvane::test
