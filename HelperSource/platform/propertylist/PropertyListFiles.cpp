#include "platform/propertylist/PropertyListFiles.h"

#include "platform/propertylist/BinaryPropertyListReader.h"
#include "platform/propertylist/XMLPropertyListInput.h"
#include "platform/propertylist/XMLPropertyListReader.h"

#include <cstring>
#include <utility>

namespace orvane {

namespace {

using namespace propertylist;

constexpr std::string_view BinaryMagic = "bplist";

std::optional<PropertyList> readBinary(std::string_view bytes, PropertyListReport &report) {
    report.format = PropertyListFormat::Binary;
    return readBinaryPropertyList(bytes, report.why);
}

std::optional<PropertyList> readXML(XMLPropertyListInput &input, PropertyListReport &report) {
    report.format = PropertyListFormat::XML;
    XMLPropertyListReader reader(input);
    return reader.read(report);
}

std::optional<PropertyList> withReport(PropertyListReport &report, PropertyListFormat *format, std::string *why,
                                       std::optional<PropertyList> list) {
    if (format != nullptr) {
        *format = report.format;
    }
    if (why != nullptr) {
        *why = std::move(report.why);
    }
    return list;
}

} // namespace

std::optional<PropertyList> readPropertyList(std::string_view bytes, PropertyListReport *report) {
    PropertyListReport own;
    PropertyListReport &told = report == nullptr ? own : *report;
    if (bytes.substr(0, BinaryMagic.size()) == BinaryMagic) {
        return readBinary(bytes, told);
    }
    XMLPropertyListInput input(bytes);
    return readXML(input, told);
}

std::optional<PropertyList> readPropertyList(int descriptor, PropertyListReport *report) {
    PropertyListReport own;
    PropertyListReport &told = report == nullptr ? own : *report;
    XMLPropertyListInput input(descriptor);
    input.want(BinaryMagic.size());
    if (std::memcmp(input.cursor, BinaryMagic.data(), BinaryMagic.size()) != 0) {
        return readXML(input, told);
    }
    const std::string bytes = input.takeAll();
    if (input.error() != 0) {
        told.why = std::string("reading failed: ") + std::strerror(input.error());
        return std::nullopt;
    }
    return readBinary(bytes, told);
}

std::optional<PropertyList> readPropertyList(std::string_view bytes, PropertyListFormat *format, std::string *why) {
    PropertyListReport report;
    std::optional<PropertyList> list = readPropertyList(bytes, &report);
    return withReport(report, format, why, std::move(list));
}

std::optional<PropertyList> readPropertyList(int descriptor, PropertyListFormat *format, std::string *why) {
    PropertyListReport report;
    std::optional<PropertyList> list = readPropertyList(descriptor, &report);
    return withReport(report, format, why, std::move(list));
}

} // namespace orvane
