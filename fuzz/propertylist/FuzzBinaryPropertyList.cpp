// Any bytes, read as a binary list: as they are, and with the magic put in front.

#include "propertylist/Invariants.h"

#include <cstdint>

using namespace orvane;

namespace {

void check(std::string_view bytes) {
    const std::optional<PropertyList> list = checkReading(bytes);
    // A few bytes may stand for 2^26 values; comparing and printing those would take minutes an input.
    if (list && bytes.size() < 400) {
        const std::optional<std::string> binary = writeBinaryPropertyList(list->root());
        require(binary.has_value(), "what was read can be written in the binary form");
        require(readPropertyList(*binary).has_value(), "our binary form can be read");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    check(bytes);
    check("bplist00" + std::string(bytes));
    return 0;
}
