#pragma once

#include "ports/TextCase.h"

namespace orvane {

/// Full case mapping by libunistring 1.0 (Unicode 14). Text in ASCII is mapped without it. Without memory for the mapping a
/// text stays as it is.
class UnistringTextCase final : public TextCase {
public:
    [[nodiscard]] std::string uppercase(std::string_view text) override;
};

} // namespace orvane
