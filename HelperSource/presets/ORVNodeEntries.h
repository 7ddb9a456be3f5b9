#pragma once

#include "ports/PropertyList.h"

#include <span>
#include <string_view>

namespace orvane {

/// The entries of a preset's node that the engine reads, found in one pass; null where the node has none.
struct ORVNodeEntries {
    const PropertyListValue *filename = nullptr;
    const PropertyListValue *isFolder = nullptr;
    const PropertyListValue *children = nullptr;
    const PropertyListValue *color = nullptr;
    const PropertyListValue *permissions = nullptr;
    const PropertyListValue *contentFilename = nullptr;

    explicit ORVNodeEntries(const PropertyListValue &node) {
        for (const PropertyListEntry &entry : node.dictionary()) {
            if (const PropertyListValue **place = _place(entry.key)) {
                *place = &entry.value;
            }
        }
    }
    [[nodiscard]] std::span<const PropertyListValue> childNodes() const {
        return children != nullptr && children->isArray() ? children->array() : std::span<const PropertyListValue>();
    }

private:
    const PropertyListValue **_place(std::string_view key) {
        switch (key.size()) { // tells almost all keys apart
        case 5:
            return key == "color" ? &color : nullptr;
        case 8:
            return key == "filename" ? &filename : key == "isFolder" ? &isFolder : key == "children" ? &children : nullptr;
        case 11:
            return key == "permissions" ? &permissions : nullptr;
        case 15:
            return key == "contentFilename" ? &contentFilename : nullptr;
        default:
            return nullptr;
        }
    }
};

} // namespace orvane
