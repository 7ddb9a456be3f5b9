#include "Permissions.h"

#include <cstddef>

namespace orvane {

std::optional<unsigned> modeOfOctalText(std::string_view text) {
    if (text.size() != 3 || text.find_first_not_of("01234567") != std::string_view::npos) {
        return std::nullopt;
    }
    unsigned mode = 0;
    for (const char digit : text) {
        mode = mode * 8U + static_cast<unsigned>(digit - '0');
    }
    return mode;
}

std::string octalTextOfMode(unsigned mode) {
    std::string text;
    for (const unsigned shift : {6U, 3U, 0U}) {
        text += static_cast<char>('0' + ((mode >> shift) & 7U));
    }
    return text;
}

PermissionBoxes boxesOfMode(unsigned mode) {
    PermissionBoxes boxes{};
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        boxes[i] = ((mode >> (boxes.size() - 1 - i)) & 1U) != 0;
    }
    return boxes;
}

unsigned modeOfBoxes(const PermissionBoxes &boxes) {
    unsigned mode = 0;
    for (const bool box : boxes) {
        mode = mode << 1U | (box ? 1U : 0U);
    }
    return mode;
}

} // namespace orvane
