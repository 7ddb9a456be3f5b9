#pragma once

#include "ports/PropertyList.h"

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

/// Makes preset records for tests. What it makes lives as long as it.
class PresetMaker {
public:
    using Entries = std::vector<PropertyListEntry>;

    PropertyListValue text(std::string_view value) { return _builder.string(value); }
    PropertyListValue array(const std::vector<PropertyListValue> &items) { return _builder.array(items); }
    PropertyListValue dictionary(const Entries &entries) { return _builder.dictionary(entries); }

    PropertyListValue file(std::string_view name, Entries more = {}) {
        more.push_back({"filename", text(name)});
        return dictionary(more);
    }
    PropertyListValue folder(std::string_view name, const std::vector<PropertyListValue> &children, Entries more = {}) {
        more.push_back({"filename", text(name)});
        more.push_back({"isFolder", PropertyListValue::ofBoolean(true)});
        more.push_back({"children", array(children)});
        return dictionary(more);
    }
    PropertyListValue preset(std::string_view name, const std::vector<PropertyListValue> &children, Entries more = {}) {
        more.push_back({"directoryName", text(name)});
        more.push_back({"fileHierarchy", dictionary({{"children", array(children)}})});
        return dictionary(more);
    }
    PropertyList list(const std::vector<PropertyListValue> &presets) { return _builder.finish(array(presets)); }
    PropertyList finish(const PropertyListValue &value) { return _builder.finish(value); }

private:
    PropertyListBuilder _builder;
};

} // namespace orvane
