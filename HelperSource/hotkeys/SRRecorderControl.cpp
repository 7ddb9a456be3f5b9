#include "hotkeys/SRRecorderControl.h"

#include "hotkeys/SGModifiers.h"

namespace orvane {

std::intptr_t SRRecorderControl::cocoaToCarbonFlags(std::uintptr_t cocoaFlags) const {
    std::uint32_t carbonFlags = 0;
    for (const SGModifier &modifier : SGModifiers) {
        if ((cocoaFlags & modifier.cocoaBit) != 0) {
            carbonFlags |= modifier.carbonBit;
        }
    }
    return static_cast<std::intptr_t>(carbonFlags);
}

} // namespace orvane
