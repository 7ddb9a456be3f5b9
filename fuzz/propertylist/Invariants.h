#pragma once

#include "platform/propertylist/PropertyListFiles.h"

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

inline void require(bool holds, const char *what) {
    if (!holds) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

/// What was read can be written in the binary form and read back equal; in XML too, or its writer says why not. What comes
/// out of XML then is written the same way again.
inline void checkWriters(const PropertyListValue &root) {
    const std::optional<std::string> binary = writeBinaryPropertyList(root);
    require(binary.has_value(), "what was read can be written in the binary form");
    const std::optional<PropertyList> fromBinary = readPropertyList(*binary);
    require(fromBinary.has_value(), "our binary form can be read");
    require(fromBinary->root().equals(root), "our binary form holds what was written");
    std::string why;
    const std::optional<std::string> xml = writeXMLPropertyList(root, &why);
    require(xml.has_value() == why.empty(), "the XML writer gives a reason just when it refuses");
    if (xml) {
        const std::optional<PropertyList> fromXML = readPropertyList(*xml);
        require(fromXML.has_value(), "our XML can be read");
        require(writeXMLPropertyList(fromXML->root()) == xml, "our XML, read and written again, is the same");
    }
}

/// Reads; a reason is given just when it fails.
inline std::optional<PropertyList> checkReading(std::string_view bytes) {
    PropertyListReport report;
    report.wantsSites = true;
    std::optional<PropertyList> list = readPropertyList(bytes, &report);
    require(list.has_value() == report.why.empty(), "a reason stands just where reading failed");
    return list;
}

} // namespace orvane
