#pragma once

#include "unit/core/Desk.h"

namespace orvane::fuzz {

/// One manager over fakes for the whole fuzzer; its key operations keep no state.
inline ORVPresetManager &manager() {
    static test::Desk desk;
    return *desk.manager;
}

} // namespace orvane::fuzz
