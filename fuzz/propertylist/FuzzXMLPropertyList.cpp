// Any bytes, read as XML. Small lists are unpacked in front of a filler as well, so that tags and texts meet the end of the
// reader's window.

#include "propertylist/Invariants.h"

#include <cstdint>

using namespace orvane;

namespace {

/// The places that were noted are those of the values: each, read by itself, is what the dictionary holds.
void checkSites(std::string_view bytes) {
    PropertyListReport report;
    report.wantsSites = true;
    const std::optional<PropertyList> list = readPropertyList(bytes, &report);
    if (!list || !list->root().isDictionary()) {
        return;
    }
    const std::optional<std::string> text = decodedPropertyListText(bytes, report.sites.encoding);
    require(text.has_value(), "a file that was read can be decoded");
    for (std::size_t i = 0; i < report.sites.entries.size() && i < 8; ++i) {
        const PropertyListSite &site = report.sites.entries[report.sites.entries.size() - 1 - i];
        require(site.keyBegin < site.valueBegin && site.valueBegin < site.valueEnd && site.valueEnd <= text->size(), "places are in order");
        const std::string alone = text->substr(site.valueBegin, site.valueEnd - site.valueBegin);
        require(readPropertyList(alone).has_value(), "a value stands by itself");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    if (bytes.substr(0, 6) == "bplist") {
        return 0;
    }
    if (const std::optional<PropertyList> list = checkReading(bytes)) {
        checkWriters(list->root());
        checkSites(bytes);
    }
    if (size % 64 == 0) { // a quarter of a megabyte each time, so not for all
        const std::string filler(256U * 1024U - 15 - size / 2 % 4096, 'x');
        const bool plain = checkReading("<array>" + std::string(bytes) + "</array>").has_value();
        const bool shifted = checkReading("<array><string>" + filler + "</string>" + std::string(bytes) + "</array>").has_value();
        require(shifted == plain, "the window's end makes no difference");
    }
    return 0;
}
