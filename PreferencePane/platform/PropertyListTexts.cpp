#include "PropertyListTexts.h"

#include "platform/propertylist/PropertyListFiles.h"

namespace orvane {

std::optional<std::string> PropertyListTexts::textOf(const PropertyList &list) {
    return writeXMLPropertyList(list.root());
}

std::optional<std::string> PropertyListTexts::bytesOf(const PropertyList &list) {
    return writeBinaryPropertyList(list.root());
}

std::optional<PropertyList> PropertyListTexts::read(std::string_view text) {
    return readPropertyList(text);
}

} // namespace orvane
