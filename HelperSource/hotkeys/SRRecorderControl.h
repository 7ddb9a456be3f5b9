#pragma once

#include <cstdint>

namespace orvane {

/// What the helper needs of the control that records hot keys: the change from one convention of modifiers to another.
class SRRecorderControl {
public:
    /// The Carbon mask of a Cocoa mask: command, option, control and shift; whatever else is set is dropped.
    [[nodiscard]] std::intptr_t cocoaToCarbonFlags(std::uintptr_t cocoaFlags) const;
};

} // namespace orvane
