#include "presets/ORVUTF16.h"

namespace orvane {

std::size_t ORVUTF16Length(std::string_view text) {
    std::size_t units = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = ORVCharacterLength(text, at);
        units += length == 4 ? 2 : 1;
        at += length;
    }
    return units;
}

} // namespace orvane
